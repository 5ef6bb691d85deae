#include "engine/uci_engine_process.h"

#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <deque>
#include <utility>

#include "core/chess_board.h"
#include "engine/engine_log.h"
#include "engine/engine_output.h"
#include "platform/child_process.h"
#include "platform/file_tests.h"

namespace orlix {
namespace {

// The main thread gives one engine's output at most this long in one turn of its event loop, once the output
// is more than a few lines. Painting and input get their turn in between.
constexpr qint64 drainNanoseconds = 4'000'000;
constexpr int drainLinesUntimed = 32;

// A search says something several times in a tenth of a second, and every wake of the main thread costs more
// than all that is done about one line: info lines that come after others wait this long for more.
constexpr std::chrono::milliseconds infoRest{200};

QString goCommand(const UCIEngineProcess::SearchLimits& limits) {
    QString line = QStringLiteral("go");
    const auto append = [&line](QLatin1String name, const std::optional<qint64>& value) {
        if (value) line += name + QString::number(*value);
    };
    if (limits.movetime) {
        append(QLatin1String(" movetime "), limits.movetime);
    } else if (limits.depth) {
        append(QLatin1String(" depth "), limits.depth);
    } else {
        append(QLatin1String(" wtime "), limits.wtime);
        append(QLatin1String(" btime "), limits.btime);
        append(QLatin1String(" winc "), limits.winc);
        append(QLatin1String(" binc "), limits.binc);
        // An engine must never be left to search without an end.
        if (!limits.wtime && !limits.btime) line += QStringLiteral(" movetime 1000");
    }
    return line;
}

}  // namespace

class UCIEngineProcess::Impl {
  public:
    Impl(UCIEngineProcess& process, EngineConfiguration configuration, ProcessLauncher& processLauncher,
         const FileTests& fileTests)
        : owner(process), config(std::move(configuration)), launcher(processLauncher), files(fileTests) {
        nextTurn_.setSingleShot(true);
        nextTurn_.setTimerType(Qt::PreciseTimer);
        nextTurn_.setInterval(1);
        connect(&nextTurn_, &QTimer::timeout, &owner, [this] { onNextTurn(); });
        rest_.setSingleShot(true);
        rest_.setInterval(infoRest);
        connect(&rest_, &QTimer::timeout, &owner, [this] { onRested(); });
    }

    ~Impl() {
        // A worker that waits for room must be free before its child is let go of.
        if (output_) output_->close();
    }

    void start(std::function<void(bool)> completion);
    void send(const QString& line);
    void sendStrength();
    void terminate();

    void appendLog(QString entry) {
        log.append(std::move(entry));
        announceLog();
    }

    UCIEngineProcess& owner;
    EngineConfiguration config;
    ProcessLauncher& launcher;
    const FileTests& files;

    bool isRunning = false;
    bool isThinking = false;
    EngineEvaluation evaluation;
    EngineLog log;
    // Shared, so that a handler outlives its own replacement while it runs.
    std::shared_ptr<const BestMoveHandler> onBestMove;
    std::shared_ptr<const EvaluationHandler> onEvaluation;

  private:
    void onPending();
    void onNextTurn();
    void onRested();
    void beginTurn();
    bool isTurnUsedUp() const {
        return usedLines_ >= drainLinesUntimed && usedNanoseconds_ >= drainNanoseconds;
    }
    void drain();
    bool interpret(const EngineOutput& current, EngineOutput::Event event);
    void continueHandshake(bool& isAwaited, void (Impl::*next)());
    void sendOptions();
    void reportReady();
    void announceLog();
    void announceDrained();

    Waker pendingOutput_{[this] { onPending(); }};
    std::unique_ptr<ChildProcess> child_;
    std::shared_ptr<EngineOutput> output_;  // of the running child; null without one
    std::deque<EngineOutput::Event> backlog_;

    std::function<void(bool)> startCompletion_;
    bool awaitsUciOk_ = false;
    bool awaitsReadyOk_ = false;

    // How much of the present turn of the event loop this engine has used. Once that is all it may, the timer
    // brings the next turn; output that comes long after the turn began is in another one anyway, and needs
    // no timer.
    QTimer nextTurn_;
    QElapsedTimer turn_;
    qint64 usedNanoseconds_ = 0;
    int usedLines_ = 0;

    QTimer rest_;  ///< runs while info lines wait for more
    bool isDraining_ = false;
    bool isLogChanged_ = false;
    bool isEvaluationChanged_ = false;
};

void UCIEngineProcess::Impl::start(std::function<void(bool)> completion) {
    const bool wasRunning = isRunning;
    const auto finish = [&](bool ready) {
        if (isRunning != wasRunning) Q_EMIT owner.changed();
        if (completion) completion(ready);
    };
    if (config.isBuiltIn) {
        isRunning = true;
        finish(true);
        return;
    }
    const QString path = config.executablePath;
    if (!files.exists(path) || !files.isExecutableFile(path)) {
        appendLog(QStringLiteral("Error: Executable not found or not executable at: ") + path);
        finish(false);
        return;
    }
    auto newOutput = std::make_shared<EngineOutput>(pendingOutput_);
    ProcessLauncher::Launched launched =
        launcher.launch(path, {}, [newOutput](const QByteArray& chunk) { newOutput->receive(chunk); });
    if (!launched.process) {
        newOutput->close();
        appendLog(QStringLiteral("Failed to start process: ") + launched.error);
        isRunning = false;
        finish(false);
        return;
    }
    if (output_) output_->close();
    isDraining_ = false;
    output_ = std::move(newOutput);
    child_ = std::move(launched.process);
    backlog_.clear();
    beginTurn();
    isRunning = true;
    startCompletion_ = std::move(completion);
    awaitsUciOk_ = true;
    awaitsReadyOk_ = false;
    appendLog(QStringLiteral("Started engine process: ") + path);
    send(QStringLiteral("uci"));
    if (!wasRunning) Q_EMIT owner.changed();
}

void UCIEngineProcess::Impl::send(const QString& line) {
    if (!line.isValidUtf16()) return;
    appendLog(QStringLiteral("> ") + line);
    if (child_) child_->write((line + u'\n').toUtf8());
}

void UCIEngineProcess::Impl::sendStrength() {
    if (config.limitElo) {
        send(QStringLiteral("setoption name UCI_LimitStrength value true"));
        send(QStringLiteral("setoption name UCI_Elo value ") + QString::number(config.elo));
    } else {
        send(QStringLiteral("setoption name UCI_LimitStrength value false"));
    }
}

void UCIEngineProcess::Impl::terminate() {
    if (!isRunning) return;
    isDraining_ = false;  // what runs further down the stack stops at its next line and announces nothing
    send(QStringLiteral("quit"));
    // In this order: a worker that waits for room must be free before its child is asked to end.
    if (output_) output_->close();
    output_.reset();
    if (child_) child_->terminate();
    child_.reset();
    backlog_.clear();
    beginTurn();
    startCompletion_ = {};
    awaitsUciOk_ = false;
    awaitsReadyOk_ = false;
    isRunning = false;
    isThinking = false;
    announceDrained();
    Q_EMIT owner.changed();
}

void UCIEngineProcess::Impl::onPending() {
    if (nextTurn_.isActive()) return;
    if (turn_.nsecsElapsed() >= drainNanoseconds) beginTurn();
    drain();
}

void UCIEngineProcess::Impl::onNextTurn() {
    beginTurn();
    drain();
}

void UCIEngineProcess::Impl::onRested() {
    if (output_) output_->endRest();
    onPending();
}

void UCIEngineProcess::Impl::beginTurn() {
    nextTurn_.stop();
    turn_.start();
    usedNanoseconds_ = 0;
    usedLines_ = 0;
}

void UCIEngineProcess::Impl::drain() {
    // A handler may terminate or destroy the engine; only what is local is touched after that.
    const std::shared_ptr<EngineOutput> current = output_;
    if (!current) return;
    if (backlog_.empty()) current->takeAll(backlog_);
    if (backlog_.empty()) return;
    QElapsedTimer elapsed;
    elapsed.start();
    const qint64 usedBefore = usedNanoseconds_;
    isDraining_ = true;
    bool isAllInfo = true;
    while (!backlog_.empty()) {
        EngineOutput::Event event = std::move(backlog_.front());
        isAllInfo = isAllInfo && event.kind == UciLineKind::info;
        backlog_.pop_front();
        if (!interpret(*current, std::move(event))) return;
        usedNanoseconds_ = usedBefore + elapsed.nsecsElapsed();
        ++usedLines_;
        if (isTurnUsedUp()) break;
        if (backlog_.empty()) current->takeAll(backlog_);
    }
    isDraining_ = false;
    if (isTurnUsedUp() && !nextTurn_.isActive()) nextTurn_.start();
    if (isAllInfo) {
        current->rest();
        rest_.start();
    } else {
        rest_.stop();
        if (current->endRest() && !nextTurn_.isActive()) nextTurn_.start();
    }
    announceDrained();
}

// False when the engine was terminated, replaced or destroyed meanwhile.
bool UCIEngineProcess::Impl::interpret(const EngineOutput& current, EngineOutput::Event event) {
    const UciLineKind kind = event.kind;
    QString move;
    if (kind == UciLineKind::bestMove) {
        const std::string_view text = bestMoveFromLine(event.line).value_or(std::string_view());
        move = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }
    log.appendReceived(std::move(event.line));
    isLogChanged_ = true;
    switch (kind) {
        case UciLineKind::other: break;
        case UciLineKind::uciOk: continueHandshake(awaitsUciOk_, &Impl::sendOptions); break;
        case UciLineKind::readyOk: continueHandshake(awaitsReadyOk_, &Impl::reportReady); break;
        case UciLineKind::info:
            evaluation = event.evaluation;
            isEvaluationChanged_ = true;
            if (const auto handler = onEvaluation; handler && *handler) (*handler)(event.evaluation);
            break;
        case UciLineKind::bestMove: {
            const auto handler = onBestMove;
            if (std::exchange(isThinking, false)) Q_EMIT owner.changed();
            if (!current.isClosed() && handler && *handler) (*handler)(move);
            break;
        }
    }
    return !current.isClosed();
}

void UCIEngineProcess::Impl::continueHandshake(bool& isAwaited, void (Impl::*next)()) {
    if (std::exchange(isAwaited, false)) (this->*next)();
}

void UCIEngineProcess::Impl::sendOptions() {
    if (config.threads > 1)
        send(QStringLiteral("setoption name Threads value ") + QString::number(config.threads));
    if (config.hashMB >= 1)
        send(QStringLiteral("setoption name Hash value ") + QString::number(config.hashMB));
    if (config.skillLevel < 20)
        send(QStringLiteral("setoption name Skill Level value ") + QString::number(config.skillLevel));
    sendStrength();
    awaitsReadyOk_ = true;
    send(QStringLiteral("isready"));
}

void UCIEngineProcess::Impl::reportReady() {
    if (const auto completion = std::exchange(startCompletion_, {})) completion(true);
}

void UCIEngineProcess::Impl::announceLog() {
    isLogChanged_ = true;
    if (!isDraining_) announceDrained();
}

void UCIEngineProcess::Impl::announceDrained() {
    const bool wasLogChanged = std::exchange(isLogChanged_, false);
    const bool wasEvaluationChanged = std::exchange(isEvaluationChanged_, false);
    if (wasEvaluationChanged) Q_EMIT owner.evaluationChanged();
    if (wasLogChanged) Q_EMIT owner.logChanged();
}

UCIEngineProcess::UCIEngineProcess(EngineConfiguration config, ProcessLauncher& launcher,
                                   const FileTests& files, QObject* parent)
    : QObject(parent), impl_(std::make_unique<Impl>(*this, std::move(config), launcher, files)) {}

UCIEngineProcess::~UCIEngineProcess() {
    // Nobody is to hear of it from an object that is half gone.
    blockSignals(true);
    impl_->terminate();
}

const EngineConfiguration& UCIEngineProcess::config() const {
    return impl_->config;
}
bool UCIEngineProcess::isRunning() const {
    return impl_->isRunning;
}
bool UCIEngineProcess::isThinking() const {
    return impl_->isThinking;
}
const EngineEvaluation& UCIEngineProcess::currentEvaluation() const {
    return impl_->evaluation;
}
const QStringList& UCIEngineProcess::logLines() const {
    return impl_->log.lines();
}

void UCIEngineProcess::start(std::function<void(bool ready)> completion) {
    impl_->start(std::move(completion));
}

void UCIEngineProcess::send(const QString& line) {
    impl_->send(line);
}

void UCIEngineProcess::sendNewGame() {
    send(QStringLiteral("ucinewgame"));
    send(QStringLiteral("isready"));
}

void UCIEngineProcess::updateElo(bool limitElo, qint64 elo) {
    const bool differs = impl_->config.limitElo != limitElo || impl_->config.elo != elo;
    impl_->config.limitElo = limitElo;
    impl_->config.elo = elo;
    impl_->sendStrength();
    if (differs) Q_EMIT changed();
}

void UCIEngineProcess::sendPosition(const std::optional<QString>& fen, const QStringList& moves) {
    static const QString standardFen =
        QString::fromLatin1(ChessBoard::standardStartingFEN.data(),
                            static_cast<qsizetype>(ChessBoard::standardStartingFEN.size()));
    QString line = !fen || *fen == standardFen ? QStringLiteral("position startpos")
                                               : QStringLiteral("position fen ") + *fen;
    if (!moves.isEmpty()) line += QStringLiteral(" moves ") + moves.join(u' ');
    send(line);
}

void UCIEngineProcess::search(const SearchLimits& limits, BestMoveHandler onBestMove) {
    impl_->onBestMove = std::make_shared<const BestMoveHandler>(std::move(onBestMove));
    const bool wasThinking = std::exchange(impl_->isThinking, true);
    send(goCommand(limits));
    if (!wasThinking) Q_EMIT changed();
}

void UCIEngineProcess::stop() {
    send(QStringLiteral("stop"));
}

void UCIEngineProcess::terminate() {
    impl_->terminate();
}

void UCIEngineProcess::setOnEvaluationUpdate(EvaluationHandler handler) {
    impl_->onEvaluation = std::make_shared<const EvaluationHandler>(std::move(handler));
}

void UCIEngineProcess::setOnBestMove(BestMoveHandler handler) {
    impl_->onBestMove = std::make_shared<const BestMoveHandler>(std::move(handler));
}

}  // namespace orlix
