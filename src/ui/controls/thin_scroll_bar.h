// A painted scroll bar: a quiet rounded handle without buttons.
#pragma once

#include <QScrollBar>

#include "ui/theme.h"

namespace orlix {

class ThinScrollBar : public QScrollBar {
    Q_OBJECT
  public:
    /// `ground` is what lies behind the bar.
    ThinScrollBar(ColorRole ground, Theme& theme, QWidget* parent = nullptr);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    QRectF handle() const;

    ColorRole ground_;
    Theme& theme_;
    qreal grip_ = 0;  ///< where the handle is held, from its top
};

}  // namespace orlix
