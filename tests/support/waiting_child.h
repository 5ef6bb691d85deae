// A child process that waits for the end of its input. Killed and reaped by the destructor. Owned by the
// test.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/posix/posix_spawn.h"

namespace orlix::test {

class WaitingChild {
  public:
    /// `program` is "cat" or a copy of it.
    explicit WaitingChild(const std::string& program = "/bin/cat") : spawned_(spawnChild(program, {})) {
        EXPECT_EQ(spawned_.error, 0);
        // The program is in place when it answers.
        EXPECT_EQ(write(spawned_.input.get(), "x", 1), 1);
        char byte = 0;
        while (read(spawned_.output.get(), &byte, 1) < 0 && (errno == EAGAIN || errno == EINTR))
            usleep(1000);
    }
    ~WaitingChild() {
        end();
        reap();
    }
    WaitingChild(const WaitingChild&) = delete;
    WaitingChild& operator=(const WaitingChild&) = delete;

    pid_t id() const { return spawned_.pid; }
    void end() const {
        if (spawned_.pid > 0) kill(spawned_.pid, SIGKILL);
    }
    void reap() const {
        if (spawned_.pid > 0) waitpid(spawned_.pid, nullptr, 0);
    }

  private:
    SpawnedChild spawned_;
};

}  // namespace orlix::test
