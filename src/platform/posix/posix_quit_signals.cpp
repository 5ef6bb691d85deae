#include "platform/posix/posix_quit_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace orlix {
namespace {

constexpr std::array quitSignals{SIGTERM, SIGINT, SIGHUP};

/// Where the handler writes; a handler can reach nothing but globals.
volatile std::sig_atomic_t wakeUp = -1;

extern "C" void noteQuitSignal(int) {
    const int savedErrno = errno;
    const char byte = 0;
    // A full pipe already holds the news.
    [[maybe_unused]] const ssize_t written = write(wakeUp, &byte, 1);
    errno = savedErrno;
}

}  // namespace

PosixQuitSignals::PosixQuitSignals(QObject* parent) : QObject(parent) {
    Q_ASSERT(wakeUp == -1);
    if (pipe(pipe_.data()) != 0) return;  // without a pipe the signals keep their own effect
    for (const int end : pipe_) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    wakeUp = pipe_[1];
    connect(&notifier_, &QSocketNotifier::activated, this, &PosixQuitSignals::drain);
    notifier_.setSocket(pipe_[0]);
    notifier_.setEnabled(true);
    struct sigaction action {};
    action.sa_handler = noteQuitSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : quitSignals) {
        sigaction(number, &action, nullptr);
    }
}

PosixQuitSignals::~PosixQuitSignals() {
    if (wakeUp == -1) return;
    for (const int number : quitSignals) {
        std::signal(number, SIG_DFL);
    }
    wakeUp = -1;
    notifier_.setEnabled(false);
    for (const int end : pipe_) {
        close(end);
    }
}

void PosixQuitSignals::drain() {
    std::array<char, 64> bytes{};
    while (read(pipe_[0], bytes.data(), bytes.size()) > 0) {
    }
    Q_EMIT received();
}

}  // namespace orlix
