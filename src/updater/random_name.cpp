#include "updater/random_name.h"

#include <random>

namespace orlix {

std::string randomDigits() {
    static constexpr char digits[] = "0123456789abcdef";
    std::random_device source;
    std::uniform_int_distribution<int> digit(0, 15);
    std::string text;
    for (int index = 0; index < 16; ++index)
        text += digits[digit(source)];
    return text;
}

}  // namespace orlix
