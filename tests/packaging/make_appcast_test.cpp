// The script that prints the update feed for a disk image.
#include <gmock/gmock.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>

#include "support/temporary_folder.h"

namespace orlix {
namespace {

using test::writeFile;
using ::testing::HasSubstr;

struct Printed {
    std::string output;
    int status = -1;
};

class MakeAppcastTest : public ::testing::Test {
  protected:
    void SetUp() override { writeFile(folder_ / image_, "abc"); }

    // What the script prints on standard output, with standard error in a file.
    Printed run(const std::string& arguments) {
        Printed printed;
        const std::string command = "cd '" + folder_.path().string() +
                                    "' && '" ORLIX_SOURCE_DIR "/scripts/make-appcast' " + arguments +
                                    " 2>errors";
        FILE* pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) return printed;
        std::array<char, 4096> buffer{};
        while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
            printed.output.append(buffer.data(), count);
        const int status = pclose(pipe);
        printed.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return printed;
    }
    std::string errors() const { return test::readFile(folder_ / "errors"); }

    test::TemporaryFolder folder_;
    const std::string image_ = "Velmorandix-Orlix-1.10.0-42.dmg";
};

TEST_F(MakeAppcastTest, printsVersionBuildSizeDigestAndAddress) {
    const Printed printed = run("--host updates.example.org " + image_);
    EXPECT_EQ(printed.status, 0) << errors();
    EXPECT_EQ(printed.output,
              "{\n"
              "  \"version\": \"1.10.0\",\n"
              "  \"build\": \"42\",\n"
              "  \"size\": 3,\n"
              "  \"sha256\": \"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad\",\n"
              "  \"download_url\": "
              "\"https://updates.example.org/updates/Velmorandix/Velmorandix-Orlix-1.10.0-42.dmg\"\n"
              "}\n");
}

TEST_F(MakeAppcastTest, takesNotesDateAndSystemAsTextOfJson) {
    writeFile(folder_ / "notes", "\"Faster\" \\ nicer\n\tand\r\n♞\x01\n");
    const Printed printed =
        run("--notes notes --minimum-macos 12.0 --published-at '2026-11-21' --host a.b " + image_);
    EXPECT_EQ(printed.status, 0) << errors();
    EXPECT_THAT(printed.output,
                HasSubstr("\",\n"
                          "  \"release_notes\": \"\\\"Faster\\\" \\\\ nicer\\n\\tand\\r\\n♞\",\n"
                          "  \"published_at\": \"2026-11-21\",\n"
                          "  \"minimum_macos\": \"12.0\"\n"
                          "}\n"));
}

TEST_F(MakeAppcastTest, takesAnImageFromAnotherFolder) {
    writeFile(folder_ / "some where/Velmorandix-Orlix-2.0-1.dmg", "abc");
    const Printed printed = run("--host a.b:8443 'some where/Velmorandix-Orlix-2.0-1.dmg'");
    EXPECT_EQ(printed.status, 0) << errors();
    EXPECT_THAT(printed.output,
                HasSubstr("\"https://a.b:8443/updates/Velmorandix/Velmorandix-Orlix-2.0-1.dmg\""));
}

TEST_F(MakeAppcastTest, printsNothingWhenSomethingIsWrong) {
    writeFile(folder_ / "Velmorandix-Orlix-1.0-2.dmg", "");
    writeFile(folder_ / "image.dmg", "abc");
    writeFile(folder_ / "notes", "\xff\xfe");
    const struct {
        const char* name;
        std::string arguments;
        const char* error;
    } cases[] = {
        {"no host", image_, "--host is needed"},
        {"no value", image_ + " --host", "--host needs a value"},
        {"an address as host", "--host https://a.b " + image_, "this is no host"},
        {"a host with a quote", "--host 'a\"b' " + image_, "this is no host"},
        {"no image", "--host a.b", "which image?"},
        {"two images", "--host a.b " + image_ + " " + image_, "one image"},
        {"a missing image", "--host a.b Velmorandix-Orlix-9-9.dmg", "there is no"},
        {"a name without version", "--host a.b image.dmg", "does not say version and build"},
        {"an empty image", "--host a.b Velmorandix-Orlix-1.0-2.dmg", "is empty"},
        {"missing notes", "--host a.b --notes nothing " + image_, "there are no notes"},
        {"notes in another encoding", "--host a.b --notes notes " + image_, "not UTF-8"},
        {"an unknown option", "--host a.b --verbose " + image_, "unknown option"},
    };
    for (const auto& [name, arguments, error] : cases) {
        SCOPED_TRACE(name);
        const Printed printed = run(arguments);
        EXPECT_EQ(printed.status, 1);
        EXPECT_EQ(printed.output, "");
        EXPECT_THAT(errors(), HasSubstr(error));
    }
}

}  // namespace
}  // namespace orlix
