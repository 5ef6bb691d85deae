// How fast the rules are: legal lists, perft leaves, FEN and played moves. The figures are in docs/rules.md.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "core/chess_board.h"
#include "core/trial_position.h"

namespace orlix {
namespace {

const std::string startFen{ChessBoard::standardStartingFEN};
const std::string busyFen = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";

void legalLists(benchmark::State& state, const std::string& fen) {
    const ChessBoard board = ChessBoard::fromFen(fen);
    for ([[maybe_unused]] auto run : state)
        benchmark::DoNotOptimize(board.generateLegalMoves());
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(legalLists, start, startFen);
BENCHMARK_CAPTURE(legalLists, busy, busyFen);

// Every leaf is played: no counting of a list's length at the last ply.
std::int64_t leavesOf(const TrialPosition& position, int depth) {
    if (depth == 0) return 1;
    TrialMoveList moves;
    position.legalMoves(moves);
    std::int64_t leaves = 0;
    for (const TrialMove move : moves) {
        TrialPosition next = position;
        next.apply(move);
        leaves += leavesOf(next, depth - 1);
    }
    return leaves;
}

void perftLeaves(benchmark::State& state, const std::string& fen, int depth) {
    TrialPosition position(ChessBoard::fromFen(fen));
    std::int64_t leaves = 0;
    for ([[maybe_unused]] auto run : state) {
        benchmark::DoNotOptimize(position);  // else the counting would be done once for all runs
        leaves += leavesOf(position, depth);
    }
    leaves += leavesOf(position, depth);
    state.SetItemsProcessed(leaves);
}
BENCHMARK_CAPTURE(perftLeaves, start, startFen, 5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(perftLeaves, busy, busyFen, 4)->Unit(benchmark::kMillisecond);

void fenRoundTrips(benchmark::State& state, const std::string& fen) {
    for ([[maybe_unused]] auto run : state)
        benchmark::DoNotOptimize(ChessBoard::fromFen(fen).fen());
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(fenRoundTrips, start, startFen);
BENCHMARK_CAPTURE(fenRoundTrips, busy, busyFen);

std::vector<Move> randomGame() {
    std::mt19937_64 random(1);
    ChessBoard board;
    std::vector<Move> moves;
    while (moves.size() < 200 && !board.isGameOver()) {
        const std::vector<Move> legal = board.generateLegalMoves();
        moves.push_back(legal[random() % legal.size()]);
        board.play(moves.back());
    }
    return moves;
}

// With SAN, FEN, repetition key and record.
void playedMoves(benchmark::State& state) {
    const std::vector<Move> moves = randomGame();
    const ChessBoard start;
    for ([[maybe_unused]] auto run : state) {
        ChessBoard board = start;
        for (const Move& move : moves)
            benchmark::DoNotOptimize(board.play(move));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(moves.size()));
}
BENCHMARK(playedMoves);

void playedAndTakenBack(benchmark::State& state) {
    const std::vector<Move> moves = randomGame();
    ChessBoard board;
    for ([[maybe_unused]] auto run : state) {
        for (const Move& move : moves)
            benchmark::DoNotOptimize(board.play(move));
        while (board.undo()) {
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(moves.size()));
}
BENCHMARK(playedAndTakenBack);

void gameEndTests(benchmark::State& state) {
    const ChessBoard board = ChessBoard::fromFen(busyFen);
    for ([[maybe_unused]] auto run : state)
        benchmark::DoNotOptimize(board.gameEndReason());
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(gameEndTests);

void randomIds(benchmark::State& state) {
    for ([[maybe_unused]] auto run : state)
        benchmark::DoNotOptimize(Uuid::random());
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(randomIds);

}  // namespace
}  // namespace orlix
