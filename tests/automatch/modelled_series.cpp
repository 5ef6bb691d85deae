#include "automatch/modelled_series.h"

#include "automatch/automatch_fixture.h"

namespace orlix::test {

class CountedTimeSource::CountedTimer final : public Timer {
  public:
    CountedTimer(std::unique_ptr<Timer> timer, std::shared_ptr<int> alive)
        : timer_(std::move(timer)), alive_(std::move(alive)) {
        ++*alive_;
    }
    ~CountedTimer() override { --*alive_; }

  private:
    std::unique_ptr<Timer> timer_;
    std::shared_ptr<int> alive_;
};

std::unique_ptr<Timer> CountedTimeSource::every(std::chrono::milliseconds interval, Action action) {
    return std::make_unique<CountedTimer>(source_.every(interval, std::move(action)), alive_);
}

std::unique_ptr<Timer> CountedTimeSource::after(std::chrono::milliseconds delay, Action action) {
    return std::make_unique<CountedTimer>(source_.after(delay, std::move(action)), alive_);
}

const char* ModelledSeries::nameOf(Command command) {
    switch (command) {
        case Command::pause: return "pause";
        case Command::resume: return "resume";
        case Command::stop: return "stop";
        case Command::clear: return "clear";
        case Command::startAgain: return "startAgain";
        case Command::newGame: return "newGame";
        case Command::undo: return "undo";
        case Command::resign: return "resign";
        case Command::timeOut: return "timeOut";
        case Command::loadFen: return "loadFen";
        case Command::replay: return "replay";
        case Command::removeEngine: return "removeEngine";
        case Command::pauseGame: return "pauseGame";
        case Command::engineMates: return "engineMates";
        case Command::passTime: return "passTime";
    }
    Q_UNREACHABLE();
}

ModelledSeries::ModelledSeries() {
    files_.executables = {alpha_.executablePath, beta_.executablePath};
    fillRegistry(defaults_, engines_, {alpha_, beta_});
    model_.names[0] = alpha_.name;
    model_.names[1] = beta_.name;
    game_.setListener(this);
    QObject::connect(&automatch_, &AutomatchManager::changed, &game_, [this] { look("automatch changed"); });
    QObject::connect(&game_, &GameManager::changed, &game_, [this] { look("game changed"); });
    QObject::connect(&game_, &GameManager::enginesChanged, &game_, [this] { look("engines changed"); });
    QObject::connect(&engines_, &EngineManager::changed, &game_, [this] { look("registry changed"); });
    QObject::connect(&game_.clock(), &ChessClock::changed, &game_, [this] {
        const ChessClock& clock = game_.clock();
        const bool hasRunOut = !clock.isRunning() && !clock.activeColor() && !game_.isGameOver() &&
                               clock.whiteRemainingMs() == 0;
        // At the moment of a step it would be open what comes first.
        if (!isTrapArmed_ || !hasRunOut || model_.isStepDueAt(time_.now())) return;
        isTrapArmed_ = false;
        game_.resign(black);
    });
}

ModelledSeries::~ModelledSeries() {
    game_.setListener(nullptr);
}

void ModelledSeries::catchUp() {
    // Without a pause the model cannot know whether the event loop has run since.
    if (model_.isDueAtOnce() && automatch_.currentGameIndex() == model_.index) return;
    model_.elapse(time_.now());
}

void ModelledSeries::handleGameEnd(const GameEndReason& reason, const ChessBoard& board, const QString& pgn) {
    const bool wasOver = std::exchange(isGameOverKnown_, true);
    if (!automatch_.isAutomatchActive()) return;
    ++gameEnds;
    catchUp();
    if (model_.isPaused) wasEndMissed_ = true;
    const qint64 index = automatch_.currentGameIndex();
    const qsizetype before = automatch_.history().size();
    const bool isRecorded = model_.endGame(time_.now(), reason, pgn);
    automatch_.handleGameEnd(reason, board, pgn);
    // The next game never starts inside this call.
    EXPECT_TRUE(game_.isGameOver());
    EXPECT_EQ(game_.board(), board);
    EXPECT_EQ(automatch_.currentGameIndex(), index);
    ASSERT_EQ(automatch_.history().size(), before + (isRecorded ? 1 : 0));
    if (!isRecorded) return;
    if (!automatch_.isAutomatchActive()) ++finishedSeries;
    EXPECT_EQ(automatch_.history().last().gameNumber, index);
    checkNumber(wasOver);
}

// A number never falls, is repeated only by an end after an end or a game that was revived by hand, and is
// left out only after an end that the series did not hear of.
void ModelledSeries::checkNumber(bool wasOver) {
    const auto& history = automatch_.history();
    const qint64 last = history.last().gameNumber;
    const qint64 previous = history.size() > 1 ? history[history.size() - 2].gameNumber : 0;
    EXPECT_GE(last, previous);
    if (last == previous) {
        ++(wasOver ? repeatsByEndAfterEnd : repeatsByHand);
        EXPECT_TRUE(wasOver || wasRevived_) << "number " << last << " again";
    }
    if (last > previous + 1) {
        ++gaps;
        EXPECT_TRUE(wasEndMissed_) << "number " << last << " after " << previous;
    }
    wasEndMissed_ = false;
}

void ModelledSeries::look(const char* where) {
    catchUp();
    checkLaunch();
    check(where);
}

void ModelledSeries::checkLaunch() {
    if (checkedLaunches_ == model_.launches) return;
    // Its own announcement comes last; until then the old game is on the board.
    if (game_.isGameOver() || game_.isPaused() || !game_.board().history.empty()) return;
    if (!game_.whiteEngineProcess() || !game_.blackEngineProcess()) return;
    const QString& whiteName = model_.names[model_.whiteIs1 ? 0 : 1];
    const QString& blackName = model_.names[model_.whiteIs1 ? 1 : 0];
    if (game_.whiteEngineProcess()->config().name != whiteName) return;
    EXPECT_EQ(game_.blackEngineProcess()->config().name, blackName);
    EXPECT_EQ(game_.gameMode(), GameMode::engineVsEngine);
    checkedLaunches_ = model_.launches;
    isGameOverKnown_ = false;
    wasRevived_ = false;
}

void ModelledSeries::check(const char* where) {
    SCOPED_TRACE(where);
    EXPECT_EQ(automatch_.isAutomatchActive(), model_.isActive);
    EXPECT_EQ(automatch_.isAutomatchPaused(), model_.isPaused);
    EXPECT_EQ(automatch_.currentGameIndex(), model_.index);
    EXPECT_EQ(automatch_.currentWhiteIsEngine1(), model_.whiteIs1);
    EXPECT_EQ(automatch_.isCountingDown(), model_.isCounting());
    EXPECT_EQ(automatch_.countdownRemaining(), model_.remaining);
    EXPECT_EQ(automatch_.matchFinishedReason().value_or(QString()), model_.words);
    EXPECT_EQ(closingSounds_.played.size(), static_cast<std::size_t>(model_.closingSounds));

    // The score is that of the history, and the history that of the model.
    EXPECT_EQ(automatch_.engine1Wins(), model_.wins(1));
    EXPECT_EQ(automatch_.engine2Wins(), model_.wins(2));
    EXPECT_EQ(automatch_.draws(), model_.draws());
    const auto& history = automatch_.history();
    ASSERT_EQ(history.size(), static_cast<qsizetype>(model_.games.size()));
    std::chrono::milliseconds played{};
    for (qsizetype i = 0; i < history.size(); ++i) {
        const SeriesModel::Game& game = model_.games[static_cast<std::size_t>(i)];
        EXPECT_EQ(history[i].gameNumber, game.number);
        EXPECT_EQ(history[i].result, game.result);
        EXPECT_EQ(history[i].winnerEngineName.value_or(QString()), game.winner);
        EXPECT_EQ(history[i].pgn, game.pgn);
        played += game.duration;
    }
    if (!history.isEmpty()) {
        EXPECT_DOUBLE_EQ(automatch_.averageGameSeconds().value_or(-1),
                         double(played.count()) / 1000 / double(history.size()));
    }

    // At most one countdown, and none but while one is shown.
    EXPECT_EQ(countedTime_.alive(), model_.isCounting() ? 1 : 0);
    // Never two games at once.
    const auto isAlive = [](const auto& engine) { return !engine->isTerminated; };
    EXPECT_LE(std::count_if(launcher_.engines.cbegin(), launcher_.engines.cend(), isAlive), 2);
}

void ModelledSeries::run(Command command) {
    act(command);
    check(nameOf(command));
    EXPECT_TRUE(checkedLaunches_ == model_.launches) << "no game for number " << model_.index;
    forgetEndedEngines();
}

void ModelledSeries::act(Command command) {
    const bool isGamePaused = game_.isPaused();
    switch (command) {
        case Command::pause: {
            const bool toggles = model_.pauseSeries();
            automatch_.pauseAutomatch();
            EXPECT_EQ(game_.isPaused(), isGamePaused != toggles);
            return;
        }
        case Command::resume: {
            const int launches = model_.launches;
            const bool toggles = model_.resume(time_.now(), game_.isGameOver());
            automatch_.resumeAutomatch();
            const bool isLaunched = model_.launches > launches;
            EXPECT_EQ(game_.isPaused(), !isLaunched && isGamePaused != toggles);
            return;
        }
        case Command::stop: {
            const ChessBoard before = game_.board();
            model_.stop();
            automatch_.stopAutomatch();
            EXPECT_EQ(game_.board(), before);
            return;
        }
        case Command::clear:
            model_.clear();
            automatch_.clearHistory();
            return;
        case Command::startAgain: return start();
        case Command::newGame:
            wasRevived_ = true;
            isGameOverKnown_ = false;
            return game_.startNewGame();
        case Command::undo: return game_.undoMove();
        case Command::resign: return game_.resign(white);
        case Command::timeOut: return passTime(std::chrono::seconds(61));
        case Command::loadFen:
            wasRevived_ = true;
            isGameOverKnown_ = false;
            return game_.loadFEN(QStringLiteral("k7/8/1K6/8/8/8/8/2Q5 w - - 0 1"));
        case Command::replay:
            wasEndMissed_ = true;
            return game_.replayGame({QStringLiteral("e2e4"), QStringLiteral("e7e5")}, std::nullopt);
        case Command::removeEngine: return engines_.removeEngine(alpha_);
        case Command::pauseGame: return game_.togglePause();
        case Command::engineMates:
            game_.loadFEN(QStringLiteral("k7/8/1K6/8/8/8/8/2Q5 w - - 0 1"));
            wasRevived_ = true;
            isGameOverKnown_ = false;
            return speak("c1c8");
        case Command::passTime: return passTime(std::chrono::milliseconds(700));
    }
}

void ModelledSeries::start() {
    wasEndMissed_ = false;
    model_.start(time_.now());
    automatch_.startAutomatch({}, alpha_, beta_);
}

void ModelledSeries::passTime(std::chrono::milliseconds duration) {
    time_.advance(duration);
    QCoreApplication::processEvents();
    model_.elapse(time_.now());
}

void ModelledSeries::speak(const QByteArray& move) {
    time_.runDue();
    model_.elapse(time_.now());
    if (launcher_.engines.isEmpty()) return;
    launcher_.last().sayLine("bestmove " + move);
    QCoreApplication::processEvents();
}

void ModelledSeries::setPause(double seconds) {
    model_.pause = seconds;
    automatch_.setPauseBetweenGamesSeconds(seconds);
}

void ModelledSeries::setTotal(qint64 games) {
    model_.total = games;
    automatch_.setTotalGames(games);
}

void ModelledSeries::setAlternates(bool alternates) {
    model_.alternates = alternates;
    automatch_.setAlternateColors(alternates);
}

void ModelledSeries::setTimeControl(TimeControlPreset preset, qint64 customMinutes) {
    game_.setTimeControlConfig({preset, customMinutes, 0, GameClock{}});
}

void ModelledSeries::forgetEndedEngines() {
    launcher_.engines.removeIf([](const auto& engine) { return engine->isTerminated; });
}

}  // namespace orlix::test
