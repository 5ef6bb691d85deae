// Dims a window while a sheet over it waits. Owned by the window; main thread only.
#pragma once

#include <QWidget>

namespace orlix {

class WindowShade : public QWidget {
    Q_OBJECT
  public:
    /// Hidden at first, and as large as `window` whatever that becomes.
    explicit WindowShade(QWidget* window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace orlix
