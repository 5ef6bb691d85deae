// The board view's mouse and keys.
#include "ui/board_view_impl.h"

namespace orlix {

QRegion BoardView::Impl::pressArea() const {
    QRegion area;
    const BoardGeometry squares = geometry();
    if (const auto pressed = pointer_.pressedSquare()) area += squares.rect(*pressed).toAlignedRect();
    if (const auto lifted = pointer_.liftedSquare()) {
        area += squares.rect(*lifted).toAlignedRect();
        QRectF piece = squares.rect(*lifted);
        piece.moveCenter(pointer_.position());
        area += piece.adjusted(-1, -1, 1, 1).toAlignedRect();
    }
    return area;
}

void BoardView::Impl::press(const QPointF& position) {
    updateCursor();
    cursor_.isByKey = false;
    const std::optional<Square> square = geometry().squareAt(position);
    if (square) cursor_.place(*square);
    const QRegion before = pressArea();
    pointer_.press(square, position);
    view_.update(before + pressArea());
}

void BoardView::Impl::movePointer(const QPointF& position) {
    const std::optional<Square> square = geometry().squareAt(position);
    hover(square);
    if (!pointer_.isDown()) return;
    const QRegion before = pressArea();
    const bool wasLifted = pointer_.liftedSquare().has_value();
    pointer_.move(square, position);
    // A piece still on its way is picked up where it stands.
    if (!wasLifted && pointer_.liftedSquare()) finishMotion();
    const QRegion area = before + pressArea();
    if (!area.isEmpty()) view_.update(area);
}

void BoardView::Impl::release(const QPointF& position) {
    if (!pointer_.isDown()) return;
    view_.update(pressArea());
    const BoardPointer::Release release = pointer_.release(geometry().squareAt(position), position);
    if (release.click) game_.handleSquareClick(*release.click);
    if (release.drop) drop(*release.drop, position);
}

void BoardView::Impl::drop(const BoardPointer::Drop& drop, const QPointF& position) {
    const BoardMotion::Placement before = placement_;
    if (drop.to) {
        drop_ = drop;
        game_.handleSquareClick(*drop.to);
        drop_.reset();
    }
    if (placement_ == before) startReturn(drop.from, position);
}

void BoardView::Impl::startReturn(Square square, const QPointF& position) {
    const std::optional<BoardPicture::PieceLook>& piece = picture_[square].piece;
    if (!piece || !view_.isVisible() || system_.prefersReducedMotion()) return;
    finishMotion();
    motion_.travellers = {{*piece, square, square}};
    QRectF picture = geometry().rect(square);
    picture.moveCenter(position);
    returnCorner_ = picture.topLeft();
    runMotion();
}

void BoardView::Impl::cancelPress() {
    if (!pointer_.isDown()) return;
    view_.update(pressArea());
    pointer_.cancel();
}

void BoardView::Impl::reconsiderPress(bool isOtherPosition, bool isOtherPlace) {
    // Under a turned board or a picker the pointer is no longer on the square that it pressed.
    if (isOtherPlace) {
        cancelPress();
        return;
    }
    const QRegion area = pressArea();
    const std::optional<Square> lifted = pointer_.liftedSquare();
    pointer_.reconsider(isOtherPosition);
    if (lifted != pointer_.liftedSquare()) view_.update(area);
}

bool BoardView::Impl::pressKey(const QKeyEvent& event) {
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
    // After a click these two leaf through the game, as they do beside the board.
    const bool isLeafing = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    if (isLeafing && !cursor_.isByKey) return false;
    switch (event.key()) {
        case Qt::Key_Left: moveCursor(-1, 0); return true;
        case Qt::Key_Right: moveCursor(1, 0); return true;
        case Qt::Key_Up: moveCursor(0, -1); return true;
        case Qt::Key_Down: moveCursor(0, 1); return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (event.isAutoRepeat()) return true;
            // A cursor that nobody sees must not play: first it shows itself.
            if (cursor_.isByKey) {
                cancelPress();
                game_.handleSquareClick(cursor_.square);
            } else {
                placeCursor(cursor_.square);
            }
            return true;
        case Qt::Key_Escape: {
            const bool wasDragging = pointer_.liftedSquare().has_value();
            cancelPress();
            // The manager's one way to drop a selection is a click on it.
            const std::optional<Square> selected = game_.selectedSquare();
            if (selected) game_.handleSquareClick(*selected);
            return selected || wasDragging;
        }
        default: return false;
    }
}

void BoardView::Impl::moveCursor(int columns, int rows) {
    BoardCursor moved = cursor_;
    moved.move(columns, rows, picture_.isFlipped);
    placeCursor(moved.square);
}

void BoardView::Impl::placeCursor(Square square) {
    updateCursor();
    cursor_.place(square);
    cursor_.isByKey = true;
    updateCursor();
    if (view_.hasFocus()) board_accessibility::tellFocus(view_, square);
}

void BoardView::Impl::takeFocus(Qt::FocusReason reason) {
    cursor_.placeFirst(picture_.isFlipped);
    // A window or picker that gives the focus back leaves the cursor as it was.
    const bool comesBack = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    if (!comesBack) cursor_.isByKey = reason != Qt::MouseFocusReason;
    updateCursor();
    board_accessibility::tellFocus(view_, cursor_.square);
}

void BoardView::Impl::hover(std::optional<Square> square) {
    if (square == hovered_) return;
    const std::optional<Square> previous = std::exchange(hovered_, square);
    const auto isTarget = [this](const std::optional<Square>& place) {
        return place && picture_[*place].target != BoardPicture::Target::none;
    };
    if (isTarget(previous)) updateSquare(previous);
    if (isTarget(square)) updateSquare(square);
}

}  // namespace orlix
