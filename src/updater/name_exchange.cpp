#include "updater/name_exchange.h"

#include <cerrno>

namespace orlix {
namespace {

constexpr const char* oldName = "old";
constexpr const char* rejectedName = "rejected";

}  // namespace

int NameExchange::exchange() {
    int error = files_.exchange(folder_, name_, inner_, name_);
    if (error == ENOTSUP) {
        error = moveBoth(name_, oldName, oldName);
        if (error == 0) outgoing_ = oldName;
    }
    // Nothing is lost when the disk hears of it later than asked.
    files_.sync(folder_);
    files_.sync(inner_);
    return error;
}

int NameExchange::exchangeBack() {
    int error = files_.exchange(folder_, name_, inner_, outgoing_);
    if (error == ENOTSUP) error = moveBoth(outgoing_, rejectedName, outgoing_);
    files_.sync(folder_);
    files_.sync(inner_);
    return error;
}

// `inner`'s `incoming` gets in place, and what was there is called `outgoing` in `inner`. In between nothing
// is in place: a guard puts the old application there should this process die.
int NameExchange::moveBoth(const std::string& incoming, const std::string& outgoing, const std::string& old) {
    std::unique_ptr<MoveGuard> guard;
    if (const int error = files_.guardMove(inner_, old, folder_, name_, guard)) return error;
    if (const int error = files_.move(folder_, name_, inner_, outgoing)) return error;
    const int error = files_.move(inner_, incoming, folder_, name_);
    if (error == 0) return 0;
    files_.move(inner_, outgoing, folder_, name_);
    return error;
}

}  // namespace orlix
