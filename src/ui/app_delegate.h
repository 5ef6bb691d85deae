// What the application does when it has started and before it ends. Owned by the composition root; main
// thread only.
#pragma once

#include <QObject>

class QWidget;

namespace orlix {

class AppDelegate : public QObject {
    Q_OBJECT
  public:
    /// Stands between `QCoreApplication::instance()` and its requests to quit.
    explicit AppDelegate(QObject* parent = nullptr);

    /// Brings the application with its `window` to the foreground.
    void applicationDidFinishLaunching(QWidget& window);
    /// False keeps the application running although it was asked to quit.
    bool applicationShouldTerminate();
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace orlix
