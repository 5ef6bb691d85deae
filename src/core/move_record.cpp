#include "core/move_record.h"

#include "core/hash_combine.h"

std::size_t std::hash<orlix::MoveRecord>::operator()(const orlix::MoveRecord& record) const noexcept {
    return orlix::hashOf(record.move, record.san, record.capturedPiece, record.previousCastling,
                         record.previousEnPassant, record.previousHalfmove, record.fenAfter);
}
