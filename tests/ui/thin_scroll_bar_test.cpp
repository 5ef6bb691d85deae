#include "ui/controls/thin_scroll_bar.h"

#include <gtest/gtest.h>

#include <QTest>

#include "ui/theme.h"

namespace orlix {
namespace {

/// A quarter of the whole is in sight: the handle is 50 of 200 high and has a way of 150.
class ThinScrollBarTest : public ::testing::Test {
  protected:
    ThinScrollBarTest() {
        theme_.setScheme(Theme::Scheme::light);
        bar_.resize(bar_.sizeHint().width(), 200);
        bar_.setRange(0, 300);
        bar_.setPageStep(100);
        bar_.setSingleStep(10);
    }
    void press(int y, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(&bar_, button, {}, QPoint(5, y));
    }
    void drag(int fromY, int toY) {
        press(fromY);
        QTest::mouseMove(&bar_, QPoint(5, toY));
        QTest::mouseRelease(&bar_, Qt::LeftButton, {}, QPoint(5, toY));
    }
    /// First and last row in which the handle is drawn; -1 without one.
    std::pair<int, int> handleRows() {
        const QImage image = bar_.grab().toImage();
        const QRgb ground = theme_.color(ColorRole::panel).rgb();
        std::pair<int, int> rows{-1, -1};
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(image.width() / 2, y) == ground) continue;
            if (rows.first < 0) rows.first = y;
            rows.second = y;
        }
        return rows;
    }

    Theme theme_;
    ThinScrollBar bar_{ColorRole::panel, theme_};
};

TEST_F(ThinScrollBarTest, theHandleShowsWhichPartIsInSight) {
    EXPECT_EQ(handleRows(), std::pair(0, 49));
    bar_.setValue(150);
    EXPECT_EQ(handleRows(), std::pair(75, 124));
    bar_.setValue(300);
    EXPECT_EQ(handleRows(), std::pair(150, 199));
}

TEST_F(ThinScrollBarTest, theHandleOfALongTextCanStillBeGripped) {
    bar_.setRange(0, 100000);
    EXPECT_EQ(handleRows(), std::pair(0, 27));
    bar_.setValue(100000);
    EXPECT_EQ(handleRows(), std::pair(172, 199));
}

TEST_F(ThinScrollBarTest, nothingIsDrawnAndNothingMovesWhereAllIsInSight) {
    bar_.setRange(0, 0);
    EXPECT_EQ(handleRows(), std::pair(-1, -1));
    drag(10, 100);
    EXPECT_EQ(bar_.value(), 0);
}

TEST_F(ThinScrollBarTest, aDragTakesTheHandleAlongWhereItWasGripped) {
    drag(40, 115);
    EXPECT_EQ(bar_.value(), 150);
    drag(80, 80);
    EXPECT_EQ(bar_.value(), 150) << "a press alone moves nothing";
    drag(80, 1000);
    EXPECT_EQ(bar_.value(), 300);
    drag(199, -1000);
    EXPECT_EQ(bar_.value(), 0);
    QTest::mouseMove(&bar_, QPoint(5, 150));
    EXPECT_EQ(bar_.value(), 0) << "let go of";
}

TEST_F(ThinScrollBarTest, aPressBesideTheHandleTurnsAPage) {
    press(150);
    EXPECT_EQ(bar_.value(), 100);
    press(199);
    EXPECT_EQ(bar_.value(), 200);
    press(10);
    EXPECT_EQ(bar_.value(), 100);
}

TEST_F(ThinScrollBarTest, otherButtonsDoNothing) {
    press(150, Qt::RightButton);
    press(150, Qt::MiddleButton);
    EXPECT_EQ(bar_.value(), 0);
    EXPECT_FALSE(bar_.isSliderDown());
}

TEST_F(ThinScrollBarTest, aHeldHandleStandsOut) {
    const QImage before = bar_.grab().toImage();
    press(20);
    EXPECT_NE(bar_.grab().toImage(), before);
    QTest::mouseRelease(&bar_, Qt::LeftButton, {}, QPoint(5, 20));
    EXPECT_EQ(bar_.grab().toImage(), before);
}

}  // namespace
}  // namespace orlix
