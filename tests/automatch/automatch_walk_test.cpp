// Long random walks through everything that a person, the engines and the time can do to a series, against
// the model. The seeds are fixed, so a failure can be run again.
#include <random>

#include "automatch/modelled_series.h"

namespace orlix::test {
namespace {

using Command = ModelledSeries::Command;

class AutomatchWalkTest : public testing::TestWithParam<unsigned> {
  protected:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool chance(int percent) { return pick(100) < percent; }

    void changeSettings() {
        static const double pauses[] = {1.5, 1.0, 0.2, 0.5, 0, -1, 0.1, 3};
        static const TimeControlPreset presets[] = {TimeControlPreset::bullet1_0, TimeControlPreset::custom,
                                                    TimeControlPreset::unlimited};
        switch (pick(4)) {
            case 0: return series.setPause(pauses[pick(std::size(pauses))]);
            case 1: return series.setTotal(pick(6));
            case 2: return series.setAlternates(chance(70));
            default: return series.setTimeControl(presets[pick(std::size(presets))]);
        }
    }

    void playSomething() {
        const auto legal = series.game().board().generateLegalMoves();
        if (legal.empty()) return;
        const Move move = legal[static_cast<std::size_t>(pick(static_cast<int>(legal.size())))];
        series.speak(chance(90) ? QByteArray::fromStdString(move.uciString()) : QByteArray("(none)"));
    }

    void step() {
        // Most steps are to meet a series that goes on.
        if (!series.automatch().isAutomatchActive() && chance(30)) return series.run(Command::startAgain);
        if (series.automatch().isAutomatchPaused() && chance(20)) return series.run(Command::resume);
        const int what = pick(100);
        if (what < 35) return playSomething();
        if (what < 45) return series.passTime(std::chrono::milliseconds(pick(500)));
        if (what < 50) return changeSettings();
        if (what < 53) return series.armTrap();
        if (what < 65) return series.run(chance(50) ? Command::engineMates : Command::resign);
        // Rare ones: they end a series, or take a minute of the clock.
        const auto command = Command(pick(static_cast<int>(ModelledSeries::lastCommand) + 1));
        const bool isRare = command == Command::stop || command == Command::clear ||
                            command == Command::startAgain || command == Command::timeOut;
        if (!isRare || chance(25)) series.run(command);
    }

    std::mt19937 random{GetParam()};
    ModelledSeries series;
};

TEST_P(AutomatchWalkTest, theSeriesIsWhatTheModelSaysAtEveryMoment) {
    // A longer walk on demand: ORLIX_WALK_STEPS=1000000.
    const int steps = qEnvironmentVariableIsSet("ORLIX_WALK_STEPS")
                          ? qEnvironmentVariableIntValue("ORLIX_WALK_STEPS")
                          : 20000;
    for (int i = 0; i < steps && !HasFailure(); ++i) {
        step();
        series.check("after a step");
        if (HasFailure()) ADD_FAILURE() << "at step " << i << " of seed " << GetParam();
    }
    // The walk went everywhere.
    EXPECT_GT(series.gameEnds, steps / 20);
    EXPECT_GT(series.repeatsByEndAfterEnd, 0);
    EXPECT_GT(series.repeatsByHand, 0);
    EXPECT_GT(series.gaps, 0);
    EXPECT_GT(series.finishedSeries, steps / 200);
}

INSTANTIATE_TEST_SUITE_P(Seeds, AutomatchWalkTest, testing::Values(1U, 2U, 3U, 4U, 5U, 20240307U, 4711U));

}  // namespace
}  // namespace orlix::test
