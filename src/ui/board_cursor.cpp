#include "ui/board_cursor.h"

#include <algorithm>

namespace orlix {

namespace {

std::int64_t onBoard(std::int64_t coordinate) {
    return std::clamp<std::int64_t>(coordinate, 0, 7);
}

}  // namespace

void BoardCursor::placeFirst(bool isFlipped) {
    if (!wasPlaced) square = {4, isFlipped ? 6 : 1};
}

void BoardCursor::place(Square to) {
    square = to;
    wasPlaced = true;
}

void BoardCursor::move(int columns, int rows, bool isFlipped) {
    placeFirst(isFlipped);
    const int direction = isFlipped ? -1 : 1;
    place({onBoard(square.file + direction * columns), onBoard(square.rank - direction * rows)});
}

}  // namespace orlix
