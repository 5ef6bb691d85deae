// Whatever an engine says, in whatever reads: lines come out trimmed and below the limit, and info lines
// leave an evaluation with at most one kind of score. The input's first byte says how long the reads are.
#include <algorithm>
#include <string>
#include <vector>

#include "core/text.h"
#include "engine/uci_line.h"
#include "engine/uci_line_splitter.h"
#include "fuzz_target.h"

using orlix::fuzz::require;

namespace {

std::vector<std::string> linesOf(std::string_view text, std::size_t readSize) {
    orlix::UciLineSplitter splitter;
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size(); at += readSize) {
        splitter.feed(text.substr(at, readSize), [&](std::string_view line) {
            lines.emplace_back(line);
            return true;
        });
    }
    return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::size_t readSize = 1 + data[0];
    const std::string_view text = orlix::fuzz::textOf(data + 1, size - 1);
    const std::vector<std::string> lines = linesOf(text, readSize);
    // Where reads end makes no difference as long as none of them cuts a character in two.
    const bool isAscii =
        std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
    if (isAscii) require(lines == linesOf(text, text.size() + 1), "reads do not change the lines");

    orlix::EngineEvaluation evaluation;
    for (const std::string& line : lines) {
        require(!line.empty() && orlix::trimmed(line) == line, "a line is trimmed and not empty");
        require(line.size() <= orlix::UciLineSplitter::longestLine, "a line is below the limit");
        switch (orlix::uciLineKind(line)) {
            case orlix::UciLineKind::info: orlix::mergeInfoLine(line, evaluation); break;
            case orlix::UciLineKind::bestMove:
                require(orlix::bestMoveFromLine(line).has_value(), "a best move line has a second token");
                break;
            case orlix::UciLineKind::other:
            case orlix::UciLineKind::uciOk:
            case orlix::UciLineKind::readyOk: break;
        }
        require(!(evaluation.scoreCp && evaluation.mateIn), "there is one score at most");
        require(std::none_of(evaluation.pv.cbegin(), evaluation.pv.cend(),
                             [](const QString& move) { return move.isEmpty(); }),
                "a variation has no empty moves");
        const orlix::EngineEvaluation before = evaluation;
        orlix::mergeInfoLine("info string nothing", evaluation);
        require(evaluation == before, "an info line without fields changes nothing");
        require(!evaluation.formattedScore().isEmpty(), "every score has a text");
        for (const orlix::PieceColor color : orlix::allPieceColors) {
            const double share = evaluation.evalBarFraction(color);
            require(share >= 0.05 && share <= 0.95, "White's share is within its bounds");
        }
    }
    return 0;
}
