// A painted switch, on while checked.
#pragma once

#include "ui/controls/control_button.h"

namespace orlix {

class ToggleSwitch : public ControlButton {
    Q_OBJECT
  public:
    explicit ToggleSwitch(Theme& theme, QWidget* parent = nullptr);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace orlix
