#include "ui/panel/panel_header.h"

#include <QAccessible>

#include "l10n/language.h"
#include "panel_fixture.h"
#include "ui/controls/picker_button.h"
#include "ui/controls/text_label.h"
#include "ui/panel/game_status.h"

namespace orlix::test {
namespace {

class PanelHeaderTest : public PanelTest {
  protected:
    StatusBadge* badge() const { return panel->findChild<StatusBadge*>(); }
    QString badgeText() const { return badge()->text(); }
    StatusTone tone() const { return badge()->status().tone; }
    std::optional<Icon> symbol() const { return badge()->status().symbol; }
    QString secondary() const {
        const auto* label = panel->findChild<PanelHeader*>()->findChild<TextLabel*>();
        return label->isVisible() ? label->text() : QString();
    }
};

TEST_F(PanelHeaderTest, theSideToMoveStandsInTheBadgeWithThatTheGameGoesOnBesideIt) {
    playAgainstPerson();
    EXPECT_EQ(badgeText(), QStringLiteral("White to move"));
    EXPECT_EQ(tone(), StatusTone::playing);
    EXPECT_FALSE(symbol());
    EXPECT_EQ(secondary(), QStringLiteral("Game in progress"));
    play("e2", "e4");
    EXPECT_EQ(badgeText(), QStringLiteral("Black to move"));
}

TEST_F(PanelHeaderTest, theSideToMoveHasOneLineInEveryLanguageAtTheWindowsFirstSize) {
    constexpr int firstPanelWidth = 400;
    constexpr int oneLine = 26;
    playAgainstPerson();
    panel->resize(firstPanelWidth, 800);
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        QCoreApplication::processEvents();
        EXPECT_EQ(badge()->height(), oneLine) << utf8(badgeText());
        EXPECT_FALSE(secondary().isEmpty());
    }
}

TEST_F(PanelHeaderTest, aCheckIsCalledOut) {
    playAgainstPerson();
    game->loadFEN(QStringLiteral("4k3/8/8/8/8/8/8/4KR2 w - - 0 1"));
    play("f1", "f8");
    EXPECT_EQ(badgeText(), QStringLiteral("CHECK!"));
    EXPECT_EQ(tone(), StatusTone::check);
    EXPECT_EQ(symbol(), Icon::warning);
    EXPECT_EQ(secondary(), QStringLiteral("Black to move"));
}

TEST_F(PanelHeaderTest, aPauseCoversACheckAndEndsWithTheGame) {
    playAgainstPerson();
    game->loadFEN(QStringLiteral("4k3/8/8/8/8/8/8/4KR2 w - - 0 1"));
    play("f1", "f8");
    game->togglePause();
    EXPECT_EQ(badgeText(), QStringLiteral("Paused"));
    EXPECT_EQ(tone(), StatusTone::paused);
    EXPECT_EQ(symbol(), Icon::pause);
    game->resign(PieceColor::white);
    EXPECT_EQ(badgeText(), QStringLiteral("White resigned. Black wins!"));
    EXPECT_EQ(secondary(), QString());
}

TEST_F(PanelHeaderTest, mateNamesTheWinner) {
    playAgainstPerson();
    play("f2", "f3");
    play("e7", "e5");
    play("g2", "g4");
    play("d8", "h4");
    EXPECT_EQ(badgeText(), QStringLiteral("Checkmate! Black wins!"));
    EXPECT_EQ(tone(), StatusTone::won);
    EXPECT_EQ(symbol(), Icon::flag);

    game->loadFEN(QStringLiteral("6k1/5ppp/8/8/8/8/8/4R1K1 w - - 0 1"));
    play("e1", "e8");
    EXPECT_EQ(badgeText(), QStringLiteral("Checkmate! White wins!"));
}

TEST_F(PanelHeaderTest, aTimeOutNamesTheSideThatDidNotRunOut) {
    playAgainstPerson();
    time.advance(301s);
    time.runDue();
    EXPECT_EQ(badgeText(), QStringLiteral("Time out! Black wins!"));
    EXPECT_EQ(tone(), StatusTone::won);
    EXPECT_EQ(symbol(), Icon::warning);

    game->startNewGame();
    play("e2", "e4");
    time.advance(301s);
    time.runDue();
    EXPECT_EQ(badgeText(), QStringLiteral("Time out! White wins!"));
}

TEST_F(PanelHeaderTest, resignationNamesBothSides) {
    playAgainstPerson();
    game->resign(PieceColor::black);
    EXPECT_EQ(badgeText(), QStringLiteral("Black resigned. White wins!"));
    EXPECT_EQ(tone(), StatusTone::won);
}

TEST_F(PanelHeaderTest, everyDrawSaysWhy) {
    playAgainstPerson();
    struct Draw {
        const char* fen;
        const char* from;
        const char* to;
        const char* text;
    };
    const Draw draws[] = {
        {"7k/8/5KQ1/8/8/8/8/8 w - - 0 1", "g6", "f7", "Stalemate - Draw"},
        {"7k/8/8/8/8/8/4P3/R3K3 w - - 99 80", "a1", "a2", "Draw by 50-move rule"},
        {"7k/8/8/8/8/8/4p3/4K3 w - - 0 1", "e1", "e2", "Draw by insufficient material"},
    };
    for (const Draw& draw : draws) {
        game->loadFEN(QString::fromLatin1(draw.fen));
        play(draw.from, draw.to);
        EXPECT_EQ(utf8(badgeText()), draw.text);
        EXPECT_EQ(tone(), StatusTone::drawn) << draw.text;
        EXPECT_EQ(symbol(), Icon::flag) << draw.text;
    }

    game->startNewGame();
    for (int round = 0; round < 2; ++round) {
        play("g1", "f3");
        play("g8", "f6");
        play("f3", "g1");
        play("f6", "g8");
    }
    EXPECT_EQ(badgeText(), QStringLiteral("Draw by threefold repetition"));
}

TEST_F(PanelHeaderTest, aReplayedGameShowsTheEndThatItsBoardTells) {
    game->replayGame(
        {QStringLiteral("f2f3"), QStringLiteral("e7e5"), QStringLiteral("g2g4"), QStringLiteral("d8h4")},
        std::nullopt);
    EXPECT_EQ(badgeText(), QStringLiteral("Checkmate! Black wins!"));
    game->replayGame({QStringLiteral("e2e4")}, std::nullopt);
    EXPECT_EQ(badgeText(), QStringLiteral("Black to move"));
    EXPECT_EQ(tone(), StatusTone::drawn);
    EXPECT_EQ(secondary(), QString());
}

TEST_F(PanelHeaderTest, thePickerSwitchesTheWholePanelAtOnceAndShowsFlagAndName) {
    auto* picker = find<PickerButton>("languagePicker");
    EXPECT_TRUE(picker->items().at(0).startsWith(flag(Language::english)));
    EXPECT_TRUE(picker->items().at(0).endsWith(QStringLiteral("English")));
    click(picker);
    ASSERT_TRUE(picker->popup());
    const auto rows = picker->popup()->findChildren<PanelButton*>();
    ASSERT_EQ(rows.size(), 4);
    EXPECT_TRUE(rows[0]->isChecked());
    click(rows[1]);
    EXPECT_EQ(loc->currentLanguage(), Language::german);
    EXPECT_EQ(defaults.string(QStringLiteral("VelmorandixLanguage")), QStringLiteral("de"));
    EXPECT_EQ(badgeText(), QStringLiteral("Weiß am Zug"));
    EXPECT_EQ(secondary(), QStringLiteral("Partie läuft"));
    EXPECT_EQ(picker->currentIndex(), 1);
    EXPECT_EQ(find<PanelButton>("resignGame")->label(), loc->text("btn_resign"));
    EXPECT_EQ(find<PanelButton>("tab_game")->label(), loc->text("tab_game"));
}

TEST_F(PanelHeaderTest, thePickerWorksWithTheKeyboardAlone) {
    auto* picker = find<PickerButton>("languagePicker");
    picker->setFocus(Qt::TabFocusReason);
    QTest::keyClick(picker, Qt::Key_Space);
    EXPECT_FALSE(picker->popup());
    QTest::keyClick(picker, Qt::Key_Return);
    ASSERT_TRUE(picker->popup());
    const auto rows = picker->popup()->findChildren<PanelButton*>();
    ASSERT_TRUE(rows[0]->hasFocus());
    QTest::keyClick(rows[0], Qt::Key_Down);
    ASSERT_TRUE(rows[1]->hasFocus());
    QTest::keyClick(rows[1], Qt::Key_Up);
    QTest::keyClick(rows[0], Qt::Key_Up);
    ASSERT_TRUE(rows[3]->hasFocus());
    QTest::keyClick(rows[3], Qt::Key_Return);
    EXPECT_EQ(loc->currentLanguage(), Language::french);

    QTest::keyClick(picker, Qt::Key_Down);
    ASSERT_TRUE(picker->popup());
    QTest::keyClick(picker->popup(), Qt::Key_Escape);
    EXPECT_TRUE(!picker->popup() || !picker->popup()->isVisible());
    EXPECT_EQ(loc->currentLanguage(), Language::french);
}

TEST_F(PanelHeaderTest, theOpenListIsBelowItsPickerForAssistiveTechnology) {
    auto* picker = find<PickerButton>("languagePicker");
    QAccessibleInterface* node = QAccessible::queryAccessibleInterface(picker);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->role(), QAccessible::Button);
    EXPECT_EQ(node->text(QAccessible::Name), picker->accessibleName());
    EXPECT_EQ(node->childCount(), 0);
    EXPECT_EQ(node->child(0), nullptr);
    EXPECT_TRUE(node->state().hasPopup && node->state().collapsed);
    EXPECT_FALSE(node->state().expanded);

    QAccessibleActionInterface* actions = node->actionInterface();
    ASSERT_TRUE(actions && actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_TRUE(picker->popup());
    EXPECT_TRUE(node->state().expanded && !node->state().collapsed);
    ASSERT_EQ(node->childCount(), 1);
    QAccessibleInterface* list = node->child(0);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), loc->text("language"));
    EXPECT_EQ(list->parent(), node);
    EXPECT_EQ(node->indexOfChild(list), 0);
    const QPoint inside = picker->popup()->geometry().center();
    EXPECT_EQ(node->childAt(inside.x(), inside.y()), list);
    ASSERT_EQ(list->childCount(), 4);
    for (int index = 0; index < 4; ++index) {
        EXPECT_EQ(list->child(index)->text(QAccessible::Name), picker->items().at(index));
        EXPECT_EQ(bool(list->child(index)->state().checked), index == 0);
        EXPECT_EQ(bool(list->child(index)->state().focused), index == 0);
    }

    actions->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(node->childCount(), 0);
    EXPECT_TRUE(node->state().collapsed);
}

TEST_F(PanelHeaderTest, anOpenListThatIsCutToShapeHasNoDarkCorners) {
    for (const auto scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        theme.setScheme(scheme);
        auto* picker = find<PickerButton>("languagePicker");
        picker->openPopup();
        QWidget* list = picker->popup();
        ASSERT_TRUE(list);
        list->setMask(list->rect());
        const QImage image = list->grab().toImage();
        const QColor edge = theme.tint(ColorRole::text, ColorRole::panel, 0.22);
        for (const int x : {0, 1, image.width() - 2, image.width() - 1}) {
            for (const int y : {0, 1, image.height() - 2, image.height() - 1}) {
                const QColor color = image.pixelColor(x, y);
                EXPECT_EQ(color.alpha(), 255) << x << " " << y;
                EXPECT_NEAR(color.lightness(), edge.lightness(), 40) << x << " " << y;
            }
        }
        list->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST(PanelColors, everyTextReachesItsContrast) {
    Theme theme;
    for (const auto scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        theme.setScheme(scheme);
        for (const StatusTone tone : {StatusTone::playing, StatusTone::check, StatusTone::paused,
                                      StatusTone::drawn, StatusTone::won}) {
            const StatusColors colors = statusColors(tone, theme);
            EXPECT_GE(contrastRatio(colors.ink, colors.ground), 4.5)
                << "tone " << static_cast<int>(tone) << " scheme " << static_cast<int>(scheme);
        }
        using Look = PanelButton::Look;
        for (const Look look : {Look::primary, Look::secondary, Look::onCard, Look::destructive,
                                Look::alarming, Look::tab, Look::segment, Look::chip, Look::option}) {
            for (const bool isChecked : {false, true}) {
                for (const bool isHovered : {false, true}) {
                    const auto colors = PanelButton::colors(look, isChecked, isHovered, theme);
                    // The track of a segmented control is the darkest ground that shows through.
                    const QColor ground = colors.ground.isValid() ? colors.ground
                                          : look == Look::segment
                                              ? theme.tint(ColorRole::text, ColorRole::card, 0.06)
                                              : theme.color(ColorRole::panel);
                    EXPECT_GE(contrastRatio(colors.ink, ground), 4.5)
                        << "look " << static_cast<int>(look) << " checked " << isChecked << " hovered "
                        << isHovered << " scheme " << static_cast<int>(scheme);
                }
            }
        }
    }
}

}  // namespace
}  // namespace orlix::test
