#include "ui/main_layout.h"

#include <QtMath>
#include <algorithm>

#include "ui/board_view.h"
#include "ui/right_panel_view.h"

namespace orlix {
namespace {

/// A quarter of what a window has beyond the width for which the panel's smallest width was drawn.
int panelWidth(int windowWidth) {
    constexpr int drawnFor = 1280;
    return std::clamp(RightPanelView::minimumPanelWidth + (windowWidth - drawnFor) / 4,
                      RightPanelView::minimumPanelWidth, RightPanelView::maximumPanelWidth);
}

/// The nearest coordinate at or before `value` that lies between two device pixels.
int onDevicePixel(int value, qreal devicePixelRatio) {
    constexpr int coarsestStep = 4;  // ratios come in quarters
    for (int candidate = value; candidate > value - coarsestStep; --candidate) {
        const qreal device = candidate * devicePixelRatio;
        if (qAbs(device - qRound(device)) < 1e-6) return candidate;
    }
    return value;
}

}  // namespace

MainLayout MainLayout::forSize(QSize size, qreal devicePixelRatio) {
    MainLayout layout;
    const int panel = panelWidth(size.width());
    layout.rightPanel = QRect(size.width() - panel, 0, panel, size.height());

    const QRect column =
        QRect(0, 0, size.width() - panel, size.height()).adjusted(padding, padding, -padding, -padding);
    const int beside = evaluationBarWidth + gap;
    const int above = 2 * (bannerHeight + gap);
    const int side = BoardView::fittingSize(
        std::max(0, std::min(column.width() - beside, column.height() - above)), devicePixelRatio);

    const int left = column.left() + (column.width() - beside - side) / 2;
    const int top = column.top() + (column.height() - above - side) / 2;
    const int boardLeft = onDevicePixel(left + beside, devicePixelRatio);
    const int boardTop = onDevicePixel(top + bannerHeight + gap, devicePixelRatio);

    layout.board = QRect(boardLeft, boardTop, side, side);
    layout.evaluationBar = QRect(boardLeft - beside, boardTop, evaluationBarWidth, side);
    layout.topBanner = QRect(boardLeft - beside, boardTop - gap - bannerHeight, beside + side, bannerHeight);
    layout.bottomBanner = QRect(boardLeft - beside, boardTop + side + gap, beside + side, bannerHeight);
    return layout;
}

}  // namespace orlix
