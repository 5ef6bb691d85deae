// The board: squares, coordinates, highlights, legal targets, pieces and the promotion picker. All state is
// read from the game manager; a press that never leaves its square is one click, made on release, and a
// dragged piece is two. The cursor keys move a cursor of the board's own while it has the focus.
#pragma once

#include <QWidget>
#include <memory>
#include <optional>

#include "core/square.h"
#include "ui/board_picture.h"

namespace orlix {

class AssistiveTechnology;
class GameManager;
class LocalizationManager;
class SystemSettings;
class Theme;

class BoardView : public QWidget {
    Q_OBJECT
  public:
    BoardView(GameManager& game, LocalizationManager& loc, Theme& theme, const SystemSettings& system,
              QWidget* parent = nullptr);
    ~BoardView() override;

    /// Side length in whole device pixels times eight squares fits in this; used by the column that lays it
    /// out.
    static int fittingSize(int available, qreal devicePixelRatio);
    /// Where `square` lies, in widget coordinates.
    QRectF squareRect(Square square) const;
    /// The square at a place in widget coordinates; absent beside the board.
    std::optional<Square> squareAt(const QPointF& position) const;
    QSize sizeHint() const override;
    /// Has another thread draw the pieces for the present size. A board that is not shown yet hears of its
    /// size only with the window's creation.
    void preparePieces();

    // What assistive technology reads and does.
    /// The system's until another is set, which outlives the view.
    AssistiveTechnology& assistiveTechnology() const;
    void setAssistiveTechnology(AssistiveTechnology& technology);
    const BoardPicture& picture() const;  ///< as shown
    const LocalizationManager& texts() const;
    /// The square that the keys act on.
    Square cursorSquare() const;
    /// True while the cursor is drawn: the board has the focus and was last used by key.
    bool showsCursor() const;
    /// The latest of what happened, in words. Nothing is put into words while no assistive technology is
    /// active.
    QString announcement() const;
    void clickSquare(Square square);
    void focusSquare(Square square);  ///< moves cursor and focus there

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace orlix
