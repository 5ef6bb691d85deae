#include "engine/uci_line_splitter.h"

#include <QUtf8StringView>

namespace orlix {

bool isWellFormedUtf8(std::string_view bytes) {
    return QUtf8StringView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}

void UciLineSplitter::keep(std::string_view piece) {
    if (isDiscarding_) return;
    if (piece.size() > longestLine - pending_.size()) {
        isDiscarding_ = true;
        release();
        return;
    }
    pending_.append(piece);
}

void UciLineSplitter::release() {
    // One long line must not hold its memory for the rest of the game.
    constexpr std::size_t keptCapacity = 4096;
    pending_.clear();
    if (pending_.capacity() > keptCapacity) pending_.shrink_to_fit();
}

}  // namespace orlix
