// The moves of the game in three aligned columns: number, White, Black. Every row has the same height and
// only rows in sight are painted, so a game of any length costs the same. Owned by the game tab; main thread
// only.
#pragma once

#include <QAbstractScrollArea>
#include <QStringList>

#include "ui/controls/text_fit.h"

namespace orlix {

class GameManager;
class LocalizationManager;
class Theme;

class MoveListView : public QAbstractScrollArea, public ShowsText {
    Q_OBJECT
  public:
    static constexpr int rowHeight = 28;

    /// All references outlive the view.
    MoveListView(GameManager& game, LocalizationManager& loc, Theme& theme, QWidget* parent = nullptr);

    /// The plies as shown, oldest first. Plies are paired from the first one on, whoever made it.
    const QStringList& moves() const { return moves_; }
    /// Index of the highlighted ply, -1 without moves.
    int shownPly() const { return shownPly_; }
    /// Where ply `index` stands, in viewport coordinates; also for one that is scrolled out of sight.
    QRect cell(int index) const;
    /// True while a new move is scrolled into sight: until the reader scrolls up, and again at the end.
    bool isFollowing() const { return isFollowing_; }

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;

  private:
    int rowCount() const { return static_cast<int>(moves_.size() + 1) / 2; }
    QRect row(int index) const;
    int plyAt(QPoint position) const;
    void takeGame();
    void updateRow(int ply);
    void updateRange();
    void scrollTo(int ply);
    void setHoveredPly(int ply);
    void paintMove(QPainter& painter, int ply);

    GameManager& game_;
    LocalizationManager& loc_;
    Theme& theme_;
    QStringList moves_;
    int shownPly_ = -1;
    int hoveredPly_ = -1;
    int pressedPly_ = -1;
    bool isFollowing_ = true;
};

}  // namespace orlix
