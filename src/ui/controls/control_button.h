// What all painted buttons share: the theme, hover, the focus ring, and the keys. Return presses; Space never
// does, it belongs to the menu (pause and resume) and travels on.
#pragma once

#include <QAbstractButton>

class QPainter;

namespace orlix {

class Theme;

/// Draws the ring that marks keyboard focus just inside `rect`.
void paintFocusRing(QPainter& painter, const Theme& theme, const QRectF& rect, qreal radius);

class ControlButton : public QAbstractButton {
    Q_OBJECT
  public:
    explicit ControlButton(Theme& theme, QWidget* parent = nullptr);

  protected:
    Theme& theme() const { return theme_; }
    /// True while it holds the focus and the user moved it there: a window that opens marks nothing.
    bool showsFocus() const { return showsFocus_; }
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    Theme& theme_;
    bool showsFocus_ = false;
};

}  // namespace orlix
