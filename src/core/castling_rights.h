// The four castling flags.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace orlix {

struct CastlingRights {
    bool whiteKingside = false;
    bool whiteQueenside = false;
    bool blackKingside = false;
    bool blackQueenside = false;

    bool operator==(const CastlingRights&) const = default;

    /// A flag is set when its letter occurs anywhere in the text.
    static CastlingRights fromFen(std::string_view text);
    std::string fenString() const;
};

}  // namespace orlix

template <>
struct std::hash<orlix::CastlingRights> {
    std::size_t operator()(const orlix::CastlingRights& rights) const noexcept;
};
