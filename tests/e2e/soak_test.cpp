// The program under two minutes of restless use with misbehaving engines, and what the judge of it sees.
#include <gmock/gmock.h>

#include "e2e/soak.h"
#include "support/built_programs.h"

namespace orlix::e2e {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

SoakSample sample(double seconds, qint64 kib, int descriptors = 20, int threads = 5) {
    return {seconds, {kib, kib, descriptors, threads}};
}

SoakPlan warmForHundredSeconds() {
    SoakPlan plan;
    plan.warmUpSeconds = 100;
    plan.growthKib = 2048;
    return plan;
}

TEST(SoakJudge, growthWithinTheWarmUpIsNone) {
    EXPECT_EQ(faultOf({sample(10, 1000), sample(90, 90000, 30, 9), sample(110, 95000, 31, 9)},
                      warmForHundredSeconds()),
              "");
}

TEST(SoakJudge, growthUpToTheBoundIsAllowedAndOneMoreIsNot) {
    EXPECT_EQ(faultOf({sample(100, 1000), sample(200, 3048)}, warmForHundredSeconds()), "");
    EXPECT_THAT(faultOf({sample(100, 1000), sample(200, 3049)}, warmForHundredSeconds()),
                HasSubstr("1000 KiB to 3049 KiB"));
}

TEST(SoakJudge, smallStepsAddUp) {
    EXPECT_THAT(faultOf({sample(100, 1000), sample(200, 2500), sample(300, 4000)}, warmForHundredSeconds()),
                HasSubstr("memory"));
}

TEST(SoakJudge, descriptorsAndThreadsStayAsTheyWere) {
    const SoakPlan plan = warmForHundredSeconds();
    EXPECT_THAT(faultOf({sample(100, 1000), sample(200, 1000, 21)}, plan), HasSubstr("descriptors"));
    EXPECT_THAT(faultOf({sample(100, 1000), sample(200, 1000, 20, 6)}, plan), HasSubstr("threads"));
}

TEST(SoakJudge, messagesAreKnownOnlyWordForWord) {
    const QStringList known = messageList("# a remark\nqt.qpa: known\n");
    EXPECT_THAT(known, ElementsAre(QStringLiteral("qt.qpa: known")));
    EXPECT_THAT(unknownMessages("qt.qpa: known\nqt.qpa: known\n", known), IsEmpty());
    EXPECT_THAT(unknownMessages("qt.qpa: known \n# a remark\n", known),
                ElementsAre(QStringLiteral("qt.qpa: known "), QStringLiteral("# a remark")));
}

TEST(Program, survivesTwoMinutesOfRestlessUse) {
    const SoakPlan plan = SoakPlan::brief();
    std::printf("seed %u\n", plan.seed);
    Desktop desktop;
    AccessibleTree tree(desktop.busAddress());
    SoakedApplication application(desktop, tree, QStringLiteral(ORLIX_PROGRAM),
                                  QString::fromUtf8(scriptedEngineProgram));
    Soak soak(application, plan);
    ASSERT_NO_THROW(soak.run());
    EXPECT_GE(soak.samples().size(), plan.leastSamples);
    EXPECT_GE(soak.actionCount(), plan.leastActions) << "too few to prove anything";
    EXPECT_GE(soak.gameCount(), 5);
}

}  // namespace
}  // namespace orlix::e2e
