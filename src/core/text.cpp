#include "core/text.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>

namespace orlix {
namespace {

// U+212A, the Kelvin sign: the one character beyond ASCII whose lower case is a single ASCII letter.
constexpr std::string_view kelvinSign = "\xE2\x84\xAA";

// Unicode's White_Space beyond ASCII: U+0085, U+00A0, U+1680, U+2000..U+200A, U+2028, U+2029, U+202F,
// U+205F and U+3000.
constexpr std::array<std::string_view, 19> wideWhiteSpace{
    "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x81",
    "\xE2\x80\x82", "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85", "\xE2\x80\x86",
    "\xE2\x80\x87", "\xE2\x80\x88", "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\xA8",
    "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"};

bool isAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

bool isAsciiWhiteSpace(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

std::size_t whiteSpaceAtStart(std::string_view text) {
    if (text.empty()) return 0;
    if (isAscii(text.front())) return isAsciiWhiteSpace(text.front()) ? 1 : 0;
    for (const std::string_view space : wideWhiteSpace) {
        if (text.starts_with(space)) return space.size();
    }
    return 0;
}

// UTF-8 is self-synchronising, so looking at the last bytes cannot mistake the middle of another character.
std::size_t whiteSpaceAtEnd(std::string_view text) {
    if (text.empty()) return 0;
    if (isAscii(text.back())) return isAsciiWhiteSpace(text.back()) ? 1 : 0;
    for (const std::string_view space : wideWhiteSpace) {
        if (text.ends_with(space)) return space.size();
    }
    return 0;
}

std::size_t lengthFromLeadByte(unsigned char lead) {
    if (lead >= 0xF0 && lead < 0xF8) return 4;
    if (lead >= 0xE0 && lead < 0xF0) return 3;
    if (lead >= 0xC0 && lead < 0xE0) return 2;
    return 1;
}

}  // namespace

std::string_view takeCharacter(std::string_view& rest) {
    assert(!rest.empty());
    std::size_t length = lengthFromLeadByte(static_cast<unsigned char>(rest.front()));
    if (length > rest.size()) length = 1;
    for (std::size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(rest[i]) & 0xC0) != 0x80) {
            length = 1;
            break;
        }
    }
    const std::string_view character = rest.substr(0, length);
    rest.remove_prefix(length);
    return character;
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    while (!text.empty()) {
        takeCharacter(text);
        ++count;
    }
    return count;
}

std::string_view trimmed(std::string_view text) {
    while (const std::size_t length = whiteSpaceAtStart(text)) {
        text.remove_prefix(length);
    }
    while (const std::size_t length = whiteSpaceAtEnd(text)) {
        text.remove_suffix(length);
    }
    return text;
}

std::string lowerCased(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::string_view character = takeCharacter(text);
        if (character == kelvinSign) {
            result += 'k';
        } else if (character.front() >= 'A' && character.front() <= 'Z') {
            result += static_cast<char>(character.front() - 'A' + 'a');
        } else {
            result += character;
        }
    }
    return result;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    parts.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), separator)) + 1);
    std::size_t start = 0;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator, start)) {
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

std::optional<std::int64_t> integerFromText(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || next != end) return std::nullopt;
    return number;
}

}  // namespace orlix
