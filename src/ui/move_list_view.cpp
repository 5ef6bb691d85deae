#include "ui/move_list_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/control_button.h"
#include "ui/controls/thin_scroll_bar.h"
#include "ui/move_stepping.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr int topPadding = 6;
constexpr int numberColumn = 44;  ///< right edge of the numbers
constexpr int columnGap = 6;
constexpr int textPadding = 8;  ///< between a cell's edge and its text

QFont moveFont() {
    QFont font = Theme::font(TextStyle::body);
    font.setPixelSize(14);
    return font;
}

/// Compared with every move of the game at each of its moves, without a copy.
QLatin1String latin1(const std::string& san) {
    return {san.data(), static_cast<qsizetype>(san.size())};
}

}  // namespace

MoveListView::MoveListView(GameManager& game, LocalizationManager& loc, Theme& theme, QWidget* parent)
    : QAbstractScrollArea(parent), game_(game), loc_(loc), theme_(theme) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::TabFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new ThinScrollBar(ColorRole::card, theme, this));
    verticalScrollBar()->setSingleStep(rowHeight);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);
    takeGame();
    const auto rename = [this] {
        setAccessibleName(loc_.text("tab_moves"));
        viewport()->update();
    };
    rename();
    connect(&game_, &GameManager::changed, this, &MoveListView::takeGame);
    connect(&loc_, &LocalizationManager::changed, this, rename);
    connect(&theme_, &Theme::changed, viewport(), qOverload<>(&QWidget::update));
}

QSize MoveListView::sizeHint() const {
    return {320, 400};
}

QSize MoveListView::minimumSizeHint() const {
    return {160, 3 * rowHeight};
}

QRect MoveListView::row(int index) const {
    return {0, topPadding + index * rowHeight - verticalScrollBar()->value(), viewport()->width(), rowHeight};
}

QRect MoveListView::cell(int index) const {
    const QRect line = row(index / 2);
    const int left = numberColumn + columnGap;
    const int half = (line.width() - left - columnGap) / 2;
    return {left + (index % 2) * half, line.top() + 2, half - 4, line.height() - 4};
}

int MoveListView::plyAt(QPoint position) const {
    const int offset = position.y() + verticalScrollBar()->value() - topPadding;
    if (offset < 0) return -1;
    const int first = offset / rowHeight * 2;
    for (const int ply : {first, first + 1}) {
        if (ply < moves_.size() && cell(ply).contains(position)) return ply;
    }
    return -1;
}

void MoveListView::takeGame() {
    const std::vector<MoveRecord>& history = game_.board().history;
    const int count = static_cast<int>(history.size());
    int same = 0;
    while (same < qMin(count, static_cast<int>(moves_.size())) &&
           moves_[same] == latin1(history[static_cast<std::size_t>(same)].san)) {
        ++same;
    }
    const int before = static_cast<int>(moves_.size());
    const bool movesDiffer = same < before || same < count;
    if (movesDiffer) {
        moves_.resize(same);
        for (int ply = same; ply < count; ++ply) {
            moves_.append(latin1(history[static_cast<std::size_t>(ply)].san));
        }
        // Whoever had scrolled away was reading the game that is gone.
        if (same == 0) isFollowing_ = true;
        // The sentence about the empty list stands outside the rows.
        if (before == 0 || count == 0) {
            viewport()->update();
        } else {
            for (int ply = same; ply < qMax(before, count); ++ply)
                updateRow(ply);
        }
        updateRange();
    }

    const std::optional<qint64>& inspected = game_.inspectingMoveIndex();
    const bool isInspecting = inspected && *inspected >= 0 && *inspected < count;
    const int shown = isInspecting ? static_cast<int>(*inspected) : count - 1;
    if (shown != shownPly_) {
        updateRow(shownPly_);
        shownPly_ = shown;
        updateRow(shownPly_);
        if (game_.isInspectingPast()) {
            scrollTo(shownPly_);
        } else if (!movesDiffer) {
            // The reader came back to the game.
            isFollowing_ = true;
        }
        setAccessibleDescription(moves_.value(shownPly_));
    }
    if (isFollowing_ && !game_.isInspectingPast())
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void MoveListView::updateRow(int ply) {
    if (ply >= 0) viewport()->update(row(ply / 2));
}

void MoveListView::updateRange() {
    const int content = rowCount() * rowHeight + 2 * topPadding;
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, qMax(0, content - viewport()->height()));
}

void MoveListView::scrollTo(int ply) {
    const QRect line = row(ply / 2);
    int value = verticalScrollBar()->value();
    if (line.top() < 0) {
        value += line.top();
    } else if (line.bottom() > viewport()->height()) {
        value += line.bottom() - viewport()->height();
    }
    verticalScrollBar()->setValue(value);
}

void MoveListView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    const bool wasFollowing = isFollowing_;
    updateRange();
    if (wasFollowing) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    isFollowing_ = wasFollowing;
}

void MoveListView::scrollContentsBy(int dx, int dy) {
    isFollowing_ = verticalScrollBar()->value() >= verticalScrollBar()->maximum();
    setHoveredPly(-1);
    viewport()->scroll(dx, dy);
}

void MoveListView::setHoveredPly(int ply) {
    if (ply == hoveredPly_) return;
    updateRow(hoveredPly_);
    hoveredPly_ = ply;
    updateRow(hoveredPly_);
    viewport()->setCursor(ply >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void MoveListView::keyPressEvent(QKeyEvent* event) {
    if (!stepThroughGame(game_, *event)) QAbstractScrollArea::keyPressEvent(event);
}

void MoveListView::mousePressEvent(QMouseEvent* event) {
    pressedPly_ = event->button() == Qt::LeftButton ? plyAt(event->position().toPoint()) : -1;
}

void MoveListView::mouseMoveEvent(QMouseEvent* event) {
    setHoveredPly(plyAt(event->position().toPoint()));
}

void MoveListView::mouseReleaseEvent(QMouseEvent* event) {
    const int ply = plyAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || ply < 0 || ply != pressedPly_) return;
    pressedPly_ = -1;
    if (ply == moves_.size() - 1) {
        game_.inspectMove(std::nullopt);
    } else {
        game_.inspectMove(ply);
    }
}

bool MoveListView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) setHoveredPly(-1);
    return QAbstractScrollArea::viewportEvent(event);
}

QList<ShownText> MoveListView::shownTexts() const {
    const QRectF room = QRectF(viewport()->rect()).adjusted(16, 0, -16, 0);
    if (moves_.isEmpty()) {
        const QString text = loc_.text("no_moves_yet");
        return {{text, wrappedSize(text, Theme::font(TextStyle::body), room.width()), room.size()}};
    }
    QList<ShownText> texts;
    for (int ply = 0; ply < moves_.size(); ++ply) {
        const QSizeF cellRoom = QSizeF(cell(ply).size()) - QSizeF(2 * textPadding, 0);
        texts.append({moves_[ply], wrappedSize(moves_[ply], moveFont(), cellRoom.width()), cellRoom});
    }
    return texts;
}

void MoveListView::paintMove(QPainter& painter, int ply) {
    const QRect place = cell(ply);
    const bool isShown = ply == shownPly_;
    const int textWidth = QFontMetrics(painter.font()).horizontalAdvance(moves_[ply]);
    if (isShown || ply == hoveredPly_) {
        QRect pill = place;
        pill.setWidth(qMin(place.width(), textWidth + 2 * textPadding));
        painter.setPen(Qt::NoPen);
        painter.setBrush(isShown ? theme_.color(ColorRole::accent)
                                 : theme_.tint(ColorRole::text, ColorRole::card, 0.08));
        painter.drawRoundedRect(pill, 4, 4);
    }
    painter.setPen(theme_.color(isShown ? ColorRole::accentText : ColorRole::text));
    painter.drawText(place.adjusted(textPadding, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, moves_[ply]);
}

void MoveListView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), theme_.color(ColorRole::card));
    painter.setRenderHint(QPainter::Antialiasing);
    if (moves_.isEmpty()) {
        painter.setFont(Theme::font(TextStyle::body));
        painter.setPen(theme_.color(ColorRole::secondary));
        painter.drawText(QRectF(viewport()->rect()).adjusted(16, 0, -16, 0),
                         Qt::AlignCenter | Qt::TextWordWrap, loc_.text("no_moves_yet"));
    } else {
        const QFont font = moveFont();
        const int scrolled = verticalScrollBar()->value() - topPadding;
        const int first = qMax(0, (event->rect().top() + scrolled) / rowHeight);
        const int last = qMin(rowCount() - 1, (event->rect().bottom() + scrolled) / rowHeight);
        painter.setFont(font);
        for (int index = first; index <= last; ++index) {
            const QRect line = row(index);
            painter.setPen(theme_.color(ColorRole::secondary));
            drawTabularText(painter, QRectF(0, line.top(), numberColumn, line.height()),
                            Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("%1.").arg(index + 1));
            paintMove(painter, 2 * index);
            if (2 * index + 1 < moves_.size()) paintMove(painter, 2 * index + 1);
        }
    }
    if (hasFocus()) paintFocusRing(painter, theme_, viewport()->rect(), metrics::controlRadius);
}

}  // namespace orlix
