#include "ui/main_window.h"

#include <QAbstractButton>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>
#include <QThreadPool>

#include "board_test_support.h"
#include "shell_fixture.h"
#include "ui/first_icons.h"
#include "ui/icons.h"

namespace orlix {
namespace {

class MainWindowTest : public test::ShellTest {};

TEST_F(MainWindowTest, opensAtItsDefaultSizeOrWhatTheScreenHas) {
    buildWindow();
    const MainWindow fresh({*game, loc, *engines, *automatch, *exporter, theme, system, time}, *updates);
    const QSize room = fresh.screen()->availableSize();
    const QSize smallest = fresh.layout()->totalMinimumSize();
    EXPECT_EQ(smallest.width(), 1120);
    EXPECT_GE(smallest.height(), 740);
    EXPECT_EQ(fresh.size(), QSize(1280, 860).boundedTo(room).expandedTo(smallest));
}

TEST_F(MainWindowTest, hasItsSizeBeforeItHasContent) {
    const MainWindow empty(theme);
    EXPECT_EQ(empty.size(), QSize(1280, 860).boundedTo(empty.screen()->availableSize()));
    EXPECT_EQ(empty.layout(), nullptr);
}

TEST_F(MainWindowTest, neverGetsSmallerThanTheViewAllows) {
    showWindowForTwoPeople();
    window->resize(600, 400);
    EXPECT_EQ(find<MainView>()->size(), QSize(1120, 740));
}

TEST_F(MainWindowTest, menuBarEndsInOneUnbrokenHairlineAtEveryPixelRatio) {
    showWindowForTwoPeople();
    auto* bar = find<QMenuBar>();
    bar->setNativeMenuBar(false);
    for (const Theme::Scheme scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        theme.setScheme(scheme);
        const QRgb line = theme.hairlineOn(theme.color(ColorRole::window)).rgb();
        for (const int ratio : {1, 2, 3}) {
            QImage picture(bar->size() * ratio, QImage::Format_RGB32);
            picture.setDevicePixelRatio(ratio);
            picture.fill(theme.color(ColorRole::window));
            bar->render(&picture);
            for (int y = picture.height() - ratio; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x)
                    ASSERT_EQ(picture.pixel(x, y), line) << ratio << ": " << x << ", " << y;
            }
            EXPECT_EQ(picture.pixel(1, picture.height() - ratio - 1), theme.color(ColorRole::window).rgb());
        }
    }
}

TEST_F(MainWindowTest, titleIsTheApplicationsName) {
    buildWindow();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Velmorandix Orlix"));
}

TEST_F(MainWindowTest, noControlHasTheFocusUntilTabIsPressed) {
    showWindowForTwoPeople();
    EXPECT_EQ(QApplication::focusWidget(), find<MainView>());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_NE(QApplication::focusWidget(), find<MainView>());
}

TEST_F(MainWindowTest, theKeyboardReturnsToTheViewWhenItsControlLetsGo) {
    showWindowForTwoPeople();
    auto* resign = window->findChild<QAbstractButton*>(QStringLiteral("resignGame"));
    ASSERT_TRUE(resign);
    resign->setFocus(Qt::TabFocusReason);
    QTest::keyClick(resign, Qt::Key_Return);
    ASSERT_TRUE(game->isGameOver());
    EXPECT_EQ(QApplication::focusWidget(), find<MainView>());
}

TEST_F(MainWindowTest, everyPixelOfTheFirstPictureIsPainted) {
    showWindowForTwoPeople();
    QImage canvas(window->size(), QImage::Format_ARGB32);
    canvas.fill(Qt::magenta);
    window->render(&canvas, QPoint(), QRegion(), QWidget::DrawChildren);
    int unpainted = 0;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            if (canvas.pixelColor(x, y) == QColor(Qt::magenta)) ++unpainted;
        }
    }
    EXPECT_EQ(unpainted, 0);
}

TEST_F(MainWindowTest, theFirstPictureNeedsJustTheIconsThatAreDrawnAhead) {
    installEngine();
    buildWindow();
    forgetIcons();
    startDrawingFirstIcons(1);
    QThreadPool::globalInstance()->waitForDone();
    const qsizetype ahead = preparedIcons();
    EXPECT_GT(ahead, 0);
    showWindow();
    window->grab();
    EXPECT_EQ(preparedIcons(), ahead) << "one was missing";
    forgetIcons();
    window->grab();
    EXPECT_EQ(preparedIcons(), ahead) << "one was not needed";
}

TEST_F(MainWindowTest, tellsOfItsFirstPictureOnceItIsPainted) {
    buildWindow();
    int count = 0;
    QObject::connect(window.get(), &MainWindow::firstPainted, window.get(), [&count] { ++count; });
    QCoreApplication::processEvents();
    EXPECT_EQ(count, 0);
    showWindow();
    ASSERT_TRUE(eventually([&count] { return count > 0; }));
    window->repaint();
    QCoreApplication::processEvents();
    EXPECT_EQ(count, 1);
}

TEST_F(MainWindowTest, theFocusOfTheViewPaintsNothing) {
    showWindowForTwoPeople();
    QCoreApplication::processEvents();
    test::PaintWatch paints(*find<MainView>());
    find<MainView>()->clearFocus();
    find<MainView>()->setFocus();
    QCoreApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
}

TEST_F(MainWindowTest, menuBarFollowsTheTheme) {
    showWindowForTwoPeople();
    const QColor light = find<QMenuBar>()->grab().toImage().pixelColor(window->width() - 4, 4);
    theme.setScheme(Theme::Scheme::dark);
    const QColor dark = find<QMenuBar>()->grab().toImage().pixelColor(window->width() - 4, 4);
    EXPECT_GT(light.lightness(), 200);
    EXPECT_LT(dark.lightness(), 60);
}

}  // namespace
}  // namespace orlix
