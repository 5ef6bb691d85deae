// Reading and writing FEN, and the repetition key.
#include <utility>

#include "core/chess_board.h"
#include "core/text.h"

namespace orlix {
namespace {

// Leniency is wanted: short ranks stay empty at their end, a digit is never checked by itself, and what is
// neither digit nor piece is skipped.
void readRank(std::string_view text, std::int64_t rank, std::array<std::optional<Piece>, 64>& squares) {
    std::int64_t file = 0;
    while (!text.empty()) {
        const std::string_view character = takeCharacter(text);
        if (character.front() >= '0' && character.front() <= '9') {
            file += character.front() - '0';
        } else if (const auto piece = Piece::fromFenChar(character)) {
            if (file >= 8) throw FenError(3, "Invalid FEN: file overflow");
            squares[static_cast<std::size_t>(Square{file, rank}.index())] = piece;
            ++file;
        }
    }
}

void appendPlacement(std::string& text, const std::array<std::optional<Piece>, 64>& squares) {
    for (std::int64_t rank = 7; rank >= 0; --rank) {
        char emptyRun = 0;
        const auto writeRun = [&] {
            if (emptyRun > 0) text += static_cast<char>('0' + emptyRun);
            emptyRun = 0;
        };
        for (std::int64_t file = 0; file < 8; ++file) {
            const auto& piece = squares[static_cast<std::size_t>(Square{file, rank}.index())];
            if (piece) {
                writeRun();
                text += piece->fenChar();
            } else {
                ++emptyRun;
            }
        }
        writeRun();
        if (rank > 0) text += '/';
    }
}

}  // namespace

void ChessBoard::load(std::string_view fen) {
    const std::vector<std::string_view> fields = split(trimmed(fen), ' ');
    if (fields.size() < 4) throw FenError(1, "Invalid FEN: insufficient components");
    const std::vector<std::string_view> ranks = split(fields[0], '/');
    if (ranks.size() != 8) throw FenError(2, "Invalid FEN: rank count != 8");

    ChessBoard loaded{Unloaded{}};
    for (std::size_t i = 0; i < ranks.size(); ++i) {
        readRank(ranks[i], static_cast<std::int64_t>(7 - i), loaded.squares);
    }
    loaded.turn = fields[1] == "b" ? PieceColor::black : PieceColor::white;
    loaded.castlingRights = CastlingRights::fromFen(fields[2]);
    loaded.enPassantTarget = Square::fromText(fields[3]);
    if (fields.size() > 4) loaded.halfmoveClock = integerFromText(fields[4]).value_or(0);
    if (fields.size() > 5) loaded.fullmoveNumber = integerFromText(fields[5]).value_or(1);
    loaded.positionHistory.emplace(loaded.positionHashKey(), 1);
    *this = std::move(loaded);
}

std::string ChessBoard::fen() const {
    return positionHashKey() + ' ' + std::to_string(halfmoveClock) + ' ' + std::to_string(fullmoveNumber);
}

std::string ChessBoard::positionHashKey() const {
    std::string text;
    text.reserve(96);
    appendPlacement(text, squares);
    text += ' ';
    text += rawValue(turn);
    text += ' ';
    text += castlingRights.fenString();
    text += ' ';
    text += enPassantTarget ? enPassantTarget->algebraic() : "-";
    return text;
}

}  // namespace orlix
