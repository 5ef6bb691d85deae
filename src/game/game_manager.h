// The single controller of the game on the board: position, clock, settings, selection, promotion, undo,
// pause, resignation, history browsing, and the turns of the engines. Owned by the composition root; main
// thread only.
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/chess_board.h"
#include "core/game_end_reason.h"
#include "engine/engine_configuration.h"
#include "engine/engine_evaluation.h"
#include "game/chess_clock.h"
#include "game/game_mode.h"
#include "game/time_control_config.h"

namespace orlix {

class EngineManager;
class GameListener;
class GameSounds;
class TimeSource;
class UCIEngineProcess;

/// A command computes and assigns everything first; then, in this order, engines of a finished game are
/// terminated, engines are told, sounds are asked for, the listener hears of a game end, and the signals go
/// out, the clock's own among them. Whoever is called sees the whole new state. A slot may call any command:
/// it runs to its end and announces itself, and the slots still to come then see the newest state.
class GameManager : public QObject {
    Q_OBJECT
  public:
    using EngineFactory = std::function<std::unique_ptr<UCIEngineProcess>(const EngineConfiguration& config)>;
    struct PendingPromotion {
        Square from;
        Square to;
        bool operator==(const PendingPromotion&) const = default;
    };

    /// The registered instance; asserts that there is one.
    static GameManager& shared();
    /// Called by the composition root; null takes the registration back.
    static void registerShared(GameManager* instance);

    /// `engines` chooses who plays, `makeEngine` builds the process objects; all references outlive the
    /// manager.
    GameManager(TimeSource& time, EngineManager& engines, GameSounds& sounds, EngineFactory makeEngine,
                QObject* parent = nullptr);
    ~GameManager() override;

    void setListener(GameListener* listener);  ///< the series controller, or null; borrowed

    // Observable state.
    const ChessBoard& board() const;
    ChessClock& clock();
    const ChessClock& clock() const;
    GameMode gameMode() const;
    void setGameMode(GameMode mode);
    PlayerColorChoice colorChoice() const;
    void setColorChoice(PlayerColorChoice choice);
    /// The person's side in a game against an engine; drawn anew by every new game.
    PieceColor humanColor() const;
    const TimeControlConfig& timeControlConfig() const;
    /// The clock takes it over with the next new game or loaded position, the engines with their next turn.
    void setTimeControlConfig(const TimeControlConfig& config);
    bool isFlipped() const;
    const std::optional<Square>& selectedSquare() const;
    /// Targets of the selected piece in move-generation order; a promotion square occurs once a piece type.
    const std::vector<Square>& legalDestinationSquares() const;
    const std::optional<Move>& lastMove() const;
    const std::optional<PendingPromotion>& pendingPromotion() const;
    bool isGameOver() const;
    /// Absent while a game runs, and for a replayed game.
    const std::optional<GameEndReason>& gameEndReason() const;
    bool isPaused() const;
    /// Index into the history of the move after which the board is shown; absent for the live position.
    const std::optional<qint64>& inspectingMoveIndex() const;
    const EngineEvaluation& liveEvaluation() const;
    /// The side to move of the position in which `liveEvaluation` arrived.
    PieceColor liveEvaluationTurn() const;
    UCIEngineProcess* whiteEngineProcess() const;
    UCIEngineProcess* blackEngineProcess() const;
    const std::optional<PieceColor>& currentlyThinkingColor() const;
    const std::optional<EngineConfiguration>& currentlyThinkingEngine() const;
    const QString& engineStatusText() const;  ///< "Ready" or "Thinking..."
    bool whiteEngineLimitElo() const;
    qint64 whiteEngineElo() const;
    bool blackEngineLimitElo() const;
    qint64 blackEngineElo() const;
    void setWhiteEngineLimit(bool limitElo, qint64 elo);  ///< for the next game; a running engine is not told
    void setBlackEngineLimit(bool limitElo, qint64 elo);

    // Derived.
    /// True when the shown move is set and is not the last one.
    bool isInspectingPast() const;
    /// The position that the board shows; computed once a state. The reference holds until the next command.
    const ChessBoard& displayedBoard() const;
    QString exportFEN() const;
    QString exportPGN() const;

    // Commands.
    /// Ends the engines of the old game, seats those chosen for the new one and starts White's clock.
    void startNewGame();
    /// Selects, deselects, moves, or asks for a promotion piece; ignored when it is not a person's turn.
    void handleSquareClick(Square square);
    /// Plays the pending promotion if it is legal; does nothing when none is pending.
    void confirmPromotion(PieceType pieceType);
    void cancelPromotion();
    /// Takes back one ply, or two on the person's turn against an engine; ignored after the game's end.
    void undoMove();
    void togglePause();
    void resign(PieceColor color);  ///< `color` loses; ignored after the game's end
    void flipBoard();
    void inspectMove(std::optional<qint64> index);  ///< any index is taken; one outside shows the live board
    void loadFEN(const QString& fen);               ///< throws FenError; the game is then as it was
    /// Shows a finished game given as coordinate moves; what cannot be read or played is left out. `reason`
    /// is not used.
    void replayGame(const QStringList& moves, const std::optional<QString>& reason);
    void updateWhiteElo(bool limit, qint64 elo);  ///< also tells a running engine at once
    void updateBlackElo(bool limit, qint64 elo);

  Q_SIGNALS:
    /// Anything above but the live evaluation and the clock's times; once a command, after its last
    /// assignment.
    void changed();
    void liveEvaluationChanged();
    /// The process objects were replaced; those of the old game live until the event loop runs next.
    void enginesChanged();

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace orlix
