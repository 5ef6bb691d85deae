#include "ui/assistive_technology.h"

#include <QAccessible>

namespace orlix {

namespace {

class SystemAssistiveTechnology : public AssistiveTechnology {
  public:
    bool isActive() const override { return QAccessible::isActive(); }
    void tell(QAccessibleEvent& event) override { QAccessible::updateAccessibility(&event); }
};

}  // namespace

AssistiveTechnology& AssistiveTechnology::ofSystem() {
    static SystemAssistiveTechnology technology;
    return technology;
}

}  // namespace orlix
