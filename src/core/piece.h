// Piece types, colours, and one physical piece with an identity of its own.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/uuid.h"

namespace orlix {

enum class PieceType : std::uint8_t { pawn, knight, bishop, rook, queen, king };
inline constexpr std::array allPieceTypes{PieceType::pawn, PieceType::knight, PieceType::bishop,
                                          PieceType::rook, PieceType::queen,  PieceType::king};
char rawValue(PieceType type);               ///< FEN letter, lower case
std::int64_t value(PieceType type);          ///< material: 1, 3, 3, 5, 9, 0
std::string_view sanLetter(PieceType type);  ///< empty for a pawn
std::optional<PieceType> pieceTypeFromRawValue(std::string_view text);

enum class PieceColor : std::uint8_t { white, black };
inline constexpr std::array allPieceColors{PieceColor::white, PieceColor::black};
char rawValue(PieceColor color);          ///< 'w' or 'b'
std::string_view name(PieceColor color);  ///< "White" or "Black"
std::optional<PieceColor> pieceColorFromRawValue(std::string_view text);
constexpr PieceColor opponent(PieceColor color) {
    return color == PieceColor::white ? PieceColor::black : PieceColor::white;
}

struct Piece {
    Uuid id;
    PieceType type = PieceType::pawn;
    PieceColor color = PieceColor::white;

    bool operator==(const Piece&) const = default;

    /// A new piece: it draws a fresh random id.
    static Piece make(PieceType type, PieceColor color);
    /// A new piece from its FEN letter; absent for any other text.
    static std::optional<Piece> fromFenChar(std::string_view character);

    char fenChar() const;
    /// U+2654..U+265F as UTF-8.
    std::string_view unicodeSymbol() const;
};

}  // namespace orlix

template <>
struct std::hash<orlix::Piece> {
    std::size_t operator()(const orlix::Piece& piece) const noexcept;
};
