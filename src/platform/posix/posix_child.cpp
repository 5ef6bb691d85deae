#include "platform/posix/posix_child.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#if defined(__linux__)
#include <sys/syscall.h>
#endif

namespace orlix {
namespace {

constexpr std::size_t readSize = 64 * 1024;  // what a pipe holds
// Where nothing wakes the I/O thread at a child's end, it looks by itself now and then.
constexpr int lookInterval = 500;      // milliseconds
constexpr int seeingOffInterval = 10;  // milliseconds
// A member of a killed group that is still listed after this is a zombie that its own parent has to reap.
constexpr std::chrono::milliseconds afterKill{500};

void killAndReap(pid_t pid) {
    ::kill(-pid, SIGKILL);
    while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

UniqueFd openExitFd([[maybe_unused]] pid_t pid) {
#if defined(__linux__) && defined(SYS_pidfd_open)
    return UniqueFd(static_cast<int>(syscall(SYS_pidfd_open, pid, 0U)));
#else
    return UniqueFd();
#endif
}

}  // namespace

PosixChild::PosixChild(SpawnedChild spawned, ProcessLauncher::OutputHandler onOutput)
    : pid_(spawned.pid),
      onOutput_(std::move(onOutput)),
      exitFd_(openExitFd(spawned.pid)),
      output_(std::move(spawned.output)),
      input_(std::move(spawned.input)) {
    if (!makePipe(wakePipe_) || !setNonBlocking(wakePipe_[0].get()) || !setNonBlocking(wakePipe_[1].get())) {
        const int error = errno;
        killAndReap(pid_);
        throw std::system_error(error, std::generic_category());
    }
}

void PosixChild::write(QByteArray bytes) {
    {
        const std::lock_guard lock(mutex_);
        if (!input_) return;
        queue_.push_back(std::move(bytes));
        if (queue_.size() > 1) return;  // the I/O thread is at it already
        offerInput();
        if (queue_.empty()) return;
    }
    wake();
}

void PosixChild::terminate(Clock::time_point killAt) {
    {
        const std::lock_guard lock(mutex_);
        if (isTerminated_) {
            killAt_ = std::min(killAt_, killAt);
            return;
        }
        isTerminated_ = true;
        killAt_ = killAt;
        offerInput();
        input_.reset();
        queue_.clear();
        signalGroup(SIGTERM);
    }
    wake();
}

void PosixChild::kill() {
    const std::lock_guard lock(mutex_);
    signalGroup(SIGCONT);
    signalGroup(SIGKILL);
    reapIfEnded();
}

void PosixChild::giveUp() {
    const std::lock_guard lock(mutex_);
    killAndReap(pid_);
    isReaped_ = true;
}

void PosixChild::run() {
    // Signals meant for the program go to its main thread.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    talk();
    output_.reset();
    seeOff();
}

// Until the child is to be terminated, or is gone and has said everything.
void PosixChild::talk() {
    while (!isTerminated()) {
        // poll ignores an entry whose descriptor is negative. `terminate` may close the input while this
        // thread waits for it: that costs no more than a look in vain.
        std::array<pollfd, 4> fds{};
        fds[0] = {wakePipe_[0].get(), POLLIN, 0};
        fds[1] = {output_.get(), POLLIN, 0};
        fds[2] = {-1, POLLIN, 0};
        fds[3] = {-1, POLLOUT, 0};
        int timeout = -1;
        {
            const std::lock_guard lock(mutex_);
            if (isReaped_ && !output_ && isGroupGone()) {
                input_.reset();
                queue_.clear();
                return;
            }
            if (!isReaped_) fds[2].fd = exitFd_.get();
            if (isReaped_ || !exitFd_) timeout = lookInterval;
            if (!queue_.empty()) fds[3].fd = input_.get();
        }
        poll(fds.data(), static_cast<nfds_t>(fds.size()), timeout);
        if (fds[0].revents != 0) drainWakes();
        if (fds[1].revents != 0) readOutput();
        const std::lock_guard lock(mutex_);
        if (fds[3].revents != 0) offerInput();
        reapIfEnded();
    }
}

void PosixChild::seeOff() {
    bool isKilled = false;
    for (;;) {
        {
            const std::lock_guard lock(mutex_);
            reapIfEnded();
            if (isGroupGone()) return;
            const auto now = Clock::now();
            if (!isKilled && now >= killAt_) {
                signalGroup(SIGCONT);
                signalGroup(SIGKILL);
                isKilled = true;
            }
            if (isKilled && isReaped_ && now >= killAt_ + afterKill) return;
        }
        pollfd wakes{wakePipe_[0].get(), POLLIN, 0};
        poll(&wakes, 1, seeingOffInterval);
        drainWakes();
    }
}

bool PosixChild::isTerminated() const {
    const std::lock_guard lock(mutex_);
    return isTerminated_;
}

void PosixChild::readOutput() {
    std::array<char, readSize> buffer;
    const ssize_t count = ::read(output_.get(), buffer.data(), buffer.size());
    if (count > 0) {
        if (!isTerminated()) onOutput_(QByteArray(buffer.data(), static_cast<qsizetype>(count)));
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        output_.reset();
    }
}

void PosixChild::wake() const {
    // A full pipe wakes as well, so the result does not matter.
    [[maybe_unused]] const ssize_t count = ::write(wakePipe_[1].get(), "", 1);
}

void PosixChild::drainWakes() const {
    std::array<char, 64> bytes;
    while (::read(wakePipe_[0].get(), bytes.data(), bytes.size()) > 0) {
    }
}

void PosixChild::offerInput() {
    while (input_ && !queue_.empty()) {
        const QByteArray& bytes = queue_.front();
        const ssize_t count = ::write(input_.get(), bytes.constData() + offset_,
                                      static_cast<std::size_t>(bytes.size() - offset_));
        if (count < 0) {
            if (errno == EINTR) continue;
            if (errno == EAGAIN) return;
            // Nobody reads any more: what is still to come is for nobody.
            input_.reset();
            queue_.clear();
            offset_ = 0;
            return;
        }
        offset_ += count;
        if (offset_ == bytes.size()) {
            queue_.pop_front();
            offset_ = 0;
        }
    }
}

void PosixChild::reapIfEnded() {
    if (isReaped_) return;
    const pid_t result = waitpid(pid_, nullptr, WNOHANG);
    isReaped_ = result == pid_ || (result < 0 && errno == ECHILD);
}

// The group's id stays taken while it has members, the unreaped child included. Once it has none, the system
// may give the number to somebody else: it is never signalled again.
bool PosixChild::isGroupGone() {
    if (isReaped_ && !isGroupGone_) isGroupGone_ = ::kill(-pid_, 0) != 0 && errno == ESRCH;
    return isGroupGone_;
}

void PosixChild::signalGroup(int signal) {
    if (!isGroupGone()) ::kill(-pid_, signal);
}

}  // namespace orlix
