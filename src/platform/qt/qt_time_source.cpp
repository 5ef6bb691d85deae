#include "platform/qt/qt_time_source.h"

#include <QCoreApplication>
#include <QTimer>
#include <utility>

#include "platform/post.h"

namespace orlix {
namespace {

// A posted event keeps its place among the other posted events; a zero timer would not.
void queue(TimeSource::Action action) {
    post(QCoreApplication::instance(), std::move(action));
}

// An action and the Qt object that calls it. The call runs on a copy of the shared part, so that the action
// may destroy the timer it came from, and with it everything the action has captured.
class QtTimer final : public Timer {
  public:
    explicit QtTimer(TimeSource::Action action) : call_(std::make_shared<Call>(Call{std::move(action)})) {}

    QtTimer(const QtTimer&) = delete;
    QtTimer& operator=(const QtTimer&) = delete;

    ~QtTimer() override {
        call_->isCancelled = true;
        // Qt is still inside the object while it delivers: only the event loop may delete it then.
        if (timer_ && call_->depth > 0) {
            timer_->stop();
            timer_.release()->deleteLater();
        }
    }

    void startEvery(std::chrono::milliseconds interval) {
        makeTimer();
        timer_->setTimerType(Qt::CoarseTimer);
        timer_->start(interval);
    }

    /// What runs the action, unless the timer is destroyed first.
    TimeSource::Action action() const {
        return [call = call_] { run(call); };
    }

    void startAfter(std::chrono::milliseconds delay) {
        makeTimer();
        timer_->setSingleShot(true);
        timer_->setTimerType(Qt::PreciseTimer);
        timer_->start(delay);
    }

  private:
    struct Call {
        TimeSource::Action action;
        bool isCancelled = false;
        int depth = 0;
    };

    // By value: the caller's own copy may be destroyed during the call.
    static void run(std::shared_ptr<Call> call) {  // NOLINT(performance-unnecessary-value-param)
        if (call->isCancelled) return;
        ++call->depth;
        call->action();
        --call->depth;
    }

    void makeTimer() {
        timer_ = std::make_unique<QTimer>();
        QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(), [call = call_] { run(call); });
    }

    std::shared_ptr<Call> call_;
    std::unique_ptr<QTimer> timer_;  ///< none for an action without a delay
};

}  // namespace

std::chrono::system_clock::time_point QtTimeSource::now() const {
    return std::chrono::system_clock::now();
}

std::unique_ptr<Timer> QtTimeSource::every(std::chrono::milliseconds interval, Action action) {
    auto timer = std::make_unique<QtTimer>(std::move(action));
    timer->startEvery(interval);
    return timer;
}

std::unique_ptr<Timer> QtTimeSource::after(std::chrono::milliseconds delay, Action action) {
    auto timer = std::make_unique<QtTimer>(std::move(action));
    if (delay > std::chrono::milliseconds::zero())
        timer->startAfter(delay);
    else if (isHolding_)
        held_.push_back(timer->action());
    else
        queue(timer->action());
    return timer;
}

void QtTimeSource::release() {
    isHolding_ = false;
    for (Action& action : std::exchange(held_, {}))
        queue(std::move(action));
}

}  // namespace orlix
