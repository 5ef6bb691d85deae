// A painted horizontal slider. Its value stands in a label beside it; the wheel scrolls the panel and never
// changes it.
#pragma once

#include <QAbstractSlider>

namespace orlix {

class Theme;

class ValueSlider : public QAbstractSlider {
    Q_OBJECT
  public:
    explicit ValueSlider(Theme& theme, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    /// Centre of the knob in widget coordinates when the slider stands at `value`.
    QPointF knobCenter(int value) const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    int valueAt(qreal x) const;

    Theme& theme_;
};

}  // namespace orlix
