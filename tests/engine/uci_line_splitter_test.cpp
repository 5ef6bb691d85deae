#include "engine/uci_line_splitter.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace orlix {
namespace {

using Lines = std::vector<std::string>;
using namespace std::string_view_literals;

constexpr std::size_t limit = UciLineSplitter::longestLine;

class UciLineSplitterTest : public ::testing::Test {
  protected:
    Lines feed(std::string_view chunk) {
        Lines lines;
        splitter_.feed(chunk, [&](std::string_view line) {
            lines.emplace_back(line);
            return true;
        });
        return lines;
    }

    UciLineSplitter splitter_;
};

TEST_F(UciLineSplitterTest, handsOverEveryCompleteLine) {
    EXPECT_EQ(feed("one\ntwo\nthr"), (Lines{"one", "two"}));
    EXPECT_EQ(feed("ee"), Lines());
    EXPECT_EQ(feed("\n"), Lines{"three"});
}

TEST_F(UciLineSplitterTest, putsALineTogetherFromItsReads) {
    EXPECT_EQ(feed("uci"), Lines());
    EXPECT_EQ(feed("ok\n"), Lines{"uciok"});
}

TEST_F(UciLineSplitterTest, trimsWhiteSpaceAndSkipsEmptyLines) {
    EXPECT_EQ(feed("  readyok \t\r\n\r\n\n \n\xc2\xa0\xe2\x80\x83x y\xe2\x80\xa8\n"),
              (Lines{"readyok", "x y"}));
    EXPECT_EQ(feed("a\r"), Lines());
    EXPECT_EQ(feed("\n"), Lines{"a"});
}

TEST_F(UciLineSplitterTest, aCarriageReturnAloneEndsNothing) {
    EXPECT_EQ(feed("a\rb\n"), Lines{"a\rb"});
}

TEST_F(UciLineSplitterTest, keepsNulAndControlCharacters) {
    EXPECT_EQ(feed("a\0b\x01\x7f\n"sv), Lines{std::string("a\0b\x01\x7f", 5)});
}

TEST_F(UciLineSplitterTest, dropsAReadThatIsNotUtf8AsAWhole) {
    for (const std::string_view bad : {"\xff"sv, "\xc3"sv, "\x80"sv, "\xc0\xaf"sv, "\xed\xa0\x80"sv,
                                       "\xf4\x90\x80\x80"sv, "\xf0\x9f\x98"sv}) {
        EXPECT_EQ(feed("lost" + std::string(bad) + "\nalso lost\n"), Lines());
        EXPECT_EQ(feed("kept\n"), Lines{"kept"});
    }
    EXPECT_EQ(feed("beginning "), Lines());
    EXPECT_EQ(feed("\xff\n"), Lines());
    EXPECT_EQ(feed("end\n"), Lines{"beginning end"}) << "the newline went with the bad read";
}

TEST_F(UciLineSplitterTest, aCharacterSplitOverTwoReadsCostsBoth) {
    EXPECT_EQ(feed("one\ntwo \xe2\x99"), Lines());
    EXPECT_EQ(feed("\x9e\nthree\n"), Lines());
    EXPECT_EQ(feed("four\n"), Lines{"four"});
}

TEST_F(UciLineSplitterTest, handsOverALineOfTheGreatestLength) {
    const std::string line(limit, 'x');
    EXPECT_EQ(feed(line + "\n"), Lines{line});
    EXPECT_EQ(feed(line), Lines());
    EXPECT_EQ(feed("\n"), Lines{line});
    EXPECT_EQ(feed(line.substr(1)), Lines());
    EXPECT_EQ(feed("y\nnext\n"), (Lines{line.substr(1) + "y", "next"}));
}

TEST_F(UciLineSplitterTest, dropsALongerLineThroughItsNewline) {
    const std::string line(limit, 'x');
    EXPECT_EQ(feed(line + "x\nnext\n"), Lines{"next"}) << "in one read";
    EXPECT_EQ(feed(line), Lines());
    EXPECT_EQ(feed("x\nnext\n"), Lines{"next"}) << "over by its last byte";
    EXPECT_EQ(feed(line), Lines());
    EXPECT_EQ(feed("x"), Lines());
    EXPECT_EQ(feed("tail"), Lines());
    EXPECT_EQ(feed("\xff\n"), Lines()) << "a newline in a bad read ends nothing";
    EXPECT_EQ(feed("tail\nnext\n"), Lines{"next"});
    EXPECT_EQ(feed("bestmove e2e4\n"), Lines{"bestmove e2e4"});
}

TEST_F(UciLineSplitterTest, stopsWhenItsTakerHasEnough) {
    Lines lines;
    splitter_.feed("one\ntwo\nthree\n", [&](std::string_view line) {
        lines.emplace_back(line);
        return lines.size() < 2;
    });
    EXPECT_EQ(lines, (Lines{"one", "two"}));
}

TEST_F(UciLineSplitterTest, theLinesDoNotDependOnWhereTheReadsEnd) {
    std::string text;
    Lines expected;
    for (int i = 0; i < 500; ++i) {
        expected.push_back("info depth " + std::to_string(i) +
                           std::string(static_cast<std::size_t>(i % 97), 'p'));
        text += expected.back() + (i % 3 == 0 ? "\r\n" : "\n");
    }
    std::mt19937 random(20);
    for (int round = 0; round < 50; ++round) {
        UciLineSplitter splitter;
        Lines lines;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t size = std::min<std::size_t>(1 + random() % 300, text.size() - at);
            splitter.feed(std::string_view(text).substr(at, size), [&](std::string_view line) {
                lines.emplace_back(line);
                return true;
            });
            at += size;
        }
        ASSERT_EQ(lines, expected);
    }
}

}  // namespace
}  // namespace orlix
