// A move request or a generated move, with its UCI text form.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/piece.h"
#include "core/square.h"

namespace orlix {

struct Move {
    Square from;
    Square to;
    std::optional<PieceType> promotion;

    bool operator==(const Move&) const = default;

    /// Reads "e2e4" or "e7e8q"; an unknown fifth character is ignored; anything else is absent.
    static std::optional<Move> fromUci(std::string_view text);
    std::string uciString() const;
    std::string description() const { return uciString(); }
};

}  // namespace orlix

template <>
struct std::hash<orlix::Move> {
    std::size_t operator()(const orlix::Move& move) const noexcept;
};
