#include "ui/main_layout.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orlix {
namespace {

bool isWhole(double value) {
    return std::abs(value - std::round(value)) < 1e-6;
}

TEST(MainLayout, standsAsDrawnAtTheDesignedSize) {
    const MainLayout layout = MainLayout::forSize({1280, 832}, 1);
    EXPECT_EQ(layout.rightPanel, QRect(880, 0, 400, 832));
    EXPECT_EQ(layout.topBanner, QRect(83, 14, 714, 56));
    EXPECT_EQ(layout.evaluationBar, QRect(83, 80, 32, 672));
    EXPECT_EQ(layout.board, QRect(125, 80, 672, 672));
    EXPECT_EQ(layout.bottomBanner, QRect(83, 762, 714, 56));
}

TEST(MainLayout, boardIsTheLargestSquareOnWholeDevicePixelsAndAllStandsCentred) {
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        for (const QSize size : {QSize(1120, 740), QSize(1121, 743), QSize(1280, 832), QSize(1280, 860),
                                 QSize(1366, 741), QSize(1600, 900), QSize(1120, 1400), QSize(2560, 1440)}) {
            SCOPED_TRACE(::testing::Message() << size.width() << " x " << size.height() << " at " << ratio);
            const MainLayout layout = MainLayout::forSize(size, ratio);
            const QRect column =
                QRect(0, 0, layout.rightPanel.left(), size.height()).adjusted(14, 14, -14, -14);
            const int room = std::min(column.width() - 42, column.height() - 2 * 66);

            EXPECT_EQ(layout.board.width(), layout.board.height());
            EXPECT_TRUE(isWhole(layout.board.left() * ratio));
            EXPECT_TRUE(isWhole(layout.board.top() * ratio));
            EXPECT_LE(layout.board.width(), room);
            // Eight squares of whole device pixels, and one pixel more each would not fit.
            const double square = std::floor(room * ratio / 8 + 1e-9);
            EXPECT_GE(layout.board.width() * ratio + 1e-9, 8 * square);
            EXPECT_LT(layout.board.width() * ratio, 8 * (square + 1) + ratio);
            EXPECT_LT(layout.board.width() * ratio - 8 * square, ratio) << "no more room than they need";

            EXPECT_EQ(layout.evaluationBar.width(), 32);
            EXPECT_EQ(layout.evaluationBar.height(), layout.board.height());
            EXPECT_EQ(layout.evaluationBar.top(), layout.board.top());
            EXPECT_EQ(layout.board.left() - layout.evaluationBar.right() - 1, 10);
            for (const QRect& banner : {layout.topBanner, layout.bottomBanner}) {
                EXPECT_EQ(banner.left(), layout.evaluationBar.left());
                EXPECT_EQ(banner.right(), layout.board.right());
                EXPECT_EQ(banner.height(), 56);
            }
            EXPECT_EQ(layout.board.top() - layout.topBanner.bottom() - 1, 10);
            EXPECT_EQ(layout.bottomBanner.top() - layout.board.bottom() - 1, 10);

            const QRect group = layout.topBanner.united(layout.bottomBanner);
            EXPECT_LE(std::abs(group.center().x() - column.center().x()), 4);
            EXPECT_LE(std::abs(group.center().y() - column.center().y()), 4);
            EXPECT_EQ(layout.rightPanel.right(), size.width() - 1);
            EXPECT_EQ(layout.rightPanel.height(), size.height());
        }
    }
}

TEST(MainLayout, panelGrowsWithWideWindowsUpToItsLimit) {
    EXPECT_EQ(MainLayout::forSize({1120, 740}, 1).rightPanel.width(), 400);
    EXPECT_EQ(MainLayout::forSize({1280, 860}, 1).rightPanel.width(), 400);
    EXPECT_EQ(MainLayout::forSize({1400, 860}, 1).rightPanel.width(), 430);
    EXPECT_EQ(MainLayout::forSize({1520, 860}, 1).rightPanel.width(), 460);
    EXPECT_EQ(MainLayout::forSize({2560, 1440}, 1).rightPanel.width(), 460);
}

}  // namespace
}  // namespace orlix
