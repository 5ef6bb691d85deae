// Long random walks through everything that a game can be asked, with what must hold after every step and
// inside every signal. The seeds are fixed, so a failure can be run again.
#include <algorithm>
#include <random>

#include "game_fixture.h"

namespace orlix::test {
namespace {

/// Refuses to be called in the middle of a step: everything it hears of must find a state that holds.
class InvariantWatch : public GameSounds, public GameListener {
  public:
    void watch(GameManager& watched) {
        manager_ = &watched;
        const auto look = [this] { check("a signal"); };
        QObject::connect(&watched, &GameManager::changed, &watched, look);
        QObject::connect(&watched, &GameManager::liveEvaluationChanged, &watched, look);
        QObject::connect(&watched, &GameManager::enginesChanged, &watched, look);
        QObject::connect(&watched.clock(), &ChessClock::changed, &watched, look);
        QObject::connect(&watched, &GameManager::enginesChanged, &watched, [this] { watchEngines(); });
    }

    void play(SoundEffect) override { check("a sound"); }
    bool isAutomatchActive() const override { return true; }
    void handleGameEnd(const GameEndReason& reason, const ChessBoard& board, const QString& pgn) override {
        ++gameEnds;
        EXPECT_TRUE(manager_->isGameOver());
        EXPECT_EQ(manager_->gameEndReason(), reason);
        EXPECT_EQ(board, manager_->board());
        EXPECT_EQ(pgn, manager_->exportPGN());
        EXPECT_FALSE(manager_->clock().isRunning());
        check("a game end");
    }

    /// What holds at every moment at which anybody is called.
    void check(const char* where) {
        if (!manager_) return;
        ++checks;
        const GameManager& game = *manager_;
        SCOPED_TRACE(where);
        checkSelection(game);
        checkClock(game.clock());
        const ChessBoard& board = game.board();
        if (!board.history.empty()) {
            EXPECT_EQ(game.lastMove(), board.history.back().move);
        } else {
            EXPECT_EQ(game.lastMove(), std::nullopt);
        }
        EXPECT_EQ(game.currentlyThinkingColor().has_value(), game.currentlyThinkingEngine().has_value());
        if (game.currentlyThinkingColor()) {
            EXPECT_EQ(game.engineStatusText(), QLatin1String("Thinking..."));
        }
        if (game.gameEndReason()) {
            EXPECT_TRUE(game.isGameOver());
        }
        const auto index = game.inspectingMoveIndex();
        if (!index) {
            EXPECT_EQ(&game.displayedBoard(), &board);
        }
        for (const PieceColor color : allPieceColors) {
            EXPECT_LE(std::count_if(board.squares.begin(), board.squares.end(),
                                    [&](const auto& square) {
                                        return square && square->type == PieceType::king &&
                                               square->color == color;
                                    }),
                      1);
        }
    }

    int checks = 0;
    int gameEnds = 0;

  private:
    void checkSelection(const GameManager& game) {
        const auto& selected = game.selectedSquare();
        if (!selected) {
            selectedFen_.clear();
            EXPECT_TRUE(game.legalDestinationSquares().empty());
            return;
        }
        const std::string fen = game.board().fen();
        if (selected != lastSelected_) selectedFen_.clear();
        if (selectedFen_.empty()) selectedFen_ = fen;
        lastSelected_ = selected;
        // An engine's answer may come while something is selected. Until then the piece is one of the side to
        // move, and its targets are its legal moves.
        if (selectedFen_ != fen) return;
        const auto& piece = game.board()[*selected];
        ASSERT_TRUE(piece);
        EXPECT_EQ(piece->color, game.board().turn);
        std::vector<Square> targets;
        for (const Move& legal : game.board().legalMoves(*selected)) {
            targets.push_back(legal.to);
        }
        EXPECT_EQ(names(game.legalDestinationSquares()), names(targets));
    }

    void checkClock(const ChessClock& clock) const {
        if (clock.isRunning()) {
            EXPECT_TRUE(clock.activeColor());
        }
        if (clock.incrementMs() >= 0) {
            EXPECT_GE(clock.whiteRemainingMs(), 0);
            EXPECT_GE(clock.blackRemainingMs(), 0);
        }
    }

    void watchEngines() {
        for (UCIEngineProcess* engine : {manager_->whiteEngineProcess(), manager_->blackEngineProcess()}) {
            if (!engine) continue;
            const auto look = [this] { check("an engine's signal"); };
            QObject::connect(engine, &UCIEngineProcess::changed, manager_, look);
            QObject::connect(engine, &UCIEngineProcess::logChanged, manager_, look);
        }
    }

    GameManager* manager_ = nullptr;
    std::optional<Square> lastSelected_;
    std::string selectedFen_;
};

class GameWalkTest : public testing::TestWithParam<unsigned> {
  protected:
    GameWalkTest() {
        files.executables = {QStringLiteral("/engines/alpha"), QStringLiteral("/engines/beta")};
        engines.setSelectedWhiteEngine(engineNamed(QStringLiteral("Alpha")));
        engines.setSelectedBlackEngine(engineNamed(QStringLiteral("Beta")));
        manager.setListener(&watch);
        watch.watch(manager);
    }

    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool chance(int percent) { return pick(100) < percent; }
    template <typename List>
    auto any(const List& list) {
        return *(std::begin(list) + pick(static_cast<int>(std::size(list))));
    }

    /// A click that often continues what was begun, as people's clicks do.
    void clickSomewhere() {
        const auto& targets = manager.legalDestinationSquares();
        if (!targets.empty() && chance(70)) {
            manager.handleSquareClick(any(targets));
            return;
        }
        const auto legal = manager.board().generateLegalMoves();
        if (!legal.empty() && chance(80)) {
            manager.handleSquareClick(any(legal).from);
        } else {
            manager.handleSquareClick(any(Square::allSquares()));
        }
    }

    void engineSpeaks() {
        if (launcher.engines.isEmpty()) return;
        // Now and then an engine that was replaced long ago.
        const int count = static_cast<int>(launcher.engines.size());
        FakeEngine& speaker =
            *launcher.engines[chance(20) ? pick(count) : count - 1 - pick(std::min(count, 2))];
        const auto legal = manager.board().generateLegalMoves();
        switch (pick(5)) {
            case 0: speaker.sayLine("info depth 7 score cp 31 pv e2e4"); break;
            case 1: speaker.sayLine("bestmove (none)"); break;
            case 2: speaker.sayLine("bestmove e2e5"); break;
            default:
                if (!legal.empty())
                    speaker.sayLine("bestmove " + QByteArray::fromStdString(any(legal).uciString()));
        }
        QCoreApplication::processEvents();
    }

    void newGame() {
        static const TimeControlPreset presets[] = {TimeControlPreset::blitz5_3, TimeControlPreset::bullet1_0,
                                                    TimeControlPreset::custom, TimeControlPreset::unlimited};
        TimeControlConfig config;
        config.preset = any(presets);
        config.customBaseMinutes = pick(2);
        config.customIncrementSeconds = pick(3);
        manager.setTimeControlConfig(config);
        manager.setGameMode(any(allGameModes));
        manager.setColorChoice(any(allPlayerColorChoices));
        manager.startNewGame();
        EXPECT_EQ(manager.isFlipped(),
                  manager.gameMode() == GameMode::humanVsEngine && manager.humanColor() == black);
        EXPECT_FALSE(manager.isGameOver());
        EXPECT_EQ(manager.board().fen(), ChessBoard::standardStartingFEN);
    }

    void loadSomething() {
        static const char* const positions[] = {
            "4k3/P7/8/8/8/8/p6P/4K3 w - - 0 1",
            "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 98 70",
            "k7/8/1K6/8/8/8/8/2Q5 w - - 0 1",
            "8/8/8/8/8/8/8/8 w - - 0 1",
            "nonsense",
        };
        const QString fen = QString::fromLatin1(any(positions));
        const ChessBoard before = manager.board();
        try {
            manager.loadFEN(fen);
            EXPECT_EQ(manager.clock().activeColor(), manager.board().turn);
        } catch (const FenError&) {
            EXPECT_EQ(manager.board(), before);
        }
    }

    void replaySomething() {
        manager.replayGame({QStringLiteral("e2e4"), QStringLiteral("e7e5"), QStringLiteral("x"),
                            QStringLiteral("g1f3"), QStringLiteral("g1f3")},
                           std::nullopt);
        EXPECT_TRUE(manager.isGameOver());
        EXPECT_EQ(manager.board().history.size(), 3U);
    }

    void inspectSomething() {
        const int count = static_cast<int>(manager.board().history.size());
        manager.inspectMove(chance(20) ? std::nullopt : std::optional<qint64>(pick(count + 3) - 1));
        const ChessBoard& shown = manager.displayedBoard();
        EXPECT_EQ(&manager.displayedBoard(), &shown);
        EXPECT_EQ(shown.fen(), manager.displayedBoard().fen());
    }

    void step() {
        // Most steps are to meet a game that goes on.
        if (manager.isGameOver() && chance(8)) return newGame();
        if (manager.isPaused() && chance(15)) return manager.togglePause();
        if (manager.isInspectingPast() && chance(20)) return manager.inspectMove(std::nullopt);
        const int what = pick(1000);
        if (what < 520) {
            clickSomewhere();
        } else if (what < 720) {
            engineSpeaks();
        } else if (what < 820) {
            time.advance(std::chrono::milliseconds(pick(400)));
        } else if (what < 850) {
            manager.confirmPromotion(any(allPieceTypes));
        } else if (what < 860) {
            manager.cancelPromotion();
        } else if (what < 890) {
            manager.undoMove();
        } else if (what < 920) {
            inspectSomething();
        } else if (what < 940) {
            manager.togglePause();
        } else if (what < 950) {
            manager.flipBoard();
        } else if (what < 960) {
            manager.updateWhiteElo(chance(50), 1400 + pick(1000));
        } else if (what < 970) {
            manager.updateBlackElo(chance(50), 1400 + pick(1000));
        } else if (what < 975) {
            manager.resign(any(allPieceColors));
        } else if (what < 980) {
            loadSomething();
        } else if (what < 983) {
            replaySomething();
        } else if (what < 990) {
            newGame();
        } else if (what < 993) {
            time.stall(std::chrono::seconds(pick(90)));
        } else {
            EXPECT_FALSE(manager.exportPGN().isEmpty());
            EXPECT_FALSE(manager.exportFEN().isEmpty());
        }
    }

    /// One command of any kind, with nothing expected of it: slots may have changed everything meanwhile.
    void act() {
        const int what = pick(100);
        if (what < 50) {
            clickSomewhere();
        } else if (what < 55) {
            manager.confirmPromotion(any(allPieceTypes));
        } else if (what < 62) {
            manager.undoMove();
        } else if (what < 68) {
            manager.inspectMove(chance(50) ? std::nullopt : std::optional<qint64>(pick(20) - 1));
            EXPECT_FALSE(manager.displayedBoard().fen().empty());
        } else if (what < 74) {
            manager.togglePause();
        } else if (what < 78) {
            manager.updateWhiteElo(chance(50), 1400 + pick(1000));
        } else if (what < 81) {
            manager.resign(any(allPieceColors));
        } else if (what < 85) {
            manager.loadFEN(QStringLiteral("r3k2r/P7/8/8/8/8/p7/R3K2R b KQkq - 98 70"));
        } else if (what < 87) {
            manager.replayGame({QStringLiteral("e2e4"), QStringLiteral("e7e5")}, std::nullopt);
        } else {
            manager.setGameMode(any(allGameModes));
            manager.startNewGame();
        }
    }

    /// A slot that now and then gives a command itself, also from inside the signals of that one.
    void interfere() {
        if (interference_ >= 3 || !chance(10)) return;
        ++interference_;
        ++interferences;
        act();
        --interference_;
    }

    void interfereWithEngines() {
        for (UCIEngineProcess* engine : {manager.whiteEngineProcess(), manager.blackEngineProcess()}) {
            if (!engine) continue;
            QObject::connect(engine, &UCIEngineProcess::changed, &manager, [this] { interfere(); });
            QObject::connect(engine, &UCIEngineProcess::logChanged, &manager, [this] { interfere(); });
        }
    }

    FakeTimeSource time;
    FakeDefaultsStore defaults;
    FakeFileTests files;
    FakeSystemSettings system;
    FakeProcessLauncher launcher;
    FakeFileDialogs dialogs;
    EngineManager engines{{defaults, files, system, launcher, dialogs}};
    InvariantWatch watch;
    GameManager manager{time, engines, watch, [this](const EngineConfiguration& config) {
                            return std::make_unique<UCIEngineProcess>(config, launcher, files);
                        }};
    std::mt19937 random{GetParam()};
    int interferences = 0;

  private:
    int interference_ = 0;
};

TEST_P(GameWalkTest, everyStateThatAnybodySeesHolds) {
    newGame();
    // A longer walk on demand: ORLIX_WALK_STEPS=1000000.
    const int steps = qEnvironmentVariableIsSet("ORLIX_WALK_STEPS")
                          ? qEnvironmentVariableIntValue("ORLIX_WALK_STEPS")
                          : 20000;
    qint64 plies = 0;
    for (int i = 0; i < steps && !HasFailure(); ++i) {
        const auto before = manager.board().history.size();
        step();
        if (manager.board().history.size() > before) ++plies;
        watch.check("after a step");
        if (HasFailure()) ADD_FAILURE() << "at step " << i << " of seed " << GetParam();
    }
    // The walk went somewhere.
    EXPECT_GT(plies, steps / 50);
    EXPECT_GT(watch.gameEnds, 3);
    EXPECT_GT(watch.checks, steps);
}

TEST_P(GameWalkTest, everyStateHoldsWhenSlotsGiveCommandsToo) {
    // Connected after the watch, which therefore sees every state first.
    const auto slot = [this] { interfere(); };
    QObject::connect(&manager, &GameManager::changed, &manager, slot);
    QObject::connect(&manager, &GameManager::liveEvaluationChanged, &manager, slot);
    QObject::connect(&manager, &GameManager::enginesChanged, &manager, [this] { interfereWithEngines(); });
    QObject::connect(&manager, &GameManager::enginesChanged, &manager, slot);
    QObject::connect(&manager.clock(), &ChessClock::changed, &manager, slot);
    const int steps = 10000;
    for (int i = 0; i < steps && !HasFailure(); ++i) {
        const int what = pick(100);
        if (what < 25) {
            engineSpeaks();
        } else if (what < 45) {
            time.advance(std::chrono::milliseconds(pick(400)));
        } else {
            act();
        }
        watch.check("after a step");
        if (HasFailure()) ADD_FAILURE() << "at step " << i << " of seed " << GetParam();
    }
    EXPECT_GT(interferences, steps / 10);
}

INSTANTIATE_TEST_SUITE_P(Seeds, GameWalkTest, testing::Values(1U, 2U, 3U, 20240307U, 4711U));

}  // namespace
}  // namespace orlix::test
