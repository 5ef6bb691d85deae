// The updater as a process that may not do everything: plans that it must not believe, places that it cannot
// write to. Run by root it also becomes other users.
#include <gmock/gmock.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <fstream>
#include <memory>

#include "support/waiting_child.h"
#include "updater/running_updater.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::RunningUpdater;
using test::WaitingChild;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr uid_t otherUser = 54321;

class UpdaterPermissionTest : public ::testing::Test {
  protected:
    // Runs after a parent from inside the application; that one is started again when the plan is unusable.
    void expectFailure(const std::string& message, const std::function<bool()>& before = {}) {
        fs::remove(bench_.folder / "start-record");
        fs::remove(bench_.result());
        auto parent = std::make_unique<WaitingChild>(bench_.innerProgram().string());
        RunningUpdater::Setting setting = bench_.setting(parent->id());
        setting.before = before;
        RunningUpdater updater(setting);
        ASSERT_TRUE(updater.waitUntilItWaits());
        parent.reset();
        EXPECT_EQ(updater.waitForEnd(), 1);
        EXPECT_TRUE(bench_.isOldInstalled());
        EXPECT_EQ(bench_.message(), message);
        EXPECT_THAT(bench_.startRecord(), HasSubstr("version 1.0.0\n"));
        EXPECT_THAT(bench_.leftovers(), IsEmpty());
        EXPECT_FALSE(bench_.imageTool.isAttached());
    }
    static bool isRoot() { return geteuid() == 0; }
    // The run takes place as another user, to whom everything belongs but what a test takes back.
    static bool becomeOtherUser() {
        return setgroups(0, nullptr) == 0 && setgid(otherUser) == 0 && setuid(otherUser) == 0;
    }
    void giveAway() const {
        ASSERT_EQ(lchown(bench_.folder.path().c_str(), otherUser, otherUser), 0);
        for (const auto& entry : fs::recursive_directory_iterator(bench_.folder.path()))
            ASSERT_EQ(lchown(entry.path().c_str(), otherUser, otherUser), 0);
    }
    // For the process that calls it, and no other, the folder can be read only.
    static bool makeReadOnly(const fs::path& folder) {
        const char* const path = folder.c_str();
        struct statvfs volume {};
        if (statvfs(path, &volume) != 0) return false;
        // What keeps a plain user from doing more there has to stay.
        const unsigned long kept = volume.f_flag & (MS_NOSUID | MS_NODEV | MS_NOEXEC);
        return leaveNamespaces() && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount(path, path, nullptr, MS_BIND, nullptr) == 0 &&
               mount(nullptr, path, nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY | kept, nullptr) == 0;
    }
    // A plain user may mount in a namespace of users of their own, where the system has such.
    static bool leaveNamespaces() {
        if (isRoot()) return unshare(CLONE_NEWNS) == 0;
        const std::string user = std::to_string(geteuid());
        const std::string group = std::to_string(getegid());
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
        std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
        return std::to_string(geteuid()) == user;
    }
    static bool canMount() {
        const test::TemporaryFolder folder;
        const pid_t child = fork();
        if (child == 0) _exit(makeReadOnly(folder.path()) ? 0 : 1);
        int status = 1;
        return waitpid(child, &status, 0) == child && status == 0;
    }

    test::UpdaterBench bench_;
    const std::string unusable_ = "The update could not be installed: the install plan cannot be used: ";
    const std::string failed_ = "Velmorandix Orlix 1.1.0 could not be installed: ";
};

TEST_F(UpdaterPermissionTest, aMissingPlanOrGarbageIsUnusable) {
    fs::remove(bench_.plan());
    expectFailure(unusable_ + "No such file or directory.");
    test::writeFile(bench_.plan(), "{\"dmgPath\":");
    expectFailure(unusable_ + "it does not have the fields of a plan.");
}

TEST_F(UpdaterPermissionTest, aPlanThatIsALinkIsNotFollowed) {
    fs::rename(bench_.plan(), bench_.folder / "real-plan.json");
    fs::create_symlink(bench_.folder / "real-plan.json", bench_.plan());
    expectFailure(unusable_ + "Too many levels of symbolic links.");
}

TEST_F(UpdaterPermissionTest, aPlanThatOthersMayWriteToIsNotBelieved) {
    for (const mode_t mode : {0620u, 0602u}) {
        ASSERT_EQ(chmod(bench_.plan().c_str(), mode), 0);
        expectFailure(unusable_ + "other users may write to it.");
    }
}

TEST_F(UpdaterPermissionTest, aPlanOfAnotherUserIsNotBelieved) {
    RunningUpdater::Setting setting = bench_.setting(WaitingChild().id());
    if (isRoot()) {
        ASSERT_EQ(lchown(bench_.plan().c_str(), otherUser, otherUser), 0);
        expectFailure(unusable_ + "it belongs to another user.");
        giveAway();
        ASSERT_EQ(lchown(bench_.plan().c_str(), 0, 0), 0);
        ASSERT_EQ(chmod(bench_.plan().c_str(), 0644), 0);
        setting.before = becomeOtherUser;
    } else {
        setting.arguments.at(1) = "/etc/passwd";
    }
    RunningUpdater updater(setting);
    EXPECT_EQ(updater.waitForEnd(), 1);
    EXPECT_EQ(bench_.message(), unusable_ + "it belongs to another user.");
    EXPECT_TRUE(bench_.isOldInstalled());
}

TEST_F(UpdaterPermissionTest, installsAsAnyUserWhatIsTheirs) {
    RunningUpdater::Setting setting = bench_.setting(WaitingChild().id());
    if (isRoot()) {
        giveAway();
        setting.before = becomeOtherUser;
    }
    RunningUpdater updater(setting);
    EXPECT_EQ(updater.waitForEnd(), 0);
    EXPECT_TRUE(bench_.isNewInstalled());
    EXPECT_THAT(bench_.startRecord(), HasSubstr("version 1.1.0\n"));
}

TEST_F(UpdaterPermissionTest, afterAnAdministratorsFolderTheOldApplicationRunsAgain) {
    const fs::path folder = bench_.target().parent_path();
    if (isRoot()) {
        giveAway();
        ASSERT_EQ(lchown(folder.c_str(), 0, 0), 0);
    } else {
        fs::permissions(folder, fs::perms::owner_write, fs::perm_options::remove);
    }
    expectFailure(failed_ + "no folder could be made beside the installed application: Permission denied.",
                  isRoot() ? becomeOtherUser : std::function<bool()>());
    fs::permissions(folder, fs::perms::owner_write, fs::perm_options::add);
}

TEST_F(UpdaterPermissionTest, afterAReadOnlyVolumeTheOldApplicationRunsAgain) {
    if (!canMount()) GTEST_SKIP() << "this user mounts nothing";
    const fs::path folder = bench_.target().parent_path();
    expectFailure(
        failed_ + "no folder could be made beside the installed application: Read-only file system.",
        [&] { return makeReadOnly(folder); });
}

TEST_F(UpdaterPermissionTest, aResultThatCannotBeWrittenKeepsTheApplicationFromNothing) {
    const fs::path support = bench_.folder / "support";
    RunningUpdater::Setting setting = bench_.setting(WaitingChild().id());
    if (canMount())
        setting.before = [&] { return makeReadOnly(support); };
    else
        fs::permissions(support, fs::perms::owner_write, fs::perm_options::remove);
    RunningUpdater updater(setting);
    EXPECT_EQ(updater.waitForEnd(), 0);
    EXPECT_TRUE(bench_.isNewInstalled());
    EXPECT_THAT(bench_.startRecord(), HasSubstr("version 1.1.0\n"));
    EXPECT_EQ(bench_.message(), "");
    fs::permissions(support, fs::perms::owner_write, fs::perm_options::add);
}

}  // namespace
}  // namespace orlix
