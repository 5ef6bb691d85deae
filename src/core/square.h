// One square of the board.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orlix {

/// `file` and `rank` are 0..7 for files a..h and ranks 1..8; the constructor does not check them.
struct Square {
    std::int64_t file = 0;
    std::int64_t rank = 0;

    bool operator==(const Square&) const = default;

    /// Reads "e4": white space around it and case do not matter; anything else is absent.
    static std::optional<Square> fromText(std::string_view text);
    /// a1 = 0, b1 = 1, ..., h8 = 63; absent outside.
    static std::optional<Square> fromIndex(std::int64_t index);
    /// All 64 squares in index order.
    static const std::array<Square, 64>& allSquares();

    std::int64_t index() const { return file + rank * 8; }
    std::int64_t id() const { return index(); }
    bool isLight() const { return (file + rank) % 2 != 0; }
    char fileChar() const { return static_cast<char>('a' + file); }
    char rankChar() const { return static_cast<char>('1' + rank); }
    std::string algebraic() const { return {fileChar(), rankChar()}; }
    std::string description() const { return algebraic(); }
};

}  // namespace orlix

template <>
struct std::hash<orlix::Square> {
    std::size_t operator()(const orlix::Square& square) const noexcept;
};
