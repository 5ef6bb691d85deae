#include "ui/keyboard_order.h"

#include <QApplication>
#include <QScrollArea>
#include <QStyleHints>
#include <algorithm>

namespace orlix {

namespace {

bool isReachedByTab(const QWidget& widget) {
    // Some systems let Tab stop at texts and lists alone, unless their user asks for all controls.
    const bool stopsEverywhere = QGuiApplication::styleHints()->tabFocusBehavior() == Qt::TabFocusAllControls;
    const int policy = stopsEverywhere ? Qt::TabFocus : Qt::StrongFocus;
    return (widget.focusPolicy() & policy) == policy && !widget.focusProxy() && widget.isEnabled();
}

QList<QWidget*> shownParts(const QWidget& parent) {
    QList<QWidget*> parts = parent.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    const auto isElsewhere = [](const QWidget* part) { return part->isWindow() || !part->isVisible(); };
    parts.erase(std::remove_if(parts.begin(), parts.end(), isElsewhere), parts.end());
    return parts;
}

/// Whatever has its middle above the lower edge of a row's first part stands in that row.
void sortAsRead(QList<QWidget*>& parts) {
    std::stable_sort(parts.begin(), parts.end(),
                     [](const QWidget* one, const QWidget* other) { return one->y() < other->y(); });
    for (auto row = parts.begin(); row != parts.end();) {
        const int lowerEdge = (*row)->geometry().bottom();
        const auto end = std::find_if(row + 1, parts.end(), [lowerEdge](const QWidget* part) {
            return part->geometry().center().y() > lowerEdge;
        });
        std::stable_sort(row, end,
                         [](const QWidget* one, const QWidget* other) { return one->x() < other->x(); });
        row = end;
    }
}

void collect(const QWidget& parent, QList<QWidget*>& order) {
    QList<QWidget*> parts = shownParts(parent);
    sortAsRead(parts);
    for (QWidget* part : parts) {
        if (isReachedByTab(*part)) order.append(part);
        collect(*part, order);
    }
}

void scrollTo(QWidget& widget) {
    for (QWidget* parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(parent)) area->ensureWidgetVisible(&widget);
    }
}

}  // namespace

QList<QWidget*> keyboardOrder(const QWidget& root) {
    QList<QWidget*> order;
    collect(root, order);
    return order;
}

bool moveKeyboardFocus(const QWidget& root, bool next) {
    const QList<QWidget*> order = keyboardOrder(root);
    if (order.isEmpty()) return false;
    const qsizetype last = order.size() - 1;
    const qsizetype current = order.indexOf(QApplication::focusWidget());
    qsizetype chosen = next ? 0 : last;
    if (current >= 0 && next && current < last) chosen = current + 1;
    if (current > 0 && !next) chosen = current - 1;
    order[chosen]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    scrollTo(*order[chosen]);
    return true;
}

}  // namespace orlix
