#include "updater/command_line.h"

#include <gtest/gtest.h>

#include <limits>

namespace orlix {
namespace {

using Words = std::vector<std::string>;

TEST(CommandLineTest, takesTheApplicationsOwn) {
    EXPECT_EQ(parseCommandLine({"--plan", "/a/b.json", "--parent-pid", "4711"}),
              (UpdaterCommand{"/a/b.json", 4711}));
    EXPECT_EQ(parseCommandLine({"--plan", "--parent-pid", "--parent-pid", "1"}),
              (UpdaterCommand{"--parent-pid", 1}))
        << "what follows the option is the path";
    const pid_t largest = std::numeric_limits<pid_t>::max();
    EXPECT_EQ(parseCommandLine({"--plan", "p", "--parent-pid", std::to_string(largest)}),
              (UpdaterCommand{"p", largest}));
}

TEST(CommandLineTest, takesNothingElse) {
    const Words cases[] = {
        {},
        {""},
        {"--help"},
        {"--plan"},
        {"--plan", "/p"},
        {"--plan", "/p", "--parent-pid"},
        {"--plan", "/p", "--parent-pid", "1", ""},
        {"--plan", "/p", "--parent-pid", "1", "--verbose"},
        {"--parent-pid", "1", "--plan", "/p"},
        {"--plan", "/p", "--plan", "/p"},
        {"--plan=/p", "--parent-pid=1", "", ""},
        {"-plan", "/p", "--parent-pid", "1"},
        {"--Plan", "/p", "--parent-pid", "1"},
        {"--plan", "/p", "--parent-pid ", "1"},
        {"--plan", "", "--parent-pid", "1"},
    };
    for (const Words& words : cases)
        EXPECT_EQ(parseCommandLine(words), std::nullopt) << ::testing::PrintToString(words);
}

TEST(CommandLineTest, aProcessIsAPlainPositiveNumber) {
    for (const char* text : {"", "0", "-1", "+1", "01", " 1", "1 ", "1x", "x", "0x10", "1.0", "1e3",
                             "2147483648", "4294967297", "99999999999999999999", "\xd9\xa1"})
        EXPECT_EQ(parseCommandLine({"--plan", "/p", "--parent-pid", text}), std::nullopt) << text;
    EXPECT_EQ(parseCommandLine({"--plan", "/p", "--parent-pid", std::string("1\0", 2)}), std::nullopt);
}

}  // namespace
}  // namespace orlix
