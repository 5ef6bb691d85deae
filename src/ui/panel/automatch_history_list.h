// The finished games of a series in a list that paints only the rows in sight. A press on a row chooses it, a
// second one takes the choice back; a press on its symbol, or Return, puts the game onto the board. New rows
// come at the top; whoever has scrolled away or chosen a row keeps what they look at.
#pragma once

#include <QListView>

#include "ui/controls/text_fit.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class AutomatchHistoryModel;
class AutomatchHistoryRow;

class AutomatchHistoryList : public QListView, public ShowsText {
    Q_OBJECT
  public:
    AutomatchHistoryList(AutomatchHistoryModel& model, const PanelContext& context,
                         QWidget* parent = nullptr);

    /// The chosen row; -1 without one.
    int chosenRow() const;
    void choose(int row);  ///< -1 chooses none

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void chosenRowChanged();
    void loadRequested(int row);
    void copyRequested(int row);

  protected:
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;

  private:
    /// A place in the list: the row, and whether its symbol is meant.
    struct Spot {
        int row = -1;
        bool isButton = false;
        bool operator==(const Spot&) const = default;
    };

    Spot spotAt(QPoint position) const;
    void setHovered(const Spot& spot);
    void showToolTip(const QHelpEvent& event) const;

    AutomatchHistoryModel& model_;
    PanelContext context_;
    AutomatchHistoryRow* rowPainter_;
    Spot hovered_;
    Spot pressed_;
    bool showsFocus_ = false;
};

}  // namespace orlix
