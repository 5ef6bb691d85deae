#include "ui/board_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>
#include <QWindow>
#include <array>

#include "l10n/localization_manager.h"
#include "ui/assistive_technology.h"
#include "ui/board_view.h"
#include "ui/board_words.h"
#include "ui/promotion_picker.h"

namespace orlix {

namespace {

constexpr int side = 8;
constexpr int squareCount = side * side;

/// Row and column as displayed, from the top left.
Square squareShownAt(const BoardView& view, int row, int column) {
    if (view.picture().isFlipped) return {side - 1 - column, row};
    return {column, side - 1 - row};
}

int shownRow(const BoardView& view, Square square) {
    return static_cast<int>(view.picture().isFlipped ? square.rank : side - 1 - square.rank);
}

int shownColumn(const BoardView& view, Square square) {
    return static_cast<int>(view.picture().isFlipped ? side - 1 - square.file : square.file);
}

class SquareAccessible : public QAccessibleInterface,
                         public QAccessibleTableCellInterface,
                         public QAccessibleActionInterface {
  public:
    SquareAccessible(BoardView& view, Square square) : view_(&view), square_(square) {}

    bool isValid() const override { return !view_.isNull(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return isValid() ? view_->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override {
        return isValid() ? QAccessible::queryAccessibleInterface(view_) : nullptr;
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Cell; }

    QString text(QAccessible::Text kind) const override {
        if (!isValid() || kind != QAccessible::Name) return {};
        return squareInWords(square_, view_->picture()[square_], view_->texts());
    }
    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override {
        if (!isValid()) return {};
        const QRect place = view_->squareRect(square_).toRect();
        return {view_->mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.focusable = true;
        state.focused = view_->hasFocus() && view_->cursorSquare() == square_;
        state.selectable = true;
        state.selected = view_->picture()[square_].isSelected;
        state.invisible = !view_->isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TableCellInterface) return static_cast<QAccessibleTableCellInterface*>(this);
        if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
        return nullptr;
    }

    // Of the table.
    bool isSelected() const override { return isValid() && view_->picture()[square_].isSelected; }
    QList<QAccessibleInterface*> columnHeaderCells() const override { return {}; }
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return isValid() ? shownColumn(*view_, square_) : -1; }
    int rowIndex() const override { return isValid() ? shownRow(*view_, square_) : -1; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return parent(); }

    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (!isValid()) return;
        if (name == pressAction()) view_->clickSquare(square_);
        if (name == setFocusAction()) view_->focusSquare(square_);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    Square square() const { return square_; }

  private:
    QPointer<BoardView> view_;
    Square square_;
};

class BoardAccessible : public QAccessibleWidget, public QAccessibleTableInterface {
  public:
    explicit BoardAccessible(BoardView& view) : QAccessibleWidget(&view, QAccessible::Table), view_(view) {}
    BoardAccessible(const BoardAccessible&) = delete;
    BoardAccessible& operator=(const BoardAccessible&) = delete;
    ~BoardAccessible() override {
        for (const QAccessible::Id id : cells_) {
            if (id != 0) QAccessible::deleteAccessibleInterface(id);
        }
    }

    QAccessibleInterface* cell(Square square) const {
        QAccessible::Id& id = cells_[static_cast<std::size_t>(square.index())];
        if (id == 0) id = QAccessible::registerAccessibleInterface(new SquareAccessible(view_, square));
        return QAccessible::accessibleInterface(id);
    }

    int childCount() const override { return squareCount + (picker() ? 1 : 0); }
    QAccessibleInterface* child(int index) const override {
        if (index == squareCount) return QAccessible::queryAccessibleInterface(picker());
        return cellAt(index / side, index < 0 ? -1 : index % side);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        if (picker() && child->object() == picker()) return squareCount;
        for (const Square square : Square::allSquares()) {
            if (cells_[static_cast<std::size_t>(square.index())] != 0 && cell(square) == child) {
                return shownRow(view_, square) * side + shownColumn(view_, square);
            }
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        if (picker()) return QAccessible::queryAccessibleInterface(picker());
        const std::optional<Square> square = view_.squareAt(view_.mapFromGlobal(QPoint(x, y)));
        return square ? cell(*square) : nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        if (view_.hasFocus()) return cell(view_.cursorSquare());
        return QAccessibleWidget::focusChild();
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Description ? view_.announcement() : QAccessibleWidget::text(kind);
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override {
        if (row < 0 || row >= side || column < 0 || column >= side) return nullptr;
        return cell(squareShownAt(view_, row, column));
    }
    int selectedCellCount() const override { return static_cast<int>(selectedCells().size()); }
    QList<QAccessibleInterface*> selectedCells() const override {
        for (const Square square : Square::allSquares()) {
            if (view_.picture()[square].isSelected) return {cell(square)};
        }
        return {};
    }
    QString columnDescription(int column) const override {
        return QString(QLatin1Char(squareShownAt(view_, 0, column).fileChar()));
    }
    QString rowDescription(int row) const override {
        return QString(QLatin1Char(squareShownAt(view_, row, 0).rankChar()));
    }
    int rowCount() const override { return side; }
    int columnCount() const override { return side; }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return 0; }
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override { return {}; }
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int) const override { return false; }
    bool selectRow(int) override { return false; }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent*) override {}

  private:
    PromotionPicker* picker() const {
        auto* found = view_.findChild<PromotionPicker*>(QString(), Qt::FindDirectChildrenOnly);
        return found && !found->isHidden() ? found : nullptr;
    }

    BoardView& view_;
    mutable std::array<QAccessible::Id, squareCount> cells_{};  ///< by `Square::index`; 0 until asked for
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
    if (className != QLatin1String(BoardView::staticMetaObject.className())) return nullptr;
    auto* view = qobject_cast<BoardView*>(object);
    return view ? new BoardAccessible(*view) : nullptr;
}

QAccessibleInterface* cellOf(BoardView& view, Square square) {
    auto* board = dynamic_cast<BoardAccessible*>(QAccessible::queryAccessibleInterface(&view));
    return board ? board->cell(square) : nullptr;
}

void tellCell(BoardView& view, Square square, QAccessible::Event type) {
    QAccessibleInterface* cell = cellOf(view, square);
    if (!cell) return;
    QAccessibleEvent event(cell, type);
    view.assistiveTechnology().tell(event);
}

}  // namespace

namespace board_accessibility {

void install() {
    QAccessible::installFactory(makeInterface);
}

void tellFocus(BoardView& view, Square square) {
    if (view.assistiveTechnology().isActive()) tellCell(view, square, QAccessible::Focus);
}

void tellAnnouncement(BoardView& view) {
    if (!view.assistiveTechnology().isActive()) return;
    QAccessibleEvent alert(&view, QAccessible::Alert);
    view.assistiveTechnology().tell(alert);
    // Not every platform reads alerts out; where they are not, the changed description is.
    QAccessibleEvent description(&view, QAccessible::DescriptionChanged);
    view.assistiveTechnology().tell(description);
}

void tellChanges(BoardView& view, const BoardPicture& before, const BoardPicture& after) {
    if (!view.assistiveTechnology().isActive()) return;
    if (before.isFlipped != after.isFlipped) {
        QAccessibleTableModelChangeEvent event(&view, QAccessibleTableModelChangeEvent::ModelReset);
        view.assistiveTechnology().tell(event);
    }
    for (const Square square : Square::allSquares()) {
        if (before[square].isSelected == after[square].isSelected) continue;
        QAccessibleInterface* cell = cellOf(view, square);
        if (!cell) continue;
        QAccessible::State changed;
        changed.selected = true;
        QAccessibleStateChangeEvent event(cell, changed);
        view.assistiveTechnology().tell(event);
    }
    const Square cursor = view.cursorSquare();
    if (view.hasFocus() && before[cursor] != after[cursor]) {
        tellCell(view, cursor, QAccessible::NameChanged);
    }
}

}  // namespace board_accessibility
}  // namespace orlix
