// One external chess engine that speaks UCI: starts it, talks to it, parses what it says, keeps its live log,
// and shuts it down. Owned by the game manager, one object an engine seat and game; main thread, except that
// lines are split and parsed on the child's own I/O thread and handed over in batches, in order.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

#include "engine/engine_configuration.h"
#include "engine/engine_evaluation.h"

namespace orlix {

class FileTests;
class ProcessLauncher;

class UCIEngineProcess : public QObject {
    Q_OBJECT
  public:
    using BestMoveHandler = std::function<void(const QString& move)>;
    using EvaluationHandler = std::function<void(const EngineEvaluation& evaluation)>;

    struct SearchLimits {
        std::optional<qint64> wtime{};     ///< milliseconds left for White
        std::optional<qint64> btime{};     ///< milliseconds left for Black
        std::optional<qint64> winc{};      ///< milliseconds a move
        std::optional<qint64> binc{};      ///< milliseconds a move
        std::optional<qint64> movetime{};  ///< milliseconds
        std::optional<qint64> depth{};     ///< plies
    };

    /// Sends and starts nothing. `launcher` and `files` must outlive the object.
    UCIEngineProcess(EngineConfiguration config, ProcessLauncher& launcher, const FileTests& files,
                     QObject* parent = nullptr);
    ~UCIEngineProcess() override;  ///< as `terminate`

    const EngineConfiguration& config() const;
    bool isRunning() const;
    bool isThinking() const;
    const EngineEvaluation& currentEvaluation() const;
    const QStringList& logLines() const;  ///< oldest first, at most 301

    /// Launches the engine at once, in the call, and begins the handshake; `completion` gets, on the main
    /// thread, whether the engine is ready: within the call when nothing is launched or the launch fails,
    /// otherwise once the engine is ready. It is never called when the engine does not answer, or after
    /// `terminate`. The built-in engine counts as running, but nothing is launched for it.
    void start(std::function<void(bool ready)> completion = {});
    /// Logs and writes one command. Text that is not valid Unicode is ignored altogether; without a running
    /// engine the command is only logged. The engine need not be ready: it reads its commands in this order.
    void send(const QString& line);
    void sendNewGame();
    /// Writes both into `config` and tells the engine. `elo` is not checked.
    void updateElo(bool limitElo, qint64 elo);
    /// The standard starting position when there is no `fen` or it is that position's own text.
    void sendPosition(const std::optional<QString>& fen, const QStringList& moves);
    /// Move time goes before depth, depth before the clock; without any of them, and with increments alone,
    /// the engine gets a second. `onBestMove` hears every best move until the next search replaces it.
    void search(const SearchLimits& limits, BestMoveHandler onBestMove);
    void stop();
    /// Nothing unless running. Otherwise the engine gets "quit" and the terminate signal at once, what it
    /// still says is dropped, and the log and the evaluation stay. Returns without waiting for the engine.
    void terminate();

    /// Called for every info line, in order. Handlers may do anything, also destroy this object.
    void setOnEvaluationUpdate(EvaluationHandler handler);
    /// Called for every best move, also one that nobody asked for, until a search brings its own handler.
    void setOnBestMove(BestMoveHandler handler);

  Q_SIGNALS:
    void changed();            ///< isRunning, isThinking or config
    void evaluationChanged();  ///< at most once a batch of lines
    void logChanged();         ///< at most once a batch of lines

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace orlix
