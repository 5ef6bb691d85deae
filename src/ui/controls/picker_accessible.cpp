#include "ui/controls/picker_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "ui/assistive_technology.h"
#include "ui/controls/picker_button.h"

namespace orlix {

namespace {

class PickerAccessible : public QAccessibleWidget {
  public:
    explicit PickerAccessible(PickerButton& picker)
        : QAccessibleWidget(&picker, QAccessible::Button), picker_(picker) {}

    int childCount() const override { return list() ? 1 : 0; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(list()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return list() && child && child->object() == list() ? 0 : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return list() && list()->geometry().contains(x, y) ? child(0) : nullptr;
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.hasPopup = true;
        state.expandable = true;
        state.expanded = list() != nullptr;
        state.collapsed = !state.expanded;
        return state;
    }
    QStringList actionNames() const override {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name != pressAction()) {
            QAccessibleWidget::doAction(name);
        } else if (QWidget* open = list()) {
            open->close();
        } else {
            picker_.click();
        }
    }

  private:
    QWidget* list() const {
        QWidget* popup = picker_.popup();
        return popup && popup->isVisible() ? popup : nullptr;
    }

    PickerButton& picker_;
};

class ListAccessible : public QAccessibleWidget {
  public:
    ListAccessible(QWidget& list, PickerButton& picker)
        : QAccessibleWidget(&list, QAccessible::List), picker_(picker) {}

    /// The picker; for a window it would be the application, which does not know the list.
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&picker_); }

  private:
    PickerButton& picker_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (auto* picker = qobject_cast<PickerButton*>(object)) return new PickerAccessible(*picker);
    auto* picker = object ? qobject_cast<PickerButton*>(object->parent()) : nullptr;
    if (!picker || picker->popup() != object) return nullptr;
    return new ListAccessible(*picker->popup(), *picker);
}

}  // namespace

namespace picker_accessibility {

void install() {
    QAccessible::installFactory(makeInterface);
}

void tellExpanded(PickerButton& picker) {
    if (!AssistiveTechnology::ofSystem().isActive()) return;
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    QAccessibleStateChangeEvent event(&picker, changed);
    AssistiveTechnology::ofSystem().tell(event);
}

}  // namespace picker_accessibility
}  // namespace orlix
