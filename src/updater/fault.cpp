#include "updater/fault.h"

#include <system_error>

namespace orlix {

std::string errorText(int error) {
    return std::generic_category().message(error);
}

Fault faultOf(const std::string& what, int error) {
    if (error == 0) return std::nullopt;
    return what + ": " + errorText(error);
}

}  // namespace orlix
