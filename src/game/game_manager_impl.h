// The state behind GameManager and the steps that its commands share. Included by the game manager's own
// source files only: game_manager.cpp (the object), game_commands.cpp (what a person does) and
// engine_turns.cpp (what engines do).
#pragma once

#include <QSignalBlocker>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

#include "engine/uci_engine_process.h"
#include "game/game_manager.h"
#include "game/game_sounds.h"
#include "game/position_replay.h"
#include "platform/time_source.h"

namespace orlix {

class GameManager::Impl {
  public:
    /// One side's engine with the strength it plays at.
    struct Seat {
        std::unique_ptr<UCIEngineProcess> process;
        std::unique_ptr<Timer> startTask;
        bool limitElo = false;
        qint64 elo = 1800;
    };

    /// What a command leaves to be done once all of its state is assigned.
    struct Effects {
        std::vector<std::function<void()>> engineOrders;
        std::vector<SoundEffect> sounds;
        std::optional<GameEndReason> gameEnd;
        bool evaluationChanged = false;
        bool enginesChanged = false;
    };

    Impl(GameManager& manager, TimeSource& timeSource, EngineManager& engineManager, GameSounds& gameSounds,
         EngineFactory engineFactory);

    /// Runs `body`, which assigns state and collects effects but calls nobody, and then announces. A body
    /// that returns false has changed nothing, and nothing is announced.
    template <typename Body>
    void command(const Body& body) {
        const ClockState before = clockState();
        {
            const QSignalBlocker quiet(clock);
            if constexpr (std::is_same_v<decltype(body()), bool>) {
                if (!body()) return;
            } else {
                body();
            }
        }
        announce(!(before == clockState()));
    }

    // What a person does (game_commands.cpp).
    void selectSquare(Square square);
    void clearSelection();
    bool holdsPieceToMove(Square square) const;
    void clickTarget(Square square);
    bool playMove(const Move& move);
    void userExecuteMove(const Move& move);
    void clearEvaluation();

    // The course of a game (game_manager.cpp).
    void resetForNewGame();
    void finishTurn();
    void checkGameEnd();
    void endGame(const GameEndReason& reason);
    void handleTimeout(PieceColor timedOutColor);
    QString playerName(PieceColor color) const;

    // The engines' side (engine_turns.cpp).
    void retireEngines();
    void setupEnginesForGame();
    void seatEngine(PieceColor color);
    void setupEngineCallbacks(UCIEngineProcess& process);
    UCIEngineProcess::BestMoveHandler bestMoveHandler();
    void triggerEngineIfNeeded();
    UCIEngineProcess* engineToMove() const;
    void runEngineRequest(UCIEngineProcess& process);
    void sendEngineRequest(UCIEngineProcess& process);
    QString positionLine() const;
    UCIEngineProcess::SearchLimits searchLimits() const;
    void handleEvaluation(const EngineEvaluation& evaluation);
    void handleEngineBestMove(const QString& uci);
    void setStrength(PieceColor color, bool limit, qint64 elo);
    void updateElo(PieceColor color, bool limit, qint64 elo);

    Seat& seat(PieceColor color) { return seats[static_cast<std::size_t>(color)]; }
    const Seat& seat(PieceColor color) const { return seats[static_cast<std::size_t>(color)]; }

    GameManager& owner;
    TimeSource& time;
    EngineManager& engines;
    GameSounds& sounds;
    EngineFactory makeEngine;
    GameListener* listener = nullptr;

    TimeControlConfig timeControlConfig;
    ChessBoard board;
    ChessClock clock;
    GameMode gameMode = GameMode::humanVsEngine;
    PlayerColorChoice colorChoice = PlayerColorChoice::white;
    PieceColor humanColor = PieceColor::white;
    bool isFlipped = false;
    std::optional<Square> selectedSquare;
    std::vector<Square> legalDestinationSquares;
    std::optional<Move> lastMove;
    std::optional<PendingPromotion> pendingPromotion;
    bool isGameOver = false;
    std::optional<GameEndReason> gameEndReason;
    bool isPaused = false;
    std::optional<qint64> inspectingMoveIndex;
    EngineEvaluation liveEvaluation;
    PieceColor liveEvaluationTurn = PieceColor::white;
    std::optional<PieceColor> currentlyThinkingColor;
    std::optional<EngineConfiguration> currentlyThinkingEngine;
    QString engineStatusText = QStringLiteral("Ready");
    std::array<Seat, 2> seats;

    mutable PositionReplay replay;
    Effects effects;  ///< of the command that is running
    /// Terminated, and kept until the event loop runs: their signals may be on the stack right now.
    std::vector<std::unique_ptr<UCIEngineProcess>> retiredEngines;

    /// The one outstanding move request; destroying it cancels the request.
    std::unique_ptr<Timer> engineMoveTask;
    std::unique_ptr<Timer> timeoutTask;
    std::unique_ptr<Timer> retirementTask;

  private:
    struct ClockState {
        qint64 whiteMs, blackMs, incrementMs;
        bool isRunning, isUnlimited;
        std::optional<PieceColor> activeColor;
        bool operator==(const ClockState&) const = default;
    };

    ClockState clockState() const;
    void announce(bool clockChanged);
    void notifyGameEnded(const GameEndReason& reason);

    quint64 gameNumber_ = 0;
    /// What the callbacks of engines hold weakly. Declared last, so that it is gone before any engine is.
    std::shared_ptr<Impl*> self_ = std::make_shared<Impl*>(this);
};

}  // namespace orlix
