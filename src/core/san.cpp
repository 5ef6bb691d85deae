#include "core/san.h"

#include <cstdlib>

#include "core/board_geometry.h"

namespace orlix {
namespace {

using geometry::fileOf;
using geometry::rankOf;

constexpr int kingsideCastlingFile = 6;

char fileChar(int square) {
    return static_cast<char>('a' + fileOf(square));
}
char rankChar(int square) {
    return static_cast<char>('1' + rankOf(square));
}
std::string algebraic(int square) {
    return {fileChar(square), rankChar(square)};
}

// Rivals are the legal moves of other pieces of the same type to the same square.
std::string disambiguation(const TrialPosition& position, TrialMove move, const TrialMoveList& legalMoves) {
    const PieceType type = typeOf(position.cellAt(move.from));
    bool hasRival = false;
    bool sharesRank = false;
    bool sharesFile = false;
    for (const TrialMove other : legalMoves) {
        if (other.to != move.to || other.from == move.from) continue;
        if (typeOf(position.cellAt(other.from)) != type) continue;
        hasRival = true;
        sharesRank = sharesRank || rankOf(other.from) == rankOf(move.from);
        sharesFile = sharesFile || fileOf(other.from) == fileOf(move.from);
    }
    if (!hasRival) return "";
    if (sharesRank && sharesFile) return algebraic(move.from);
    if (sharesFile) return {rankChar(move.from)};
    return {fileChar(move.from)};
}

std::string withoutSuffix(const TrialPosition& position, TrialMove move, const TrialMoveList& legalMoves) {
    const PieceType type = typeOf(position.cellAt(move.from));
    if (type == PieceType::king && std::abs(fileOf(move.to) - fileOf(move.from)) == 2) {
        return fileOf(move.to) == kingsideCastlingFile ? "O-O" : "O-O-O";
    }
    std::string san;
    if (type == PieceType::pawn) {
        if (fileOf(move.from) != fileOf(move.to)) {
            san += fileChar(move.from);
            san += 'x';
        }
        san += algebraic(move.to);
        if (move.isPromotion()) {
            san += '=';
            san += sanLetter(move.promotionType());
        }
        return san;
    }
    san += sanLetter(type);
    san += disambiguation(position, move, legalMoves);
    if (position.cellAt(move.to) != emptyCell) san += 'x';
    san += algebraic(move.to);
    return san;
}

}  // namespace

std::string standardAlgebraicNotation(const TrialPosition& position, TrialMove move,
                                      const TrialMoveList& legalMoves) {
    if (position.cellAt(move.from) == emptyCell) return move.move().uciString();
    std::string san = withoutSuffix(position, move, legalMoves);
    TrialPosition after = position;
    after.apply(move);
    if (after.isKingInCheck(after.turn)) {
        TrialMoveList replies;
        after.legalMoves(replies);
        san += replies.empty() ? '#' : '+';
    }
    return san;
}

}  // namespace orlix
