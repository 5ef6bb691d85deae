#include "engine/engine_test.h"

#include <QByteArray>
#include <QStringList>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "core/text.h"
#include "engine/uci_line_splitter.h"
#include "platform/child_process.h"

namespace orlix {
namespace {

constexpr std::chrono::milliseconds pollInterval{50};

// What the engine has said so far. Shared with the output handler, which may outlive the test by a moment.
class Reply {
  public:
    void receive(const QByteArray& chunk) {
        std::string_view rest(chunk.constData(), static_cast<std::size_t>(chunk.size()));
        if (!isWellFormedUtf8(rest)) return;
        const std::lock_guard lock(mutex_);
        // Each chunk is cut up by itself: a line that is split over two reads is not put together here.
        for (bool isLast = false; !isLast;) {
            const std::size_t newline = rest.find('\n');
            isLast = newline == std::string_view::npos;
            readLine(trimmed(rest.substr(0, newline)));
            if (!isLast) rest.remove_prefix(newline + 1);
        }
    }

    bool hasUciOk() {
        const std::lock_guard lock(mutex_);
        return hasUciOk_;
    }

    EngineTestOutcome outcome() {
        const std::lock_guard lock(mutex_);
        if (hasUciOk_) return {true, name_, author_, std::nullopt};
        return {false, std::nullopt, std::nullopt,
                QStringLiteral("Engine did not reply with 'uciok' within 3 seconds")};
    }

  private:
    void readLine(std::string_view line) {
        constexpr std::string_view namePrefix = "id name ";
        constexpr std::string_view authorPrefix = "id author ";
        if (line.starts_with(namePrefix)) {
            name_ = text(line.substr(namePrefix.size()));
        } else if (line.starts_with(authorPrefix)) {
            author_ = text(line.substr(authorPrefix.size()));
        } else if (line == "uciok") {
            hasUciOk_ = true;
        }
    }

    static QString text(std::string_view utf8) {
        return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    }

    std::mutex mutex_;
    std::optional<QString> name_;
    std::optional<QString> author_;
    bool hasUciOk_ = false;
};

}  // namespace

class EngineTest::Run {
  public:
    Run(ProcessLauncher& launcher, const QString& path, Completion completion)
        : thread_([this, &launcher, path, done = std::move(completion)] { run(launcher, path, done); }) {}

    ~Run() {
        {
            const std::lock_guard lock(mutex_);
            isCancelled_ = true;
        }
        cancelled_.notify_one();
        thread_.join();
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

  private:
    void run(ProcessLauncher& launcher, const QString& path, const Completion& completion) {
        const auto reply = std::make_shared<Reply>();
        const ProcessLauncher::Launched launched =
            launcher.launch(path, {}, [reply](const QByteArray& chunk) { reply->receive(chunk); });
        if (!launched.process) {
            finish(completion, {false, std::nullopt, std::nullopt, launched.error});
            return;
        }
        launched.process->write(QByteArrayLiteral("uci\nquit\n"));
        const auto start = std::chrono::steady_clock::now();
        while (!reply->hasUciOk() && std::chrono::steady_clock::now() - start < EngineTest::timeLimit) {
            if (!pause()) return;
        }
        launched.process->terminate();
        finish(completion, reply->outcome());
    }

    // False when the test is to be broken off.
    bool pause() {
        std::unique_lock lock(mutex_);
        return !cancelled_.wait_for(lock, pollInterval, [this] { return isCancelled_; });
    }

    void finish(const Completion& completion, EngineTestOutcome outcome) {
        {
            const std::lock_guard lock(mutex_);
            if (isCancelled_) return;
        }
        completion(std::move(outcome));
    }

    std::mutex mutex_;
    std::condition_variable cancelled_;
    bool isCancelled_ = false;
    std::thread thread_;  // last: it uses all of the above
};

EngineTest::EngineTest(ProcessLauncher& launcher, const QString& path, Completion completion)
    : run_(std::make_unique<Run>(launcher, path, std::move(completion))) {}

EngineTest::~EngineTest() = default;

}  // namespace orlix
