// One played move with what is needed to write it and to take it back.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "core/castling_rights.h"
#include "core/move.h"
#include "core/piece.h"

namespace orlix {

struct MoveRecord {
    Move move;
    std::string san;                     ///< with its check or mate suffix
    std::optional<Piece> capturedPiece;  ///< the en-passant pawn included
    CastlingRights previousCastling;
    std::optional<Square> previousEnPassant;
    std::int64_t previousHalfmove = 0;  ///< plies
    std::string fenAfter;

    bool operator==(const MoveRecord&) const = default;
};

}  // namespace orlix

template <>
struct std::hash<orlix::MoveRecord> {
    std::size_t operator()(const orlix::MoveRecord& record) const noexcept;
};
