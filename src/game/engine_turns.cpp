// The engines' side of a game: seating them, asking for moves, applying answers, changing their strength.
#include <algorithm>
#include <utility>
#include <variant>

#include "engine/engine_manager.h"
#include "game/checked_arithmetic.h"
#include "game/game_manager.h"
#include "game/game_manager_impl.h"

namespace orlix {
namespace {

constexpr std::chrono::milliseconds immediately{0};
constexpr std::chrono::milliseconds pauseBetweenEngines{200};

}  // namespace

void GameManager::Impl::retireEngines() {
    for (Seat& seat : seats) {
        seat.startTask.reset();
        if (!seat.process) continue;
        UCIEngineProcess* engine = seat.process.get();
        effects.engineOrders.emplace_back([engine] { engine->terminate(); });
        effects.enginesChanged = true;
        retiredEngines.push_back(std::move(seat.process));
    }
    if (!retiredEngines.empty()) {
        retirementTask = time.after(immediately, [this] { retiredEngines.clear(); });
    }
}

void GameManager::Impl::setupEnginesForGame() {
    switch (gameMode) {
        case GameMode::engineVsEngine:
            seatEngine(PieceColor::white);
            seatEngine(PieceColor::black);
            return;
        case GameMode::humanVsEngine: seatEngine(opponent(humanColor)); return;
        case GameMode::humanVsHuman: return;
    }
}

void GameManager::Impl::seatEngine(PieceColor color) {
    const std::optional<EngineConfiguration>& selected =
        color == PieceColor::white ? engines.selectedWhiteEngine() : engines.selectedBlackEngine();
    if (!selected) return;
    Seat& chosen = seat(color);
    EngineConfiguration config = *selected;
    config.limitElo = chosen.limitElo;
    config.elo = chosen.elo;
    chosen.process = makeEngine(config);
    setupEngineCallbacks(*chosen.process);
    effects.enginesChanged = true;
    // Queued before any request of this game, so that the pipes exist when the first one is written. Nobody
    // waits until the engine is ready.
    chosen.startTask = time.after(immediately, [this, color] { seat(color).process->start(); });
}

void GameManager::Impl::setupEngineCallbacks(UCIEngineProcess& process) {
    process.setOnEvaluationUpdate(
        [weak = std::weak_ptr<Impl*>(self_), game = gameNumber_](const EngineEvaluation& evaluation) {
            const auto self = weak.lock();
            if (self && (*self)->gameNumber_ == game) (*self)->handleEvaluation(evaluation);
        });
    // A search replaces this handler by its own, so one best move line stays one answer.
    process.setOnBestMove(bestMoveHandler());
}

UCIEngineProcess::BestMoveHandler GameManager::Impl::bestMoveHandler() {
    return [weak = std::weak_ptr<Impl*>(self_), game = gameNumber_](const QString& uci) {
        const auto self = weak.lock();
        if (self && (*self)->gameNumber_ == game) (*self)->handleEngineBestMove(uci);
    };
}

UCIEngineProcess* GameManager::Impl::engineToMove() const {
    switch (gameMode) {
        case GameMode::engineVsEngine: return seat(board.turn).process.get();
        case GameMode::humanVsEngine:
            return board.turn == humanColor ? nullptr : seat(board.turn).process.get();
        case GameMode::humanVsHuman: return nullptr;
    }
    Q_UNREACHABLE();
}

void GameManager::Impl::triggerEngineIfNeeded() {
    if (isGameOver || isPaused) return;
    UCIEngineProcess* engine = engineToMove();
    if (!engine) {
        currentlyThinkingColor.reset();
        currentlyThinkingEngine.reset();
        return;
    }
    currentlyThinkingColor = board.turn;
    currentlyThinkingEngine = engine->config();
    engineStatusText = QStringLiteral("Thinking...");
    // Replacing the old task cancels it. A new game drops the task before it lets go of the engine.
    engineMoveTask = time.after(immediately, [this, engine] { runEngineRequest(*engine); });
}

void GameManager::Impl::runEngineRequest(UCIEngineProcess& process) {
    if (gameMode != GameMode::engineVsEngine) {
        sendEngineRequest(process);
        return;
    }
    engineMoveTask =
        time.after(pauseBetweenEngines, [this, engine = &process] { sendEngineRequest(*engine); });
}

void GameManager::Impl::sendEngineRequest(UCIEngineProcess& process) {
    process.send(positionLine());
    process.search(searchLimits(), bestMoveHandler());
}

QString GameManager::Impl::positionLine() const {
    // From the standard start also when the game was set up from a FEN: kept, engines have always been told
    // so.
    std::string line = "position startpos";
    if (!board.history.empty()) line += " moves";
    for (const MoveRecord& record : board.history) {
        line += ' ';
        line += record.move.uciString();
    }
    return QString::fromStdString(line);
}

UCIEngineProcess::SearchLimits GameManager::Impl::searchLimits() const {
    UCIEngineProcess::SearchLimits limits;
    const EngineThinkingMode& mode = timeControlConfig.engineThinkingMode;
    if (const auto* fixedTime = std::get_if<FixedMoveTime>(&mode)) {
        limits.movetime = checkedTruncate(fixedTime->seconds * 1000);
    } else if (const auto* fixedDepth = std::get_if<FixedDepth>(&mode)) {
        limits.depth = fixedDepth->depth;
    } else {
        // Without a clock all four are 0, and are sent.
        limits.wtime = clock.whiteRemainingMs();
        limits.btime = clock.blackRemainingMs();
        limits.winc = checkedMultiply(timeControlConfig.effectiveIncrementSeconds(), 1000);
        limits.binc = limits.winc;
    }
    return limits;
}

void GameManager::Impl::handleEvaluation(const EngineEvaluation& evaluation) {
    liveEvaluation = evaluation;
    liveEvaluationTurn = board.turn;
    Q_EMIT owner.liveEvaluationChanged();
}

void GameManager::Impl::handleEngineBestMove(const QString& uci) {
    if (isGameOver || isPaused) return;
    const std::optional<Move> move = Move::fromUci(uci.toStdString());
    // Whose answer it is does not matter: a legal move is played, anything else leaves the game waiting with
    // "Thinking...".
    if (!move) return;
    command([&] {
        if (!playMove(*move)) return false;
        currentlyThinkingColor.reset();
        currentlyThinkingEngine.reset();
        engineStatusText = QStringLiteral("Ready");
        finishTurn();
        return true;
    });
}

void GameManager::Impl::setStrength(PieceColor color, bool limit, qint64 elo) {
    Seat& changedSeat = seat(color);
    if (changedSeat.limitElo == limit && changedSeat.elo == elo) return;
    command([&] {
        changedSeat.limitElo = limit;
        changedSeat.elo = elo;
    });
}

void GameManager::Impl::updateElo(PieceColor color, bool limit, qint64 elo) {
    command([&] {
        Seat& changedSeat = seat(color);
        changedSeat.limitElo = limit;
        changedSeat.elo = elo;
        UCIEngineProcess* engine = changedSeat.process.get();
        if (engine) {
            effects.engineOrders.emplace_back([engine, limit, elo] { engine->updateElo(limit, elo); });
        }
        if (currentlyThinkingColor != color) return;
        currentlyThinkingEngine.reset();
        if (engine) {
            // What the engine's configuration is once it has been told.
            currentlyThinkingEngine = engine->config();
            currentlyThinkingEngine->limitElo = limit;
            currentlyThinkingEngine->elo = elo;
        }
    });
}

}  // namespace orlix
