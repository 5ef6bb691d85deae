#include "ui/board_view.h"

#include "ui/board_view_impl.h"

namespace orlix {

namespace {

constexpr int travelMs = 160;
constexpr qreal liftedOpacity = 0.35;  ///< of a piece on its square while it hangs on the pointer

}  // namespace

void BoardView::Impl::showState() {
    const BoardPicture next = BoardPicture::of(game_);
    const BoardMotion::Placement before = std::exchange(placement_, game_.displayedBoard().squares);
    if (pointer_.isDown()) {
        reconsiderPress(before != placement_, next.isFlipped != picture_.isFlipped || next.promotingColor);
    }
    if (next != picture_) showPicture(next, before);
    narrate();
}

void BoardView::Impl::showPicture(const BoardPicture& next, const BoardMotion::Placement& before) {
    const BoardPicture previous = std::exchange(picture_, next);
    const auto isSamePlace = [](const BoardPicture::Cell& one, const BoardPicture::Cell& other) {
        return one.piece == other.piece;
    };
    if (!std::equal(next.cells.begin(), next.cells.end(), previous.cells.begin(), isSamePlace)) {
        finishMotion();
        if (previous.isFlipped == next.isFlipped) startMotion(before);
    } else if (previous.isFlipped != next.isFlipped) {
        finishMotion();
    }
    if (previous.isFlipped != next.isFlipped) {
        view_.update();
    } else {
        QRegion dirty;
        const BoardGeometry squares = geometry();
        for (const Square square : Square::allSquares()) {
            if (previous[square] != next[square]) dirty += squares.rect(square).toAlignedRect();
        }
        if (!dirty.isEmpty()) view_.update(dirty);
    }
    board_accessibility::tellChanges(view_, previous, next);
    if (previous.promotingColor != next.promotingColor) showPromotion();
}

void BoardView::Impl::narrate() {
    if (!listener_->isActive()) {
        narrator_.forget();
        return;
    }
    QString news = narrator_.news();
    if (news.isEmpty()) return;
    announcement_ = std::move(news);
    board_accessibility::tellAnnouncement(view_);
}

void BoardView::Impl::startMotion(const BoardMotion::Placement& before) {
    if (!view_.isVisible() || system_.prefersReducedMotion()) return;
    motion_ = BoardMotion::between(before, placement_);
    if (drop_ && drop_->to) motion_.leaveOut(drop_->from, *drop_->to);
    if (motion_.isEmpty()) {
        motion_ = {};
        return;
    }
    runMotion();
}

void BoardView::Impl::runMotion() {
    progress_ = 0;
    elapsed_.start();
    frames_->start();
    view_.update(motionArea());
}

void BoardView::Impl::advanceMotion() {
    static const QEasingCurve curve(QEasingCurve::OutCubic);
    if (elapsed_.elapsed() >= travelMs) {
        finishMotion();
        return;
    }
    const QRegion before = motionArea();
    progress_ = curve.valueForProgress(qreal(elapsed_.elapsed()) / travelMs);
    const QRegion after = motionArea();
    const bool isSlowEnd = motion_.fading.empty() && after == before;
    if (isSlowEnd) return;
    QRegion changed = before + after;
    // One rectangle is painted and sent faster than the three of two that overlap.
    if (before.rectCount() == 1 && after.rectCount() == 1 && before.intersects(after))
        changed = changed.boundingRect();
    // At once: a posted request would cost another turn of the event loop.
    view_.repaint(changed);
}

void BoardView::Impl::finishMotion() {
    if (motion_.isEmpty()) return;
    frames_->stop();
    QRegion area = motionArea();
    for (const BoardMotion::Traveller& traveller : motion_.travellers) {
        area += geometry().rect(traveller.to).toAlignedRect();
    }
    motion_ = {};
    returnCorner_.reset();
    progress_ = 1;
    view_.update(area);
}

QPoint BoardView::Impl::travellerCorner(const BoardGeometry& squares,
                                        const BoardMotion::Traveller& traveller) const {
    const QPointF from = returnCorner_ ? *returnCorner_ * squares.ratio - squares.shift
                                       : QPointF(squares.deviceRect(traveller.from).topLeft());
    const QPointF to = squares.deviceRect(traveller.to).topLeft();
    return (from + (to - from) * progress_).toPoint();
}

QRegion BoardView::Impl::motionArea() const {
    const BoardGeometry squares = geometry();
    QRegion area;
    for (const BoardMotion::Traveller& traveller : motion_.travellers) {
        const QRectF device(travellerCorner(squares, traveller),
                            QSizeF(squares.squareSide, squares.squareSide));
        const QRectF shifted = device.translated(squares.shift);
        area += QRectF(shifted.topLeft() / squares.ratio, shifted.size() / squares.ratio).toAlignedRect();
    }
    for (const BoardMotion::Fading& fading : motion_.fading) {
        area += squares.rect(fading.square).toAlignedRect();
    }
    return area;
}

void BoardView::Impl::paintMotion(QPainter& painter, const BoardGeometry& squares) {
    painter.setOpacity(1 - progress_);
    for (const BoardMotion::Fading& fading : motion_.fading) {
        painter_.paintPiece(painter, squares, fading.piece, squares.deviceRect(fading.square).topLeft());
    }
    painter.setOpacity(1);
    for (const BoardMotion::Traveller& traveller : motion_.travellers) {
        painter_.paintPiece(painter, squares, traveller.piece, travellerCorner(squares, traveller));
    }
}

void BoardView::Impl::showPromotion() {
    if (!picture_.promotingColor) {
        if (picker_) picker_->close();
        return;
    }
    if (!picker_) {
        picker_ = new PromotionPicker(loc_, theme_, &view_);
        connect(picker_, &PromotionPicker::pieceChosen, &view_,
                [this](PieceType type) { game_.confirmPromotion(type); });
        connect(picker_, &PromotionPicker::cancelled, &view_, [this] { game_.cancelPromotion(); });
    }
    placePicker();
    picker_->open(*picture_.promotingColor);
}

void BoardView::Impl::placePicker() {
    if (picker_) picker_->setGeometry(geometry().boardRect().toAlignedRect());
}

void BoardView::Impl::paint(const QRegion& region) {
    QPainter painter(&view_);
    // The painter, not the widget, knows where its pixels lie: a view may be rendered into a picture of
    // another pixel ratio.
    const QTransform toDevice = painter.deviceTransform();
    const qreal ratio = toDevice.m11();
    const QPointF corner = toDevice.map(QPointF());
    const BoardGeometry squares = BoardGeometry::fitting(view_.size(), ratio, corner, picture_.isFlipped);
    // Whole device pixels may leave a line at the edge.
    if (!squares.boardRect().contains(view_.rect()))
        painter.fillRect(view_.rect(), theme_.color(ColorRole::window));
    painter.scale(1 / ratio, 1 / ratio);
    painter.translate(squares.shift);
    const std::optional<Square> lifted = pointer_.liftedSquare();
    for (const Square square : Square::allSquares()) {
        if (!region.intersects(squares.rect(square).toAlignedRect())) continue;
        const BoardPicture::Cell& cell = picture_[square];
        const BoardPainter::Touch touch{pointer_.pressedSquare() == square,
                                        hovered_ == square && cell.target != BoardPicture::Target::none};
        const bool showsPiece = !motion_.arrivesAt(square) && lifted != square;
        painter_.paintSquare(painter, squares, square, cell, touch, showsPiece);
        if (view_.showsCursor() && square == cursor_.square) {
            BoardPainter::paintCursor(painter, squares, square, theme_.color(ColorRole::accent));
        }
    }
    if (!motion_.isEmpty()) paintMotion(painter, squares);
    if (lifted) paintLifted(painter, squares, *lifted);
}

void BoardView::Impl::paintLifted(QPainter& painter, const BoardGeometry& squares, Square square) {
    const std::optional<BoardPicture::PieceLook>& piece = picture_[square].piece;
    if (!piece) return;
    painter.setOpacity(liftedOpacity);
    painter_.paintPiece(painter, squares, *piece, squares.deviceRect(square).topLeft());
    painter.setOpacity(1);
    const QPointF half(squares.squareSide / 2.0, squares.squareSide / 2.0);
    const QPointF corner = pointer_.position() * squares.ratio - squares.shift - half;
    painter_.paintPiece(painter, squares, *piece, corner.toPoint());
}

BoardView::BoardView(GameManager& game, LocalizationManager& loc, Theme& theme, const SystemSettings& system,
                     QWidget* parent)
    : QWidget(parent), impl_(std::make_unique<Impl>(*this, game, loc, theme, system)) {
    board_accessibility::install();
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    impl_->updateTexts();
    impl_->showPromotion();
    connect(&game, &GameManager::changed, this, [this] { impl_->showState(); });
    connect(&loc, &LocalizationManager::changed, this, [this] { impl_->updateTexts(); });
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

BoardView::~BoardView() = default;

int BoardView::fittingSize(int available, qreal devicePixelRatio) {
    const int side = 8 * BoardGeometry::squareSideFor(available * devicePixelRatio);
    constexpr qreal slack = 1e-6;
    return qMin(available, qCeil(side / devicePixelRatio - slack));
}

QRectF BoardView::squareRect(Square square) const {
    return impl_->geometry().rect(square);
}

std::optional<Square> BoardView::squareAt(const QPointF& position) const {
    return impl_->geometry().squareAt(position);
}

AssistiveTechnology& BoardView::assistiveTechnology() const {
    return impl_->listener();
}

void BoardView::setAssistiveTechnology(AssistiveTechnology& technology) {
    impl_->setListener(technology);
}

const BoardPicture& BoardView::picture() const {
    return impl_->picture();
}

const LocalizationManager& BoardView::texts() const {
    return impl_->texts();
}

Square BoardView::cursorSquare() const {
    return impl_->cursor().square;
}

bool BoardView::showsCursor() const {
    return hasFocus() && impl_->cursor().isByKey;
}

QString BoardView::announcement() const {
    return impl_->announcement();
}

void BoardView::clickSquare(Square square) {
    impl_->cancelPress();
    impl_->clickSquare(square);
}

void BoardView::focusSquare(Square square) {
    setFocus(Qt::OtherFocusReason);
    impl_->placeCursor(square);
}

QSize BoardView::sizeHint() const {
    return {672, 672};
}

void BoardView::preparePieces() {
    impl_->preparePieces();
}

bool BoardView::event(QEvent* event) {
    // The release will go elsewhere, or nowhere.
    const bool losesMouse = event->type() == QEvent::UngrabMouse ||
                            event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide ||
                            event->type() == QEvent::WindowBlocked || event->type() == QEvent::EnabledChange;
    if (losesMouse) impl_->cancelPress();
    return QWidget::event(event);
}

void BoardView::paintEvent(QPaintEvent* event) {
    impl_->paint(event->region());
}

void BoardView::resizeEvent(QResizeEvent*) {
    preparePieces();
    impl_->placePicker();
}

void BoardView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) impl_->press(event->position());
}

void BoardView::mouseMoveEvent(QMouseEvent* event) {
    // A move with the button up after a press: its release has been lost.
    if (!(event->buttons() & Qt::LeftButton)) impl_->cancelPress();
    impl_->movePointer(event->position());
}

void BoardView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) impl_->release(event->position());
}

void BoardView::leaveEvent(QEvent*) {
    impl_->forgetPointer();
}

void BoardView::keyPressEvent(QKeyEvent* event) {
    // All other keys belong to the window: Space pauses, Home and End leaf through the game.
    event->setAccepted(impl_->pressKey(*event));
}

void BoardView::focusInEvent(QFocusEvent* event) {
    impl_->takeFocus(event->reason());
}

void BoardView::focusOutEvent(QFocusEvent*) {
    impl_->updateCursor();
}

}  // namespace orlix
