#include "platform/posix/posix_file_operations.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>

#include "platform/posix/posix_spawn.h"
#include "support/temporary_folder.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::writeFile;
using ::testing::ElementsAre;

class PosixFileOperationsTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(files_.openKnownFolder(folder_.path().string(), at_), 0); }

    int here() const { return at_.get(); }

    test::TemporaryFolder folder_;
    PosixFileOperations files_;
    UniqueFd at_;
};

TEST_F(PosixFileOperationsTest, opensNothingThroughALink) {
    writeFile(folder_ / "file", "text");
    fs::create_directory(folder_ / "folder");
    fs::create_symlink("file", folder_ / "link to file");
    fs::create_directory_symlink("folder", folder_ / "link to folder");
    UniqueFd fd;
    EXPECT_EQ(files_.openFile(here(), "file", fd), 0);
    EXPECT_EQ(files_.openFolder(here(), "folder", fd), 0);
    EXPECT_EQ(files_.openFile(here(), "link to file", fd), ELOOP);
    EXPECT_NE(files_.openFolder(here(), "link to folder", fd), 0);
    EXPECT_NE(files_.openFolder(here(), "file", fd), 0);
    EXPECT_EQ(files_.openFile(here(), "nothing", fd), ENOENT);
}

TEST_F(PosixFileOperationsTest, openingAPipeDoesNotWaitForItsOtherEnd) {
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    UniqueFd fd;
    ASSERT_EQ(files_.openFile(here(), "pipe", fd), 0);
    FileStatus status;
    ASSERT_EQ(files_.status(fd.get(), status), 0);
    EXPECT_EQ(status.kind, FileKind::other);
}

TEST_F(PosixFileOperationsTest, descriptorsDoNotReachChildren) {
    writeFile(folder_ / "file", "text");
    UniqueFd file;
    UniqueFd made;
    ASSERT_EQ(files_.openFile(here(), "file", file), 0);
    ASSERT_EQ(files_.createFile(here(), "made", 0600, made), 0);
    for (const int fd : {here(), file.get(), made.get()})
        EXPECT_NE(fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(PosixFileOperationsTest, creatingNeverTakesWhatIsThere) {
    writeFile(folder_ / "file", "text");
    fs::create_symlink("elsewhere", folder_ / "link");
    UniqueFd fd;
    EXPECT_EQ(files_.createFile(here(), "file", 0600, fd), EEXIST);
    EXPECT_EQ(files_.createFile(here(), "link", 0600, fd), EEXIST);
    EXPECT_EQ(files_.makeFolder(here(), "link", 0700), EEXIST);
    EXPECT_EQ(files_.makeLink(here(), "link", "file"), EEXIST);
    EXPECT_FALSE(fs::exists(folder_ / "elsewhere"));
    EXPECT_EQ(readFile(folder_ / "file"), "text");
}

TEST_F(PosixFileOperationsTest, writesAndReadsAllBytes) {
    const std::string text(300'000, 'x');
    UniqueFd fd;
    ASSERT_EQ(files_.createFile(here(), "file", 0600, fd), 0);
    ASSERT_EQ(files_.write(fd.get(), text.data(), text.size()), 0);
    ASSERT_EQ(files_.setMode(fd.get(), 0751), 0);
    ASSERT_EQ(files_.sync(fd.get()), 0);
    ASSERT_EQ(files_.openFile(here(), "file", fd), 0);
    std::string back;
    std::size_t count = 1;
    while (count > 0) {
        char bytes[4096];
        ASSERT_EQ(files_.read(fd.get(), bytes, sizeof bytes, count), 0);
        back.append(bytes, count);
    }
    EXPECT_EQ(back, text);
    FileStatus status;
    ASSERT_EQ(files_.status(fd.get(), status), 0);
    EXPECT_EQ(status.kind, FileKind::regular);
    EXPECT_EQ(status.mode, 0751u);
    EXPECT_EQ(status.size, 300'000);
    EXPECT_EQ(status.owner, files_.user());
    EXPECT_EQ(status.linkCount, 1u);
    EXPECT_GT(status.modifiedNanos, 0);
}

TEST_F(PosixFileOperationsTest, writingToAFullDiskFails) {
    UniqueFd fd(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    if (!fd) GTEST_SKIP() << "this system has no /dev/full";
    EXPECT_EQ(files_.write(fd.get(), "x", 1), ENOSPC);
}

TEST_F(PosixFileOperationsTest, statusTellsAboutTheLinkItself) {
    fs::create_symlink("/etc/passwd", folder_ / "link");
    FileStatus status;
    ASSERT_EQ(files_.statusOf(here(), "link", status), 0);
    EXPECT_EQ(status.kind, FileKind::link);
    std::string destination;
    ASSERT_EQ(files_.readLink(here(), "link", destination), 0);
    EXPECT_EQ(destination, "/etc/passwd");
    EXPECT_EQ(files_.readLink(here(), "nothing", destination), ENOENT);
    EXPECT_EQ(files_.statusOf(here(), "nothing", status), ENOENT);
}

TEST_F(PosixFileOperationsTest, statusTellsVolumesApart) {
    // Every system mounts its devices.
    UniqueFd root;
    UniqueFd devices;
    FileStatus rootStatus;
    FileStatus named;
    FileStatus opened;
    ASSERT_EQ(files_.openKnownFolder("/", root), 0);
    ASSERT_EQ(files_.status(root.get(), rootStatus), 0);
    ASSERT_EQ(files_.statusOf(root.get(), "dev", named), 0);
    ASSERT_EQ(files_.openFolder(root.get(), "dev", devices), 0);
    ASSERT_EQ(files_.status(devices.get(), opened), 0);
    EXPECT_NE(named.device, rootStatus.device);
    EXPECT_TRUE(named.isSameFile(opened));
}

TEST_F(PosixFileOperationsTest, aDeviceIsNoFileAndNoFolder) {
    UniqueFd devices;
    FileStatus status;
    ASSERT_EQ(files_.openKnownFolder("/dev", devices), 0);
    ASSERT_EQ(files_.statusOf(devices.get(), "null", status), 0);
    EXPECT_EQ(status.kind, FileKind::other);
}

TEST_F(PosixFileOperationsTest, statusTellsSetIdBits) {
    writeFile(folder_ / "file", "text");
    ASSERT_EQ(chmod((folder_ / "file").c_str(), 06755), 0);
    FileStatus status;
    ASSERT_EQ(files_.statusOf(here(), "file", status), 0);
    EXPECT_EQ(status.mode, 06755u);
}

TEST_F(PosixFileOperationsTest, listsNamesInOrderAsOftenAsAsked) {
    for (const char* name : {"b", "a", ".hidden", "c"})
        writeFile(folder_ / name, "");
    std::vector<std::string> names;
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(files_.list(here(), names), 0);
        EXPECT_THAT(names, ElementsAre(".hidden", "a", "b", "c"));
    }
}

TEST_F(PosixFileOperationsTest, movingDoesNotReplaceWhileReplacingDoes) {
    writeFile(folder_ / "a", "a");
    writeFile(folder_ / "b", "b");
    EXPECT_EQ(files_.move(here(), "a", here(), "b"), EEXIST);
    EXPECT_EQ(readFile(folder_ / "b"), "b");
    EXPECT_EQ(files_.move(here(), "a", here(), "c"), 0);
    EXPECT_EQ(readFile(folder_ / "c"), "a");
    EXPECT_EQ(files_.replace(here(), "c", here(), "b"), 0);
    EXPECT_EQ(readFile(folder_ / "b"), "a");
    EXPECT_FALSE(fs::exists(folder_ / "c"));
}

TEST_F(PosixFileOperationsTest, exchangesWholeFolders) {
    writeFile(folder_ / "old/file", "old");
    writeFile(folder_ / "private/new/file", "new");
    UniqueFd inner;
    ASSERT_EQ(files_.openFolder(here(), "private", inner), 0);
    ASSERT_EQ(files_.exchange(here(), "old", inner.get(), "new"), 0);
    EXPECT_EQ(readFile(folder_ / "old/file"), "new");
    EXPECT_EQ(readFile(folder_ / "private/new/file"), "old");
    EXPECT_EQ(files_.exchange(here(), "old", inner.get(), "nothing"), ENOENT);
    EXPECT_EQ(readFile(folder_ / "old/file"), "new");
}

TEST_F(PosixFileOperationsTest, aLockIsHeldAsLongAsItsDescriptor) {
    UniqueFd other;
    ASSERT_EQ(files_.openKnownFolder(folder_.path().string(), other), 0);
    EXPECT_EQ(files_.lock(here()), 0);
    EXPECT_EQ(files_.lock(other.get()), EWOULDBLOCK);
    at_.reset();
    EXPECT_EQ(files_.lock(other.get()), 0);
}

TEST_F(PosixFileOperationsTest, removesLinksAndNotWhatTheyPointTo) {
    writeFile(folder_ / "folder/file", "text");
    fs::create_directory_symlink("folder", folder_ / "link");
    EXPECT_EQ(files_.removeFile(here(), "link"), 0);
    EXPECT_EQ(readFile(folder_ / "folder/file"), "text");
    EXPECT_NE(files_.removeFolder(here(), "folder"), 0) << "it is not empty";
    fs::remove(folder_ / "folder/file");
    EXPECT_EQ(files_.removeFolder(here(), "folder"), 0);
}

// A child that guards the move of `aside` to `target`, says so on its output, and then does as it is told.
class GuardingChild {
  public:
    GuardingChild(PosixFileOperations& files, int folder, bool releases) {
        EXPECT_TRUE(makePipe(everybody_));
        UniqueFd ready[2];
        EXPECT_TRUE(makePipe(ready));
        id_ = fork();
        if (id_ == 0) {
            {
                std::unique_ptr<MoveGuard> guard;
                if (files.guardMove(folder, "aside", folder, "target", guard) != 0) _exit(1);
                if (!releases) {
                    [[maybe_unused]] const auto count = write(ready[1].get(), "r", 1);
                    for (;;)
                        pause();
                }
            }
            _exit(0);
        }
        ready[1].reset();
        everybody_[1].reset();
        char byte = 0;
        if (!releases) {
            EXPECT_EQ(read(ready[0].get(), &byte, 1), 1);
        }
    }

    void kill() const { ::kill(id_, SIGKILL); }
    /// Waits for the end of the child and of its guard.
    void waitForAll() {
        char byte = 0;
        EXPECT_EQ(read(everybody_[0].get(), &byte, 1), 0);
        waitpid(id_, nullptr, 0);
    }

  private:
    pid_t id_ = -1;
    UniqueFd everybody_[2];  // its writing end is open in the child and in the guard only
};

TEST_F(PosixFileOperationsTest, aGuardMovesBackWhenItsProcessIsKilled) {
    writeFile(folder_ / "aside/file", "text");
    GuardingChild child(files_, here(), false);
    EXPECT_FALSE(fs::exists(folder_ / "target"));
    child.kill();
    child.waitForAll();
    EXPECT_EQ(readFile(folder_ / "target/file"), "text");
    EXPECT_FALSE(fs::exists(folder_ / "aside"));
}

TEST_F(PosixFileOperationsTest, aGuardLeavesATakenNameAlone) {
    writeFile(folder_ / "aside/file", "old");
    writeFile(folder_ / "target/file", "new");
    GuardingChild child(files_, here(), false);
    child.kill();
    child.waitForAll();
    EXPECT_EQ(readFile(folder_ / "target/file"), "new");
    EXPECT_EQ(readFile(folder_ / "aside/file"), "old");
}

TEST_F(PosixFileOperationsTest, aReleasedGuardDoesNothing) {
    writeFile(folder_ / "aside/file", "text");
    GuardingChild child(files_, here(), true);
    child.waitForAll();
    EXPECT_FALSE(fs::exists(folder_ / "target"));
}

}  // namespace
}  // namespace orlix
