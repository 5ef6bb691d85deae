#include "updater/tree_copy.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>
#include <fstream>
#include <functional>

#include "support/temporary_folder.h"
#include "updater/stepped_files.h"
#include "updater/test_bundle.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::writeFile;
using ::testing::HasSubstr;

class TreeCopyTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(folder_ / "from");
        fs::create_directories(folder_ / "to");
    }
    Fault copy(const TreeLimits& limits = {}) {
        UniqueFd from;
        UniqueFd to;
        EXPECT_EQ(files_.openKnownFolder((folder_ / "from").string(), from), 0);
        EXPECT_EQ(files_.openKnownFolder((folder_ / "to").string(), to), 0);
        return copyTree(files_, from.get(), to.get(), limits);
    }
    std::string faultText() { return copy().value_or("none"); }
    mode_t modeOf(const fs::path& path) const {
        struct stat status {};
        EXPECT_EQ(lstat((folder_ / path).c_str(), &status), 0);
        return status.st_mode & 07777;
    }
    void setMode(const fs::path& path, mode_t mode) const {
        ASSERT_EQ(chmod((folder_ / path).c_str(), mode), 0);
    }
    // Calls `action` before the step that is the `nth` of its name, counted from 1.
    void atStep(const std::string& name, int nth, const std::function<int()>& action) {
        steps_.before = [this, name, nth, action, seen = 0](int number) mutable {
            return steps_.names()[static_cast<std::size_t>(number)] == name && ++seen == nth ? action() : 0;
        };
    }

    test::TemporaryFolder folder_;
    test::Steps steps_;
    test::SteppedFiles files_{steps_};
};

TEST_F(TreeCopyTest, copiesAWholeApplication) {
    test::makeBundle(folder_ / "from", {});
    writeFile(folder_ / "from/large", std::string(1'000'000, 'x'));
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_EQ(test::treeDigest(folder_ / "to"), test::treeDigest(folder_ / "from"));
    EXPECT_EQ(fs::read_symlink(folder_ / "to/Contents/Frameworks/Chess.framework/Chess"),
              "Versions/Current/Chess");
}

TEST_F(TreeCopyTest, onlyTheOwnerMayWriteToTheCopy) {
    writeFile(folder_ / "from/folder/file", "x");
    writeFile(folder_ / "from/program", "x");
    setMode("from/folder/file", 0466);
    setMode("from/program", 0777);
    setMode("from/folder", 01777);
    EXPECT_EQ(copy(), std::nullopt);
    EXPECT_EQ(modeOf("to/folder/file"), 0644u);
    EXPECT_EQ(modeOf("to/program"), 0755u);
    EXPECT_EQ(modeOf("to/folder"), 0755u);
}

TEST_F(TreeCopyTest, theMaskOfTheProcessDoesNotMatter) {
    writeFile(folder_ / "from/folder/file", "x");
    setMode("from/folder", 0755);
    setMode("from/folder/file", 0644);
    const mode_t before = umask(0077);
    EXPECT_EQ(copy(), std::nullopt);
    umask(before);
    EXPECT_EQ(modeOf("to/folder"), 0755u);
    EXPECT_EQ(modeOf("to/folder/file"), 0644u);
}

TEST_F(TreeCopyTest, refusesSetIdBits) {
    for (const mode_t bit : {04000u, 02000u, 06000u}) {
        writeFile(folder_ / "from/program", "x");
        setMode("from/program", 0755 | bit);
        EXPECT_EQ(faultText(), "\"program\" could not be copied: it has a set-id bit") << bit;
        EXPECT_FALSE(fs::exists(folder_ / "to/program"));
    }
    fs::remove(folder_ / "from/program");
    fs::create_directories(folder_ / "from/a/b");
    setMode("from/a/b", 02755);
    EXPECT_EQ(faultText(), "\"a/b\" could not be copied: it has a set-id bit");
}

TEST_F(TreeCopyTest, refusesPipesAndSockets) {
    ASSERT_EQ(mkfifo((folder_ / "from/pipe").c_str(), 0600), 0);
    EXPECT_THAT(faultText(), HasSubstr("\"pipe\" could not be copied: it is a device"));
    fs::remove(folder_ / "from/pipe");

    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (folder_ / "from/socket").string().copy(address.sun_path, sizeof address.sun_path - 1);
    const UniqueFd socketFd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(bind(socketFd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_THAT(faultText(), HasSubstr("\"socket\" could not be copied: it is a device"));
}

TEST_F(TreeCopyTest, refusesDevices) {
    writeFile(folder_ / "from/null", "");
    files_.disguise(folder_ / "from/null", [](FileStatus& status) { status.kind = FileKind::other; });
    EXPECT_THAT(faultText(), HasSubstr("\"null\" could not be copied: it is a device"));
    EXPECT_FALSE(fs::exists(folder_ / "to/null"));
}

TEST_F(TreeCopyTest, refusesLinksThatLeave) {
    fs::create_directories(folder_ / "from/a/b");
    const struct {
        const char* where;
        const char* destination;
    } cases[] = {
        {"link", "/etc/passwd"},    {"link", ".."},           {"link", "../from/a"}, {"a/link", "../.."},
        {"a/b/link", "../../../x"}, {"a/link", "b/../../.."}, {"a/link", "b/.."},    {"link", "a//../x"},
        {"link", "./.."},
    };
    for (const auto& [where, destination] : cases) {
        const fs::path link = folder_ / "from" / where;
        fs::create_symlink(destination, link);
        EXPECT_EQ(faultText(), '"' + std::string(where) +
                                   "\" could not be copied: it is a link that leaves the application")
            << destination;
        fs::remove(link);
        fs::remove_all(folder_ / "to");
        fs::create_directories(folder_ / "to");
    }
}

TEST(LinkStaysInsideTest, goesUpFirstAndNotTooFar) {
    EXPECT_TRUE(linkStaysInside("a", 0));
    EXPECT_TRUE(linkStaysInside("./a//b/", 0));
    EXPECT_TRUE(linkStaysInside("..", 1));
    EXPECT_TRUE(linkStaysInside("../../a/b", 2));
    EXPECT_TRUE(linkStaysInside("...", 0));
    EXPECT_FALSE(linkStaysInside("..", 0));
    EXPECT_FALSE(linkStaysInside("../../a", 1));
    EXPECT_FALSE(linkStaysInside("a/..", 5)) << "a may be a link to somewhere higher up";
    EXPECT_FALSE(linkStaysInside("/a", 5));
    EXPECT_FALSE(linkStaysInside("", 5));
}

TEST_F(TreeCopyTest, refusesTooMuch) {
    writeFile(folder_ / "from/a/b/c", "x");
    TreeLimits limits;
    limits.depth = 2;
    limits.entries = 3;
    EXPECT_EQ(copy(limits), std::nullopt);
    fs::remove_all(folder_ / "to/a");
    limits.depth = 1;
    EXPECT_THAT(copy(limits).value_or(""), HasSubstr("nested too deep"));
    fs::remove_all(folder_ / "to/a");
    limits = {2, 2};
    EXPECT_THAT(copy(limits).value_or(""), HasSubstr("too many files"));
}

TEST_F(TreeCopyTest, refusesAnotherVolumeMountedInside) {
    writeFile(folder_ / "from/a/file", "x");
    files_.disguise(folder_ / "from/a", [](FileStatus& status) { ++status.device; });
    EXPECT_EQ(faultText(), "\"a\" could not be copied: it lies on another volume");
}

TEST_F(TreeCopyTest, aFileSwappedForALinkMeanwhileIsNotRead) {
    writeFile(folder_ / "secret", "secret");
    writeFile(folder_ / "from/file", "public");
    atStep("openFile", 1, [this] {
        fs::remove(folder_ / "from/file");
        fs::create_symlink("../secret", folder_ / "from/file");
        return 0;
    });
    EXPECT_NE(copy(), std::nullopt);
    EXPECT_NE(readFile(folder_ / "to/file"), "secret");
}

TEST_F(TreeCopyTest, aFileSwappedForAnotherMeanwhileIsNotCopied) {
    writeFile(folder_ / "other", "secret");
    writeFile(folder_ / "from/file", "public");
    atStep("openFile", 1, [this] {
        fs::rename(folder_ / "other", folder_ / "from/file");
        return 0;
    });
    EXPECT_THAT(faultText(), HasSubstr("it changed while it was copied"));
    EXPECT_FALSE(fs::exists(folder_ / "to/file"));
}

TEST_F(TreeCopyTest, aFileThatGrowsIsNotCopied) {
    writeFile(folder_ / "from/file", "public");
    atStep("read", 1, [this] {
        std::ofstream(folder_ / "from/file", std::ios::app) << "more";
        return 0;
    });
    EXPECT_THAT(faultText(), HasSubstr("it changed while it was copied"));
}

TEST_F(TreeCopyTest, aFolderOfTheCopySwappedForALinkIsNotFilled) {
    writeFile(folder_ / "from/a/file", "x");
    fs::create_directories(folder_ / "outside");
    atStep("openFolder", 2, [this] {
        fs::remove(folder_ / "to/a");
        fs::create_directory_symlink("../outside", folder_ / "to/a");
        return 0;
    });
    EXPECT_NE(copy(), std::nullopt);
    EXPECT_TRUE(fs::is_empty(folder_ / "outside"));
}

TEST_F(TreeCopyTest, namesTheFileThatCouldNotBeCopied) {
    writeFile(folder_ / "from/a/file", "x");
    atStep("write", 1, [] { return ENOSPC; });
    EXPECT_EQ(faultText(), "\"a/file\" could not be copied: No space left on device");
}

}  // namespace
}  // namespace orlix
