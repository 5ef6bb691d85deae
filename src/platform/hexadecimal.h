// Bytes as hexadecimal digits. A pure function; any thread.
#pragma once

#include <cstddef>
#include <string>

namespace orlix {

/// Two lower-case digits a byte.
inline std::string hexadecimal(const unsigned char* bytes, std::size_t size) {
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * size);
    for (std::size_t i = 0; i < size; ++i) {
        text += digits[bytes[i] >> 4U];
        text += digits[bytes[i] & 0xFU];
    }
    return text;
}

}  // namespace orlix
