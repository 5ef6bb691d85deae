#include "core/piece.h"

#include "core/hash_combine.h"

namespace orlix {
namespace {

struct PieceTypeFacts {
    char letter;
    std::int64_t value;
    std::string_view sanLetter;
    std::string_view whiteSymbol;
    std::string_view blackSymbol;
};

constexpr std::array<PieceTypeFacts, 6> pieceTypeFacts{{
    {'p', 1, "", "\u2659", "\u265F"},
    {'n', 3, "N", "\u2658", "\u265E"},
    {'b', 3, "B", "\u2657", "\u265D"},
    {'r', 5, "R", "\u2656", "\u265C"},
    {'q', 9, "Q", "\u2655", "\u265B"},
    {'k', 0, "K", "\u2654", "\u265A"},
}};

const PieceTypeFacts& facts(PieceType type) {
    return pieceTypeFacts[static_cast<std::size_t>(type)];
}

}  // namespace

char rawValue(PieceType type) {
    return facts(type).letter;
}

std::int64_t value(PieceType type) {
    return facts(type).value;
}

std::string_view sanLetter(PieceType type) {
    return facts(type).sanLetter;
}

std::optional<PieceType> pieceTypeFromRawValue(std::string_view text) {
    if (text.size() != 1) return std::nullopt;
    for (const PieceType type : allPieceTypes) {
        if (rawValue(type) == text.front()) return type;
    }
    return std::nullopt;
}

char rawValue(PieceColor color) {
    return color == PieceColor::white ? 'w' : 'b';
}

std::string_view name(PieceColor color) {
    return color == PieceColor::white ? "White" : "Black";
}

std::optional<PieceColor> pieceColorFromRawValue(std::string_view text) {
    if (text == "w") return PieceColor::white;
    if (text == "b") return PieceColor::black;
    return std::nullopt;
}

Piece Piece::make(PieceType type, PieceColor color) {
    return {Uuid::random(), type, color};
}

std::optional<Piece> Piece::fromFenChar(std::string_view character) {
    // U+212A, the Kelvin sign, is an upper-case letter whose lower case is the letter k.
    if (character == "\u212A") return make(PieceType::king, PieceColor::white);
    if (character.size() != 1) return std::nullopt;
    const char letter = character.front();
    const bool isUpperCase = letter >= 'A' && letter <= 'Z';
    const char lowerCase = isUpperCase ? static_cast<char>(letter - 'A' + 'a') : letter;
    const auto type = pieceTypeFromRawValue({&lowerCase, 1});
    if (!type) return std::nullopt;
    return make(*type, isUpperCase ? PieceColor::white : PieceColor::black);
}

char Piece::fenChar() const {
    const char letter = rawValue(type);
    return color == PieceColor::white ? static_cast<char>(letter - 'a' + 'A') : letter;
}

std::string_view Piece::unicodeSymbol() const {
    return color == PieceColor::white ? facts(type).whiteSymbol : facts(type).blackSymbol;
}

}  // namespace orlix

std::size_t std::hash<orlix::Piece>::operator()(const orlix::Piece& piece) const noexcept {
    return orlix::hashOf(piece.id, piece.type, piece.color);
}
