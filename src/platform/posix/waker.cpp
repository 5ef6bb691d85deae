#include "platform/posix/waker.h"

#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <utility>

#include "platform/posix/posix_spawn.h"

namespace orlix {

Waker::Waker(std::function<void()> onWake) : onWake_(std::move(onWake)) {
    if (!makePipe(ends_) || !setNonBlocking(ends_[0].get()) || !setNonBlocking(ends_[1].get())) return;
    notifier_ = std::make_unique<QSocketNotifier>(ends_[0].get(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { onReadable(); });
}

Waker::~Waker() = default;

void Waker::wake() {
    // A full pipe wakes as well, so the result does not matter.
    [[maybe_unused]] const ssize_t count = ::write(ends_[1].get(), "", 1);
}

void Waker::onReadable() {
    std::array<char, 64> bytes;  // what more there is wakes once more
    [[maybe_unused]] const ssize_t count = ::read(ends_[0].get(), bytes.data(), bytes.size());
    onWake_();  // may destroy this object
}

}  // namespace orlix
