#include "platform/posix/name_lookup.h"

#include <netdb.h>
#include <sys/socket.h>

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace orlix {

struct NameLookup::State {
    std::mutex mutex;
    std::condition_variable changed;
    bool isAnswered = false;
    bool isCancelled = false;

    void set(bool& what) {
        const std::lock_guard lock(mutex);
        what = true;
        changed.notify_all();
    }
};

NameLookup::NameLookup(const std::string& host) : state_(std::make_shared<State>()) {
    try {
        std::thread([state = state_, host] {
            addrinfo hints{};
            hints.ai_socktype = SOCK_STREAM;
            addrinfo* addresses = nullptr;
            if (getaddrinfo(host.c_str(), nullptr, &hints, &addresses) == 0) freeaddrinfo(addresses);
            state->set(state->isAnswered);
        }).detach();
    } catch (const std::system_error&) {
        state_->isAnswered = true;  // no thread to be had: Qt may try
    }
}

bool NameLookup::wait(std::chrono::milliseconds limit) {
    std::unique_lock lock(state_->mutex);
    state_->changed.wait_for(lock, limit, [this] { return state_->isAnswered || state_->isCancelled; });
    return state_->isAnswered && !state_->isCancelled;
}

void NameLookup::cancel() {
    state_->set(state_->isCancelled);
}

}  // namespace orlix
