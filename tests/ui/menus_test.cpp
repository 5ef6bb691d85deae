#include "ui/menus.h"

#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>

#include "l10n/extra_texts.h"
#include "shell_fixture.h"
#include "ui/right_panel_view.h"

namespace orlix {
namespace {

class Menus : public test::ShellTest {
  protected:
    QAction* action(const QString& title) const {
        for (QAction* candidate : find<GameMenu>()->actions()) {
            if (candidate->text() == title) return candidate;
        }
        return nullptr;
    }
    QStringList titles() const {
        QStringList all;
        for (const QAction* candidate : find<GameMenu>()->actions()) {
            if (!candidate->isSeparator()) all.append(candidate->text());
        }
        return all;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus != nullptr ? focus : window.get(), key, modifiers);
    }
};

TEST_F(Menus, holdTheCommandsWithTheirShortcutsAndNothingIsDisabled) {
    showWindowForTwoPeople();
    struct Row {
        const char* title;
        QKeySequence shortcut;
    };
    const std::vector<Row> rows{
        {"New Game", Qt::CTRL | Qt::Key_N},
        {"Save PGN...", Qt::CTRL | Qt::Key_S},
        {"Flip Board", Qt::CTRL | Qt::Key_F},
        {"Undo Move", Qt::CTRL | Qt::Key_Z},
        {"Pause", Qt::Key_Space},
        {"Resign", {}},
    };
    ASSERT_EQ(titles().size(), static_cast<int>(rows.size()));
    for (const Row& row : rows) {
        const QAction* found = action(QString::fromLatin1(row.title));
        ASSERT_NE(found, nullptr) << row.title;
        EXPECT_EQ(found->shortcut(), row.shortcut) << row.title;
        EXPECT_TRUE(found->isEnabled()) << row.title;
    }
    EXPECT_EQ(find<GameMenu>()->title(), QStringLiteral("Game"));
    EXPECT_TRUE(find<QMenuBar>()->actions().contains(find<GameMenu>()->menuAction()));
}

TEST_F(Menus, quitEndsTheApplicationInEveryLanguage) {
    showWindowForTwoPeople();
    const QAction* quit = find<ApplicationMenu>()->actions().last();
    EXPECT_EQ(quit->menuRole(), QAction::QuitRole);
    const std::vector<std::pair<Language, QString>> texts{{Language::german, QStringLiteral("Beenden")},
                                                          {Language::dutch, QStringLiteral("Afsluiten")},
                                                          {Language::french, QStringLiteral("Quitter")},
                                                          {Language::english, QStringLiteral("Quit")}};
    for (const auto& [language, text] : texts) {
        loc.setCurrentLanguage(language);
        EXPECT_EQ(quit->text(), text);
    }
    // Only a running application can be ended.
    QTimer::singleShot(0, window.get(), [this] { press(Qt::Key_Q, Qt::ControlModifier); });
    QTimer::singleShot(patienceMs, window.get(), [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(Menus, newGameStartsOver) {
    showWindowForTwoPeople();
    click("e2");
    click("e4");
    ASSERT_EQ(game->board().history.size(), 1u);
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_TRUE(game->board().history.empty());
}

TEST_F(Menus, savePGNOffersTheGamesTextUnderItsDefaultName) {
    showWindowForTwoPeople();
    click("e2");
    click("e4");
    press(Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return dialogs.isOpen(); }));
    EXPECT_EQ(dialogs.saveRequests[0].title, QStringLiteral("Save PGN Game"));
    EXPECT_EQ(dialogs.saveRequests[0].fileName, QStringLiteral("velmorandix_game.pgn"));

    click("e7");  // the text is that of the moment of the command
    click("e5");
    dialogs.answer(QStringLiteral("/games/a.pgn"));
    const QByteArray saved = files.files.at(QStringLiteral("/games/a.pgn"));
    EXPECT_TRUE(saved.endsWith("\n\n1. e4\n")) << saved.constData();
}

TEST_F(Menus, flipTurnsTheBoardAndBack) {
    showWindowForTwoPeople();
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(game->isFlipped());
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(game->isFlipped());
}

TEST_F(Menus, undoTakesAMoveBack) {
    showWindowForTwoPeople();
    click("e2");
    click("e4");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(game->board().history.empty());
}

TEST_F(Menus, resignResignsForTheSideToMove) {
    showWindowForTwoPeople();
    click("e2");
    click("e4");
    action(QStringLiteral("Resign"))->trigger();
    EXPECT_EQ(game->gameEndReason(), GameEndReason::resignation(PieceColor::white));
}

TEST_F(Menus, spacePausesAndResumesAndTheTitleFollows) {
    showWindowForTwoPeople();
    press(Qt::Key_Space);
    EXPECT_TRUE(game->isPaused());
    EXPECT_NE(action(QStringLiteral("Resume")), nullptr);
    EXPECT_EQ(action(QStringLiteral("Pause")), nullptr);
    press(Qt::Key_Space);
    EXPECT_FALSE(game->isPaused());
    EXPECT_NE(action(QStringLiteral("Pause")), nullptr);
}

TEST_F(Menus, titleFollowsAPauseFromElsewhere) {
    showWindowForTwoPeople();
    game->togglePause();
    EXPECT_NE(action(QStringLiteral("Resume")), nullptr);
    game->startNewGame();
    EXPECT_NE(action(QStringLiteral("Pause")), nullptr);
}

TEST_F(Menus, spaceHeldDownPausesOnce) {
    showWindowForTwoPeople();
    QTest::simulateEvent(window.get(), true, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), false);
    for (int i = 0; i < 3; ++i) {
        QTest::simulateEvent(window.get(), true, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    }
    QTest::simulateEvent(window.get(), false, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), false);
    EXPECT_TRUE(game->isPaused());
}

TEST_F(Menus, spaceTypesInATextField) {
    showWindowForTwoPeople();
    QLineEdit field(find<MainView>());
    field.show();
    field.setFocus();
    ASSERT_TRUE(field.hasFocus());
    press(Qt::Key_Space);
    EXPECT_EQ(field.text(), QStringLiteral(" "));
    EXPECT_FALSE(game->isPaused());
}

TEST_F(Menus, spacePausesAndNeverPressesAFocusedButtonWhichReturnDoes) {
    showWindowForTwoPeople();
    QPushButton button(QStringLiteral("Anything"), find<MainView>());
    int presses = 0;
    QObject::connect(&button, &QPushButton::clicked, window.get(), [&presses] { ++presses; });
    button.show();
    button.setFocus();
    ASSERT_TRUE(button.hasFocus());

    press(Qt::Key_Space);
    EXPECT_EQ(presses, 0);
    EXPECT_FALSE(button.isDown());
    EXPECT_TRUE(game->isPaused());

    press(Qt::Key_Return);
    EXPECT_EQ(presses, 1);
    press(Qt::Key_Enter);
    EXPECT_EQ(presses, 2);
}

TEST_F(Menus, everyButtonOfTheWindowLeavesSpaceToThePause) {
    showWindowForTwoPeople();
    int tried = 0;
    for (int tab = 0; tab < RightPanelView::tabCount; ++tab) {
        find<RightPanelView>()->setSelectedTab(tab);
        for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
            if (!button->isVisible() || !button->isEnabled() || button->focusPolicy() == Qt::NoFocus)
                continue;
            button->setFocus();
            if (!button->hasFocus()) continue;
            ++tried;
            const bool wasPaused = game->isPaused();
            int presses = 0;
            const auto connection =
                QObject::connect(button, &QAbstractButton::clicked, window.get(), [&presses] { ++presses; });
            press(Qt::Key_Space);
            QObject::disconnect(connection);
            EXPECT_EQ(presses, 0) << qPrintable(button->accessibleName());
            EXPECT_NE(game->isPaused(), wasPaused) << qPrintable(button->accessibleName());
        }
    }
    EXPECT_GE(tried, 6 * 7)
        << "the language, the chosen tab and the five buttons of the bottom bar on each tab";
}

TEST_F(Menus, everyTitleFollowsTheLanguage) {
    showWindowForTwoPeople();
    for (const Language language : allLanguages) {
        loc.setCurrentLanguage(language);
        EXPECT_EQ(window->windowTitle(), loc.text("app_title"));
        EXPECT_EQ(find<GameMenu>()->title(), extraText(language, ExtraText::gameMenu));
        EXPECT_EQ(titles(),
                  (QStringList{loc.text("btn_new_game"), loc.text("btn_save_pgn"), loc.text("btn_flip_board"),
                               loc.text("btn_undo"), loc.text("btn_pause"), loc.text("btn_resign")}));
    }
}

}  // namespace
}  // namespace orlix
