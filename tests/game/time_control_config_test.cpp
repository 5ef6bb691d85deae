#include "game/time_control_config.h"

#include <gmock/gmock.h>

#include <limits>
#include <set>

#include "game/game_mode.h"

namespace orlix {
namespace {

constexpr qint64 largest = std::numeric_limits<qint64>::max();

TEST(GameMode, casesStandInMenuOrderWithTheirStoredNamesAndTextKeys) {
    struct Row {
        GameMode mode;
        const char* raw;
        const char* key;
    };
    const Row rows[] = {
        {GameMode::humanVsEngine, "human_vs_engine", "mode_human_vs_engine"},
        {GameMode::engineVsEngine, "engine_vs_engine", "mode_engine_vs_engine"},
        {GameMode::humanVsHuman, "human_vs_human", "mode_human_vs_human"},
    };
    ASSERT_EQ(allGameModes.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(allGameModes[i], rows[i].mode) << rows[i].raw;
        EXPECT_EQ(rawValue(rows[i].mode), QLatin1String(rows[i].raw));
        EXPECT_EQ(locKey(rows[i].mode), QLatin1String(rows[i].key));
        EXPECT_EQ(gameModeFromRawValue(QLatin1String(rows[i].raw).toString()), rows[i].mode);
    }
    EXPECT_EQ(gameModeFromRawValue(u"human"), std::nullopt);
    EXPECT_EQ(gameModeFromRawValue(u""), std::nullopt);
    EXPECT_EQ(gameModeFromRawValue(u"Human_vs_engine"), std::nullopt);
}

TEST(PlayerColorChoice, casesStandInMenuOrderWithTheirStoredNamesAndTextKeys) {
    struct Row {
        PlayerColorChoice choice;
        const char* raw;
        const char* key;
    };
    const Row rows[] = {
        {PlayerColorChoice::white, "white", "color_white"},
        {PlayerColorChoice::black, "black", "color_black"},
        {PlayerColorChoice::random, "random", "color_random"},
    };
    ASSERT_EQ(allPlayerColorChoices.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(allPlayerColorChoices[i], rows[i].choice) << rows[i].raw;
        EXPECT_EQ(rawValue(rows[i].choice), QLatin1String(rows[i].raw));
        EXPECT_EQ(locKey(rows[i].choice), QLatin1String(rows[i].key));
        EXPECT_EQ(playerColorChoiceFromRawValue(QLatin1String(rows[i].raw).toString()), rows[i].choice);
    }
    EXPECT_EQ(playerColorChoiceFromRawValue(u"White"), std::nullopt);
}

TEST(PlayerColorChoice, whiteAndBlackResolveToThemselvesAndRandomToBothAboutEquallyOften) {
    EXPECT_EQ(resolve(PlayerColorChoice::white), PieceColor::white);
    EXPECT_EQ(resolve(PlayerColorChoice::black), PieceColor::black);
    constexpr int draws = 4000;
    int whites = 0;
    for (int i = 0; i < draws; ++i) {
        if (resolve(PlayerColorChoice::random) == PieceColor::white) ++whites;
    }
    // Fifteen standard deviations either way: a fair draw never gets there.
    EXPECT_GT(whites, draws / 2 - 475);
    EXPECT_LT(whites, draws / 2 + 475);
}

struct PresetCase {
    TimeControlPreset preset;
    const char* raw;
    qint64 baseMinutes;
    qint64 incrementSeconds;
    qint64 effectiveBase;
    qint64 effectiveIncrement;
    const char* pgn;
};

// The effective times of `custom` come from the configuration's defaults, 5 minutes and 3 seconds.
constexpr PresetCase presetCases[] = {
    {TimeControlPreset::bullet1_0, "bullet_1_0", 1, 0, 60, 0, "60"},
    {TimeControlPreset::bullet2_1, "bullet_2_1", 2, 1, 120, 1, "120+1"},
    {TimeControlPreset::blitz3_0, "blitz_3_0", 3, 0, 180, 0, "180"},
    {TimeControlPreset::blitz3_2, "blitz_3_2", 3, 2, 180, 2, "180+2"},
    {TimeControlPreset::blitz5_0, "blitz_5_0", 5, 0, 300, 0, "300"},
    {TimeControlPreset::blitz5_3, "blitz_5_3", 5, 3, 300, 3, "300+3"},
    {TimeControlPreset::rapid10_0, "rapid_10_0", 10, 0, 600, 0, "600"},
    {TimeControlPreset::rapid15_10, "rapid_15_10", 15, 10, 900, 10, "900+10"},
    {TimeControlPreset::classical30_0, "classical_30_0", 30, 0, 1800, 0, "1800"},
    {TimeControlPreset::custom, "custom", 5, 0, 300, 3, "300+3"},
    {TimeControlPreset::unlimited, "unlimited", 0, 0, 0, 0, "-"},
};

TEST(TimeControlPreset, everyPresetHasItsPlaceNameKeyAndTimes) {
    ASSERT_EQ(allTimeControlPresets.size(), std::size(presetCases));
    for (std::size_t i = 0; i < std::size(presetCases); ++i) {
        const PresetCase& row = presetCases[i];
        SCOPED_TRACE(row.raw);
        EXPECT_EQ(allTimeControlPresets[i], row.preset);
        EXPECT_EQ(rawValue(row.preset), QLatin1String(row.raw));
        EXPECT_EQ(locKey(row.preset), QLatin1String("time_") + QLatin1String(row.raw));
        EXPECT_EQ(baseMinutes(row.preset), row.baseMinutes);
        EXPECT_EQ(incrementSeconds(row.preset), row.incrementSeconds);
        EXPECT_EQ(isUnlimited(row.preset), row.preset == TimeControlPreset::unlimited);
        EXPECT_EQ(timeControlPresetFromRawValue(QLatin1String(row.raw).toString()), row.preset);
    }
}

TEST(TimeControlPreset, anUnknownStoredNameGivesNoPreset) {
    for (const QStringView text : {u"", u"blitz", u"blitz5_3", u"Blitz_5_3", u"blitz_5_3 ", u"time_custom"}) {
        EXPECT_EQ(timeControlPresetFromRawValue(text), std::nullopt) << text.toString().toStdString();
    }
}

TEST(TimeControlConfig, startsAsBlitzFivePlusThreeOnTheGameClock) {
    const TimeControlConfig config;
    EXPECT_EQ(config.preset, TimeControlPreset::blitz5_3);
    EXPECT_EQ(config.customBaseMinutes, 5);
    EXPECT_EQ(config.customIncrementSeconds, 3);
    EXPECT_EQ(config.engineThinkingMode, EngineThinkingMode(GameClock{}));
}

TEST(TimeControlConfig, everyPresetHasItsEffectiveTimesAndPgnTag) {
    for (const PresetCase& row : presetCases) {
        SCOPED_TRACE(row.raw);
        TimeControlConfig config;
        config.preset = row.preset;
        EXPECT_EQ(config.effectiveBaseSeconds(), row.effectiveBase);
        EXPECT_EQ(config.effectiveIncrementSeconds(), row.effectiveIncrement);
        EXPECT_EQ(config.pgnString(), QLatin1String(row.pgn));
        EXPECT_EQ(config.isUnlimited(), row.preset == TimeControlPreset::unlimited);
    }
}

TEST(TimeControlConfig, customTimesAreTakenAsTheyStand) {
    struct Row {
        qint64 minutes;
        qint64 increment;
        qint64 base;
        const char* pgn;
    };
    const Row rows[] = {
        {7, 0, 420, "420"}, {7, 1, 420, "420+1"},    {7, -4, 420, "420"},
        {0, 0, 0, "0"},     {-2, 5, -120, "-120+5"}, {90, 30, 5400, "5400+30"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pgn);
        const TimeControlConfig config{TimeControlPreset::custom, row.minutes, row.increment, GameClock{}};
        EXPECT_EQ(config.effectiveBaseSeconds(), row.base);
        EXPECT_EQ(config.effectiveIncrementSeconds(), row.increment);
        EXPECT_EQ(config.pgnString(), QLatin1String(row.pgn));
    }
}

TEST(TimeControlConfig, customTimesDoNotShowUnderAnotherPreset) {
    const TimeControlConfig config{TimeControlPreset::bullet1_0, largest, largest, GameClock{}};
    EXPECT_EQ(config.effectiveBaseSeconds(), 60);
    EXPECT_EQ(config.effectiveIncrementSeconds(), 0);
    EXPECT_EQ(config.pgnString(), QLatin1String("60"));
}

TEST(TimeControlConfig, isEqualFieldByField) {
    const TimeControlConfig config;
    const auto differs = [&config](auto change) {
        TimeControlConfig other = config;
        change(other);
        return !(other == config);
    };
    EXPECT_EQ(config, TimeControlConfig());
    EXPECT_TRUE(differs([](TimeControlConfig& other) { other.preset = TimeControlPreset::blitz5_0; }));
    EXPECT_TRUE(differs([](TimeControlConfig& other) { other.customBaseMinutes = 6; }));
    EXPECT_TRUE(differs([](TimeControlConfig& other) { other.customIncrementSeconds = 4; }));
    EXPECT_TRUE(differs([](TimeControlConfig& other) { other.engineThinkingMode = FixedDepth{8}; }));
}

TEST(EngineThinkingMode, comparesCaseAndPayload) {
    EXPECT_EQ(EngineThinkingMode(FixedMoveTime{2.5}), EngineThinkingMode(FixedMoveTime{2.5}));
    EXPECT_NE(EngineThinkingMode(FixedMoveTime{2.5}), EngineThinkingMode(FixedMoveTime{2.0}));
    EXPECT_EQ(EngineThinkingMode(FixedDepth{12}), EngineThinkingMode(FixedDepth{12}));
    EXPECT_NE(EngineThinkingMode(FixedDepth{12}), EngineThinkingMode(FixedDepth{13}));
    EXPECT_NE(EngineThinkingMode(FixedDepth{2}), EngineThinkingMode(FixedMoveTime{2}));
    EXPECT_EQ(EngineThinkingMode(GameClock{}), EngineThinkingMode(GameClock{}));
    EXPECT_NE(EngineThinkingMode(GameClock{}), EngineThinkingMode(FixedDepth{0}));
}

TEST(TimeControlConfigDeathTest, anOverflowingProductOfMinutesEndsTheProgram) {
    const TimeControlConfig config{TimeControlPreset::custom, largest / 60 + 1, 0, GameClock{}};
    EXPECT_DEATH(config.effectiveBaseSeconds(), "overflow");
    const TimeControlConfig edge{TimeControlPreset::custom, largest / 60, 0, GameClock{}};
    EXPECT_EQ(edge.effectiveBaseSeconds(), largest / 60 * 60);
}

}  // namespace
}  // namespace orlix
