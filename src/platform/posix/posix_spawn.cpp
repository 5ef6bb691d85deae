#include "platform/posix/posix_spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>

#if !defined(__GLIBC__)  // there unistd.h declares it
extern char** environ;
#endif

namespace orlix {
namespace {

// A program that was started with a standard descriptor closed gets that number for its next pipe; the child
// would then lose one pipe while the other is put in place.
bool moveAboveStandardDescriptors(UniqueFd& fd) {
    constexpr int firstFree = STDERR_FILENO + 1;
    if (fd.get() >= firstFree) return true;
    const int moved = fcntl(fd.get(), F_DUPFD_CLOEXEC, firstFree);
    if (moved < 0) return false;
    fd.reset(moved);
    return true;
}

class FileActions {
  public:
    FileActions() : error_(posix_spawn_file_actions_init(&actions_)) {}
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void duplicate(int from, int to) {
        if (error_ == 0) error_ = posix_spawn_file_actions_adddup2(&actions_, from, to);
    }
    void openNothing(int fd, int flags) {
        if (error_ == 0) error_ = posix_spawn_file_actions_addopen(&actions_, fd, "/dev/null", flags, 0);
    }
    void closeAllOthers() {
#if !defined(__APPLE__)  // there an attribute does it
        if (error_ == 0) error_ = posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
#endif
    }
    int error() const {
        return error_;
    }
    const posix_spawn_file_actions_t* get() const {
        return &actions_;
    }

  private:
    posix_spawn_file_actions_t actions_;
    int error_;
};

enum class Belonging { ownGroup, ownSession };

class Attributes {
  public:
    explicit Attributes(Belonging belonging) : error_(posix_spawnattr_init(&attributes_)) {
        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        sigdelset(&all, SIGKILL);
        sigdelset(&all, SIGSTOP);
        int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        flags |= belonging == Belonging::ownGroup ? POSIX_SPAWN_SETPGROUP : POSIX_SPAWN_SETSID;
#if defined(__APPLE__)
        flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#endif
        if (error_ == 0) error_ = posix_spawnattr_setpgroup(&attributes_, 0);
        if (error_ == 0) error_ = posix_spawnattr_setsigmask(&attributes_, &none);
        if (error_ == 0) error_ = posix_spawnattr_setsigdefault(&attributes_, &all);
        if (error_ == 0) error_ = posix_spawnattr_setflags(&attributes_, static_cast<short>(flags));
    }
    ~Attributes() {
        posix_spawnattr_destroy(&attributes_);
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    int error() const {
        return error_;
    }
    const posix_spawnattr_t* get() const {
        return &attributes_;
    }

  private:
    posix_spawnattr_t attributes_;
    int error_;
};

int spawn(pid_t& pid, const std::string& path, const std::vector<std::string>& arguments,
          const FileActions& actions, const Attributes& attributes) {
    if (actions.error() != 0) return actions.error();
    if (attributes.error() != 0) return attributes.error();
    std::vector<char*> argv{const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    return posix_spawn(&pid, path.c_str(), actions.get(), attributes.get(), argv.data(), environ);
}

}  // namespace

bool makePipe(UniqueFd (&ends)[2]) {
    int fds[2];
#if defined(__APPLE__)
    // Another thread may launch between the two calls; POSIX_SPAWN_CLOEXEC_DEFAULT keeps that child clean.
    if (pipe(fds) != 0) return false;
    fcntl(fds[0], F_SETFD, FD_CLOEXEC);
    fcntl(fds[1], F_SETFD, FD_CLOEXEC);
#else
    if (pipe2(fds, O_CLOEXEC) != 0) return false;
#endif
    ends[0].reset(fds[0]);
    ends[1].reset(fds[1]);
    return moveAboveStandardDescriptors(ends[0]) && moveAboveStandardDescriptors(ends[1]);
}

bool setNonBlocking(int fd) {
    const int flags = fcntl(fd, F_GETFL);
    return flags >= 0 && fcntl(fd, F_SETFL, flags | O_NONBLOCK) == 0;
}

SpawnedChild spawnChild(const std::string& path, const std::vector<std::string>& arguments,
                        ErrorPipe errorPipe) {
    SpawnedChild child;
    UniqueFd input[2];
    UniqueFd output[2];
    UniqueFd errors[2];
    // Only our ends do not wait: the child's stay as ordinary programs expect them.
    const auto makeReadingPipe = [](UniqueFd(&ends)[2]) {
        return makePipe(ends) && setNonBlocking(ends[0].get());
    };
    if (!makePipe(input) || !setNonBlocking(input[1].get()) || !makeReadingPipe(output) ||
        (errorPipe == ErrorPipe::own && !makeReadingPipe(errors))) {
        child.error = errno;
        return child;
    }
    FileActions actions;
    actions.duplicate(input[0].get(), STDIN_FILENO);
    actions.duplicate(output[1].get(), STDOUT_FILENO);
    actions.duplicate(errorPipe == ErrorPipe::own ? errors[1].get() : output[1].get(), STDERR_FILENO);
    actions.closeAllOthers();
    child.error = spawn(child.pid, path, arguments, actions, Attributes(Belonging::ownGroup));
    if (child.error != 0) {
        child.pid = -1;
        return child;
    }
    child.input = std::move(input[1]);
    child.output = std::move(output[0]);
    child.errors = std::move(errors[0]);
    return child;
}

int spawnDetached(const std::string& path, const std::vector<std::string>& arguments) {
    FileActions actions;
    actions.openNothing(STDIN_FILENO, O_RDONLY);
    actions.openNothing(STDOUT_FILENO, O_WRONLY);
    actions.openNothing(STDERR_FILENO, O_WRONLY);
    actions.closeAllOthers();
    pid_t pid = -1;
    return spawn(pid, path, arguments, actions, Attributes(Belonging::ownSession));
}

}  // namespace orlix
