// Paints one finished game: its number and the players, the winner in a stronger face; below how it ended and
// the result as a badge; at the right the symbol that puts it onto the board.
#pragma once

#include <QStyledItemDelegate>

#include "ui/controls/text_fit.h"
#include "ui/panel/automatch_history_model.h"

namespace orlix {

class Theme;

class AutomatchHistoryRow : public QStyledItemDelegate {
    Q_OBJECT
  public:
    static constexpr int height = 48;

    explicit AutomatchHistoryRow(Theme& theme, QObject* parent = nullptr);

    /// Where the symbol of the row at `place` is pressed.
    static QRect button(const QRect& place);
    /// The row that the pointer is over, -1 without one, and whether it is over its symbol.
    void setHovered(int row, bool isOverButton) {
        hoveredRow_ = row;
        isOverButton_ = isOverButton;
    }

    /// The texts of the row at `place` but the players' names, which are shortened.
    static QList<ShownText> shownTexts(const AutomatchHistoryModel::Row& row, const QRect& place);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  private:
    Theme& theme_;
    int hoveredRow_ = -1;
    bool isOverButton_ = false;
};

}  // namespace orlix
