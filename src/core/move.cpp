#include "core/move.h"

#include "core/hash_combine.h"
#include "core/text.h"

namespace orlix {

std::optional<Move> Move::fromUci(std::string_view text) {
    text = trimmed(text);
    const std::size_t length = characterCount(text);
    if (length != 4 && length != 5) return std::nullopt;
    // Squares are ASCII, so a longer character among the first four makes one of these refuse its bytes.
    const auto from = Square::fromText(text.substr(0, 2));
    const auto to = Square::fromText(text.substr(2, 2));
    if (!from || !to) return std::nullopt;
    // An unknown fifth character is no reason to refuse the move: engines decorate their moves.
    return Move{*from, *to, pieceTypeFromRawValue(lowerCased(text.substr(4)))};
}

std::string Move::uciString() const {
    std::string text = from.algebraic() + to.algebraic();
    if (promotion) text += rawValue(*promotion);
    return text;
}

}  // namespace orlix

std::size_t std::hash<orlix::Move>::operator()(const orlix::Move& move) const noexcept {
    return orlix::hashOf(move.from, move.to, move.promotion);
}
