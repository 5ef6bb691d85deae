#include "updater/paths.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "platform/posix/posix_file_operations.h"
#include "support/temporary_folder.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

TEST(PathsTest, namesOfAPlainPath) {
    ASSERT_TRUE(pathNames("/a/b c/♞.app"));
    EXPECT_THAT(*pathNames("/a/b c/♞.app"), ElementsAre("a", "b c", "♞.app"));
    EXPECT_THAT(*pathNames("/..a/.b"), ElementsAre("..a", ".b"));
}

TEST(PathsTest, otherPathsHaveNone) {
    for (const std::string& path :
         {std::string(), std::string("/"), std::string("a"), std::string("a/b"), std::string("//a"),
          std::string("/a//b"), std::string("/a/"), std::string("/a/."), std::string("/./a"),
          std::string("/a/../b"), std::string("/.."), std::string("/a\nb"), std::string("/a\0b", 4),
          std::string("/a\x7f"), '/' + std::string(4000, 'a')})
        EXPECT_FALSE(pathNames(path)) << path;
}

TEST(PathsTest, folderAndName) {
    EXPECT_EQ(folderOf("/a/b/c"), "/a/b");
    EXPECT_EQ(nameOf("/a/b/c"), "c");
}

TEST(PathsTest, noPartOfAWalkedPathMayBeALink) {
    const test::TemporaryFolder folder;
    fs::create_directories(folder / "real/inner");
    fs::create_directory_symlink("real", folder / "link");
    fs::create_directory_symlink("inner", folder / "real/last");
    PosixFileOperations files;
    UniqueFd fd;
    EXPECT_EQ(openFolderPath(files, (folder / "real/inner").string(), fd), 0);
    EXPECT_NE(openFolderPath(files, (folder / "link/inner").string(), fd), 0);
    EXPECT_NE(openFolderPath(files, (folder / "real/last").string(), fd), 0);
    EXPECT_EQ(openFolderPath(files, (folder / "real/none").string(), fd), ENOENT);
    EXPECT_EQ(openFolderPath(files, (folder / "real/../real").string(), fd), EINVAL);
}

}  // namespace
}  // namespace orlix
