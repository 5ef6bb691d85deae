// The board and the game in the states that matter.
#include "screenshot_scenes.h"
#include "ui/controls/panel_button.h"
#include "ui/engine_notice_view.h"
#include "ui/right_panel_view.h"

namespace orlix::test {

namespace {

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(u' ');
}

void start(Shell& shell) {
    showTwoPeople(shell);
}

void startFrom(Shell& shell, const char* fen) {
    showTwoPeople(shell);
    shell.game->loadFEN(QString::fromLatin1(fen));
}

void midGame(Shell& shell) {
    showTwoPeople(shell);
    playMoves(shell, openGame());
}

void promotion(Shell& shell) {
    startFrom(shell, "2r3k1/1P3ppp/8/8/3q4/8/5PPP/1Q4K1 w - - 0 1");
    shell.click("b7");
    shell.click("b8");
}

void blackPromotion(Shell& shell) {
    startFrom(shell, "6k1/5ppp/8/8/8/8/1p3PPP/R5K1 b - - 0 1");
    shell.game->flipBoard();
    shell.click("b2");
    shell.click("a1");
}

// The engine has heard its "go" and says `info`.
void thinking(Shell& shell, const QByteArray& info) {
    showAgainstEngine(shell);
    playMoves(shell, {QStringLiteral("e2e4")});
    shell.eventually([&shell] { return shell.launcher.lastHeard("go "); });
    const qint64 before = shell.game->liveEvaluation().depth;
    shell.launcher.say(info);
    shell.eventually([&] { return shell.game->liveEvaluation().depth != before; });
    shell.time.advance(std::chrono::milliseconds(2100));
}

void drag(Shell& shell) {
    showTwoPeople(shell);
    playMoves(shell, openGame().mid(0, 8));
    auto* board = shell.find<BoardView>();
    const auto center = [board](const char* square) {
        return board->squareRect(*Square::fromText(square)).center().toPoint();
    };
    QTest::mousePress(board, Qt::LeftButton, {}, center("f3"));
    QTest::mouseMove(board, (center("f3") + center("d4")) / 2);
    QTest::mouseMove(board, center("d4") + QPoint(12, 9));
}

void cursor(Shell& shell) {
    showTwoPeople(shell);
    auto* board = shell.find<BoardView>();
    board->focusSquare(*Square::fromText("e2"));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Up, Qt::Key_Up})
        QTest::keyClick(board, key);
}

void pressAddEngine(Shell& shell, const QString& path) {
    auto* notice = shell.find<EngineNoticeView>();
    for (auto* button : notice->findChildren<PanelButton*>()) {
        if (button->label() != shell.loc.text("add_engine") || !button->isVisible()) continue;
        QTest::mouseClick(button, Qt::LeftButton);
        shell.dialogs.answer(path);
        return;
    }
    qFatal("no engine can be added");
}

// What the card over the board says of an engine that is missing.
void addNotices(std::vector<PictureOf>& all) {
    const auto checked = [](Shell& shell) {
        shell.fileTests.executables.insert(puppetPath);
        shell.launcher.introductions[puppetPath] = "";
        shell.showWindow();
        pressAddEngine(shell, puppetPath);
    };
    const auto refused = [](Shell& shell) {
        shell.launcher.broken.insert(puppetPath);
        shell.fileTests.executables.insert(puppetPath);
        shell.showWindow();
        pressAddEngine(shell, puppetPath);
        auto* notice = shell.find<EngineNoticeView>();
        shell.eventually([notice] { return notice->findChild<PanelButton*>()->isEnabled(); });
    };
    const auto notChosen = [](Shell& shell) {
        shell.installEngine();
        shell.buildWindow();
        shell.engines->setSelectedBlackEngine(std::nullopt);
        shell.showWindow();
    };
    const auto forTheNextGame = [](Shell& shell) {
        shell.fileTests.executables.insert(puppetPath);
        shell.showWindow();
        playMoves(shell, {QStringLiteral("e2e4")});
        pressAddEngine(shell, puppetPath);
        shell.eventually([&shell] { return shell.engines->selectedBlackEngine().has_value(); });
    };
    const std::pair<const char*, std::function<void(Shell&)>> states[] = {
        {"09-notice-checking", checked},
        {"09-notice-refused", refused},
        {"09-notice-not-chosen", notChosen},
        {"09-notice-next-game", forTheNextGame}};
    for (const auto& [name, scene] : states) {
        all.push_back({QString::fromLatin1(name), scene});
        all.push_back({QString::fromLatin1(name) + QStringLiteral("-dark"), scene, Theme::Scheme::dark,
                       Language::german});
    }
    all.push_back(
        {QStringLiteral("09-notice-next-game-fr"), forTheNextGame, Theme::Scheme::light, Language::french});
}

// Names that the banners have to shorten, and every kind of captured piece.
void longNames(Shell& shell) {
    shell.launcher.introductions[puppetPath] =
        "id name The Puppet With A Name That Goes On And On Until Nobody Wants To Read It Any More\nuciok\n";
    shell.fileTests.executables.insert(puppetPath);
    shell.buildWindow();
    shell.game->setGameMode(GameMode::engineVsEngine);
    shell.showWindow();
    pressAddEngine(shell, puppetPath);
    shell.eventually([&shell] { return shell.game->whiteEngineProcess() != nullptr; });
    shell.game->loadFEN(QStringLiteral("4k3/8/8/8/8/8/P7/4K2R w - - 0 40"));
    shell.window->resize(1120, 740);
}

// More moves than the list has room for.
void longGame(Shell& shell) {
    showTwoPeople(shell);
    // Every pawn two single steps, file by file: "a2a3 a7a6 b2b3 ... h3h4 h6h5".
    for (const char* step : {"%12%13 %17%16", "%13%14 %16%15"}) {
        for (const QChar file : QStringLiteral("abcdefgh"))
            playMoves(shell,
                      QString::fromLatin1(step).replace(QLatin1String("%1"), QString(file)).split(u' '));
    }
    playMoves(shell,
              words("g1f3 g8f6 c1b2 c8b7 b1d2 b8d7 a1a3 a8a6 h1h3 h8h6 e1f2 e8f7 f2g1 f7g8 d1e1 d8e8"));
}

}  // namespace

void showTwoPeople(Shell& shell) {
    shell.buildWindow();
    shell.game->setGameMode(GameMode::humanVsHuman);
    shell.showWindow();
}

void showAgainstEngine(Shell& shell) {
    shell.installEngine();
    shell.showWindow();
}

void showTab(Shell& shell, int index) {
    shell.find<RightPanelView>()->setSelectedTab(index);
}

void playMoves(Shell& shell, const QStringList& moves) {
    for (const QString& move : moves) {
        const std::string text = move.toStdString();
        shell.game->handleSquareClick(*Square::fromText(text.substr(0, 2)));
        shell.game->handleSquareClick(*Square::fromText(text.substr(2)));
        shell.time.advance(std::chrono::milliseconds(3700));
    }
}

const QStringList& openGame() {
    static const QStringList moves = words(
        "e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 b5c6 d7c6 d2d4 e5d4 d1d4 d8d4 f3d4 c8d7 c1e3 e8c8 b1d2 g8e7 "
        "e1c1 e7g6 d4b3 f8b4 d2f3 h8e8 h2h4 g6h4 f3h4 e8e4 h4f3 d7g4 b3d4");
    return moves;
}

std::vector<PictureOf> gamePictures() {
    const auto dark = Theme::Scheme::dark;
    std::vector<PictureOf> all;
    const auto add = [&all](const char* name, std::function<void(Shell&)> scene,
                            Theme::Scheme scheme = Theme::Scheme::light) {
        all.push_back({QString::fromLatin1(name), std::move(scene), scheme});
    };
    add("01-start", showAgainstEngine);
    add("02-selection", [](Shell& shell) {
        showTwoPeople(shell);
        playMoves(shell, openGame().mid(0, 8));
        shell.click("f3");
    });
    add("02-selection-en-passant", [](Shell& shell) {
        showTwoPeople(shell);
        playMoves(shell, words("e2e4 a7a6 e4e5 d7d5"));
        shell.click("e5");
    });
    add("02-drag", drag);
    add("02-cursor", cursor);
    add("02-cursor-dark", cursor, dark);
    add("03-check", [](Shell& shell) {
        showTwoPeople(shell);
        playMoves(shell, words("e2e4 f7f6 d1h5"));
    });
    add("04-promotion", promotion);
    add("04-promotion-black-flipped", blackPromotion);
    add("04-promotion-black-flipped-dark", blackPromotion, dark);
    add("05-mate", [](Shell& shell) {
        showTwoPeople(shell);
        playMoves(shell, words("f2f3 e7e5 g2g4 d8h4"));
    });
    add("05-stalemate", [](Shell& shell) {
        startFrom(shell, "7k/8/5K2/6Q1/8/8/8/8 w - - 0 1");
        playMoves(shell, {QStringLiteral("g5g6")});
    });
    add("05-repetition", [](Shell& shell) {
        showTwoPeople(shell);
        playMoves(shell, words("g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8"));
    });
    add("05-resigned", [](Shell& shell) {
        midGame(shell);
        shell.game->resign(PieceColor::black);
    });
    add(
        "05-time-out-dark",
        [](Shell& shell) {
            midGame(shell);
            shell.time.advance(std::chrono::minutes(6));
        },
        dark);
    add("06-inspecting", [](Shell& shell) {
        midGame(shell);
        shell.game->inspectMove(6);
    });
    add(
        "06-inspecting-dark",
        [](Shell& shell) {
            midGame(shell);
            shell.game->inspectMove(6);
        },
        dark);
    add("06-inspecting-start", [](Shell& shell) {
        midGame(shell);
        shell.game->inspectMove(0);
    });
    add("07-thinking", [](Shell& shell) {
        thinking(shell, "info depth 21 score cp -38 nodes 1893201 nps 931420 time 2032 pv e7e5 g1f3 b8c6");
    });
    add("07-thinking-white-lost", [](Shell& shell) {
        thinking(shell, "info depth 21 score cp 812 nodes 1893201 nps 931420 time 2032 pv e7e5 g1f3 b8c6");
    });
    add(
        "07-thinking-mate-dark",
        [](Shell& shell) {
            thinking(shell, "info depth 30 score mate -4 nodes 1893201 nps 931420 time 2032 pv e7e5 g1f3");
            shell.game->flipBoard();
        },
        dark);
    add("08-no-engine", [](Shell& shell) { shell.showWindow(); });
    add(
        "09-no-engine-dark", [](Shell& shell) { shell.showWindow(); }, dark);
    addNotices(all);
    add("10-paused-flipped", [](Shell& shell) {
        midGame(shell);
        shell.game->flipBoard();
        shell.game->togglePause();
    });
    add("11-low-time", [](Shell& shell) {
        showTwoPeople(shell);
        playMoves(shell, openGame().mid(0, 4));
        shell.time.advance(std::chrono::milliseconds(297'000));
    });
    add("12-smallest", [](Shell& shell) {
        midGame(shell);
        shell.window->resize(1120, 740);
    });
    add("13-wide", [](Shell& shell) {
        midGame(shell);
        shell.window->resize(1720, 1000);
    });
    add("14-toast", [](Shell& shell) {
        start(shell);
        shell.find<RightPanelView>()->showToast(shell.loc.text("copied_to_clipboard"));
        QTest::qWait(400);
    });
    add("15-long-game", longGame);
    add("16-long-names", longNames);
    return all;
}

std::vector<PictureOf> fullestPictures() {
    const std::vector<PictureOf> views{
        {QStringLiteral("30-game"), midGame},
        {QStringLiteral("31-new-game"),
         [](Shell& shell) {
             shell.installEngine();
             shell.buildWindow();
             shell.game->setGameMode(GameMode::engineVsEngine);
             shell.game->setWhiteEngineLimit(true, 1750);
             shell.showWindow();
             showTab(shell, 3);
         }},
        {QStringLiteral("32-promotion"), promotion},
    };
    std::vector<PictureOf> all;
    for (const PictureOf& view : views) {
        for (const auto scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
            const auto schemeName =
                scheme == Theme::Scheme::light ? QStringLiteral("light") : QStringLiteral("dark");
            for (const Language language : allLanguages)
                all.push_back({QStringLiteral("%1-%2-%3").arg(view.name, schemeName, rawValue(language)),
                               view.scene, scheme, language});
        }
    }
    return all;
}

}  // namespace orlix::test
