// Who hears what a view tells users of assistive technology: Qt's bridge to the system, or whoever a test
// puts in its place, for Qt keeps its events to itself where no screen reader runs. Main thread only.
#pragma once

class QAccessibleEvent;
class QWidget;

namespace orlix {

class AssistiveTechnology {
  public:
    AssistiveTechnology() = default;
    AssistiveTechnology(const AssistiveTechnology&) = delete;
    AssistiveTechnology& operator=(const AssistiveTechnology&) = delete;
    virtual ~AssistiveTechnology() = default;

    /// False costs nothing: nobody puts anything into words then.
    virtual bool isActive() const = 0;
    virtual void tell(QAccessibleEvent& event) = 0;

    /// The system's own; lives as long as the process.
    static AssistiveTechnology& ofSystem();
};

/// Makes `widget` known as a notice: a text that matters when it comes, wherever the keyboard is. To be
/// called once, before anybody asks for its role.
void makeNotice(QWidget& widget);
/// Shows a notice and has its accessible name read out, also when it stood there already.
void showNotice(QWidget& widget, AssistiveTechnology& listener);

}  // namespace orlix
