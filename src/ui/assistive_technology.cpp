#include "ui/assistive_technology.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace orlix {

namespace {

class SystemAssistiveTechnology : public AssistiveTechnology {
  public:
    bool isActive() const override { return QAccessible::isActive(); }
    void tell(QAccessibleEvent& event) override { QAccessible::updateAccessibility(&event); }
};

constexpr char noticeProperty[] = "isNotice";

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget || !widget->property(noticeProperty).toBool()) return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Notification);
}

}  // namespace

AssistiveTechnology& AssistiveTechnology::ofSystem() {
    static SystemAssistiveTechnology technology;
    return technology;
}

void makeNotice(QWidget& widget) {
    QAccessible::installFactory(makeInterface);  // any number of times
    widget.setProperty(noticeProperty, true);
}

void showNotice(QWidget& widget, AssistiveTechnology& listener) {
    widget.show();
    if (!listener.isActive()) return;
    // Some platforms read out a notice that appears, some an alert, some a changed name.
    for (const auto type : {QAccessible::ObjectShow, QAccessible::Alert, QAccessible::NameChanged}) {
        QAccessibleEvent event(&widget, type);
        listener.tell(event);
    }
}

}  // namespace orlix
