// Puts an engine's output, as it comes from the pipe, together into trimmed, non-empty lines. Owned by the
// session of one engine process; used on that engine's I/O thread only.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/text.h"

namespace orlix {

/// True when all of `bytes` is well-formed UTF-8 (NUL and control characters included).
bool isWellFormedUtf8(std::string_view bytes);

class UciLineSplitter {
  public:
    /// Bytes of a line before its newline; a longer one is dropped through its newline, never cut up.
    static constexpr std::size_t longestLine = std::size_t{1} << 20;

    /// Takes the bytes of one read and hands every line that they complete to `take(std::string_view)`. Bytes
    /// that are not UTF-8 by themselves are dropped as a whole, so a character that is split over two reads
    /// costs both of them. `take` returns false to stop: the rest of the chunk is dropped then.
    template <typename Take>
    void feed(std::string_view chunk, Take&& take) {
        if (!isWellFormedUtf8(chunk)) return;
        while (!chunk.empty()) {
            const std::size_t newline = chunk.find('\n');
            if (newline == std::string_view::npos) {
                keep(chunk);
                return;
            }
            const std::string_view piece = chunk.substr(0, newline);
            chunk.remove_prefix(newline + 1);
            if (!finish(piece, take)) return;
        }
    }

  private:
    // The line that `piece` ends; what had been kept of it is used up.
    template <typename Take>
    bool finish(std::string_view piece, Take&& take) {
        const bool isWhole = pending_.empty() && !isDiscarding_;
        if (!isWhole) keep(piece);
        const bool isTooLong = isDiscarding_ || piece.size() > longestLine;
        const std::string_view line = isTooLong ? std::string_view() : trimmed(isWhole ? piece : pending_);
        const bool goOn = line.empty() || take(line);
        isDiscarding_ = false;
        release();
        return goOn;
    }

    void keep(std::string_view piece);
    void release();

    std::string pending_;  // a line's beginning, without its newline
    bool isDiscarding_ = false;
};

}  // namespace orlix
