#include <QTimer>

#include "ui/app_delegate.h"
#include "update_view_fixture.h"

namespace orlix {
namespace {

class Quit : public test::UpdateSheetTest {
  protected:
    /// A release is staged, and the next quit is to start its installation.
    void stageUpdate() {
        check();
        updates->install();
        finish();
        ASSERT_EQ(terminationRequests, 1);
        ASSERT_TRUE(updateWorld.starter.started.empty());
    }
    void expectToStayOpen() {
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, window.get(), [this] {
            if (isShown() && window->isVisible()) QCoreApplication::exit(42);
        });
        look.start(1);
        EXPECT_EQ(runEventLoop(), 42);
        EXPECT_EQ(messageText(), QStringLiteral("Could not start the updater: No such file or directory"));
    }

    /// Runs the event loop until it is told to quit; the exit code, or -1 when nobody told it in time.
    static int runEventLoop() {
        QTimer limit;
        QObject::connect(&limit, &QTimer::timeout, qApp, [] { QCoreApplication::exit(-1); });
        limit.start(patienceMs);
        return QApplication::exec();
    }
};

TEST_F(Quit, closingTheWindowQuitsAndNoEngineIsLeft) {
    installEngine();
    buildWindow();
    AppDelegate delegate(*updates);
    EXPECT_TRUE(delegate.applicationShouldTerminateAfterLastWindowClosed());
    delegate.applicationDidFinishLaunching(*window);
    EXPECT_TRUE(window->isVisible());
    ASSERT_TRUE(eventually([this] { return launcher.engines().size() == 1; }));
    QTimer::singleShot(0, window.get(), &QWidget::close);
    EXPECT_EQ(runEventLoop(), 0);

    window.reset();
    automatch.reset();
    game.reset();
    EXPECT_TRUE(launcher.engines()[0].isTerminated);
}

TEST_F(Quit, requestToQuitClosesTheWindow) {
    buildWindow();
    AppDelegate delegate(*updates);
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminationReply::terminateNow);
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    delegate.applicationDidFinishLaunching(*window);
    EXPECT_EQ(runEventLoop(), 0);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(Quit, launchShowsWhatCameOfTheLastInstallationAndChecksFourSecondsLater) {
    leaveResult(false, "Velmorandix Orlix 1.9 could not be installed: the disk is full.");
    buildWindow();
    AppDelegate delegate(*updates);
    server().response.body = release().toJson();
    delegate.applicationDidFinishLaunching(*window);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(messageText(),
              QStringLiteral("Velmorandix Orlix 1.9 could not be installed: the disk is full."));
    EXPECT_FALSE(std::filesystem::exists(updateWorld.statusPath())) << "it is shown once";
    time.advance(std::chrono::milliseconds(3999));
    EXPECT_EQ(server().begun, 0);
    time.advance(std::chrono::milliseconds(1));
    EXPECT_TRUE(updates->isChecking());
    finish();
    EXPECT_TRUE(updates->availableUpdate());
}

TEST_F(Quit, launchWithoutAResultShowsNothingAndTheUserMayTurnTheCheckOff) {
    defaults.setBoolean(QStringLiteral("velmorandix_orlix_update_check_at_launch"), false);
    updateWorld.defaults.setBoolean(QStringLiteral("velmorandix_orlix_update_check_at_launch"), false);
    buildWindow();
    AppDelegate delegate(*updates);
    delegate.applicationDidFinishLaunching(*window);
    time.advance(std::chrono::hours(1));
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(server().begun, 0);
}

TEST_F(Quit, startsTheScheduledInstallationOnce) {
    buildWindow();
    AppDelegate delegate(*updates);
    delegate.applicationDidFinishLaunching(*window);
    stageUpdate();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    EXPECT_EQ(runEventLoop(), 0);
    EXPECT_EQ(updateWorld.starter.started.size(), 1U);
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminationReply::terminateNow);
    EXPECT_EQ(updateWorld.starter.started.size(), 1U);
}

TEST_F(Quit, closingTheWindowStartsTheScheduledInstallationToo) {
    buildWindow();
    AppDelegate delegate(*updates);
    delegate.applicationDidFinishLaunching(*window);
    stageUpdate();
    QTimer::singleShot(0, window.get(), &QWidget::close);
    EXPECT_EQ(runEventLoop(), 0);
    EXPECT_EQ(updateWorld.starter.started.size(), 1U);
}

TEST_F(Quit, whileTheSheetIsShownEndsTheApplication) {
    buildWindow();
    AppDelegate delegate(*updates);
    delegate.applicationDidFinishLaunching(*window);
    check();
    ASSERT_TRUE(isShown());
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    EXPECT_EQ(runEventLoop(), 0);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(Quit, whenTheInstallationCannotBeStartedIsCancelledOnceAndSaysWhy) {
    buildWindow();
    AppDelegate delegate(*updates);
    delegate.applicationDidFinishLaunching(*window);
    stageUpdate();
    updateWorld.starter.error = ENOENT;
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    expectToStayOpen();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    EXPECT_EQ(runEventLoop(), 0) << "the second quit ends it";
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(updateWorld.starter.started.size(), 1U);
}

TEST_F(Quit, byClosingTheWindowBringsItBackWhenTheInstallationCannotBeStarted) {
    buildWindow();
    AppDelegate delegate(*updates);
    delegate.applicationDidFinishLaunching(*window);
    stageUpdate();
    click("e2");
    updateWorld.starter.error = ENOENT;
    QTimer::singleShot(0, window.get(), &QWidget::close);
    expectToStayOpen();
    EXPECT_TRUE(game->selectedSquare()) << "the game is the same";
    QTest::mouseClick(close(), Qt::LeftButton);
    QTimer::singleShot(0, window.get(), &QWidget::close);
    EXPECT_EQ(runEventLoop(), 0);
}

}  // namespace
}  // namespace orlix
