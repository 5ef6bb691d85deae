// What the application does when it has started and before it ends. Owned by the composition root; main
// thread only.
#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace orlix {

class UpdateController;
enum class TerminationReply;

class AppDelegate : public QObject {
    Q_OBJECT
  public:
    /// Stands between `QCoreApplication::instance()` and its requests to quit. `updates` outlives it.
    explicit AppDelegate(UpdateController& updates, QObject* parent = nullptr);

    /// Brings the application with its `window` to the foreground, then lets the updates know.
    void applicationDidFinishLaunching(QWidget& window);
    /// Hands over to the program that installs an update when one is scheduled. `terminateCancel` keeps the
    /// application running although it was asked to quit.
    TerminationReply applicationShouldTerminate();
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;

    UpdateController& updates_;
    QPointer<QWidget> window_;
};

}  // namespace orlix
