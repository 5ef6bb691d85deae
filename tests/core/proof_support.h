// What the proofs over many positions share.
#pragma once

#include <array>
#include <cstdint>
#include <random>

#include "core/board_builder.h"

namespace orlix {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif
#else
inline constexpr bool isSanitized = false;
#endif

struct PerftPosition {
    const char* name;
    const char* fen;
    std::vector<std::uint64_t> leaves;  ///< by depth, from 1; the last has two million or more
    std::uint64_t walkStride;           ///< of the leaves of a walk, every so many is visited
    int walkDepth;
};

/// The six positions by which move generators are usually compared, with their known leaf counts.
inline const std::vector<PerftPosition>& perftPositions() {
    static const std::vector<PerftPosition> positions{
        {"start",
         "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         {20, 400, 8902, 197281, 4865609},
         2,
         4},
        {"kiwipete",
         "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
         {48, 2039, 97862, 4085603},
         400,
         4},
        {"rookEndgame",
         "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
         {14, 191, 2812, 43238, 674624, 11030083},
         10,
         5},
        {"promotions",
         "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
         {6, 264, 9467, 422333, 15833292},
         4,
         4},
        {"knightOnF2",
         "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
         {44, 1486, 62379, 2103487},
         50,
         4},
        {"middlegame",
         "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
         {46, 2079, 89890, 3894594},
         300,
         4},
    };
    return positions;
}

/// Below `limit`, the same on every standard library.
inline std::uint64_t below(std::mt19937_64& random, std::uint64_t limit) {
    return random() % limit;
}

/// A position that only a FEN can make: any number of kings and pieces anywhere, rights and target at random.
inline ChessBoard nonsensePosition(std::mt19937_64& random) {
    ChessBoard board = ChessBoard::fromFen("8/8/8/8/8/8/8/8 w - - 0 1");
    const std::uint64_t density = 1 + below(random, 12);
    constexpr std::array mix{PieceType::pawn, PieceType::pawn,  PieceType::pawn,   PieceType::knight,
                             PieceType::rook, PieceType::queen, PieceType::bishop, PieceType::king};
    const std::uint64_t kinds = below(random, 3) == 0 ? 7 : mix.size();
    for (auto& piece : board.squares) {
        if (below(random, 16) >= density) continue;
        const auto color = below(random, 2) == 0 ? PieceColor::white : PieceColor::black;
        piece = Piece::make(mix[below(random, kinds)], color);
    }
    // Castling and en passant are rare by chance, so half of the positions get kings at home.
    if (below(random, 2) == 0) {
        board.at(4, 0) = Piece::make(PieceType::king, PieceColor::white);
        board.at(4, 7) = Piece::make(PieceType::king, PieceColor::black);
        for (const std::int64_t rank : {0, 7}) {
            for (const std::int64_t file : {1, 2, 3, 5, 6}) {
                if (below(random, 4) != 0) board.at(file, rank).reset();
            }
        }
    }
    const std::uint64_t bits = random();
    board.castlingRights = {(bits & 1U) != 0, (bits & 2U) != 0, (bits & 4U) != 0, (bits & 8U) != 0};
    board.turn = (bits & 16U) != 0 ? PieceColor::white : PieceColor::black;
    if ((bits & 32U) != 0)
        board.enPassantTarget = Square::fromIndex(static_cast<std::int64_t>(below(random, 64)));
    board.halfmoveClock = static_cast<std::int64_t>(below(random, 110));
    board.positionHistory = {{board.positionHashKey(), 1}};
    return board;
}

}  // namespace orlix
