#include "platform/posix/posix_process_launcher.h"

#include <signal.h>

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/posix/posix_child.h"

namespace orlix {
namespace {

using Clock = PosixChild::Clock;

// What shutting down keeps of its limit for reaping after the kill.
constexpr std::chrono::milliseconds reapingTime{800};
constexpr std::chrono::milliseconds lastResort{300};

class PosixChildProcess : public ChildProcess {
  public:
    explicit PosixChildProcess(std::shared_ptr<PosixChild> child) : child_(std::move(child)) {}
    ~PosixChildProcess() override { child_->terminate(); }

    void write(QByteArray bytes) override { child_->write(std::move(bytes)); }
    void terminate() override { child_->terminate(); }

  private:
    const std::shared_ptr<PosixChild> child_;
};

QString errorText(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

}  // namespace

// All children and their threads. Shared with the threads, so one that the system keeps past the last limit
// still finds it.
class PosixProcessLauncher::Children : public std::enable_shared_from_this<Children> {
  public:
    // False after shutting down; otherwise one more child is counted, to be started or given up.
    bool announce() {
        const std::lock_guard lock(mutex_);
        if (isShutDown_) return false;
        ++count_;
        return true;
    }

    void giveUp() {
        {
            const std::lock_guard lock(mutex_);
            --count_;
        }
        changed_.notify_all();
    }

    // Throws std::system_error when there is no thread to be had.
    void start(const std::shared_ptr<PosixChild>& child) {
        const std::lock_guard lock(mutex_);
        if (isShutDown_) child->terminate(killAt_);
        const auto entry = running_.emplace(child.get(), Running{child, {}}).first;
        try {
            entry->second.thread = std::thread([self = shared_from_this(), child] {
                child->run();
                self->finish(child.get());
            });
        } catch (const std::system_error&) {
            running_.erase(entry);
            throw;
        }
    }

    bool shutDown(std::chrono::milliseconds limit) {
        const auto deadline = Clock::now() + limit;
        std::unique_lock lock(mutex_);
        isShutDown_ = true;
        killAt_ = std::max(deadline - reapingTime, Clock::now());
        for (const auto& [key, running] : running_)
            running.child->terminate(killAt_);
        const auto isEmpty = [this] { return count_ == 0; };
        if (!changed_.wait_until(lock, std::max(deadline - lastResort, killAt_), isEmpty)) {
            // A thread that is held up in its output handler does not get to it.
            for (const auto& [key, running] : running_)
                running.child->kill();
            changed_.wait_until(lock, deadline, isEmpty);
        }
        for (auto& [key, running] : running_) {
            running.child->kill();
            running.thread.detach();
        }
        const bool isDone = running_.empty() && count_ == 0;
        running_.clear();
        std::thread last = std::move(finished_);
        lock.unlock();
        if (last.joinable()) last.join();
        return isDone;
    }

    std::size_t count() const {
        const std::lock_guard lock(mutex_);
        return count_;
    }

  private:
    struct Running {
        std::shared_ptr<PosixChild> child;
        std::thread thread;
    };

    // On the child's thread, as its last work. Each thread that ends joins the one that ended before it, so
    // there is never more than one that nobody has joined.
    void finish(const PosixChild* child) {
        std::thread previous;
        {
            const std::lock_guard lock(mutex_);
            const auto entry = running_.find(child);
            if (entry != running_.end()) {  // not given up by shutting down
                previous = std::exchange(finished_, std::move(entry->second.thread));
                running_.erase(entry);
            }
        }
        if (previous.joinable()) previous.join();
        giveUp();
    }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::map<const PosixChild*, Running> running_;
    std::thread finished_;
    std::size_t count_ = 0;
    bool isShutDown_ = false;
    Clock::time_point killAt_{};
};

PosixProcessLauncher::PosixProcessLauncher() : children_(std::make_shared<Children>()) {
    // Pipes know no way to write without this signal. Nothing in this program wants it.
    ::signal(SIGPIPE, SIG_IGN);
}

PosixProcessLauncher::~PosixProcessLauncher() {
    shutDown();
}

ProcessLauncher::Launched PosixProcessLauncher::launch(const QString& path, const QStringList& arguments,
                                                       OutputHandler onOutput) {
    if (!children_->announce()) return {nullptr, errorText(ECANCELED)};
    std::vector<std::string> encoded;
    for (const QString& argument : arguments)
        encoded.push_back(argument.toStdString());
    SpawnedChild spawned = spawnChild(QFile::encodeName(path).toStdString(), encoded);
    if (spawned.error != 0) {
        children_->giveUp();
        return {nullptr, errorText(spawned.error)};
    }
    std::shared_ptr<PosixChild> child;
    try {
        child = std::make_shared<PosixChild>(std::move(spawned), std::move(onOutput));
        children_->start(child);
    } catch (const std::system_error& failure) {
        if (child) child->giveUp();
        children_->giveUp();
        return {nullptr, errorText(failure.code().value())};
    }
    return {std::make_unique<PosixChildProcess>(std::move(child)), QString()};
}

bool PosixProcessLauncher::shutDown(std::chrono::milliseconds limit) {
    return children_->shutDown(limit);
}

std::size_t PosixProcessLauncher::childCount() const {
    return children_->count();
}

}  // namespace orlix
