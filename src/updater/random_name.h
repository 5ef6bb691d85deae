// Names that nobody has taken.
#pragma once

#include <string>

namespace orlix {

/// 16 hexadecimal digits from the system's source of randomness.
std::string randomDigits();

}  // namespace orlix
