// Both ways to start an application: by a tool of the system, and by its program.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/posix_application_starter.h"
#include "platform/posix/posix_tool_runner.h"
#include "platform/posix/tool_application_starter.h"
#include "support/event_pump.h"
#include "support/temporary_folder.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;

// A tool that writes down its arguments and ends with the statuses of the file "statuses", one a line.
class ToolApplicationStarterTest : public ::testing::Test {
  protected:
    ToolApplicationStarterTest() {
        const std::string base = folder_.path().string();
        test::writeFile(tool(), "#!/bin/sh\ncd '" + base +
                                    "'\necho \"$#|$1\" >> calls\n"
                                    "status=$(head -n 1 statuses)\nsed -i.old 1d statuses\nexit $status\n");
        fs::permissions(tool(), fs::perms::owner_all);
    }
    fs::path tool() const { return folder_ / "tool"; }
    bool start(const std::string& statuses, int attempts) {
        test::writeFile(folder_ / "statuses", statuses);
        ToolApplicationStarter starter(tools_, tool().string(), attempts, 0ms);
        return starter.start("/A/B C.app", "B");
    }
    std::string calls() const { return test::readFile(folder_ / "calls"); }

    const test::TemporaryFolder folder_;
    PosixToolRunner tools_;
};

TEST_F(ToolApplicationStarterTest, givesTheToolTheBundle) {
    EXPECT_TRUE(start("0\n", 1));
    EXPECT_EQ(calls(), "1|/A/B C.app\n");
}

TEST_F(ToolApplicationStarterTest, asksAgainAsOftenAsItMay) {
    EXPECT_TRUE(start("1\n1\n0\n0\n", 3));
    EXPECT_EQ(calls(), "1|/A/B C.app\n1|/A/B C.app\n1|/A/B C.app\n");
    EXPECT_FALSE(start("1\n1\n0\n", 2));
}

TEST_F(ToolApplicationStarterTest, aToolThatIsNotThereIsNotAskedAgain) {
    ToolApplicationStarter starter(tools_, (folder_ / "none").string(), 1'000'000, 1h);
    EXPECT_FALSE(starter.start("/A/B.app", "B"));
}

class PosixApplicationStarterTest : public ::testing::Test {
  protected:
    // What was started outlives its starter, so nothing else waits for it: other tests count their children.
    ~PosixApplicationStarterTest() override {
        while (waitpid(-1, nullptr, 0) > 0) {
        }
    }

    const test::TemporaryFolder folder_;
    PosixApplicationStarter starter_;
};

TEST_F(PosixApplicationStarterTest, startsTheProgramInTheBundleWithNothingOfOurs) {
    const fs::path record = folder_ / "record";
    const fs::path program = folder_ / "B C.app/Contents/MacOS/B C";
    test::writeFile(program,
                    "#!/bin/sh\n{ echo \"$# arguments, session\" $(ps -o sid= -p $$) is $$\n"
                    "for fd in 0 1 2 77; do [ -e /dev/fd/$fd ] && echo \"has $fd\"; done\n"
                    "} > '" +
                        record.string() + ".part'\nmv '" + record.string() + ".part' '" + record.string() +
                        "'\n");
    fs::permissions(program, fs::perms::owner_all);
    ASSERT_EQ(dup2(STDERR_FILENO, 77), 77);  // without FD_CLOEXEC
    EXPECT_TRUE(starter_.start((folder_ / "B C.app").string(), "B C"));
    close(77);
    ASSERT_TRUE(pumpUntil([&] { return fs::exists(record); }));
    const std::string text = test::readFile(record);
    EXPECT_THAT(text, HasSubstr("0 arguments"));
    EXPECT_THAT(text, Not(HasSubstr("has 77")));
    EXPECT_THAT(text, ::testing::ContainsRegex("session ([0-9]+) is ([0-9]+)"));
    std::istringstream words(text.substr(text.find("session ") + 8));
    std::string session;
    std::string is;
    std::string self;
    words >> session >> is >> self;
    EXPECT_EQ(session, self);
}

TEST_F(PosixApplicationStarterTest, tellsWhenThereIsNoProgram) {
    fs::create_directories(folder_ / "B.app/Contents/MacOS");
    EXPECT_FALSE(starter_.start((folder_ / "B.app").string(), "B"));
    EXPECT_FALSE(starter_.start((folder_ / "B.app").string(), ""));
}

}  // namespace
}  // namespace orlix
