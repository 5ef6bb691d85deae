#include "ui/board_motion.h"

#include <algorithm>
#include <cstdlib>

namespace orlix {

namespace {

// Two plies, each of them castling.
constexpr std::size_t mostTravellers = 4;
constexpr std::size_t mostFading = 2;

BoardPicture::PieceLook lookOf(const Piece& piece) {
    return {piece.type, piece.color};
}

Square squareAt(std::size_t index) {
    return Square::allSquares()[index];
}

class Matcher {
  public:
    Matcher(const BoardMotion::Placement& before, const BoardMotion::Placement& after)
        : before_(before), after_(after) {}

    BoardMotion match() {
        matchIdentities();
        matchLooks();
        matchPromotions();
        BoardMotion motion;
        for (std::size_t to = 0; to < after_.size(); ++to) {
            const std::optional<std::size_t>& from = origin_[to];
            if (from && *from != to) {
                motion.travellers.push_back({lookOf(*after_[to]), squareAt(*from), squareAt(to)});
            }
        }
        for (std::size_t from = 0; from < before_.size(); ++from) {
            if (before_[from] && !isUsed_[from]) {
                motion.fading.push_back({lookOf(*before_[from]), squareAt(from)});
            }
        }
        return motion;
    }

  private:
    void use(std::size_t from, std::size_t to) {
        origin_[to] = from;
        isUsed_[from] = true;
    }

    // First the pieces that stand where they stood: that leaves little to compare with one another.
    void matchIdentities() {
        for (std::size_t square = 0; square < after_.size(); ++square) {
            if (isUnmatched(square, square) && before_[square]->id == after_[square]->id) use(square, square);
        }
        for (std::size_t to = 0; to < after_.size(); ++to) {
            if (!after_[to] || origin_[to]) continue;
            for (std::size_t from = 0; from < before_.size(); ++from) {
                if (isUnmatched(from, to) && before_[from]->id == after_[to]->id) use(from, to);
            }
        }
    }

    void matchLooks() {
        for (std::size_t square = 0; square < after_.size(); ++square) {
            if (isOpen(square, square)) use(square, square);
        }
        for (std::size_t to = 0; to < after_.size(); ++to) {
            if (!after_[to] || origin_[to]) continue;
            for (std::size_t from = 0; from < before_.size(); ++from) {
                if (isOpen(from, to)) use(from, to);
            }
        }
    }

    // A promoted pawn is a new piece, and so is the pawn that a take-back brings back.
    void matchPromotions() {
        for (std::size_t to = 0; to < after_.size(); ++to) {
            if (!after_[to] || origin_[to]) continue;
            for (std::size_t from = 0; from < before_.size(); ++from) {
                if (!isUnmatched(from, to) || before_[from]->color != after_[to]->color) continue;
                const PieceColor color = after_[to]->color;
                const bool isPromotion =
                    before_[from]->type == PieceType::pawn && isLastStep(squareAt(from), squareAt(to), color);
                const bool isTakenBack =
                    after_[to]->type == PieceType::pawn && isLastStep(squareAt(to), squareAt(from), color);
                if (isPromotion || isTakenBack) use(from, to);
            }
        }
    }

    static bool isLastStep(Square pawn, Square arrived, PieceColor color) {
        const bool isWhite = color == PieceColor::white;
        return pawn.rank == (isWhite ? 6 : 1) && arrived.rank == (isWhite ? 7 : 0) &&
               std::abs(arrived.file - pawn.file) <= 1;
    }

    bool isUnmatched(std::size_t from, std::size_t to) const {
        return after_[to] && !origin_[to] && before_[from] && !isUsed_[from];
    }
    bool isOpen(std::size_t from, std::size_t to) const {
        return isUnmatched(from, to) && lookOf(*before_[from]) == lookOf(*after_[to]);
    }

    const BoardMotion::Placement& before_;
    const BoardMotion::Placement& after_;
    std::array<std::optional<std::size_t>, 64> origin_{};
    std::array<bool, 64> isUsed_{};
};

}  // namespace

bool BoardMotion::arrivesAt(Square square) const {
    return std::any_of(travellers.begin(), travellers.end(),
                       [square](const Traveller& traveller) { return traveller.to == square; });
}

void BoardMotion::leaveOut(Square from, Square to) {
    const auto isIt = [from, to](const Traveller& traveller) {
        return traveller.from == from && traveller.to == to;
    };
    travellers.erase(std::remove_if(travellers.begin(), travellers.end(), isIt), travellers.end());
}

BoardMotion BoardMotion::between(const Placement& before, const Placement& after) {
    BoardMotion motion = Matcher(before, after).match();
    if (motion.travellers.size() > mostTravellers || motion.fading.size() > mostFading) return {};
    return motion;
}

}  // namespace orlix
