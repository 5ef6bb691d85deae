#include "update/update_controller.h"

#include <gmock/gmock.h>

#include <memory>

#include "support/event_pump.h"
#include "support/fake_time_source.h"
#include "support/update_world.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;
using test::UpdateWorld;

const QString checkingText = QStringLiteral("Checking for updates…");

// Everything that the controller shows at one moment.
struct Shown {
    bool isPresented = false;
    bool hasUpdate = false;
    std::optional<QString> message;
    bool isChecking = false;
    bool isInstalling = false;
    bool failed = false;
    bool operator==(const Shown&) const = default;
};

void PrintTo(const Shown& shown, std::ostream* stream) {
    *stream << (shown.isPresented ? "presented, " : "hidden, ") << (shown.hasUpdate ? "update, " : "none, ")
            << (shown.isChecking ? "checking, " : "") << (shown.isInstalling ? "installing, " : "")
            << (shown.failed ? "failed: " : "") << shown.message.value_or(QStringLiteral("-")).toStdString();
}

class UpdateControllerTest : public ::testing::Test {
  protected:
    UpdateController& controller() {
        if (!controller_) {
            controller_ =
                std::make_unique<UpdateController>(world.service(), time, [this] { ++terminationRequests; });
            QObject::connect(controller_.get(), &UpdateController::changed, controller_.get(),
                             [this] { history.push_back(shown()); });
        }
        return *controller_;
    }
    Shown shown() {
        UpdateController& now = controller();
        return {now.isPresented(),  now.availableUpdate().has_value(),
                now.message(),      now.isChecking(),
                now.isInstalling(), now.failed()};
    }
    void finishCheck() {
        world.transport.gate.open();
        ASSERT_TRUE(pumpUntil([this] { return !controller().isChecking(); }));
    }
    void check(bool silent) {
        controller().checkForUpdates(silent);
        finishCheck();
    }
    void finishInstallation() {
        world.transport.gate.open();
        ASSERT_TRUE(pumpUntil([this] { return !controller().isInstalling(); }));
    }
    void feedHasAnUpdate() { world.transport.response.body = world.info.toJson(); }
    void feedIsUpToDate() {
        UpdateInfo same = world.info;
        same.version = QStringLiteral("1.9");
        same.build = QStringLiteral("41");
        world.transport.response.body = same.toJson();
    }
    void findUpdate() {
        feedHasAnUpdate();
        check(false);
        ASSERT_TRUE(controller().availableUpdate());
        history.clear();
    }
    void leaveResult(bool succeeded, const char* message) {
        const UpdateInstallResult result{succeeded, QString::fromUtf8(message), QStringLiteral("1.9")};
        test::writeFile(world.statusPath(), result.toJson().toStdString());
    }

    UpdateWorld world;
    test::FakeTimeSource time;
    int terminationRequests = 0;
    std::vector<Shown> history;

  private:
    std::unique_ptr<UpdateController> controller_;
};

TEST_F(UpdateControllerTest, theRegisteredControllerAndServiceAreTheSharedOnes) {
    UpdateController::registerShared(&controller());
    UpdateService::registerShared(&world.service());
    EXPECT_EQ(&UpdateController::shared(), &controller());
    EXPECT_EQ(&UpdateService::shared(), &world.service());
    UpdateController::registerShared(nullptr);
    UpdateService::registerShared(nullptr);
}

TEST_F(UpdateControllerTest, beginsWithNothingToShow) {
    EXPECT_EQ(shown(), Shown{});
}

TEST_F(UpdateControllerTest, aLaunchLooksForUpdatesAfterFourSecondsWithoutAWord) {
    feedIsUpToDate();
    controller().handleLaunch();
    time.advance(3999ms);
    EXPECT_EQ(shown(), Shown{});
    time.advance(1ms);
    EXPECT_EQ(shown(), (Shown{false, false, checkingText, true, false, false}));
    finishCheck();
    EXPECT_EQ(shown(), (Shown{false, false, QStringLiteral("Velmorandix Orlix is up to date (version 1.9)."),
                              false, false, false}));
    time.advance(1h);
    EXPECT_EQ(world.transport.begun, 1) << "once";
}

TEST_F(UpdateControllerTest, aLaunchShowsTheResultOfTheLastInstallationOnce) {
    leaveResult(true, "1.9 is installed.");
    controller().handleLaunch();
    EXPECT_EQ(shown(), (Shown{true, false, QStringLiteral("1.9 is installed."), false, false, false}));
    EXPECT_EQ(world.service().consumeInstallStatus(), std::nullopt);
}

TEST_F(UpdateControllerTest, aFailedInstallationIsShownAsOneEvenWhenLaunchesDoNotCheck) {
    world.defaults.setBoolean(QStringLiteral("velmorandix_orlix_update_check_at_launch"), false);
    leaveResult(false, "The disk is full.");
    controller().handleLaunch();
    EXPECT_EQ(shown(), (Shown{true, false, QStringLiteral("The disk is full."), false, false, true}));
    EXPECT_EQ(time.pendingTimers(), 0U);
    time.advance(1h);
    EXPECT_EQ(world.transport.begun, 0);
}

TEST_F(UpdateControllerTest, aLaunchThatIsOverBeforeFourSecondsChecksNothing) {
    {
        UpdateController brief(world.service(), time, [] {});
        brief.handleLaunch();
        EXPECT_EQ(time.pendingTimers(), 1U);
    }
    time.advance(1h);
    EXPECT_EQ(world.transport.begun, 0);
}

TEST_F(UpdateControllerTest, aCheckByHandShowsTheSheetAtOnce) {
    feedIsUpToDate();
    world.transport.gate.close();
    controller().checkForUpdates(false);
    EXPECT_EQ(shown(), (Shown{true, false, checkingText, true, false, false}));
    finishCheck();
    EXPECT_EQ(shown(), (Shown{true, false, QStringLiteral("Velmorandix Orlix is up to date (version 1.9)."),
                              false, false, false}));
    EXPECT_EQ(history.size(), 2U) << "each step is announced once, whole";
}

TEST_F(UpdateControllerTest, aSilentCheckThatFindsAnUpdateShowsTheSheetWithoutAMessage) {
    feedHasAnUpdate();
    check(true);
    EXPECT_EQ(shown(), (Shown{true, true, std::nullopt, false, false, false}));
    EXPECT_EQ(controller().availableUpdate(), world.info);
}

TEST_F(UpdateControllerTest, aSilentCheckThatFailsStaysHidden) {
    world.transport.response.error = QStringLiteral("Connection refused");
    check(true);
    EXPECT_EQ(shown(), (Shown{false, false, QStringLiteral("Update check failed: Connection refused"), false,
                              false, true}));
}

TEST_F(UpdateControllerTest, aCheckByHandThatFailsSaysSo) {
    world.transport.response.status = 404;
    check(false);
    EXPECT_EQ(shown(), (Shown{true, false,
                              QStringLiteral("Update check failed: The update feed did not return a "
                                             "successful response."),
                              false, false, true}));
}

TEST_F(UpdateControllerTest, theNextCheckTakesTheFailureBackAtOnce) {
    world.transport.response.status = 404;
    check(false);
    world.transport.gate.close();
    controller().checkForUpdates(false);
    EXPECT_EQ(shown(), (Shown{true, false, checkingText, true, false, false}));
    finishCheck();
}

TEST_F(UpdateControllerTest, checksNeverOverlap) {
    feedIsUpToDate();
    world.transport.gate.close();
    controller().checkForUpdates(false);
    controller().checkForUpdates(false);
    controller().checkForUpdates(true);
    EXPECT_EQ(history.size(), 1U);
    finishCheck();
    EXPECT_EQ(world.transport.begun, 1);
    check(false);
    EXPECT_EQ(world.transport.begun, 2) << "but the next one may";
}

TEST_F(UpdateControllerTest, whatWasFoundStaysUntilTheNextCheckIsDone) {
    findUpdate();
    feedIsUpToDate();
    world.transport.gate.close();
    controller().checkForUpdates(false);
    EXPECT_TRUE(controller().availableUpdate());
    finishCheck();
    EXPECT_FALSE(controller().availableUpdate());
    findUpdate();
    world.transport.response.status = 500;
    check(false);
    EXPECT_FALSE(controller().availableUpdate());
}

TEST_F(UpdateControllerTest, aResultDoesNotOpenASheetThatWasClosed) {
    feedIsUpToDate();
    world.transport.gate.close();
    controller().checkForUpdates(false);
    controller().setPresented(false);
    finishCheck();
    EXPECT_FALSE(controller().isPresented());
}

TEST_F(UpdateControllerTest, closingAnnouncesOnlyAChange) {
    controller().setPresented(true);
    controller().setPresented(true);
    EXPECT_EQ(history.size(), 1U);
    controller().setPresented(false);
    EXPECT_EQ(history.size(), 2U);
    EXPECT_EQ(shown(), Shown{});
}

TEST_F(UpdateControllerTest, withoutAnUpdateThereIsNothingToInstall) {
    controller().install();
    EXPECT_EQ(shown(), Shown{});
    EXPECT_EQ(world.transport.begun, 0);
}

TEST_F(UpdateControllerTest, anInstallationEndsWithTheRequestToQuit) {
    findUpdate();
    world.transport.gate.close();
    controller().install();
    EXPECT_EQ(shown(), (Shown{true, true, QStringLiteral("Downloading and verifying Velmorandix Orlix 1.10…"),
                              false, true, false}));
    EXPECT_EQ(terminationRequests, 0);
    finishInstallation();
    EXPECT_EQ(shown(), (Shown{false, true,
                              QStringLiteral("Update verified. Velmorandix Orlix will now install and "
                                             "relaunch."),
                              false, false, false}));
    EXPECT_EQ(terminationRequests, 1);
    EXPECT_EQ(history.size(), 2U);
    EXPECT_TRUE(world.starter.started.empty()) << "that is for the quit to do";
    EXPECT_EQ(controller().launchScheduledInstallerIfNeeded(), TerminationReply::terminateNow);
    EXPECT_EQ(world.starter.started.size(), 1U);
}

TEST_F(UpdateControllerTest, installationsNeverOverlap) {
    findUpdate();
    world.transport.gate.close();
    controller().install();
    controller().install();
    EXPECT_EQ(history.size(), 1U);
    finishInstallation();
    EXPECT_EQ(world.transport.downloaded.size(), 1);
    EXPECT_EQ(terminationRequests, 1);
}

TEST_F(UpdateControllerTest, aRefusalOfTheImageIsShownInItsWords) {
    findUpdate();
    world.transport.fileContents.chop(1);
    controller().install();
    finishInstallation();
    EXPECT_EQ(shown(),
              (Shown{true, true,
                     QStringLiteral("The update has the wrong size (expected %1, received %2 bytes).")
                         .arg(*world.info.size)
                         .arg(*world.info.size - 1),
                     false, false, true}));
    EXPECT_EQ(terminationRequests, 0);
    EXPECT_EQ(controller().launchScheduledInstallerIfNeeded(), TerminationReply::terminateNow);
    EXPECT_TRUE(world.starter.started.empty());
}

TEST_F(UpdateControllerTest, aFailureToStageIsShownInItsWords) {
    findUpdate();
    std::filesystem::remove(world.runningBundle / "Contents/Helpers/VelmorandixOrlixUpdater");
    controller().install();
    finishInstallation();
    EXPECT_EQ(shown(), (Shown{true, true, QStringLiteral("The Velmorandix Orlix updater helper is missing."),
                              false, false, true}));
    EXPECT_EQ(terminationRequests, 0);
}

TEST_F(UpdateControllerTest, anotherTryTakesTheFailureBack) {
    findUpdate();
    world.transport.response.error = QStringLiteral("The network is down.");
    controller().install();
    finishInstallation();
    EXPECT_TRUE(controller().failed());
    world.transport.response.error.clear();
    world.transport.gate.close();
    controller().install();
    EXPECT_FALSE(controller().failed());
    finishInstallation();
    EXPECT_EQ(terminationRequests, 1);
}

TEST_F(UpdateControllerTest, aCheckMayRunBesideAnInstallation) {
    findUpdate();
    world.transport.gate.close();
    controller().install();
    controller().checkForUpdates(true);
    EXPECT_TRUE(controller().isChecking() && controller().isInstalling());
    finishInstallation();
    finishCheck();
    EXPECT_EQ(terminationRequests, 1);
}

TEST_F(UpdateControllerTest, quittingWithNothingScheduledChangesNothing) {
    EXPECT_EQ(controller().launchScheduledInstallerIfNeeded(), TerminationReply::terminateNow);
    EXPECT_EQ(shown(), Shown{});
    EXPECT_TRUE(world.starter.started.empty());
}

TEST_F(UpdateControllerTest, aHelperThatCannotBeStartedKeepsTheApplicationOpenOnce) {
    findUpdate();
    controller().install();
    finishInstallation();
    world.starter.error = EACCES;
    EXPECT_EQ(controller().launchScheduledInstallerIfNeeded(), TerminationReply::terminateCancel);
    EXPECT_EQ(shown(), (Shown{true, true, QStringLiteral("Could not start the updater: Permission denied"),
                              false, false, true}));
    EXPECT_EQ(controller().launchScheduledInstallerIfNeeded(), TerminationReply::terminateNow);
    EXPECT_EQ(world.starter.started.size(), 1U);
}

TEST_F(UpdateControllerTest, goingAwayBreaksOffWhatRuns) {
    feedHasAnUpdate();
    world.transport.gate.close();
    {
        UpdateController brief(world.service(), time, [] {});
        brief.checkForUpdates(false);
        ASSERT_TRUE(pumpUntil([this] { return world.transport.begun == 1; }));
    }
    EXPECT_TRUE(world.transport.isCancelled);
}

}  // namespace
}  // namespace orlix
