#include "updater/tree_removal.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>

#include "support/temporary_folder.h"
#include "updater/private_folder.h"
#include "updater/stepped_files.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::writeFile;

class TreeRemovalTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(files_.openKnownFolder(folder_.path().string(), at_), 0);
        writeFile(folder_ / "outside/file", "text");
    }
    bool isOutsideThere() const { return test::readFile(folder_ / "outside/file") == "text"; }

    test::TemporaryFolder folder_;
    test::Steps steps_;
    test::SteppedFiles files_{steps_};
    UniqueFd at_;
};

TEST_F(TreeRemovalTest, removesEverythingBelowAndNothingBehindLinks) {
    writeFile(folder_ / "tree/a/b/file", "x");
    writeFile(folder_ / "tree/.hidden", "x");
    fs::create_directories(folder_ / "tree/empty");
    fs::create_directory_symlink("../../outside", folder_ / "tree/a/link");
    fs::create_symlink("../outside/file", folder_ / "tree/file link");
    ASSERT_EQ(mkfifo((folder_ / "tree/pipe").c_str(), 0600), 0);
    EXPECT_EQ(removeTree(files_, at_.get(), "tree"), 0);
    EXPECT_FALSE(fs::exists(folder_ / "tree"));
    EXPECT_TRUE(isOutsideThere());
}

TEST_F(TreeRemovalTest, aLinkInTheTreesPlaceGoesAlone) {
    fs::create_directory_symlink("outside", folder_ / "tree");
    EXPECT_EQ(removeTree(files_, at_.get(), "tree"), 0);
    EXPECT_FALSE(fs::is_symlink(folder_ / "tree"));
    EXPECT_TRUE(isOutsideThere());
}

TEST_F(TreeRemovalTest, nothingToRemove) {
    EXPECT_EQ(removeTree(files_, at_.get(), "tree"), ENOENT);
}

TEST_F(TreeRemovalTest, removesFoldersThatTheirOwnerMayNotWriteTo) {
    writeFile(folder_ / "tree/locked/file", "x");
    ASSERT_EQ(chmod((folder_ / "tree/locked").c_str(), 0500), 0);
    EXPECT_EQ(removeTree(files_, at_.get(), "tree"), 0);
    EXPECT_FALSE(fs::exists(folder_ / "tree"));
}

TEST_F(TreeRemovalTest, goesOnAfterWhatCannotBeRemoved) {
    for (const char* name : {"a", "b", "c"})
        writeFile(folder_ / "tree" / name, "x");
    bool hasFailed = false;
    steps_.before = [&](int number) {
        if (steps_.names()[static_cast<std::size_t>(number)] != "removeFile" || hasFailed) return 0;
        hasFailed = true;
        return EACCES;
    };
    EXPECT_EQ(removeTree(files_, at_.get(), "tree"), EACCES);
    EXPECT_TRUE(fs::exists(folder_ / "tree/a"));
    EXPECT_FALSE(fs::exists(folder_ / "tree/b"));
    EXPECT_FALSE(fs::exists(folder_ / "tree/c"));
}

TEST_F(TreeRemovalTest, aFolderSwappedForALinkMeanwhileIsNotFollowed) {
    writeFile(folder_ / "tree/a/file", "x");
    int opened = 0;
    steps_.before = [&](int number) {
        // The second folder to be opened is "a", which has been found to be a folder just before.
        if (steps_.names()[static_cast<std::size_t>(number)] == "openFolder" && ++opened == 2) {
            fs::rename(folder_ / "tree/a", folder_ / "aside");
            fs::create_directory_symlink("../outside", folder_ / "tree/a");
        }
        return 0;
    };
    EXPECT_NE(removeTree(files_, at_.get(), "tree"), 0);
    EXPECT_TRUE(isOutsideThere());
}

TEST_F(TreeRemovalTest, leavesAnotherVolumeAlone) {
    writeFile(folder_ / "tree/mounted/file", "text");
    files_.disguise(folder_ / "tree/mounted", [](FileStatus& status) { ++status.device; });
    EXPECT_EQ(removeTree(files_, at_.get(), "tree"), EXDEV);
    EXPECT_EQ(test::readFile(folder_ / "tree/mounted/file"), "text");
}

TEST_F(TreeRemovalTest, goesOnlySoDeep) {
    fs::path deep = folder_ / "tree";
    for (int level = 0; level < 110; ++level)
        deep /= "d";
    fs::create_directories(deep);
    EXPECT_EQ(removeTree(files_, at_.get(), "tree"), ENAMETOOLONG);
    EXPECT_TRUE(fs::exists(deep));
}

TEST_F(TreeRemovalTest, aPrivateFolderIsNotRemovedForItsNameAlone) {
    PrivateFolder own(files_);
    ASSERT_EQ(own.make(at_.get()), 0);
    fs::rename(folder_ / own.name(), folder_ / "aside");
    fs::create_directory(folder_ / own.name());
    const fs::path foreign = folder_ / own.name();
    own.remove();
    EXPECT_TRUE(fs::exists(foreign));
}

}  // namespace
}  // namespace orlix
