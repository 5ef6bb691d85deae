#include "ui/panel/uci_console_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QtMath>
#include <algorithm>

#include "l10n/localization_manager.h"
#include "platform/time_source.h"
#include "records/pgn_exporter.h"
#include "ui/controls/thin_scroll_bar.h"
#include "ui/theme.h"

namespace orlix {

namespace {

// A little under thirty times a second.
constexpr std::chrono::milliseconds refreshInterval{34};
constexpr int dragScrollMs = 40;
constexpr int padding = 8;
constexpr qreal selectionStrength = 0.4;

QString placeholder() {
    return QStringLiteral("No UCI communication yet. Start a game to see raw engine dialogue.");
}

// Control characters have no picture of their own and would break the grid of columns.
QString drawable(QString row) {
    for (QChar& character : row) {
        if (character.category() == QChar::Other_Control) character = QChar(0x00B7);
    }
    return row;
}

bool isSurrogatePair(const QString& text, qsizetype at) {
    return at > 0 && at < text.size() && text[at - 1].isHighSurrogate() && text[at].isLowSurrogate();
}

}  // namespace

UciConsoleView::UciConsoleView(const PanelContext& context, QWidget* parent)
    : QAbstractScrollArea(parent), context_(context) {
    const QFontMetricsF metrics(Theme::font(TextStyle::monospaced));
    advance_ = metrics.horizontalAdvance(u'0');
    rowHeight_ = qCeil(metrics.height()) + 1;
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new ThinScrollBar(ColorRole::console, context.theme, this));
    verticalScrollBar()->setSingleStep(3 * rowHeight_);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setCursor(Qt::IBeamCursor);
    const auto rename = [this] { setAccessibleName(context_.loc.text("engine_log")); };
    rename();
    connect(&context_.loc, &LocalizationManager::changed, this, rename);
}

UciConsoleView::~UciConsoleView() = default;

QSize UciConsoleView::sizeHint() const {
    // It takes the rest of the page: asking for more than the least would push it below the page's end.
    return {320, minimumSizeHint().height()};
}

QSize UciConsoleView::minimumSizeHint() const {
    return {160, 5 * rowHeight_ + 2 * padding};
}

QColor UciConsoleView::lineColor(const QString& line) {
    // The console is dark in both schemes, so it takes the colours of the dark one.
    constexpr auto dark = Theme::Scheme::dark;
    if (line.startsWith(QLatin1String("> "))) return Theme::color(ColorRole::accent, dark);
    if (line.startsWith(QLatin1String("< "))) return Theme::color(ColorRole::consoleText, dark);
    if (line.startsWith(QLatin1String("Started "))) return Theme::color(ColorRole::good, dark);
    return Theme::color(ColorRole::bad, dark);
}

void UciConsoleView::setEngine(UCIEngineProcess* engine) {
    if (engine_ == engine && (engine || lines_.isEmpty())) return;
    engine_ = engine;
    listen();
    isSelecting_ = false;
    dragScroll_.stop();
    anchor_ = caret_ = {};
    isFollowing_ = true;
    takeLog();
}

void UciConsoleView::listen() {
    disconnect(logConnection_);
    refresh_.reset();
    if (engine_ && isVisible()) {
        logConnection_ = connect(engine_, &UCIEngineProcess::logChanged, this, &UciConsoleView::schedule);
    }
}

void UciConsoleView::schedule() {
    if (isHeld()) {
        isMissingLines_ = true;
        return;
    }
    if (refresh_) return;
    refresh_ = context_.time.after(refreshInterval, [this] {
        refresh_.reset();
        if (isHeld()) {
            isMissingLines_ = true;
        } else {
            takeLog();
        }
    });
}

void UciConsoleView::takeLog() {
    isMissingLines_ = false;
    ++refreshCount_;
    lines_ = engine_ ? engine_->logLines() : QStringList();
    anchor_ = caret_ = {};
    setAccessibleDescription(lines_.isEmpty() ? placeholder() : QString());
    countRows();
    scrollToEnd();
    viewport()->update();
    Q_EMIT refreshed();
}

void UciConsoleView::countRows() {
    columns_ = qMax(8, static_cast<int>((viewport()->width() - 2 * padding) / advance_));
    rowEnds_.clear();
    rowEnds_.reserve(static_cast<std::size_t>(lines_.size()));
    int rows = 0;
    for (const QString& line : lines_) {
        rows += qMax(1, static_cast<int>((line.size() + columns_ - 1) / columns_));
        rowEnds_.push_back(rows);
    }
    const int content = rows * rowHeight_ + 2 * padding;
    QScrollBar* bar = verticalScrollBar();
    bar->setPageStep(viewport()->height());
    // A range that shrinks moves the value: that is not the reader scrolling.
    const bool wasFollowing = isFollowing_;
    bar->setRange(0, qMax(0, content - viewport()->height()));
    isFollowing_ = wasFollowing;
}

bool UciConsoleView::isHeld() const {
    return isSelecting_ || hasSelection() || !isFollowing_;
}

bool UciConsoleView::isAtEnd() const {
    return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

void UciConsoleView::scrollToEnd() {
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    isFollowing_ = true;
}

void UciConsoleView::releaseIfDue() {
    if (isHeld()) return;
    if (isMissingLines_) takeLog();
    Q_EMIT released();
}

void UciConsoleView::scrollContentsBy(int dx, int dy) {
    const bool wasHeld = isHeld();
    const bool wasFollowing = isFollowing_;
    isFollowing_ = isAtEnd();
    viewport()->scroll(dx, dy);
    // The row that is cut at the top comes or goes.
    if (isFollowing_ != wasFollowing) viewport()->update();
    if (wasHeld) releaseIfDue();
}

int UciConsoleView::firstRow(int line) const {
    return line == 0 ? 0 : rowEnds_[static_cast<std::size_t>(line - 1)];
}

int UciConsoleView::lineOfRow(int row) const {
    return static_cast<int>(std::upper_bound(rowEnds_.begin(), rowEnds_.end(), row) - rowEnds_.begin());
}

QRectF UciConsoleView::characterRect(int line, int column) const {
    const int row = firstRow(line) + column / columns_;
    return {padding + (column % columns_) * advance_,
            qreal(padding + row * rowHeight_ - verticalScrollBar()->value()), advance_, qreal(rowHeight_)};
}

UciConsoleView::Position UciConsoleView::positionAt(const QPointF& point) const {
    if (lines_.isEmpty()) return {};
    const int row = qFloor((point.y() + verticalScrollBar()->value() - padding) / rowHeight_);
    if (row < 0) return {};
    const int last = static_cast<int>(lines_.size()) - 1;
    if (row >= rowCount()) return {last, static_cast<int>(lines_[last].size())};
    const int line = lineOfRow(row);
    const int inRow = qBound(0, qRound((point.x() - padding) / advance_), columns_);
    int column = qMin((row - firstRow(line)) * columns_ + inRow, static_cast<int>(lines_[line].size()));
    if (isSurrogatePair(lines_[line], column)) --column;
    return {line, column};
}

void UciConsoleView::select(Position anchor, Position caret) {
    if (anchor == anchor_ && caret == caret_) return;
    anchor_ = anchor;
    caret_ = caret;
    viewport()->update();
}

QString UciConsoleView::selectedText() const {
    if (!hasSelection()) return {};
    const Position begin = qMin(anchor_, caret_);
    const Position end = anchor_ < caret_ ? caret_ : anchor_;
    QStringList parts;
    for (int line = begin.line; line <= end.line; ++line) {
        const int from = line == begin.line ? begin.column : 0;
        const int to = line == end.line ? end.column : static_cast<int>(lines_[line].size());
        parts.append(lines_[line].mid(from, to - from));
    }
    return parts.join(u'\n');
}

void UciConsoleView::copySelection() {
    if (hasSelection()) context_.exporter.copyToClipboard(selectedText());
}

void UciConsoleView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    isSelecting_ = true;
    const Position at = positionAt(event->position());
    select(event->modifiers() & Qt::ShiftModifier && hasSelection() ? anchor_ : at, at);
}

void UciConsoleView::mouseMoveEvent(QMouseEvent* event) {
    if (!isSelecting_) return;
    pointer_ = event->position();
    select(anchor_, positionAt(pointer_));
    const bool isOutside = pointer_.y() < 0 || pointer_.y() >= viewport()->height();
    if (!isOutside) {
        dragScroll_.stop();
    } else if (!dragScroll_.isActive()) {
        dragScroll_.start(dragScrollMs, this);
    }
}

void UciConsoleView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != dragScroll_.timerId()) {
        QAbstractScrollArea::timerEvent(event);
        return;
    }
    // The further out, the faster.
    const qreal beyond = pointer_.y() < 0 ? pointer_.y() : pointer_.y() - viewport()->height() + 1;
    QScrollBar* bar = verticalScrollBar();
    bar->setValue(bar->value() + qRound(beyond) + (beyond < 0 ? -rowHeight_ : rowHeight_));
    select(anchor_, positionAt(pointer_));
}

void UciConsoleView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isSelecting_) return;
    isSelecting_ = false;
    dragScroll_.stop();
    releaseIfDue();
}

void UciConsoleView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || lines_.isEmpty()) return;
    const int line = positionAt(event->position()).line;
    select({line, 0}, {line, static_cast<int>(lines_[line].size())});
}

bool UciConsoleView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        const bool isEnd = key->key() == Qt::Key_Home || key->key() == Qt::Key_End;
        if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::SelectAll) || isEnd) key->accept();
    }
    return QAbstractScrollArea::event(event);
}

void UciConsoleView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copySelection();
    } else if (event->matches(QKeySequence::SelectAll)) {
        if (lines_.isEmpty()) return;
        const int last = static_cast<int>(lines_.size()) - 1;
        select({}, {last, static_cast<int>(lines_[last].size())});
    } else if (event->key() == Qt::Key_Escape && hasSelection()) {
        select({}, {});
        releaseIfDue();
    } else if (event->key() == Qt::Key_Home) {
        verticalScrollBar()->setValue(0);
    } else if (event->key() == Qt::Key_End) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    } else {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void UciConsoleView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    // The ring stands around the view, in what holds it.
    if (parentWidget()) parentWidget()->update();
}

void UciConsoleView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    if (parentWidget()) parentWidget()->update();
}

void UciConsoleView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    listen();
    if (isHeld()) {
        isMissingLines_ = true;
    } else {
        takeLog();
    }
}

void UciConsoleView::hideEvent(QHideEvent* event) {
    QAbstractScrollArea::hideEvent(event);
    listen();
}

void UciConsoleView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    const bool wasFollowing = isFollowing_;
    countRows();
    if (wasFollowing) scrollToEnd();
    viewport()->update();
}

QList<ShownText> UciConsoleView::shownTexts() const {
    const QRectF room = QRectF(viewport()->rect()).adjusted(padding, padding, -padding, -padding);
    if (lines_.isEmpty()) {
        const QFont font = Theme::font(TextStyle::monospaced);
        return {{placeholder(), wrappedSize(placeholder(), font, room.width()), room.size()}};
    }
    QList<ShownText> texts;
    const QFontMetricsF metrics(Theme::font(TextStyle::monospaced));
    for (const QString& line : lines_) {
        const QString row = drawable(line.left(columns_));
        texts.append({row, QSizeF(metrics.horizontalAdvance(row), metrics.height()),
                      QSizeF(viewport()->width() - 2 * padding, rowHeight_)});
    }
    return texts;
}

void UciConsoleView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QColor ground = context_.theme.color(ColorRole::console);
    painter.fillRect(event->rect(), ground);
    painter.setFont(Theme::font(TextStyle::monospaced));
    if (lines_.isEmpty()) {
        const QColor text = Theme::color(ColorRole::secondary, Theme::Scheme::dark);
        painter.setPen(text);
        painter.drawText(QRectF(viewport()->rect()).adjusted(padding, padding, -padding, -padding),
                         Qt::AlignCenter | Qt::TextWordWrap, placeholder());
        return;
    }
    QColor highlight = Theme::color(ColorRole::accent, Theme::Scheme::dark);
    highlight.setAlphaF(static_cast<float>(selectionStrength));
    highlight = blended(highlight, ground);
    const Position begin = qMin(anchor_, caret_);
    const Position end = anchor_ < caret_ ? caret_ : anchor_;
    const int scrolled = verticalScrollBar()->value() - padding;
    const int first = qMax(0, (event->rect().top() + scrolled) / rowHeight_);
    const int last = qMin(rowCount() - 1, (event->rect().bottom() + scrolled) / rowHeight_);
    for (int row = first; row <= last; ++row) {
        // What follows the end begins with a whole row; a reader who scrolls sees the rows pass the edge.
        if (isFollowing_ && row * rowHeight_ < scrolled) continue;
        const int line = lineOfRow(row);
        const int from = (row - firstRow(line)) * columns_;
        const QString text = lines_[line].mid(from, columns_);
        const QRectF place(padding, row * rowHeight_ - scrolled, viewport()->width() - 2 * padding,
                           rowHeight_);
        const bool touches = hasSelection() && line >= begin.line && line <= end.line;
        const int selectedFrom = touches && line == begin.line ? qMax(0, begin.column - from) : 0;
        const int length = static_cast<int>(text.size());
        const int selectedTo = touches && line == end.line ? qMin(length, end.column - from) : length;
        if (touches && selectedFrom < selectedTo) {
            painter.fillRect(QRectF(place.left() + selectedFrom * advance_, place.top(),
                                    (selectedTo - selectedFrom) * advance_, place.height()),
                             highlight);
        }
        painter.setPen(lineColor(lines_[line]));
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, drawable(text));
    }
}

}  // namespace orlix
