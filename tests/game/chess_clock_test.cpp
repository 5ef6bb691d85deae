#include "game/chess_clock.h"

#include <gmock/gmock.h>

#include <QLocale>
#include <limits>
#include <vector>

#include "support/fake_time_source.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;
using test::FakeTimeSource;

constexpr auto white = PieceColor::white;
constexpr auto black = PieceColor::black;
constexpr qint64 largest = std::numeric_limits<qint64>::max();

TimeControlConfig custom(qint64 minutes, qint64 incrementSeconds) {
    return {TimeControlPreset::custom, minutes, incrementSeconds, GameClock{}};
}

TimeControlConfig preset(TimeControlPreset preset) {
    TimeControlConfig config;
    config.preset = preset;
    return config;
}

class ChessClockTest : public testing::Test {
  protected:
    ChessClockTest() { listenTo(clock); }

    void listenTo(ChessClock& watched) {
        QObject::connect(&watched, &ChessClock::changed, &watched, [this] { ++changes; });
        watched.setOnTimeout([this](PieceColor color) { timeouts.push_back(color); });
    }

    /// Sets both times to `ms`, exactly, through what any caller can do.
    void setBothTo(qint64 ms) {
        const qint64 minutes = ms / 60'000 + 1;
        clock.reset(custom(minutes, 0));
        for (const PieceColor color : {white, black}) {
            clock.start(color);
            time.setNow(time.now() + std::chrono::milliseconds(minutes * 60'000 - ms) - 50ms);
            time.advance(50ms);
            clock.pause();
        }
        clock.stop();
    }

    FakeTimeSource time;
    ChessClock clock{TimeControlConfig(), time};
    int changes = 0;
    std::vector<PieceColor> timeouts;
};

TEST_F(ChessClockTest, isCreatedStoppedWithTheTimesOfItsConfiguration) {
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000);
    EXPECT_EQ(clock.blackRemainingMs(), 300'000);
    EXPECT_EQ(clock.incrementMs(), 3'000);
    EXPECT_FALSE(clock.isRunning());
    EXPECT_EQ(clock.activeColor(), std::nullopt);
    EXPECT_FALSE(clock.isUnlimited());
    EXPECT_EQ(time.pendingTimers(), 0U);
}

TEST_F(ChessClockTest, everyPresetBecomesMilliseconds) {
    for (const TimeControlPreset value : allTimeControlPresets) {
        SCOPED_TRACE(rawValue(value).data());
        const TimeControlConfig config = preset(value);
        const ChessClock fresh(config, time);
        EXPECT_EQ(fresh.whiteRemainingMs(), config.effectiveBaseSeconds() * 1000);
        EXPECT_EQ(fresh.blackRemainingMs(), config.effectiveBaseSeconds() * 1000);
        EXPECT_EQ(fresh.incrementMs(), config.effectiveIncrementSeconds() * 1000);
        EXPECT_EQ(fresh.isUnlimited(), config.isUnlimited());
    }
}

TEST_F(ChessClockTest, startRunsTheGivenSideOnly) {
    clock.start(white);
    EXPECT_TRUE(clock.isRunning());
    EXPECT_EQ(clock.activeColor(), white);
    time.advance(1000ms);
    EXPECT_EQ(clock.whiteRemainingMs(), 299'000);
    EXPECT_EQ(clock.blackRemainingMs(), 300'000);
    clock.start(black);
    time.advance(500ms);
    EXPECT_EQ(clock.whiteRemainingMs(), 299'000);
    EXPECT_EQ(clock.blackRemainingMs(), 299'500);
}

TEST_F(ChessClockTest, startingTwiceLeavesOneTimerAndChargesFromTheSecondStart) {
    clock.start(white);
    time.stall(40ms);
    clock.start(white);
    EXPECT_EQ(time.pendingTimers(), 1U);
    time.advance(50ms);
    EXPECT_EQ(clock.whiteRemainingMs(), 299'950);
}

TEST_F(ChessClockTest, ticksEveryFiftyMilliseconds) {
    clock.start(white);
    changes = 0;
    time.advance(49ms);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000);
    time.advance(1ms);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clock.whiteRemainingMs(), 299'950);
    time.advance(950ms);
    EXPECT_EQ(changes, 20);
}

TEST_F(ChessClockTest, aLateTickChargesTheTrueElapsedTimeAtOnce) {
    clock.start(white);
    time.stall(1234ms);
    changes = 0;
    time.runDue();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000 - 1234);
}

TEST_F(ChessClockTest, partsOfAMillisecondAreDroppedAtEveryTick) {
    clock.start(white);
    time.stall(std::chrono::microseconds(57'900));
    time.runDue();
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000 - 57);
    time.stall(std::chrono::microseconds(50'900));
    time.runDue();
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000 - 57 - 50);
}

TEST_F(ChessClockTest, aWallClockThatIsSetBackGivesTimeBackTruncatedTowardZero) {
    clock.start(white);
    time.setNow(time.now() - std::chrono::microseconds(2'000'900));
    time.advance(50ms);
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000 + 1950);
    time.advance(50ms);
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000 + 1900);
}

TEST_F(ChessClockTest, switchTurnCreditsTheSideThatMovedAndHandsTheClockOver) {
    clock.start(white);
    time.advance(1000ms);
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), 302'000);
    EXPECT_EQ(clock.blackRemainingMs(), 300'000);
    EXPECT_EQ(clock.activeColor(), black);
    EXPECT_TRUE(clock.isRunning());
    time.advance(1000ms);
    EXPECT_EQ(clock.whiteRemainingMs(), 302'000);
    EXPECT_EQ(clock.blackRemainingMs(), 299'000);
    clock.switchTurn(white);
    EXPECT_EQ(clock.blackRemainingMs(), 302'000);
}

TEST_F(ChessClockTest, switchTurnDropsTheTimeSinceTheLastTick) {
    clock.start(white);
    time.advance(99ms);
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000 - 50 + 3'000);
    time.advance(1ms);
    EXPECT_EQ(clock.blackRemainingMs(), 300'000 - 1);
}

TEST_F(ChessClockTest, switchTurnToTheSameSideCreditsItAllTheSame) {
    clock.start(white);
    clock.switchTurn(white);
    EXPECT_EQ(clock.whiteRemainingMs(), 303'000);
    EXPECT_EQ(clock.activeColor(), white);
}

TEST_F(ChessClockTest, switchTurnCreditsNobodyWhenNoSideIsActive) {
    clock.reset(TimeControlConfig());
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000);
    EXPECT_EQ(clock.blackRemainingMs(), 300'000);
    EXPECT_EQ(clock.activeColor(), black);
    EXPECT_FALSE(clock.isRunning());
    clock.start(white);
    clock.stop();
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), 300'000);
}

TEST_F(ChessClockTest, switchTurnOnAPausedClockCreditsAndStaysPaused) {
    clock.start(white);
    clock.pause();
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), 303'000);
    EXPECT_EQ(clock.activeColor(), black);
    EXPECT_FALSE(clock.isRunning());
    time.advance(5000ms);
    EXPECT_EQ(clock.blackRemainingMs(), 300'000);
}

TEST_F(ChessClockTest, aNegativeIncrementIsTakenAtEverySwitch) {
    clock.reset(custom(1, -20));
    clock.start(white);
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), 40'000);
    clock.switchTurn(white);
    clock.switchTurn(black);
    clock.switchTurn(white);
    clock.switchTurn(black);
    clock.switchTurn(white);
    EXPECT_EQ(clock.whiteRemainingMs(), 0);
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), -20'000);
    EXPECT_EQ(clock.formattedTime(white), QLatin1String("0:00.0"));
}

TEST_F(ChessClockTest, pauseKeepsTheActiveSideAndChargesNothing) {
    clock.start(black);
    time.advance(100ms);
    clock.pause();
    EXPECT_FALSE(clock.isRunning());
    EXPECT_EQ(clock.activeColor(), black);
    EXPECT_EQ(time.pendingTimers(), 0U);
    time.advance(60'000ms);
    EXPECT_EQ(clock.blackRemainingMs(), 299'900);
}

TEST_F(ChessClockTest, resumeGoesOnWithTheSameSideAndDoesNotChargeThePause) {
    clock.start(black);
    time.advance(100ms);
    clock.pause();
    time.advance(60'000ms);
    clock.resume();
    EXPECT_TRUE(clock.isRunning());
    EXPECT_EQ(clock.activeColor(), black);
    time.advance(100ms);
    EXPECT_EQ(clock.blackRemainingMs(), 299'800);
}

TEST_F(ChessClockTest, resumeDoesNothingWithoutAnActiveSide) {
    clock.resume();
    EXPECT_FALSE(clock.isRunning());
    EXPECT_EQ(clock.activeColor(), std::nullopt);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(time.pendingTimers(), 0U);
}

TEST_F(ChessClockTest, stopClearsTheActiveSideAndKeepsTheTimes) {
    clock.start(white);
    time.advance(1000ms);
    clock.stop();
    EXPECT_FALSE(clock.isRunning());
    EXPECT_EQ(clock.activeColor(), std::nullopt);
    EXPECT_EQ(clock.whiteRemainingMs(), 299'000);
    EXPECT_EQ(time.pendingTimers(), 0U);
    time.advance(1000ms);
    EXPECT_EQ(clock.whiteRemainingMs(), 299'000);
}

TEST_F(ChessClockTest, resetStopsAndTakesOverEverythingFromTheConfiguration) {
    clock.start(white);
    time.advance(1000ms);
    clock.reset(preset(TimeControlPreset::rapid15_10));
    EXPECT_FALSE(clock.isRunning());
    EXPECT_EQ(clock.activeColor(), std::nullopt);
    EXPECT_EQ(clock.whiteRemainingMs(), 900'000);
    EXPECT_EQ(clock.blackRemainingMs(), 900'000);
    EXPECT_EQ(clock.incrementMs(), 10'000);
    EXPECT_EQ(time.pendingTimers(), 0U);
    clock.reset(preset(TimeControlPreset::unlimited));
    EXPECT_TRUE(clock.isUnlimited());
    clock.reset(preset(TimeControlPreset::blitz3_0));
    EXPECT_FALSE(clock.isUnlimited());
}

TEST_F(ChessClockTest, timeoutStopsTheClockAndIsReportedOnce) {
    for (const PieceColor color : {white, black}) {
        clock.reset(preset(TimeControlPreset::bullet1_0));
        timeouts.clear();
        clock.start(color);
        time.advance(59'950ms);
        EXPECT_TRUE(timeouts.empty());
        EXPECT_EQ(clock.remainingMs(color), 50);
        time.advance(50ms);
        EXPECT_THAT(timeouts, testing::ElementsAre(color));
        EXPECT_EQ(clock.remainingMs(color), 0);
        EXPECT_EQ(clock.remainingMs(opponent(color)), 60'000);
        EXPECT_FALSE(clock.isRunning());
        EXPECT_EQ(clock.activeColor(), std::nullopt);
        EXPECT_EQ(time.pendingTimers(), 0U);
        time.advance(10'000ms);
        EXPECT_EQ(timeouts.size(), 1U);
    }
}

TEST_F(ChessClockTest, aVeryLateTickLeavesZeroAndNotLess) {
    clock.start(white);
    time.stall(24h);
    time.runDue();
    EXPECT_EQ(clock.whiteRemainingMs(), 0);
    EXPECT_EQ(timeouts.size(), 1U);
}

TEST_F(ChessClockTest, aClockOfZeroReportsItsTimeoutAtTheFirstTick) {
    clock.reset(custom(0, 0));
    clock.start(black);
    EXPECT_TRUE(timeouts.empty());
    time.advance(50ms);
    EXPECT_THAT(timeouts, testing::ElementsAre(black));
}

TEST_F(ChessClockTest, aTimeoutWithoutAHandlerStopsTheClock) {
    clock.setOnTimeout({});
    clock.reset(custom(0, 0));
    clock.start(white);
    time.advance(50ms);
    EXPECT_FALSE(clock.isRunning());
}

TEST_F(ChessClockTest, theTimeoutHandlerMayStartTheClockAgain) {
    clock.reset(custom(0, 0));
    clock.setOnTimeout([this](PieceColor color) {
        timeouts.push_back(color);
        if (timeouts.size() < 3) clock.start(opponent(color));
    });
    clock.start(white);
    time.advance(1000ms);
    EXPECT_THAT(timeouts, testing::ElementsAre(white, black, white));
}

TEST_F(ChessClockTest, anUnlimitedClockRunsInNameOnly) {
    clock.reset(preset(TimeControlPreset::unlimited));
    clock.start(white);
    EXPECT_TRUE(clock.isRunning());
    EXPECT_EQ(clock.activeColor(), white);
    EXPECT_EQ(time.pendingTimers(), 0U);
    time.advance(3'600'000ms);
    clock.switchTurn(black);
    EXPECT_EQ(clock.activeColor(), black);
    EXPECT_EQ(clock.whiteRemainingMs(), 0);
    EXPECT_EQ(clock.blackRemainingMs(), 0);
    EXPECT_TRUE(timeouts.empty());
    EXPECT_EQ(clock.formattedTime(white), QLatin1String("--:--"));
    EXPECT_EQ(clock.formattedTime(black), QLatin1String("--:--"));
}

TEST_F(ChessClockTest, everyOperationAnnouncesOnceAndAfterItsLastAssignment) {
    bool isConsistent = true;
    QObject::connect(&clock, &ChessClock::changed, &clock, [&] {
        if (clock.isRunning() && !clock.activeColor()) isConsistent = false;
        if (!clock.isRunning() && time.pendingTimers() != 0) isConsistent = false;
    });
    const auto announcements = [this](auto operation) {
        changes = 0;
        operation();
        return changes;
    };
    EXPECT_EQ(announcements([&] { clock.start(white); }), 1);
    EXPECT_EQ(announcements([&] { clock.switchTurn(black); }), 1);
    EXPECT_EQ(announcements([&] { clock.pause(); }), 1);
    EXPECT_EQ(announcements([&] { clock.resume(); }), 1);
    EXPECT_EQ(announcements([&] { clock.stop(); }), 1);
    EXPECT_EQ(announcements([&] { clock.reset(custom(0, 0)); }), 1);
    clock.start(white);
    EXPECT_EQ(announcements([&] { time.advance(50ms); }), 1);
    EXPECT_EQ(timeouts.size(), 1U);
    EXPECT_TRUE(isConsistent);
}

TEST_F(ChessClockTest, destroyingARunningClockTakesItsTimerAlong) {
    auto other = std::make_unique<ChessClock>(TimeControlConfig(), time);
    other->start(white);
    EXPECT_EQ(time.pendingTimers(), 1U);
    other.reset();
    EXPECT_EQ(time.pendingTimers(), 0U);
    time.advance(1000ms);
}

TEST_F(ChessClockTest, remainingTimeIsFormattedForTheBanners) {
    struct Row {
        qint64 ms;
        const char* text;
    };
    const Row rows[] = {
        {300'000, "5:00"},      {727'000, "12:07"}, {727'999, "12:07"}, {5'400'000, "90:00"},
        {60'000, "1:00"},       {59'999, "0:59"},   {11'000, "0:11"},   {10'000, "0:10"},
        {9'999, "0:09.9"},      {9'700, "0:09.7"},  {9'699, "0:09.6"},  {1'000, "0:01.0"},
        {999, "0:00.9"},        {100, "0:00.1"},    {99, "0:00.0"},     {1, "0:00.0"},
        {36'000'000, "600:00"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        setBothTo(row.ms);
        ASSERT_EQ(clock.whiteRemainingMs(), row.ms);
        ASSERT_EQ(clock.blackRemainingMs(), row.ms);
        EXPECT_EQ(clock.formattedTime(white), QLatin1String(row.text));
        EXPECT_EQ(clock.formattedTime(black), QLatin1String(row.text));
    }
}

TEST_F(ChessClockTest, negativeTimesAreFormattedAsZero) {
    for (const qint64 increment : {-1, -2, -60, -100'000}) {
        clock.reset(custom(0, increment));
        clock.start(white);
        clock.switchTurn(black);
        EXPECT_EQ(clock.whiteRemainingMs(), increment * 1000);
        EXPECT_EQ(clock.formattedTime(white), QLatin1String("0:00.0"));
    }
    // Rests below a second, of either side of -100 ms.
    clock.reset(custom(1, -60));
    clock.start(white);
    time.advance(50ms);
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), -50);
    EXPECT_EQ(clock.formattedTime(white), QLatin1String("0:00.0"));
    clock.switchTurn(white);
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), -60'050);
    EXPECT_EQ(clock.formattedTime(white), QLatin1String("0:00.0"));
    clock.reset(custom(1, -60));
    clock.start(white);
    time.advance(950ms);
    clock.switchTurn(black);
    EXPECT_EQ(clock.whiteRemainingMs(), -950);
    EXPECT_EQ(clock.formattedTime(white), QLatin1String("0:00.0"));
}

TEST_F(ChessClockTest, formattingDoesNotDependOnTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    setBothTo(9'700);
    EXPECT_EQ(clock.formattedTime(white), QLatin1String("0:09.7"));
    QLocale::setDefault(before);
}

using ChessClockDeathTest = ChessClockTest;

TEST_F(ChessClockDeathTest, timesThatDoNotFitMillisecondsEndTheProgram) {
    const qint64 minutes = largest / 60 / 1000;
    EXPECT_DEATH(ChessClock(custom(minutes + 1, 0), time), "overflow");
    EXPECT_DEATH(clock.reset(custom(minutes + 1, 0)), "overflow");
    EXPECT_DEATH(clock.reset(custom(1, largest / 1000 + 1)), "overflow");
    clock.reset(custom(minutes, largest / 1000));
    EXPECT_EQ(clock.whiteRemainingMs(), minutes * 60'000);
    EXPECT_EQ(clock.incrementMs(), largest / 1000 * 1000);
}

TEST_F(ChessClockDeathTest, anIncrementThatDoesNotFitEndsTheProgram) {
    clock.reset(custom(largest / 60'000, largest / 1000));
    clock.start(white);
    EXPECT_DEATH(clock.switchTurn(black), "overflow");
}

TEST_F(ChessClockDeathTest, elapsedTimeThatDoesNotFitEndsTheProgram) {
    time.setNow(FakeTimeSource::Instant::min());
    clock.start(white);
    time.setNow(FakeTimeSource::Instant::max() - 1h);
    EXPECT_DEATH(time.advance(50ms), "overflow");
}

}  // namespace
}  // namespace orlix
