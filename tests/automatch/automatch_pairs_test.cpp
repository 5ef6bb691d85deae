// Every pair of commands in every state of a series, each against the model: what two commands do one after
// the other, and how the series goes on from there.
#include "automatch/modelled_series.h"

namespace orlix::test {
namespace {

using Command = ModelledSeries::Command;

struct State {
    const char* name;
    void (*reach)(ModelledSeries& series);
};

void beginSeries(ModelledSeries& series) {
    series.setTimeControl(TimeControlPreset::bullet1_0);
    series.setTotal(3);
    series.run(Command::startAgain);
    series.passTime(std::chrono::milliseconds(250));
    series.speak("e2e4");
}

const std::vector<State> states{
    {"idle", [](ModelledSeries&) {}},
    {"game running", beginSeries},
    {"countdown",
     [](ModelledSeries& series) {
         beginSeries(series);
         series.run(Command::resign);
         series.passTime(std::chrono::milliseconds(450));
     }},
    {"between, without a pause",
     [](ModelledSeries& series) {
         series.setPause(0);
         beginSeries(series);
         series.run(Command::resign);
     }},
    {"paused in a game",
     [](ModelledSeries& series) {
         beginSeries(series);
         series.run(Command::pause);
     }},
    {"paused between games",
     [](ModelledSeries& series) {
         beginSeries(series);
         series.run(Command::resign);
         series.run(Command::pause);
     }},
    {"last game running",
     [](ModelledSeries& series) {
         beginSeries(series);
         series.setTotal(1);
     }},
    {"finished",
     [](ModelledSeries& series) {
         beginSeries(series);
         series.setTotal(1);
         series.run(Command::resign);
     }},
    {"stopped in a game",
     [](ModelledSeries& series) {
         beginSeries(series);
         series.run(Command::stop);
     }},
};

class AutomatchPairsTest : public testing::TestWithParam<State> {};

TEST_P(AutomatchPairsTest, everyPairOfCommandsLeadsWhereTheModelLeads) {
    for (int first = 0; first <= static_cast<int>(ModelledSeries::lastCommand); ++first) {
        for (int second = 0; second <= static_cast<int>(ModelledSeries::lastCommand); ++second) {
            SCOPED_TRACE(testing::Message() << ModelledSeries::nameOf(Command(first)) << ", "
                                            << ModelledSeries::nameOf(Command(second)));
            ModelledSeries series;
            GetParam().reach(series);
            series.run(Command(first));
            series.run(Command(second));
            // How it goes on: the game ends, the next one comes if there is one, and ends too.
            series.run(Command::resign);
            series.passTime(std::chrono::seconds(2));
            series.check("after the countdown");
            series.run(Command::engineMates);
            series.passTime(std::chrono::seconds(2));
            series.check("at the end");
            if (HasFailure()) return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(States, AutomatchPairsTest, testing::ValuesIn(states), [](const auto& row) {
    std::string name;
    for (const char letter : std::string(row.param.name)) {
        if (letter != ' ' && letter != ',') name += letter;
    }
    return name;
});

}  // namespace
}  // namespace orlix::test
