// What a board shows, as a value: derived from the game manager whenever it changes and compared with what is
// shown, so that only squares that differ are painted again.
#pragma once

#include <array>
#include <optional>

#include "core/piece.h"
#include "core/square.h"
#include "game/game_manager.h"

namespace orlix {

struct BoardPicture {
    struct PieceLook {
        PieceType type = PieceType::pawn;
        PieceColor color = PieceColor::white;
        bool operator==(const PieceLook&) const = default;
    };
    enum class Target { none, dot, ring };
    struct Cell {
        std::optional<PieceLook> piece;
        bool isLastMove = false;
        bool isSelected = false;
        bool isInCheck = false;
        Target target = Target::none;
        bool operator==(const Cell&) const = default;
    };

    std::array<Cell, 64> cells{};  ///< by `Square::index`
    bool isFlipped = false;
    /// Set while a promotion waits for its piece: the colour that promotes.
    std::optional<PieceColor> promotingColor;

    bool operator==(const BoardPicture&) const = default;

    static BoardPicture of(const GameManager& game);

    const Cell& operator[](Square square) const { return cells[static_cast<std::size_t>(square.index())]; }
    Cell& operator[](Square square) { return cells[static_cast<std::size_t>(square.index())]; }
};

}  // namespace orlix
