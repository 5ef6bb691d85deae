// A child process with pipes, as one seam. The real launcher starts children in a process group of their own,
// gives them the descriptors 0, 1 and 2 and no other, and leaves no orphan and no zombie behind.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace orlix {

/// A launched child. Every function returns at once, may be called from any thread and does no harm when the
/// child has ended long ago. Destroying the object lets go of the child as `terminate` does.
class ChildProcess {
  public:
    virtual ~ChildProcess() = default;

    /// Queues `bytes` for the child's standard input, in call order. Errors are ignored.
    virtual void write(QByteArray bytes) = 0;

    /// Offers what was queued so far to the child's input without waiting, closes that input and sends the
    /// terminate signal to the child's whole process group. What the child says from now on is dropped; a
    /// delivery that is under way on the I/O thread is not waited for. A child that outlives the signal is
    /// killed in the background.
    virtual void terminate() = 0;
};

class ProcessLauncher {
  public:
    /// Called on the child's own I/O thread with the bytes of one read from standard output or standard error
    /// (they share a pipe). It may block: the child then waits on its full pipe.
    using OutputHandler = std::function<void(const QByteArray& chunk)>;

    struct Launched {
        std::unique_ptr<ChildProcess> process;  ///< null when the launch failed
        QString error;                          ///< the system's description of the failure
    };

    virtual ~ProcessLauncher() = default;

    /// Starts `path` with the environment and working directory of this program.
    virtual Launched launch(const QString& path, const QStringList& arguments, OutputHandler onOutput) = 0;
};

}  // namespace orlix
