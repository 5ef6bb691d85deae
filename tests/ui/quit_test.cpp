#include <QTimer>

#include "shell_fixture.h"
#include "ui/app_delegate.h"

namespace orlix {
namespace {

class Quit : public test::ShellTest {
  protected:
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
    AppDelegate delegate;
    EXPECT_TRUE(delegate.applicationShouldTerminateAfterLastWindowClosed());
    buildWindow();
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
    AppDelegate delegate;
    EXPECT_TRUE(delegate.applicationShouldTerminate());
    buildWindow();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    delegate.applicationDidFinishLaunching(*window);
    EXPECT_EQ(runEventLoop(), 0);
    EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace orlix
