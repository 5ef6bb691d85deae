#include <QDir>

#include "panel_fixture.h"
#include "ui/controls/card.h"
#include "ui/controls/picker_button.h"
#include "ui/controls/text_fit.h"
#include "ui/move_list_view.h"
#include "ui/panel/new_game_tab.h"

namespace orlix::test {
namespace {

class PanelTexts : public PanelTest {
  protected:
    /// Reports every visible text that needs more room than it has, and counts the texts looked at.
    int expectAllFit(const std::string& where) const {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        int count = 0;
        for (const QWidget* widget : panel->findChildren<QWidget*>()) {
            const auto* control = dynamic_cast<const ShowsText*>(widget);
            if (!control || !widget->isVisible()) continue;
            for (const ShownText& shown : control->shownTexts()) {
                ++count;
                EXPECT_LE(shown.needed.width(), shown.room.width() + 0.5)
                    << where << ": " << utf8(shown.text);
                EXPECT_LE(shown.needed.height(), shown.room.height() + 0.5)
                    << where << ": " << utf8(shown.text);
            }
            // Nothing stands outside of what holds it, but for what a scroll area scrolls.
            const QWidget* parent = widget->parentWidget();
            const QWidget* holder = parent->parentWidget();
            if (!holder || !holder->inherits("QAbstractScrollArea")) {
                EXPECT_TRUE(parent->rect().contains(widget->geometry()))
                    << where << ": " << widget->metaObject()->className();
            }
        }
        return count;
    }

    void forEveryLanguageAndWidth(const std::function<void(const std::string& where)>& body) {
        for (const Language language : allLanguages) {
            loc->setCurrentLanguage(language);
            for (const int width : {400, 460}) {
                panel->resize(width, 700);
                body(utf8(displayName(language)) + " " + std::to_string(width));
            }
        }
    }
};

TEST_F(PanelTexts, everyTabFitsInEveryLanguage) {
    forEveryLanguageAndWidth([this](const std::string& where) {
        for (int tab = 0; tab < RightPanelView::tabCount; ++tab) {
            panel->setSelectedTab(tab);
            EXPECT_GT(expectAllFit(where + " tab " + std::to_string(tab)), 12);
        }
    });
}

TEST_F(PanelTexts, cardsAreAsWideWhereAPageScrollsAsWhereItDoesNot) {
    panel->resize(400, 900);
    for (int tab = 1; tab < RightPanelView::tabCount; ++tab) {
        panel->setSelectedTab(tab);
        QCoreApplication::sendPostedEvents();
        for (const int height : {500, 1800}) {
            panel->resize(400, height);
            QCoreApplication::sendPostedEvents();
            for (const Card* card : panel->findChildren<Card*>()) {
                if (!card->isVisible()) continue;
                EXPECT_EQ(card->mapTo(panel.get(), QPoint(0, 0)).x(), 16) << "tab " << tab;
                EXPECT_EQ(card->mapTo(panel.get(), QPoint(card->width(), 0)).x(), 384) << "tab " << tab;
            }
        }
    }
}

TEST_F(PanelTexts, everyKindOfNewGameFits) {
    panel->setSelectedTab(3);
    forEveryLanguageAndWidth([this](const std::string& where) {
        for (int mode = 0; mode < 3; ++mode) {
            choose("modes", mode);
            choose("presets", 9);
            for (int thinking = 0; thinking < 3; ++thinking) {
                if (mode < 2) choose("thinking", thinking);
                for (const char* limit : {"opponentLimit", "whiteLimit", "blackLimit"})
                    find(limit)->setChecked(thinking == 1);
                for (int alternative = 0; alternative < 3; ++alternative) {
                    if (mode == 0) choose("colors", alternative);
                    expectAllFit(where + " mode " + std::to_string(mode));
                }
            }
        }
        for (int preset = 0; preset < 11; ++preset) {
            choose("presets", preset);
            expectAllFit(where + " preset");
        }
    });
}

TEST_F(PanelTexts, everyStatusFitsTheHeader) {
    const GameEndReason reasons[] = {GameEndReason::resignation(PieceColor::white),
                                     GameEndReason::resignation(PieceColor::black)};
    forEveryLanguageAndWidth([&](const std::string& where) {
        playAgainstPerson();
        expectAllFit(where + " playing");
        play("e2", "e4");
        game->togglePause();
        expectAllFit(where + " paused");
        game->togglePause();
        for (const GameEndReason& reason : reasons) {
            game->startNewGame();
            game->resign(opponent(*reason.winner));
            expectAllFit(where + " resigned");
        }
        game->startNewGame();
        time.advance(301s);
        time.runDue();
        expectAllFit(where + " timeout white");
        game->startNewGame();
        play("e2", "e4");
        time.advance(301s);
        time.runDue();
        expectAllFit(where + " timeout black");
        const struct {
            const char* fen;
            const char* from;
            const char* to;
        } ends[] = {
            {"4k3/8/8/8/8/8/8/4KR2 w - - 0 1", "f1", "f8"},
            {"7k/8/5KQ1/8/8/8/8/8 w - - 0 1", "g6", "f7"},
            {"7k/8/8/8/8/8/4P3/R3K3 w - - 99 80", "a1", "a2"},
            {"7k/8/8/8/8/8/4p3/4K3 w - - 0 1", "e1", "e2"},
            {"6k1/5ppp/8/8/8/8/8/4R1K1 w - - 0 1", "e1", "e8"},
            {"4r1k1/8/8/8/8/8/5PPP/6K1 b - - 0 1", "e8", "e1"},
        };
        for (const auto& end : ends) {
            game->loadFEN(QString::fromLatin1(end.fen));
            play(end.from, end.to);
            expectAllFit(where + " " + end.fen);
        }
        game->startNewGame();
        for (int round = 0; round < 2; ++round) {
            play("g1", "f3");
            play("g8", "f6");
            play("f3", "g1");
            play("f6", "g8");
        }
        ASSERT_TRUE(game->isGameOver());
        expectAllFit(where + " repetition");
    });
}

TEST_F(PanelTexts, movesInspectionAndToastsFit) {
    forEveryLanguageAndWidth([this](const std::string& where) {
        playAgainstPerson();
        // The longest move that SAN knows has a file and a rank, a capture and a check: "Qa1xb2+".
        game->loadFEN(QStringLiteral("8/8/8/8/Q6Q/8/1r4k1/Q6K w - - 0 1"));
        panel->setSelectedTab(0);
        expectAllFit(where);
        game->replayGame({QStringLiteral("e2e4"), QStringLiteral("e7e5"), QStringLiteral("g1f3")},
                         std::nullopt);
        game->inspectMove(0);
        expectAllFit(where + " inspecting");
        panel->showToast(loc->text("fen_loaded_successfully"));
        expectAllFit(where + " toast");
        panel->showToast(QStringLiteral("A very long engine name that no one would give ").repeated(4));
        expectAllFit(where + " long toast");
        game->inspectMove(std::nullopt);
    });
}

TEST_F(PanelTexts, aLongEngineNameIsShortenedWithTheWholeAsTooltip) {
    const QString name =
        QStringLiteral("An engine whose name goes on and on until no panel could ever hold it all");
    panel->setSelectedTab(3);
    auto* picker = find<PickerButton>("opponentEngine");
    picker->setItems({name, QStringLiteral("Short")}, true);
    picker->setCurrentIndex(0);
    EXPECT_EQ(picker->toolTip(), name);
    picker->setItems({QStringLiteral("Fish & <b>Chips</b>")}, true);
    picker->setCurrentIndex(0);
    EXPECT_EQ(picker->toolTip(), QStringLiteral("<p>Fish &amp; &lt;b&gt;Chips&lt;/b&gt;</p>"));
    picker->setItems({name, QStringLiteral("Short")}, true);
    picker->setCurrentIndex(0);
    EXPECT_LE(picker->width(), 400);
    EXPECT_TRUE(picker->accessibleName().contains(name));
}

class PanelTextsWithoutEngines : public PanelTexts {
  protected:
    PanelTextsWithoutEngines() { registersEngines_ = false; }
};

TEST_F(PanelTextsWithoutEngines, theNoticeFits) {
    panel->setSelectedTab(3);
    forEveryLanguageAndWidth([this](const std::string& where) {
        for (int mode = 0; mode < 3; ++mode) {
            choose("modes", mode);
            expectAllFit(where);
        }
    });
}

/// Paints every tab; with ORLIX_PICTURES the pictures are kept in that folder, for looking at.
TEST_F(PanelTexts, everyTabIsPaintedInBothSchemes) {
    const QString folder = qEnvironmentVariable("ORLIX_PICTURES");
    if (!folder.isEmpty()) QDir().mkpath(folder);
    const QStringList opening{QStringLiteral("e2e4"), QStringLiteral("e7e5"), QStringLiteral("g1f3"),
                              QStringLiteral("b8c6"), QStringLiteral("f1b5"), QStringLiteral("a7a6"),
                              QStringLiteral("b5a4"), QStringLiteral("g8f6"), QStringLiteral("e1g1")};
    int counter = 0;
    const auto keep = [&](const QString& name) {
        QCoreApplication::processEvents();
        const QPixmap picture = panel->grab();
        QSet<QRgb> colors;
        const QImage image = picture.toImage();
        for (int y = 0; y < image.height(); y += 2) {
            for (int x = 0; x < image.width(); x += 2)
                colors.insert(image.pixel(x, y));
        }
        EXPECT_GT(colors.size(), 20) << utf8(name);
        if (!folder.isEmpty()) picture.save(folder + u'/' + name + QStringLiteral(".png"));
        ++counter;
    };
    for (const auto scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        theme.setScheme(scheme);
        const QString look =
            scheme == Theme::Scheme::light ? QStringLiteral("light") : QStringLiteral("dark");
        for (const Language language : allLanguages) {
            loc->setCurrentLanguage(language);
            for (const int width : {400, 460}) {
                panel->resize(width, 832);
                const QString name = QStringLiteral("%1-%2-%3-%4x-")
                                         .arg(rawValue(language), look)
                                         .arg(width)
                                         .arg(panel->devicePixelRatioF());
                game->setGameMode(GameMode::humanVsEngine);
                game->setTimeControlConfig({});
                game->startNewGame();
                panel->setSelectedTab(0);
                keep(name + QStringLiteral("a-empty"));
                game->replayGame(opening, std::nullopt);
                keep(name + QStringLiteral("b-moves"));
                game->inspectMove(3);
                panel->showToast(loc->text("copied_to_clipboard"));
                if (!folder.isEmpty()) QTest::qWait(250);  // the toast in full sight
                keep(name + QStringLiteral("c-inspecting"));
                time.advance(2500ms);
                game->startNewGame();
                panel->setSelectedTab(3);
                find("opponentLimit")->setChecked(true);
                keep(name + QStringLiteral("d-new-game"));
                choose("modes", 1);
                choose("presets", 9);
                choose("thinking", 1);
                find("whiteLimit")->setChecked(true);
                panel->resize(width, 1250);
                keep(name + QStringLiteral("e-engines"));
                panel->resize(width, 832);
                game->resign(PieceColor::white);
                panel->setSelectedTab(1);
                keep(name + QStringLiteral("f-later"));
            }
        }
    }
    EXPECT_EQ(counter, 96);
}

}  // namespace
}  // namespace orlix::test
