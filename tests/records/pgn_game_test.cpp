#include "records/pgn_game.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <algorithm>

#include "core/chess_board.h"
#include "core/text.h"

namespace orlix {
namespace {

using ::testing::MatchesRegex;

const std::string tags =
    "[Event \"Velmorandix Orlix Match\"]\n"
    "[Site \"Velmorandix Orlix macOS\"]\n"
    "[Date \"2024.03.07\"]\n"
    "[Round \"1\"]\n"
    "[White \"White Player\"]\n"
    "[Black \"Black Player\"]\n";

PGNGame gameOf(const std::vector<std::string>& sans, const std::string& result) {
    PGNGame game{"Velmorandix Orlix Match",
                 "Velmorandix Orlix macOS",
                 "2024.03.07",
                 "1",
                 "White Player",
                 "Black Player",
                 result,
                 "300+0",
                 std::nullopt,
                 {}};
    for (const std::string& san : sans) {
        MoveRecord record;
        record.san = san;
        game.moves.push_back(record);
    }
    return game;
}

std::string tagsWith(const std::string& result) {
    return tags + "[Result \"" + result + "\"]\n[TimeControl \"300+0\"]\n\n";
}

// Everything after the first empty line.
std::string movetext(const PGNGame& game) {
    const std::string text = game.exportPGN();
    return text.substr(text.find("\n\n") + 2);
}

std::vector<std::string> manyMoves(std::size_t count) {
    std::vector<std::string> sans;
    for (std::size_t i = 0; i < count; ++i)
        sans.push_back(i % 4 < 2 ? "Nf3" : "Ng1");
    return sans;
}

TEST(PGNGame, aGameInProgressEndsWithoutAMarker) {
    EXPECT_EQ(gameOf({"e4", "e5", "Nf3"}, "*").exportPGN(), tagsWith("*") + "1. e4 e5 2. Nf3\n");
}

TEST(PGNGame, theMovetextFollowsMovesAndResult) {
    struct Case {
        const char* name;
        std::vector<std::string> sans;
        std::string result;
        std::string movetext;
    };
    const std::vector<Case> cases{
        {"White won", {"e4", "e5", "Nf3"}, "1-0", "1. e4 e5 2. Nf3 1-0\n"},
        {"Black won", {"f3", "e5", "g4", "Qh4#"}, "0-1", "1. f3 e5 2. g4 Qh4# 0-1\n"},
        {"draw without moves", {}, "1/2-1/2", "1/2-1/2\n"},
        {"empty result", {"e4"}, "", "1. e4\n"},
        {"no moves and a game in progress", {}, "*", ""},
        {"no moves and no result", {}, "", ""},
        {"any other result is written", {"e4", "e5"}, "abandoned", "1. e4 e5 abandoned\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PGNGame game = gameOf(c.sans, c.result);
        EXPECT_EQ(movetext(game), c.movetext);
        EXPECT_EQ(game.exportPGN(), tagsWith(c.result) + c.movetext);
    }
}

TEST(PGNGame, emptyTagsAreWrittenToo) {
    EXPECT_EQ(
        PGNGame{}.exportPGN(),
        "[Event \"\"]\n[Site \"\"]\n[Date \"\"]\n[Round \"\"]\n[White \"\"]\n[Black \"\"]\n[Result \"\"]\n"
        "[TimeControl \"\"]\n\n");
}

TEST(PGNGame, valuesAreNotEscaped) {
    PGNGame game = gameOf({}, "*");
    game.white = "The \"Rock\" \\ Smith";
    game.black = "J\u00FCrgen";
    EXPECT_THAT(game.exportPGN(),
                ::testing::HasSubstr("[White \"The \"Rock\" \\ Smith\"]\n[Black \"J\u00FCrgen\"]\n"));
}

TEST(PGNGame, theStartPositionIsWrittenUnlessItIsTheStandardOne) {
    PGNGame game = gameOf({"Kd2"}, "*");
    game.initialFEN = std::string(ChessBoard::standardStartingFEN);
    EXPECT_EQ(game.exportPGN(), tagsWith("*") + "1. Kd2\n");
    // The text is compared, not the position.
    for (const std::string fen :
         {"4k3/8/8/8/8/8/8/4K3 b - - 5 9", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 2", ""}) {
        SCOPED_TRACE(fen);
        game.initialFEN = fen;
        EXPECT_EQ(game.exportPGN(), tags + "[Result \"*\"]\n[TimeControl \"300+0\"]\n[SetUp \"1\"]\n[FEN \"" +
                                        fen + "\"]\n\n1. Kd2\n");
    }
}

TEST(PGNGame, theFirstMoveStandsInWhitesSlotWhoeverMadeIt) {
    ChessBoard board = ChessBoard::fromFen("4k3/3p4/8/8/8/8/8/4K3 b - - 5 40");
    ASSERT_TRUE(board.play(*Move::fromUci("d7d5")));
    ASSERT_TRUE(board.play(*Move::fromUci("e1e2")));
    PGNGame game = gameOf({}, "*");
    game.moves = board.history;
    EXPECT_EQ(movetext(game), "1. d5 Ke2\n");
}

TEST(PGNGame, linesHoldAtMostEightyCharactersAndBreakBetweenPairs) {
    for (std::size_t count : {1, 2, 13, 40, 99, 401}) {
        SCOPED_TRACE(count);
        const std::string text = movetext(gameOf(manyMoves(count), "1-0"));
        ASSERT_TRUE(text.ends_with('\n'));
        const auto lines = split(std::string_view(text).substr(0, text.size() - 1), '\n');
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_LE(lines[i].size(), 80U);
            EXPECT_THAT(std::string(lines[i]), MatchesRegex("([0-9]+\\. .*)|(1-0)"));
            // Each line is as full as it can be: the next token would not have fitted.
            if (i + 1 < lines.size()) {
                std::string_view next = lines[i + 1];
                const std::size_t number = next.find(". ");
                std::size_t end = next.find(' ', number == std::string_view::npos ? 0 : number + 2);
                if (end != std::string_view::npos && number != std::string_view::npos)
                    end = next.find(' ', end + 1);
                EXPECT_GT(lines[i].size() + 1 + std::min(end, next.size()), 80U);
            }
        }
        std::string joined = text;
        std::replace(joined.begin(), joined.end(), '\n', ' ');
        std::string expected;
        const auto sans = manyMoves(count);
        for (std::size_t i = 0; i < sans.size(); ++i) {
            if (i % 2 == 0) expected += std::to_string(i / 2 + 1) + ". ";
            expected += sans[i] + " ";
        }
        EXPECT_EQ(joined, expected + "1-0 ");
    }
}

TEST(PGNGame, theLastColumnIsTheEightieth) {
    // "1. " and a SAN of n characters, a space and the result.
    const auto lineOf = [](std::size_t total) { return std::string(total - 3 - 4, 'x'); };
    EXPECT_EQ(movetext(gameOf({lineOf(80)}, "1-0")), "1. " + lineOf(80) + " 1-0\n");
    EXPECT_EQ(movetext(gameOf({lineOf(81)}, "1-0")), "1. " + lineOf(81) + "\n1-0\n");
}

TEST(PGNGame, aTokenThatFitsNoLineStandsAlone) {
    const std::string longest(76, 'x');  // with "1. " it has 79 characters
    EXPECT_EQ(movetext(gameOf({longest}, "*")), "1. " + longest + "\n");
    // One more, and the empty line before it is written out first.
    EXPECT_EQ(movetext(gameOf({longest + "x"}, "*")), "\n1. " + longest + "x\n");
    EXPECT_EQ(movetext(gameOf({longest + "x", "e5", "Nf3"}, "*")), "\n1. " + longest + "x e5\n2. Nf3\n");
}

TEST(PGNGame, lengthsAreCountedInCharacters) {
    std::string wide;
    for (int i = 0; i < 73; ++i)
        wide += "\u00E9";
    // 76 characters and four more: one line, although it has many more bytes.
    EXPECT_EQ(movetext(gameOf({wide}, "1-0")), "1. " + wide + " 1-0\n");
    EXPECT_EQ(movetext(gameOf({wide + "\u00E9"}, "1-0")), "1. " + wide + "\u00E9\n1-0\n");
}

TEST(PGNGame, equalityUsesEveryField) {
    const PGNGame game = gameOf({"e4"}, "*");
    std::vector<PGNGame> others(10, game);
    others[0].event = "x";
    others[1].site = "x";
    others[2].date = "x";
    others[3].round = "x";
    others[4].white = "x";
    others[5].black = "x";
    others[6].result = "x";
    others[7].timeControl = "x";
    others[8].initialFEN = "x";
    others[9].moves.clear();
    for (std::size_t i = 0; i < others.size(); ++i)
        EXPECT_NE(game, others[i]) << i;
    EXPECT_EQ(game, gameOf({"e4"}, "*"));
}

// Sets the process's time zone and puts the old one back.
class TimeZone {
  public:
    explicit TimeZone(const char* name) {
        if (const char* old = ::getenv("TZ")) old_ = old;
        ::setenv("TZ", name, 1);
    }
    ~TimeZone() {
        if (old_) {
            ::setenv("TZ", old_->c_str(), 1);
        } else {
            ::unsetenv("TZ");
        }
        ::tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

  private:
    std::optional<std::string> old_;
};

TEST(PGNGame, datesAreLocal) {
    // 2024-03-07 23:30 UTC.
    const auto moment = std::chrono::system_clock::from_time_t(1709854200);
    struct Case {
        const char* zone;
        const char* date;
    };
    for (const Case& c : {Case{"UTC0", "2024.03.07"}, Case{"XXX-14", "2024.03.08"},
                          Case{"XXX12", "2024.03.07"}, Case{"XXX23:59", "2024.03.06"}}) {
        SCOPED_TRACE(c.zone);
        const TimeZone zone(c.zone);
        EXPECT_EQ(PGNGame::dateString(moment), c.date);
    }
}

TEST(PGNGame, todayIsTheDateOfNow) {
    const std::string before = PGNGame::dateString(std::chrono::system_clock::now());
    const std::string today = PGNGame::currentDateString();
    const std::string after = PGNGame::dateString(std::chrono::system_clock::now());
    EXPECT_TRUE(today == before || today == after) << today;
    EXPECT_THAT(today, MatchesRegex("[0-9][0-9][0-9][0-9]\\.[0-9][0-9]\\.[0-9][0-9]"));
}

}  // namespace
}  // namespace orlix
