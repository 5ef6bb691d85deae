#include "automatch/automatch_manager.h"

#include <algorithm>
#include <utility>

#include "automatch/automatch_texts.h"
#include "engine/engine_manager.h"
#include "game/game_manager.h"
#include "game/game_sounds.h"

namespace orlix {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds countdownStep{200};
constexpr double countdownStepSeconds = 0.2;

AutomatchManager* sharedInstance = nullptr;

}  // namespace

AutomatchManager& AutomatchManager::shared() {
    Q_ASSERT_X(sharedInstance, "AutomatchManager::shared", "no instance is registered");
    return *sharedInstance;
}

void AutomatchManager::registerShared(AutomatchManager* instance) {
    sharedInstance = instance;
}

AutomatchManager::AutomatchManager(TimeSource& time, GameManager& game, EngineManager& engines,
                                   GameSounds& sounds, QObject* parent)
    : QObject(parent), time_(time), game_(game), engines_(engines), sounds_(sounds) {
    game_.setListener(this);
}

AutomatchManager::~AutomatchManager() {
    game_.setListener(nullptr);
}

template <typename Value>
void AutomatchManager::assign(Value& field, Value value) {
    if (field == value) return;
    field = std::move(value);
    Q_EMIT changed();
}

void AutomatchManager::setTotalGames(qint64 games) {
    assign(totalGames_, games);
}

void AutomatchManager::setAlternateColors(bool alternate) {
    assign(alternateColors_, alternate);
}

void AutomatchManager::setPauseBetweenGamesSeconds(double seconds) {
    assign(pauseBetweenGamesSeconds_, seconds);
}

void AutomatchManager::setEngine1(std::optional<EngineConfiguration> engine) {
    assign(slot1_.engine, std::move(engine));
}

void AutomatchManager::setEngine1Limit(bool limitElo, qint64 elo) {
    assign(slot1_, {slot1_.engine, limitElo, elo});
}

void AutomatchManager::setEngine2(std::optional<EngineConfiguration> engine) {
    assign(slot2_.engine, std::move(engine));
}

void AutomatchManager::setEngine2Limit(bool limitElo, qint64 elo) {
    assign(slot2_, {slot2_.engine, limitElo, elo});
}

QString AutomatchManager::engine1DisplayName() const {
    return slot1_.engine ? slot1_.engine->name : QStringLiteral("Engine 1");
}

QString AutomatchManager::engine2DisplayName() const {
    return slot2_.engine ? slot2_.engine->name : QStringLiteral("Engine 2");
}

std::optional<double> AutomatchManager::averageGameSeconds() const {
    if (history_.isEmpty()) return std::nullopt;
    return std::chrono::duration<double>(playedTime_).count() / static_cast<double>(history_.size());
}

QString AutomatchManager::exportAllPGN() const {
    QStringList games;
    games.reserve(history_.size());
    for (const AutomatchGameRecord& record : history_)
        games.append(record.pgn);
    return games.join(QStringLiteral("\n\n"));
}

void AutomatchManager::startAutomatch(std::optional<qint64> totalGames,
                                      std::optional<EngineConfiguration> engine1,
                                      std::optional<EngineConfiguration> engine2) {
    if (totalGames) totalGames_ = *totalGames;
    if (engine1) slot1_.engine = std::move(engine1);
    if (engine2) slot2_.engine = std::move(engine2);
    cancelCountdown();
    clearScore();
    matchFinishedReason_.reset();
    isAutomatchActive_ = true;
    isAutomatchPaused_ = false;
    currentGameIndex_ = 1;
    currentWhiteIsEngine1_ = true;
    launchCurrentGame();
}

void AutomatchManager::stopAutomatch() {
    endSeries();
    Q_EMIT changed();
}

void AutomatchManager::endSeries() {
    cancelCountdown();
    isAutomatchActive_ = false;
    isAutomatchPaused_ = false;
    matchFinishedReason_ = QStringLiteral("Automatch gestoppt.");
}

void AutomatchManager::clearHistory() {
    if (isAutomatchActive_) endSeries();
    clearScore();
    Q_EMIT changed();
}

void AutomatchManager::clearScore() {
    score_ = {};
    history_.clear();
    playedTime_ = milliseconds(0);
}

void AutomatchManager::pauseAutomatch() {
    // A series that is paused already is not an exception: the game's own pause is toggled once more.
    if (!isAutomatchActive_) return;
    isAutomatchPaused_ = true;
    cancelCountdown();
    // Also between games, where it marks the finished game as paused; the next game begins without the mark.
    game_.togglePause();
    Q_EMIT changed();
}

void AutomatchManager::resumeAutomatch() {
    if (!isAutomatchActive_ || !isAutomatchPaused_) return;
    isAutomatchPaused_ = false;
    if (game_.isGameOver()) {
        advanceToNextGame();
        return;
    }
    game_.togglePause();
    Q_EMIT changed();
}

AutomatchManager::Engines AutomatchManager::assignedEngines() const {
    const QList<EngineConfiguration>& registry = engines_.availableEngines();
    Engines assigned{slot1_.engine, slot2_.engine};
    if (!assigned.engine1) {
        assigned.engine1 = engines_.selectedWhiteEngine();
        if (!assigned.engine1 && !registry.isEmpty()) assigned.engine1 = registry.first();
    }
    if (assigned.engine2) return assigned;  // also when it equals the other: an engine may play itself
    assigned.engine2 = engines_.selectedBlackEngine();
    if (assigned.engine2 || registry.isEmpty()) return assigned;
    const auto other =
        std::find_if(registry.cbegin(), registry.cend(),
                     [&](const EngineConfiguration& record) { return record.id != assigned.engine1->id; });
    assigned.engine2 = other == registry.cend() ? registry.first() : *other;
    return assigned;
}

void AutomatchManager::ensureEnginesAssigned() {
    Engines assigned = assignedEngines();
    slot1_.engine = std::move(assigned.engine1);
    slot2_.engine = std::move(assigned.engine2);
}

void AutomatchManager::launchCurrentGame() {
    ensureEnginesAssigned();
    gameStart_ = time_.now();
    const EngineSlot white = whiteSlot();
    const EngineSlot black = blackSlot();
    game_.setGameMode(GameMode::engineVsEngine);
    engines_.setSelectedWhiteEngine(white.engine);
    engines_.setSelectedBlackEngine(black.engine);
    game_.setWhiteEngineLimit(white.limitElo, white.elo);
    game_.setBlackEngineLimit(black.limitElo, black.elo);
    game_.startNewGame();
    Q_EMIT changed();
}

void AutomatchManager::handleGameEnd(const GameEndReason& reason, const ChessBoard& board,
                                     const QString& pgn) {
    if (!isAutomatchActive_ || isAutomatchPaused_) return;
    appendRecord(reason, board, pgn);
    if (currentGameIndex_ < totalGames_) {
        scheduleNextGame();
    } else {
        finishSeries();
    }
    Q_EMIT changed();
}

void AutomatchManager::appendRecord(const GameEndReason& reason, const ChessBoard& board,
                                    const QString& pgn) {
    const auto now = time_.now();
    const auto eloOf = [](const EngineSlot& slot) {
        return slot.limitElo ? std::optional(slot.elo) : std::nullopt;
    };
    AutomatchGameRecord record;
    record.gameNumber = currentGameIndex_;
    record.whiteIsEngine1 = currentWhiteIsEngine1_;
    record.whiteEngineName = record.whiteIsEngine1 ? engine1DisplayName() : engine2DisplayName();
    record.blackEngineName = record.whiteIsEngine1 ? engine2DisplayName() : engine1DisplayName();
    record.whiteEngineElo = eloOf(whiteSlot());
    record.blackEngineElo = eloOf(blackSlot());
    record.result = automatchResult(reason);
    record.reason = automatchReasonText(reason);
    if (reason.winner) {
        const bool whiteWins = *reason.winner == PieceColor::white;
        record.winnerEngineName = whiteWins ? record.whiteEngineName : record.blackEngineName;
        ++(whiteWins == record.whiteIsEngine1 ? score_.wins : score_.losses);
    } else {
        ++score_.draws;
    }
    record.movesCount = static_cast<qint64>(board.history.size());
    record.movesUCI.reserve(record.movesCount);
    for (const MoveRecord& played : board.history)
        record.movesUCI.append(QString::fromStdString(played.move.uciString()));
    record.pgn = pgn;
    const auto sinceEpoch = std::chrono::duration_cast<milliseconds>(now.time_since_epoch());
    record.timestamp = QDateTime::fromMSecsSinceEpoch(sinceEpoch.count(), Qt::UTC);
    history_.append(std::move(record));
    // A wall clock that was set back during the game does not make it shorter than nothing.
    playedTime_ += std::max(std::chrono::duration_cast<milliseconds>(now - gameStart_), milliseconds(0));
}

void AutomatchManager::scheduleNextGame() {
    isCountingDown_ = true;
    countdownRemaining_ = pauseBetweenGamesSeconds_;
    // Without a pause, too, through the event loop: the call that has ended the last game returns first.
    const bool isOver = !(countdownRemaining_ > 0);
    countdownTask_ = isOver ? time_.after(milliseconds(0), [this] { advanceToNextGame(); })
                            : time_.after(countdownStep, [this] { stepCountdown(); });
}

void AutomatchManager::stepCountdown() {
    // Stop and pause have destroyed the task, so the series is running. The steps are what is counted, not
    // the clock: 1.5 seconds are eight steps, and 1 second is six, for five subtractions leave a trace above
    // 0.
    countdownRemaining_ -= countdownStepSeconds;
    if (!(countdownRemaining_ > 0)) {
        advanceToNextGame();
        return;
    }
    countdownTask_ = time_.after(countdownStep, [this] { stepCountdown(); });
    Q_EMIT changed();
}

void AutomatchManager::cancelCountdown() {
    countdownTask_.reset();
    isCountingDown_ = false;
}

void AutomatchManager::advanceToNextGame() {
    Q_ASSERT(isAutomatchActive_ && !isAutomatchPaused_);
    cancelCountdown();
    // The number may pass the total: an end that fell into a pause was not counted, and resuming goes on.
    ++currentGameIndex_;
    if (alternateColors_) currentWhiteIsEngine1_ = !currentWhiteIsEngine1_;
    launchCurrentGame();
}

void AutomatchManager::finishSeries() {
    // One may be running: the end of a game that had ended before, with the total lowered in between.
    cancelCountdown();
    isAutomatchActive_ = false;
    const double half = 0.5 * static_cast<double>(score_.draws);
    const QString verdict = automatchVerdict(engine1DisplayName(), static_cast<double>(score_.wins) + half,
                                             engine2DisplayName(), static_cast<double>(score_.losses) + half);
    matchFinishedReason_ = QStringLiteral("Automatch beendet: ") + QString::number(totalGames_) +
                           QStringLiteral(" Partien gespielt. ") + verdict;
    sounds_.play(SoundEffect::gameEnd);
}

}  // namespace orlix
