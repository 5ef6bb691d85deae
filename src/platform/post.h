// Work handed to another thread: to an object's event loop, or to a pool.
#pragma once

#include <QMetaObject>
#include <QObject>
#include <atomic>
#include <utility>

namespace orlix {

/// A function that one thread makes, another calls, and either destroys. Qt's locks already order the three;
/// the thread sanitizer cannot see that, as stock Qt is not instrumented, and so this says it once more in
/// our own code.
template <class Function>
class HandedOver {
  public:
    explicit HandedOver(Function function) : function_(std::move(function)) {}
    HandedOver(const HandedOver& other) : function_((takeTurn(), other.function_)) { passTurn(); }
    HandedOver(HandedOver&& other) noexcept : function_((takeTurn(), std::move(other.function_))) {
        passTurn();
    }
    HandedOver& operator=(const HandedOver&) = delete;
    HandedOver& operator=(HandedOver&&) = delete;
    ~HandedOver() { takeTurn(); }

    void operator()() {
        takeTurn();
        function_();
        passTurn();
    }

  private:
    static void takeTurn() { turns.load(std::memory_order_acquire); }
    static void passTurn() { turns.fetch_add(1, std::memory_order_acq_rel); }

    static inline std::atomic<unsigned> turns = 0;
    Function function_;
};

/// Calls `function` on the thread of `context` in its event loop, after what was posted there before: never
/// inside the caller, whichever thread asks, and not at all once `context` is gone.
template <class Function>
void post(QObject* context, Function function) {
    QMetaObject::invokeMethod(context, HandedOver<Function>(std::move(function)), Qt::QueuedConnection);
}

}  // namespace orlix
