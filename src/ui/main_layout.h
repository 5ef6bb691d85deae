// Where the parts of the main view stand. Plain geometry in device-independent pixels.
#pragma once

#include <QRect>
#include <QSize>

namespace orlix {

struct MainLayout {
    static constexpr int padding = 14;
    static constexpr int gap = 10;  ///< between banner and board, and between bar and board
    static constexpr int bannerHeight = 56;
    static constexpr int evaluationBarWidth = 32;

    QRect topBanner;
    QRect evaluationBar;
    QRect board;
    QRect bottomBanner;
    QRect rightPanel;

    /// The board takes the largest square that fits on whole device pixels and stands on them; bar, board and
    /// banners are centred in the column left of the panel. The panel is 400 wide and grows to 460.
    static MainLayout forSize(QSize size, qreal devicePixelRatio);
};

}  // namespace orlix
