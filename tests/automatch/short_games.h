// Games from the standard start, in coordinate moves: one for every way in which the rules end a game. The
// three that are written out are the shortest; the other two are made here, the same on every machine.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <cstdint>

#include "core/chess_board.h"

namespace orlix::test {

inline QByteArrayList whiteMates() {
    return QByteArray("e2e4 e7e5 d1h5 b8c6 f1c4 g8f6 h5f7").split(' ');
}

inline QByteArrayList blackMates() {
    return QByteArray("f2f3 e7e5 g2g4 d8h4").split(' ');
}

inline QByteArrayList stalemate() {
    return QByteArray(
               "e2e3 a7a5 d1h5 a8a6 h5a5 h7h5 h2h4 a6h6 a5c7 f7f6 c7d7 e8f7 d7b7 d8d3 b7b8 d3h7 "
               "b8c8 f7g6 c8e6")
        .split(' ');
}

inline QByteArrayList threefoldRepetition() {
    return QByteArray("g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8").split(' ');
}

/// Plays at random until the game is over, among the moves that `prefers` where there are any.
template <typename Preference>
ChessBoard randomGame(std::uint64_t seed, const Preference& prefers) {
    ChessBoard board;
    while (!board.isGameOver()) {
        std::vector<Move> moves = board.generateLegalMoves();
        std::vector<Move> preferred;
        for (const Move& move : moves) {
            if (prefers(board, move)) preferred.push_back(move);
        }
        if (!preferred.empty()) moves = preferred;
        seed = seed * 6364136223846793005U + 1442695040888963407U;
        board.play(moves[(seed >> 33) % moves.size()]);
    }
    return board;
}

/// The first random game that ends for that reason.
template <typename Preference>
QByteArrayList randomGameThatEnds(GameEndReason::Kind kind, const Preference& prefers) {
    for (std::uint64_t seed = 1;; ++seed) {
        const ChessBoard board = randomGame(seed, prefers);
        if (board.gameEndReason()->kind != kind) continue;
        QByteArrayList moves;
        for (const MoveRecord& record : board.history)
            moves.append(QByteArray::fromStdString(record.move.uciString()));
        return moves;
    }
}

inline const QByteArrayList& fiftyQuietMoves() {
    static const QByteArrayList moves =
        randomGameThatEnds(GameEndReason::Kind::fiftyMoveRule, [](const ChessBoard& board, const Move& move) {
            return board[move.from]->type == PieceType::knight && !board[move.to];
        });
    return moves;
}

inline const QByteArrayList& bareKings() {
    static const QByteArrayList moves = randomGameThatEnds(
        GameEndReason::Kind::insufficientMaterial,
        [](const ChessBoard& board, const Move& move) { return board[move.to].has_value(); });
    return moves;
}

}  // namespace orlix::test
