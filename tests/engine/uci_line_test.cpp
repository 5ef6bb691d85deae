#include "engine/uci_line.h"

#include <gtest/gtest.h>

#include <limits>

namespace orlix {
namespace {

QStringList moves(const char* text) {
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

EngineEvaluation full() {
    EngineEvaluation evaluation;
    evaluation.depth = 5;
    evaluation.scoreCp = 31;
    evaluation.nodes = 100;
    evaluation.nps = 200;
    evaluation.timeMs = 300;
    evaluation.pv = moves("d2d4 d7d5");
    return evaluation;
}

EngineEvaluation merged(std::string_view line, EngineEvaluation evaluation = full()) {
    mergeInfoLine(line, evaluation);
    return evaluation;
}

TEST(UciLine, isRecognisedByItsExactBeginning) {
    const struct {
        const char* line;
        UciLineKind kind;
    } cases[] = {
        {"uciok", UciLineKind::uciOk},
        {"uciok 1", UciLineKind::other},
        {"UCIOK", UciLineKind::other},
        {"readyok", UciLineKind::readyOk},
        {"readyok.", UciLineKind::other},
        {"info depth 1", UciLineKind::info},
        {"info  depth 1", UciLineKind::info},
        {"info", UciLineKind::other},
        {"info\tdepth 1", UciLineKind::other},
        {"information", UciLineKind::other},
        {"bestmove e2e4", UciLineKind::bestMove},
        {"bestmove", UciLineKind::other},
        {"Bestmove e2e4", UciLineKind::other},
        {"id name Some engine", UciLineKind::other},
        {"option name Hash type spin default 16", UciLineKind::other},
        {"", UciLineKind::other},
    };
    for (const auto& [line, kind] : cases)
        EXPECT_EQ(uciLineKind(line), kind) << line;
}

TEST(UciLine, mergesEveryFieldOfAnInfoLine) {
    const EngineEvaluation result = merged(
        "info depth 20 seldepth 31 multipv 1 score cp -44 nodes 123456 nps 1500000 hashfull 12 "
        "tbhits 0 time 82 pv e2e4 e7e5 g1f3",
        {});
    EngineEvaluation expected;
    expected.depth = 20;
    expected.scoreCp = -44;
    expected.nodes = 123456;
    expected.nps = 1500000;
    expected.timeMs = 82;
    expected.pv = moves("e2e4 e7e5 g1f3");
    EXPECT_EQ(result, expected);
}

TEST(UciLine, whatALineDoesNotSayStays) {
    EngineEvaluation expected = full();
    expected.nodes = 5000;
    EXPECT_EQ(merged("info nodes 5000"), expected);
    EXPECT_EQ(merged("info string hello depth"), full());
    EXPECT_EQ(merged("info currmove e2e4 currmovenumber 3"), full());
    EXPECT_EQ(merged("info "), full());
}

TEST(UciLine, mateAndCentipawnsReplaceEachOther) {
    const EngineEvaluation mate = merged("info depth 12 score mate -3 pv", {});
    EXPECT_EQ(mate.depth, 12);
    EXPECT_EQ(mate.mateIn, -3);
    EXPECT_EQ(mate.scoreCp, std::nullopt);
    EXPECT_TRUE(mate.pv.isEmpty());
    const EngineEvaluation centipawns = merged("info score cp 7", mate);
    EXPECT_EQ(centipawns.scoreCp, 7);
    EXPECT_EQ(centipawns.mateIn, std::nullopt);
    EXPECT_EQ(merged("info score mate 0").mateIn, 0);
}

TEST(UciLine, readsScoresThatLackAPart) {
    const struct {
        const char* name;
        const char* line;
        std::optional<qint64> scoreCp;
        qint64 depth;
    } cases[] = {
        {"nothing after score", "info score", 31, 5},
        {"one token after score", "info score cp", 31, 5},
        {"one token after score is read as a keyword", "info score depth", 31, 5},
        {"the kind and the value are used up", "info score cp depth 9", 31, 5},
        {"an unknown kind uses up its value", "info score depth 9", 31, 5},
        {"an unreadable value", "info score cp x depth 9", 31, 9},
        {"a bound is passed over", "info score cp 12 lowerbound depth 9", 12, 9},
        {"a mate without a number", "info score mate x", 31, 5},
        {"an empty token is a kind", "info score  12", 31, 5},
        {"an empty token is a value", "info score cp  12 depth 9", 31, 9},
        {"the last score counts", "info score cp 1 score cp 2", 2, 5},
    };
    for (const auto& [name, line, scoreCp, depth] : cases) {
        const EngineEvaluation result = merged(line);
        EXPECT_EQ(result.scoreCp, scoreCp) << name;
        EXPECT_EQ(result.depth, depth) << name;
        EXPECT_EQ(result.mateIn, std::nullopt) << name;
    }
}

TEST(UciLine, aValueThatIsNoNumberIsReadAsAKeyword) {
    EXPECT_EQ(merged("info depth nodes 7").nodes, 7);
    EXPECT_EQ(merged("info depth nodes 7").depth, 5);
    EXPECT_EQ(merged("info nodes depth 7").depth, 7);
    EXPECT_EQ(merged("info nps time 7").timeMs, 7);
    EXPECT_EQ(merged("info time nps 7").nps, 7);
    EXPECT_EQ(merged("info time pv e2e4").pv, moves("e2e4"));
    EXPECT_EQ(merged("info depth  9").depth, 5) << "an empty token between";
    EXPECT_EQ(merged("info depth").depth, 5);
}

TEST(UciLine, aNumberTokenIsUsedUpByItsKeyword) {
    // Were the value looked at again, nothing would change; a keyword's value that is a keyword's name does.
    EXPECT_EQ(merged("info depth 3 depth 4").depth, 4);
    EXPECT_EQ(merged("info hashfull depth 8").depth, 8) << "the value of an unknown token is a token";
}

TEST(UciLine, acceptsExactlyTheNumbersOfSixtyFourBits) {
    const struct {
        const char* text;
        std::optional<qint64> value;
    } cases[] = {
        {"0", 0},
        {"+5", 5},
        {"-5", -5},
        {"007", 7},
        {"9223372036854775807", std::numeric_limits<qint64>::max()},
        {"-9223372036854775808", std::numeric_limits<qint64>::min()},
        {"9223372036854775808", std::nullopt},
        {"-9223372036854775809", std::nullopt},
        {"1.5", std::nullopt},
        {"1e3", std::nullopt},
        {"0x10", std::nullopt},
        {"-", std::nullopt},
        {"+", std::nullopt},
        {"--1", std::nullopt},
        {"\xd9\xa3", std::nullopt},
        {"5\t", std::nullopt},
    };
    for (const auto& [text, value] : cases) {
        EngineEvaluation evaluation;
        mergeInfoLine(std::string("info nodes ") + text, evaluation);
        EXPECT_EQ(evaluation.nodes, value) << text;
    }
}

TEST(UciLine, theVariationTakesTheRestOfTheLine) {
    EXPECT_EQ(merged("info pv e2e4  e7e5   depth 9").pv, moves("e2e4 e7e5 depth 9"));
    EXPECT_EQ(merged("info pv e2e4 depth 9").depth, 5);
    EXPECT_TRUE(merged("info pv").pv.isEmpty());
    EXPECT_EQ(merged("info pv \xe2\x99\x9e").pv, QStringList(QStringLiteral("♞")));
}

TEST(UciLine, controlCharactersArePartOfTheirToken) {
    using namespace std::string_view_literals;
    const EngineEvaluation result = merged("info depth 7\0 nodes\x01 4 nps 9\x1b[31m time 8"sv);
    EXPECT_EQ(result.depth, 5);
    EXPECT_EQ(result.nodes, 100);
    EXPECT_EQ(result.nps, 200);
    EXPECT_EQ(result.timeMs, 8);
}

TEST(UciLine, theBestMoveIsTheSecondTokenAsItStands) {
    const struct {
        const char* line;
        std::optional<std::string_view> move;
    } cases[] = {
        {"bestmove e2e4", "e2e4"},   {"bestmove e2e4 ponder e7e5", "e2e4"},
        {"bestmove e7e8Q", "e7e8Q"}, {"bestmove (none)", "(none)"},
        {"bestmove 0000", "0000"},   {"bestmove  e2e4", ""},
        {"bestmove", std::nullopt},
    };
    for (const auto& [line, move] : cases)
        EXPECT_EQ(bestMoveFromLine(line), move) << line;
}

}  // namespace
}  // namespace orlix
