#include "records/pgn_game.h"

#include <ctime>
#include <utility>

#include "core/chess_board.h"
#include "core/text.h"

namespace orlix {
namespace {

constexpr std::size_t lineLimit = 80;  // characters

std::string padded(int number, std::size_t width) {
    std::string digits = std::to_string(number);
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    return digits;
}

void appendTag(std::string& text, std::string_view name, std::string_view value) {
    // Values are written as they are; quotes and backslashes are not escaped.
    text += '[';
    text += name;
    text += " \"";
    text += value;
    text += "\"]\n";
}

// One token a move pair, so that no line breaks between a number and its moves. The numbering starts at 1 and
// White's slot comes first, whatever position the game started from.
std::vector<std::string> movetextTokens(const PGNGame& game) {
    std::vector<std::string> tokens;
    for (std::size_t i = 0; i < game.moves.size(); i += 2) {
        std::string token = std::to_string(i / 2 + 1) + ". " + game.moves[i].san;
        if (i + 1 < game.moves.size()) token += ' ' + game.moves[i + 1].san;
        tokens.push_back(std::move(token));
    }
    // A game in progress ends without a termination marker, although its tag says "*".
    if (!game.result.empty() && game.result != "*") tokens.push_back(game.result);
    return tokens;
}

void appendLines(std::string& text, const std::vector<std::string>& tokens) {
    std::string line;
    std::size_t lineLength = 0;
    for (const std::string& token : tokens) {
        const std::size_t tokenLength = characterCount(token);
        if (lineLength + tokenLength + 1 <= lineLimit) {
            if (!line.empty()) {
                line += ' ';
                ++lineLength;
            }
            line += token;
            lineLength += tokenLength;
        } else {
            // A first token that fits no line leaves an empty line before it.
            text += line;
            text += '\n';
            line = token;
            lineLength = tokenLength;
        }
    }
    if (!line.empty()) {
        text += line;
        text += '\n';
    }
}

}  // namespace

std::string PGNGame::dateString(std::chrono::system_clock::time_point moment) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
    ::tzset();  // localtime_r need not notice by itself that the machine has changed its time zone
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return padded(local.tm_year + 1900, 4) + '.' + padded(local.tm_mon + 1, 2) + '.' +
           padded(local.tm_mday, 2);
}

std::string PGNGame::currentDateString() {
    return dateString(std::chrono::system_clock::now());
}

std::string PGNGame::exportPGN() const {
    std::string text;
    appendTag(text, "Event", event);
    appendTag(text, "Site", site);
    appendTag(text, "Date", date);
    appendTag(text, "Round", round);
    appendTag(text, "White", white);
    appendTag(text, "Black", black);
    appendTag(text, "Result", result);
    appendTag(text, "TimeControl", timeControl);
    if (initialFEN && *initialFEN != ChessBoard::standardStartingFEN) {
        appendTag(text, "SetUp", "1");
        appendTag(text, "FEN", *initialFEN);
    }
    text += '\n';
    appendLines(text, movetextTokens(*this));
    return text;
}

}  // namespace orlix
