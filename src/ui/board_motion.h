// How the pieces get from one shown position to the next: who travels and who fades. A value; the board view
// runs the time.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "ui/board_picture.h"

namespace orlix {

struct BoardMotion {
    struct Traveller {
        BoardPicture::PieceLook piece;  ///< as it arrives: a promoted pawn travels as its new piece
        Square from;
        Square to;
        bool operator==(const Traveller&) const = default;
    };
    struct Fading {
        BoardPicture::PieceLook piece;
        Square square;
        bool operator==(const Fading&) const = default;
    };
    using Placement = std::array<std::optional<Piece>, 64>;  ///< by `Square::index`

    std::vector<Traveller> travellers;
    std::vector<Fading> fading;

    bool operator==(const BoardMotion&) const = default;
    bool isEmpty() const { return travellers.empty(); }
    bool arrivesAt(Square square) const;
    /// Takes out a piece that has been carried to its square already; what comes with it still moves.
    void leaveOut(Square from, Square to);

    /// The motion between two positions, pieces found by their identity, else (a rebuilt position has other
    /// identities) by type and square. Empty when more changes than two plies can: the new position then
    /// simply stands there.
    static BoardMotion between(const Placement& before, const Placement& after);
};

}  // namespace orlix
