#include "platform/posix/posix_move_guard.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/change_names.h"
#include "platform/posix/posix_spawn.h"

namespace orlix {
namespace {

// In the second process: only what is allowed between fork and exec in a program that may have threads.
[[noreturn]] void standGuard(int released, int asideFolder, const char* aside, int folder, const char* name) {
    setsid();  // what ends our group must not end the guard with it
    char byte = 0;
    ssize_t count = 0;
    do {
        count = ::read(released, &byte, 1);
    } while (count < 0 && errno == EINTR);
    if (count == 0) {
        moveName(asideFolder, aside, folder, name);
        fsync(folder);
    }
    _exit(0);
}

}  // namespace

int PosixMoveGuard::start(int asideFolder, const std::string& aside, int folder, const std::string& name) {
    UniqueFd ends[2];
    if (!makePipe(ends)) return errno;
    const char* const asideText = aside.c_str();
    const char* const nameText = name.c_str();
    process_ = fork();
    if (process_ < 0) return errno;
    if (process_ == 0) {
        ::close(ends[1].get());
        standGuard(ends[0].get(), asideFolder, asideText, folder, nameText);
    }
    release_ = std::move(ends[1]);
    return 0;
}

PosixMoveGuard::~PosixMoveGuard() {
    if (process_ <= 0) return;
    [[maybe_unused]] const ssize_t count = ::write(release_.get(), "", 1);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace orlix
