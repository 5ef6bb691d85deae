#include "core/san.h"

#include "core/board_builder.h"

namespace orlix {
namespace {

std::string sanOf(const std::string& fen, std::string_view move) {
    ChessBoard board = ChessBoard::fromFen(fen);
    if (!board.play(mv(move))) return "illegal";
    return board.history.back().san;
}

TEST(San, isWrittenAtTheMomentOfTheMove) {
    struct Case {
        const char* name;
        const char* fen;
        const char* move;
        const char* san;
    };
    const std::vector<Case> cases{
        {"pawn step", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "e2e4", "e4"},
        {"knight", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "g1f3", "Nf3"},
        {"pawn capture", "4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1", "e4d5", "exd5"},
        {"en passant looks the same", "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 8", "e5d6", "exd6"},
        {"pawn captures never need more than the file", "4k3/8/8/3p4/2P1P3/8/8/4K3 w - - 0 1", "c4d5",
         "cxd5"},
        {"promotion", "8/4P3/7k/8/8/8/8/4K3 w - - 0 1", "e7e8q", "e8=Q"},
        {"underpromotion with capture", "5r2/4P3/7k/8/8/8/8/4K3 w - - 0 1", "e7f8n", "exf8=N"},
        {"promotion to a bishop with check", "8/4P3/7k/8/8/8/8/4K3 w - - 0 1", "e7e8b", "e8=B"},
        {"promotion with capture and mate", "rk6/1P5R/1K6/8/8/8/8/R7 w - - 0 1", "b7a8q", "bxa8=Q#"},
        {"piece capture", "4k3/8/8/8/8/8/4r3/4K3 w - - 0 1", "e1e2", "Kxe2"},
        {"king side castling", "4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1", "O-O"},
        {"queen side castling", "4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1", "O-O-O"},
        {"black castles", "r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1", "e8c8", "O-O-O"},
        {"castling with check", "5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1", "O-O+"},
        {"castling with mate", "2rkr3/2p1p3/2P1P3/8/8/8/8/R3K3 w Q - 0 1", "e1c1", "O-O-O#"},
        {"check", "4k3/8/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", "Ra8+"},
        {"mate", "6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", "Ra8#"},
        {"discovered check", "4k3/8/8/8/4N3/8/8/4RK2 w - - 0 1", "e4c3", "Nc3+"},
        {"stalemate has no suffix", "7k/8/5K2/8/8/8/8/6Q1 w - - 0 1", "g1g6", "Qg6"},
        {"without an enemy king no suffix", "8/8/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", "Ra8"},
        {"of several enemy kings the first counts", "k7/8/8/8/8/8/7k/R3K3 w - - 0 1", "a1b1", "Rb1"},
        {"the first king checked", "k7/8/8/8/8/8/7k/R3K3 w - - 0 1", "a1a2", "Ra2+"},
        {"a pawn moving onto an own piece", "4k3/8/3N4/4P3/8/8/8/4K3 w - d6 0 1", "e5d6", "exd6"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(sanOf(c.fen, c.move), c.san);
    }
}

TEST(San, rivalsAreToldApart) {
    struct Case {
        const char* name;
        const char* fen;
        const char* move;
        const char* san;
    };
    const std::vector<Case> cases{
        {"same rank: the file", "4k3/8/8/8/8/8/8/1N3N1K w - - 0 1", "b1d2", "Nbd2"},
        {"same file: the rank", "7k/8/8/8/8/4R3/8/K3R3 w - - 0 1", "e1e2", "R1e2"},
        {"same file, from the other side", "7k/8/8/8/8/4R3/8/K3R3 w - - 0 1", "e3e2", "R3e2"},
        {"file and rank: the square", "8/8/8/8/4Q2Q/8/8/k1K4Q w - - 0 1", "h4e1", "Qh4e1"},
        {"neither file nor rank: the file", "4k3/8/8/8/8/2N5/8/4K1N1 w - - 0 1", "g1e2", "Nge2"},
        {"a knight that cannot reach it is no rival", "4k3/8/5N2/8/8/8/8/2N1K3 w - - 0 1", "f6d7", "Nd7"},
        {"knights on b8 and f6", "1n2k3/8/5n2/8/8/8/8/4K3 b - - 0 1", "b8d7", "Nbd7"},
        {"three: rank shared by one, file by another", "8/8/8/8/4Q2Q/8/8/k1K4Q w - - 0 1", "e4e1", "Qee1"},
        {"three: only the file shared", "8/8/8/8/4Q2Q/8/8/k1K4Q w - - 0 1", "h1e1", "Q1e1"},
        {"with a capture", "4k3/8/8/8/8/8/3p4/1N3N1K w - - 0 1", "b1d2", "Nbxd2"},
        {"with check", "8/8/8/8/2k5/8/8/1N3N1K w - - 0 1", "f1d2", "Nfd2+"},
        {"a pinned rival is none", "4k3/8/8/8/8/8/8/1N2rN1K w - - 0 1", "b1d2", "Nd2"},
        {"another type is no rival", "4k3/8/8/8/8/8/8/1N3B1K w - - 0 1", "b1d2", "Nd2"},
        {"two kings", "8/8/8/8/8/8/8/K1K4k w - - 0 1", "c1b1", "Kcb1"},
        {"a castling king is a rival of the other", "7k/8/8/8/8/8/7K/4K3 w K - 0 1", "h2g1", "Khg1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(sanOf(c.fen, c.move), c.san);
    }
}

TEST(San, anEmptyOriginGivesTheUciText) {
    const TrialPosition position{ChessBoard()};
    TrialMoveList none;
    TrialMove move{};
    move.from = 28;
    move.to = 36;
    move.promotion = TrialMove::noPromotion;
    EXPECT_EQ(standardAlgebraicNotation(position, move, none), "e4e5");
    move.promotion = static_cast<std::uint8_t>(PieceType::queen);
    EXPECT_EQ(standardAlgebraicNotation(position, move, none), "e4e5q");
}

TEST(TrialPosition, aMoveFromAnEmptySquareChangesNothing) {
    TrialPosition position{ChessBoard()};
    TrialMove move{};
    move.from = 28;
    move.to = 36;
    move.promotion = TrialMove::noPromotion;
    position.apply(move);
    EXPECT_EQ(position.cells, TrialPosition{ChessBoard()}.cells);
    EXPECT_EQ(position.turn, PieceColor::white);
}

}  // namespace
}  // namespace orlix
