// The dialogue with one engine as a terminal: monospaced, sent and received lines told apart by colour. Lines
// break at the view's edge; rows are counted, not laid out, and only those in sight are drawn. It takes the
// log at most thirty times a second, follows its end, and holds still while the reader has scrolled up or
// selects. Owned by the engine tab; main thread only.
#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QPointer>
#include <QStringList>
#include <memory>
#include <vector>

#include "engine/uci_engine_process.h"
#include "ui/controls/text_fit.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class Timer;

class UciConsoleView : public QAbstractScrollArea, public ShowsText {
    Q_OBJECT
  public:
    explicit UciConsoleView(const PanelContext& context, QWidget* parent = nullptr);
    ~UciConsoleView() override;

    /// Shows the log of `engine`, from its end; null shows the sentence about the empty log. Another engine
    /// ends a selection.
    void setEngine(UCIEngineProcess* engine);
    UCIEngineProcess* engine() const { return engine_; }

    /// The lines as taken last.
    const QStringList& lines() const { return lines_; }
    /// True while the view keeps what it shows: the reader scrolled up, or something is selected.
    bool isHeld() const;
    QString selectedText() const;
    /// Where character `column` of line `line` stands, in viewport coordinates.
    QRectF characterRect(int line, int column) const;
    /// How often the log was taken; for measurements.
    int refreshCount() const { return refreshCount_; }

    static QColor lineColor(const QString& line);

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void refreshed();  ///< the lines were taken anew
    void released();   ///< the view is not held any more and has caught up

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;

  private:
    struct Position {
        int line = 0;
        int column = 0;
        bool operator==(const Position&) const = default;
        bool operator<(const Position& other) const {
            return line != other.line ? line < other.line : column < other.column;
        }
    };

    void listen();
    void schedule();
    void takeLog();
    void countRows();
    int rowCount() const { return rowEnds_.empty() ? 0 : rowEnds_.back(); }
    int firstRow(int line) const;
    int lineOfRow(int row) const;
    Position positionAt(const QPointF& point) const;
    bool hasSelection() const { return !(anchor_ == caret_); }
    void select(Position anchor, Position caret);
    void releaseIfDue();
    void copySelection();
    void scrollToEnd();
    bool isAtEnd() const;

    PanelContext context_;
    QPointer<UCIEngineProcess> engine_;
    QMetaObject::Connection logConnection_;
    std::unique_ptr<Timer> refresh_;
    QBasicTimer dragScroll_;
    QStringList lines_;
    std::vector<int> rowEnds_;  ///< for each line, how many rows end with it
    int columns_ = 1;
    qreal advance_ = 1;
    int rowHeight_ = 1;
    bool isFollowing_ = true;
    bool isSelecting_ = false;
    bool isMissingLines_ = false;  ///< the log moved on while the view was held
    Position anchor_;
    Position caret_;
    QPointF pointer_;
    int refreshCount_ = 0;
};

}  // namespace orlix
