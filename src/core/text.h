// What the text forms share: UTF-8 characters, white space, case and whole numbers.
// Pure functions on borrowed text; any thread. A character is one Unicode code point, and a byte that is
// not part of valid UTF-8 counts as a character of its own, so no input is out of bounds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orlix {

/// The first character of `rest`, which is shortened by it. `rest` must not be empty.
std::string_view takeCharacter(std::string_view& rest);

/// How many characters the text has.
std::size_t characterCount(std::string_view text);

/// The text without Unicode white space and newlines at both ends; borrows from `text`.
std::string_view trimmed(std::string_view text);

/// The text with every letter in lower case whose lower case is an ASCII letter; all else stays as it is.
std::string lowerCased(std::string_view text);

/// The pieces between separators, empty ones included: always one more than there are separators.
std::vector<std::string_view> split(std::string_view text, char separator);

/// An optional sign and decimal digits that fit 64 bits; absent for anything else (spaces included).
std::optional<std::int64_t> integerFromText(std::string_view text);

}  // namespace orlix
