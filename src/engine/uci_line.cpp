#include "engine/uci_line.h"

#include <cstdint>

#include "core/text.h"

namespace orlix {
namespace {

// Cuts a line at every single space: consecutive spaces give empty tokens.
class Tokens {
  public:
    explicit Tokens(std::string_view line) : rest_(line) {}

    std::optional<std::string_view> next() {
        if (atEnd_) return std::nullopt;
        const std::size_t space = rest_.find(' ');
        const std::string_view token = rest_.substr(0, space);
        if (space == std::string_view::npos) {
            atEnd_ = true;
        } else {
            rest_.remove_prefix(space + 1);
        }
        return token;
    }

  private:
    std::string_view rest_;
    bool atEnd_ = false;
};

// Takes the next token's number; a token that is no number is left to be read as a keyword.
std::optional<qint64> takeInteger(Tokens& tokens) {
    Tokens ahead = tokens;
    const std::optional<std::string_view> token = ahead.next();
    if (!token) return std::nullopt;
    const std::optional<std::int64_t> value = integerFromText(*token);
    if (value) tokens = ahead;
    return value;
}

void takeScore(Tokens& tokens, EngineEvaluation& evaluation) {
    Tokens ahead = tokens;
    const std::optional<std::string_view> kind = ahead.next();
    const std::optional<std::string_view> text = ahead.next();
    if (!kind || !text) return;
    // Both are used up whatever they hold.
    tokens = ahead;
    const std::optional<std::int64_t> value = integerFromText(*text);
    if (!value) return;
    if (*kind == "cp") {
        evaluation.scoreCp = *value;
        evaluation.mateIn.reset();
    } else if (*kind == "mate") {
        evaluation.mateIn = *value;
        evaluation.scoreCp.reset();
    }
}

void takePrincipalVariation(Tokens& tokens, EngineEvaluation& evaluation) {
    evaluation.pv.clear();
    while (const std::optional<std::string_view> token = tokens.next()) {
        if (!token->empty())
            evaluation.pv.append(QString::fromUtf8(token->data(), static_cast<qsizetype>(token->size())));
    }
}

}  // namespace

UciLineKind uciLineKind(std::string_view line) {
    if (line.starts_with("info ")) return UciLineKind::info;
    if (line.starts_with("bestmove ")) return UciLineKind::bestMove;
    if (line == "uciok") return UciLineKind::uciOk;
    if (line == "readyok") return UciLineKind::readyOk;
    return UciLineKind::other;
}

void mergeInfoLine(std::string_view line, EngineEvaluation& evaluation) {
    Tokens tokens(line);
    tokens.next();  // "info"
    while (const std::optional<std::string_view> keyword = tokens.next()) {
        if (*keyword == "depth") {
            if (const auto value = takeInteger(tokens)) evaluation.depth = *value;
        } else if (*keyword == "score") {
            takeScore(tokens, evaluation);
        } else if (*keyword == "nodes") {
            if (const auto value = takeInteger(tokens)) evaluation.nodes = *value;
        } else if (*keyword == "nps") {
            if (const auto value = takeInteger(tokens)) evaluation.nps = *value;
        } else if (*keyword == "time") {
            if (const auto value = takeInteger(tokens)) evaluation.timeMs = *value;
        } else if (*keyword == "pv") {
            takePrincipalVariation(tokens, evaluation);
        }
    }
}

std::optional<std::string_view> bestMoveFromLine(std::string_view line) {
    Tokens tokens(line);
    tokens.next();  // "bestmove"
    return tokens.next();
}

}  // namespace orlix
