// The outlines of the twelve chess symbols, from whichever installed font has them as outlines. Never emoji:
// what is filled is a path. For any thread.
#pragma once

#include <QPainterPath>

#include "core/piece.h"

namespace orlix {

/// The outline of `symbol` (U+2654..U+265F) at a font size of one unit, the baseline at y = 0. Computed once.
/// Empty when no installed font has the symbol.
const QPainterPath& pieceGlyph(char32_t symbol);

/// The piece's own symbol: an outline drawing for White, a solid one for Black.
char32_t pieceSymbol(PieceType type, PieceColor color);
/// The solid symbol of `type`, whose outline is the body of both colours on the board.
char32_t solidPieceSymbol(PieceType type);

}  // namespace orlix
