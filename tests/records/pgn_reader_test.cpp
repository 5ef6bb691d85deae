// Games written here, read by another program: pgn-extract.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>

#include "core/chess_board.h"
#include "core/text.h"
#include "records/pgn_game.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;

// A folder of its own for one test; gone afterwards.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::string pattern = (fs::temp_directory_path() / "orlix-pgn-XXXXXX").string();
        if (::mkdtemp(pattern.data()) != nullptr) path_ = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    fs::path file(const std::string& name) const { return path_ / name; }

  private:
    fs::path path_;
};

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// What pgn-extract makes of a file: the moves in UCI text, one game a line, and all that it complains about.
struct Reading {
    int exitStatus = -1;
    std::string games;
    std::string complaints;
};

Reading readWithPgnExtract(const ScratchFolder& folder, const std::string& pgn) {
    std::ofstream(folder.file("in.pgn"), std::ios::binary) << pgn;
    const auto quoted = [&](const char* name) { return "'" + folder.file(name).string() + "'"; };
    const std::string command = "PATH=\"$PATH:/usr/games\" pgn-extract -s --notags -Wuci -w100000 -l" +
                                quoted("log") + " -o" + quoted("out") + " " + quoted("in.pgn");
    Reading reading;
    reading.exitStatus = std::system(command.c_str());
    reading.games = contentOf(folder.file("out"));
    reading.complaints = contentOf(folder.file("log"));
    return reading;
}

std::string resultOf(const ChessBoard& board) {
    const auto reason = board.gameEndReason();
    if (!reason) return "*";
    if (!reason->winner) return "1/2-1/2";
    return *reason->winner == PieceColor::white ? "1-0" : "0-1";
}

bool isCastling(const ChessBoard& board, const Move& move) {
    return board[move.from]->type == PieceType::king && std::abs(move.to.file - move.from.file) == 2;
}

bool isEnPassant(const ChessBoard& board, const Move& move) {
    return board[move.from]->type == PieceType::pawn && move.to == board.enPassantTarget &&
           move.from.file != move.to.file;
}

// The rare kinds of moves are preferred half of the time.
Move randomMove(const ChessBoard& board, std::mt19937_64& random) {
    const std::vector<Move> moves = board.generateLegalMoves();
    const auto rare = std::find_if(moves.begin(), moves.end(), [&board](const Move& move) {
        return isCastling(board, move) || isEnPassant(board, move);
    });
    if (rare != moves.end() && random() % 2 == 0) return *rare;
    return moves[random() % moves.size()];
}

PGNGame randomGame(std::uint64_t seed, const std::string& fen) {
    std::mt19937_64 random(seed);
    ChessBoard board = ChessBoard::fromFen(fen);
    while (!board.isGameOver() && board.history.size() < 20 + seed * 7) {
        EXPECT_TRUE(board.play(randomMove(board, random)));
    }
    PGNGame game{"Test", "Here", "2026.11.20", std::to_string(seed), "White", "Black", resultOf(board), "-",
                 fen,    {}};
    game.moves = board.history;
    return game;
}

std::string uciLine(const PGNGame& game) {
    std::string line;
    for (const MoveRecord& record : game.moves)
        line += record.move.uciString() + ' ';
    return line;
}

TEST(PGNReader, anotherProgramReadsTheSameMovesWithoutComplaint) {
    const std::vector<std::string> starts{
        std::string(ChessBoard::standardStartingFEN),
        std::string(ChessBoard::standardStartingFEN),
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
        "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
        "8/PPPPk3/8/8/8/8/3Kpppp/8 w - - 0 1",
        "3QQ3/3Q1Q2/2k5/8/8/3R1R2/1N3N2/K6R w - - 0 1",
    };
    std::string pgn;
    std::vector<std::string> expected;
    bool sawPromotion = false;
    bool sawCastling = false;
    bool sawEnPassant = false;
    for (std::uint64_t seed = 1; seed <= 60; ++seed) {
        const PGNGame game = randomGame(seed, starts[seed % starts.size()]);
        pgn += game.exportPGN();
        // Without a termination marker the next game's tags must not follow at once for every reader.
        if (game.result == "*") pgn += "*\n";
        pgn += '\n';
        expected.push_back(uciLine(game) + game.result);
        for (const MoveRecord& record : game.moves) {
            sawPromotion = sawPromotion || record.move.promotion.has_value();
            sawCastling = sawCastling || record.san.starts_with("O-O");
            sawEnPassant = sawEnPassant || (record.previousEnPassant == record.move.to &&
                                            record.san[1] == 'x' && record.san[0] >= 'a');
        }
    }
    EXPECT_TRUE(sawPromotion && sawCastling && sawEnPassant);

    const ScratchFolder folder;
    const Reading reading = readWithPgnExtract(folder, pgn);
    EXPECT_EQ(reading.exitStatus, 0) << "pgn-extract is needed for this test";
    EXPECT_EQ(reading.complaints, "");
    std::vector<std::string> lines;
    std::istringstream stream(reading.games);
    for (std::string line; std::getline(stream, line);) {
        // It writes the letter of a promotion in upper case.
        if (!line.empty()) lines.push_back(lowerCased(line));
    }
    EXPECT_EQ(lines, expected);
}

TEST(PGNReader, theOtherProgramWouldComplain) {
    const ScratchFolder folder;
    PGNGame game = randomGame(3, std::string(ChessBoard::standardStartingFEN));
    game.moves[4].san = "Qxh8#";
    const Reading reading = readWithPgnExtract(folder, game.exportPGN());
    EXPECT_NE(reading.complaints, "");
}

}  // namespace
}  // namespace orlix
