#include "game/game_manager.h"

#include <utility>

#include "game/game_listener.h"
#include "game/game_manager_impl.h"
#include "records/pgn_game.h"

namespace orlix {
namespace {

GameManager* sharedInstance = nullptr;

std::string resultText(const std::optional<GameEndReason>& reason) {
    if (!reason) return "*";
    switch (reason->kind) {
        case GameEndReason::Kind::checkmate:
        case GameEndReason::Kind::timeout:
        case GameEndReason::Kind::resignation: return reason->winner == PieceColor::white ? "1-0" : "0-1";
        case GameEndReason::Kind::stalemate:
        case GameEndReason::Kind::fiftyMoveRule:
        case GameEndReason::Kind::threefoldRepetition:
        case GameEndReason::Kind::insufficientMaterial: return "1/2-1/2";
    }
    Q_UNREACHABLE();
}

}  // namespace

GameManager::Impl::Impl(GameManager& manager, TimeSource& timeSource, EngineManager& engineManager,
                        GameSounds& gameSounds, EngineFactory engineFactory)
    : owner(manager),
      time(timeSource),
      engines(engineManager),
      sounds(gameSounds),
      makeEngine(std::move(engineFactory)),
      clock(timeControlConfig, timeSource) {
    clock.setOnTimeout([this](PieceColor color) {
        // Through the event loop: the clock's own observers are done before the game ends. Nothing takes the
        // message back, not even an end that comes between.
        timeoutTask = time.after(std::chrono::milliseconds(0), [this, color] { handleTimeout(color); });
    });
}

GameManager::Impl::ClockState GameManager::Impl::clockState() const {
    return {clock.whiteRemainingMs(), clock.blackRemainingMs(), clock.incrementMs(),
            clock.isRunning(),        clock.isUnlimited(),      clock.activeColor()};
}

void GameManager::Impl::announce(bool clockChanged) {
    const Effects pending = std::exchange(effects, {});
    for (const auto& order : pending.engineOrders) {
        order();
    }
    for (const SoundEffect sound : pending.sounds) {
        sounds.play(sound);
    }
    if (pending.gameEnd) notifyGameEnded(*pending.gameEnd);
    if (clockChanged) Q_EMIT clock.changed();
    if (pending.evaluationChanged) Q_EMIT owner.liveEvaluationChanged();
    if (pending.enginesChanged) Q_EMIT owner.enginesChanged();
    Q_EMIT owner.changed();
}

void GameManager::Impl::notifyGameEnded(const GameEndReason& reason) {
    if (!listener || !listener->isAutomatchActive()) return;
    // A copy: what the listener does must not change what it was told.
    const ChessBoard finalBoard = board;
    listener->handleGameEnd(reason, finalBoard, owner.exportPGN());
}

void GameManager::Impl::resetForNewGame() {
    engineMoveTask.reset();
    retireEngines();
    ++gameNumber_;
    board = ChessBoard();
    clock.reset(timeControlConfig);
    clearSelection();
    lastMove.reset();
    pendingPromotion.reset();
    isGameOver = false;
    gameEndReason.reset();
    isPaused = false;
    inspectingMoveIndex.reset();
    clearEvaluation();
    currentlyThinkingColor.reset();
    currentlyThinkingEngine.reset();
    // engineStatusText stays as the old game left it: only an engine's turn writes it.
    humanColor = resolve(colorChoice);
    isFlipped = gameMode == GameMode::humanVsEngine && humanColor == PieceColor::black;
}

void GameManager::Impl::clearEvaluation() {
    liveEvaluation = {};
    liveEvaluationTurn = board.turn;
    effects.evaluationChanged = true;
}

void GameManager::Impl::finishTurn() {
    checkGameEnd();
    if (isGameOver) return;
    clock.switchTurn(board.turn);
    triggerEngineIfNeeded();
}

void GameManager::Impl::checkGameEnd() {
    if (const auto reason = board.gameEndReason()) endGame(*reason);
}

void GameManager::Impl::endGame(const GameEndReason& reason) {
    isGameOver = true;
    gameEndReason = reason;
    clock.stop();
    effects.sounds.push_back(SoundEffect::gameEnd);
    effects.gameEnd = reason;
}

void GameManager::Impl::handleTimeout(PieceColor timedOutColor) {
    // Whether the game is over already is not asked: the clock's word is the last.
    command([&] { endGame(GameEndReason::timeout(opponent(timedOutColor))); });
}

QString GameManager::Impl::playerName(PieceColor color) const {
    const UCIEngineProcess* engine = seat(color).process.get();
    const bool isWhite = color == PieceColor::white;
    switch (gameMode) {
        case GameMode::humanVsHuman:
            return isWhite ? QStringLiteral("White Player") : QStringLiteral("Black Player");
        case GameMode::engineVsEngine:
            if (engine) return engine->config().name;
            return isWhite ? QStringLiteral("White Engine") : QStringLiteral("Black Engine");
        case GameMode::humanVsEngine:
            if (color == humanColor) return QStringLiteral("Player");
            return engine ? engine->config().name : QStringLiteral("UCI Engine");
    }
    Q_UNREACHABLE();
}

GameManager& GameManager::shared() {
    Q_ASSERT_X(sharedInstance, "GameManager::shared", "no instance is registered");
    return *sharedInstance;
}

void GameManager::registerShared(GameManager* instance) {
    sharedInstance = instance;
}

GameManager::GameManager(TimeSource& time, EngineManager& engines, GameSounds& sounds,
                         EngineFactory makeEngine, QObject* parent)
    : QObject(parent), impl_(std::make_unique<Impl>(*this, time, engines, sounds, std::move(makeEngine))) {}

GameManager::~GameManager() = default;

void GameManager::setListener(GameListener* listener) {
    impl_->listener = listener;
}

const ChessBoard& GameManager::board() const {
    return impl_->board;
}
ChessClock& GameManager::clock() {
    return impl_->clock;
}
const ChessClock& GameManager::clock() const {
    return impl_->clock;
}
GameMode GameManager::gameMode() const {
    return impl_->gameMode;
}
PlayerColorChoice GameManager::colorChoice() const {
    return impl_->colorChoice;
}
PieceColor GameManager::humanColor() const {
    return impl_->humanColor;
}
const TimeControlConfig& GameManager::timeControlConfig() const {
    return impl_->timeControlConfig;
}
bool GameManager::isFlipped() const {
    return impl_->isFlipped;
}
const std::optional<Square>& GameManager::selectedSquare() const {
    return impl_->selectedSquare;
}
const std::vector<Square>& GameManager::legalDestinationSquares() const {
    return impl_->legalDestinationSquares;
}
const std::optional<Move>& GameManager::lastMove() const {
    return impl_->lastMove;
}
const std::optional<GameManager::PendingPromotion>& GameManager::pendingPromotion() const {
    return impl_->pendingPromotion;
}
bool GameManager::isGameOver() const {
    return impl_->isGameOver;
}
const std::optional<GameEndReason>& GameManager::gameEndReason() const {
    return impl_->gameEndReason;
}
bool GameManager::isPaused() const {
    return impl_->isPaused;
}
const std::optional<qint64>& GameManager::inspectingMoveIndex() const {
    return impl_->inspectingMoveIndex;
}
const EngineEvaluation& GameManager::liveEvaluation() const {
    return impl_->liveEvaluation;
}
PieceColor GameManager::liveEvaluationTurn() const {
    return impl_->liveEvaluationTurn;
}
UCIEngineProcess* GameManager::whiteEngineProcess() const {
    return impl_->seat(PieceColor::white).process.get();
}
UCIEngineProcess* GameManager::blackEngineProcess() const {
    return impl_->seat(PieceColor::black).process.get();
}
const std::optional<PieceColor>& GameManager::currentlyThinkingColor() const {
    return impl_->currentlyThinkingColor;
}
const std::optional<EngineConfiguration>& GameManager::currentlyThinkingEngine() const {
    return impl_->currentlyThinkingEngine;
}
const QString& GameManager::engineStatusText() const {
    return impl_->engineStatusText;
}
bool GameManager::whiteEngineLimitElo() const {
    return impl_->seat(PieceColor::white).limitElo;
}
qint64 GameManager::whiteEngineElo() const {
    return impl_->seat(PieceColor::white).elo;
}
bool GameManager::blackEngineLimitElo() const {
    return impl_->seat(PieceColor::black).limitElo;
}
qint64 GameManager::blackEngineElo() const {
    return impl_->seat(PieceColor::black).elo;
}

void GameManager::setGameMode(GameMode mode) {
    if (impl_->gameMode == mode) return;
    impl_->command([&] { impl_->gameMode = mode; });
}

void GameManager::setColorChoice(PlayerColorChoice choice) {
    if (impl_->colorChoice == choice) return;
    impl_->command([&] { impl_->colorChoice = choice; });
}

void GameManager::setTimeControlConfig(const TimeControlConfig& config) {
    if (impl_->timeControlConfig == config) return;
    impl_->command([&] { impl_->timeControlConfig = config; });
}

void GameManager::setWhiteEngineLimit(bool limitElo, qint64 elo) {
    impl_->setStrength(PieceColor::white, limitElo, elo);
}

void GameManager::setBlackEngineLimit(bool limitElo, qint64 elo) {
    impl_->setStrength(PieceColor::black, limitElo, elo);
}

bool GameManager::isInspectingPast() const {
    const qint64 last = static_cast<qint64>(impl_->board.history.size()) - 1;
    return impl_->inspectingMoveIndex && *impl_->inspectingMoveIndex != last;
}

const ChessBoard& GameManager::displayedBoard() const {
    const auto& history = impl_->board.history;
    const std::optional<qint64>& index = impl_->inspectingMoveIndex;
    if (!index || *index < 0 || *index >= static_cast<qint64>(history.size())) return impl_->board;
    // From the standard start also for a game that was set up from a FEN: the past is shown the way the
    // engines are told about it.
    return impl_->replay.after(history, static_cast<std::size_t>(*index) + 1);
}

QString GameManager::exportFEN() const {
    return QString::fromStdString(impl_->board.fen());
}

QString GameManager::exportPGN() const {
    PGNGame game;
    game.event = "Velmorandix Orlix Match";
    game.site = "Velmorandix Orlix macOS";
    game.date = PGNGame::currentDateString();
    game.round = "1";
    game.white = impl_->playerName(PieceColor::white).toStdString();
    game.black = impl_->playerName(PieceColor::black).toStdString();
    game.result = resultText(impl_->gameEndReason);
    game.timeControl = impl_->timeControlConfig.pgnString().toStdString();
    game.moves = impl_->board.history;
    return QString::fromStdString(game.exportPGN());
}

}  // namespace orlix
