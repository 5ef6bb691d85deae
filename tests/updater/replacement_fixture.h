// What the tests of single rules share: a bench, and what holds when a rule refused.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <string>

#include "updater/bench.h"

namespace orlix::test {

class ReplacementFixture : public ::testing::Test {
  protected:
    // Nothing of the installation took place, the old application runs again, and the result tells why.
    void expectFailure(const std::string& reason) {
        EXPECT_EQ(bench_.install(), UpdateInstallation::Ending::failed);
        EXPECT_THAT(
            bench_.message(),
            ::testing::AllOf(::testing::StartsWith("Velmorandix Orlix 1.1.0 could not be installed: "),
                             ::testing::HasSubstr(reason), ::testing::EndsWith(".")));
        EXPECT_THAT(readFile(bench_.result()), ::testing::HasSubstr("\"succeeded\":false"));
        EXPECT_TRUE(bench_.isOldInstalled());
        expectNothingLeft();
        EXPECT_THAT(bench_.starter.started, ::testing::ElementsAre(startOfTarget()));
    }
    void expectNothingLeft() {
        EXPECT_THAT(bench_.leftovers(), ::testing::IsEmpty());
        EXPECT_FALSE(bench_.tools.isAttached());
        EXPECT_TRUE(bench_.isRestUntouched());
    }
    std::string startOfTarget() const { return bench_.target().string() + '|' + sampleProgram; }
    // The volume's application with other properties, sealed as they say.
    void makeNew(const BundleSample& sample) {
        std::filesystem::remove_all(bench_.newApplication());
        makeBundle(bench_.newApplication(), sample);
        bench_.rememberRest();
    }
    static BundleSample newSample() {
        BundleSample sample;
        sample.version = "1.1.0";
        sample.build = "2";
        return sample;
    }
    void makeOld(const std::string& version, const std::string& build) {
        std::filesystem::remove_all(bench_.target());
        BundleSample sample;
        sample.version = version;
        sample.build = build;
        makeBundle(bench_.target(), sample);
    }
    void atStep(const std::string& name, int nth, const std::function<int()>& action) {
        bench_.steps.before = [this, name, nth, action, seen = 0](int number) mutable {
            return bench_.steps.names()[static_cast<std::size_t>(number)] == name && ++seen == nth ? action()
                                                                                                   : 0;
        };
    }

    Bench bench_;
};

}  // namespace orlix::test
