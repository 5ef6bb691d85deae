#include "core/square.h"

#include "core/hash_combine.h"
#include "core/text.h"

namespace orlix {

std::optional<Square> Square::fromText(std::string_view text) {
    text = trimmed(text);
    // Both characters are ASCII in every text that is accepted, so two bytes are two characters here.
    if (text.size() != 2) return std::nullopt;
    const char letter = text[0];
    const char digit = text[1];
    if (digit < '1' || digit > '8') return std::nullopt;
    if (letter >= 'a' && letter <= 'h') return Square{letter - 'a', digit - '1'};
    if (letter >= 'A' && letter <= 'H') return Square{letter - 'A', digit - '1'};
    return std::nullopt;
}

std::optional<Square> Square::fromIndex(std::int64_t index) {
    if (index < 0 || index > 63) return std::nullopt;
    return Square{index % 8, index / 8};
}

const std::array<Square, 64>& Square::allSquares() {
    static const std::array<Square, 64> squares = [] {
        std::array<Square, 64> all{};
        for (std::size_t i = 0; i < all.size(); ++i) {
            all[i] = Square{static_cast<std::int64_t>(i % 8), static_cast<std::int64_t>(i / 8)};
        }
        return all;
    }();
    return squares;
}

}  // namespace orlix

std::size_t std::hash<orlix::Square>::operator()(const orlix::Square& square) const noexcept {
    return orlix::hashOf(square.file, square.rank);
}
