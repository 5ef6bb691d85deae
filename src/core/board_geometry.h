// Where pieces can go from each square of an empty board, computed at compile time. The order of every list
// is part of the rules: it decides the order of the generated moves.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orlix::geometry {

struct Offset {
    int file;
    int rank;
};

inline constexpr std::array<Offset, 8> knightOffsets{
    {{-2, -1}, {-2, +1}, {-1, -2}, {-1, +2}, {+1, -2}, {+1, +2}, {+2, -1}, {+2, +1}}};
inline constexpr std::array<Offset, 8> kingOffsets{
    {{-1, -1}, {-1, 0}, {-1, +1}, {0, -1}, {0, +1}, {+1, -1}, {+1, 0}, {+1, +1}}};

/// The queen's directions: the four of the bishop, then the four of the rook.
inline constexpr std::array<Offset, 8> directions{
    {{+1, +1}, {+1, -1}, {-1, +1}, {-1, -1}, {0, +1}, {0, -1}, {+1, 0}, {-1, 0}}};
inline constexpr std::size_t bishopDirectionsBegin = 0;
inline constexpr std::size_t bishopDirectionsEnd = 4;
inline constexpr std::size_t rookDirectionsBegin = 4;
inline constexpr std::size_t rookDirectionsEnd = 8;

constexpr bool isOnBoard(int file, int rank) {
    return file >= 0 && file < 8 && rank >= 0 && rank < 8;
}

constexpr int fileOf(int square) {
    return square & 7;
}

constexpr int rankOf(int square) {
    return square >> 3;
}

/// Up to eight target squares in the order of the offsets.
struct Targets {
    std::array<std::int8_t, 8> squares{};
    int count = 0;

    constexpr const std::int8_t* begin() const { return squares.data(); }
    constexpr const std::int8_t* end() const { return squares.data() + count; }
};

constexpr std::array<Targets, 64> targetsOf(const std::array<Offset, 8>& offsets) {
    std::array<Targets, 64> table{};
    for (int square = 0; square < 64; ++square) {
        Targets& targets = table[static_cast<std::size_t>(square)];
        for (const Offset offset : offsets) {
            const int file = fileOf(square) + offset.file;
            const int rank = rankOf(square) + offset.rank;
            if (!isOnBoard(file, rank)) continue;
            targets.squares[static_cast<std::size_t>(targets.count++)] =
                static_cast<std::int8_t>(file + rank * 8);
        }
    }
    return table;
}

inline constexpr std::array<Targets, 64> knightTargets = targetsOf(knightOffsets);
inline constexpr std::array<Targets, 64> kingTargets = targetsOf(kingOffsets);

/// A ray from a square: `count` squares, each `step` further than the one before.
struct Ray {
    std::int8_t step = 0;
    std::int8_t count = 0;
};

constexpr std::array<std::array<Ray, 8>, 64> allRays() {
    std::array<std::array<Ray, 8>, 64> table{};
    for (int square = 0; square < 64; ++square) {
        for (std::size_t direction = 0; direction < directions.size(); ++direction) {
            const Offset offset = directions[direction];
            Ray& ray = table[static_cast<std::size_t>(square)][direction];
            ray.step = static_cast<std::int8_t>(offset.file + offset.rank * 8);
            int file = fileOf(square) + offset.file;
            int rank = rankOf(square) + offset.rank;
            while (isOnBoard(file, rank)) {
                ++ray.count;
                file += offset.file;
                rank += offset.rank;
            }
        }
    }
    return table;
}

/// By square, then by index into `directions`.
inline constexpr std::array<std::array<Ray, 8>, 64> rays = allRays();

}  // namespace orlix::geometry
