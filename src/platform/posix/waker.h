// Calls a function on the main thread when another thread asks for it, and carries nothing else: what there
// is to take lies behind the caller's own lock. Lives on the main thread; destroying it takes pending calls
// back. A pipe in the event loop, not a posted event: Qt delivers posted events for as long as new ones come
// in, and the thread sanitizer can follow a pipe.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "platform/posix/unique_fd.h"

class QSocketNotifier;

namespace orlix {

class Waker : public QObject {
  public:
    /// `onWake` runs on the thread that creates the object, through its event loop. Without descriptors to be
    /// had it never runs; no child can be launched then either.
    explicit Waker(std::function<void()> onWake);
    ~Waker() override;

    /// Any thread, while the object lives: at least one call of `onWake` follows.
    void wake();

  private:
    void onReadable();

    const std::function<void()> onWake_;
    UniqueFd ends_[2];
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace orlix
