// Child processes through posix_spawn, each with an I/O thread of its own that also sees the child off: after
// `terminate` it waits, kills what is left of the process group, and reaps. Owned by the composition root,
// outlives everything that launches; callable from any thread.
#pragma once

#include <chrono>
#include <memory>

#include "platform/child_process.h"

namespace orlix {

class PosixProcessLauncher : public ProcessLauncher {
  public:
    /// What the end of the application may wait for its engines.
    static constexpr std::chrono::milliseconds exitLimit{2800};

    /// Also makes this process ignore SIGPIPE, so that writing to a child that has ended is an ordinary
    /// error.
    PosixProcessLauncher();
    /// As `shutDown` with its default limit.
    ~PosixProcessLauncher() override;

    Launched launch(const QString& path, const QStringList& arguments, OutputHandler onOutput) override;

    /// Terminates all children at once, kills those that do not end, reaps them and waits for the I/O
    /// threads: at most `limit` together. Later launches fail. True when nothing is left.
    bool shutDown(std::chrono::milliseconds limit = exitLimit);

    /// Children not yet reaped or with their I/O thread still at work.
    std::size_t childCount() const;

  private:
    class Children;
    std::shared_ptr<Children> children_;
};

}  // namespace orlix
