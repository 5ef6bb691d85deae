// A button that is a symbol alone; its name stands in the tooltip and is read out.
#pragma once

#include "ui/controls/control_button.h"
#include "ui/icons.h"

namespace orlix {

class IconButton : public ControlButton {
    Q_OBJECT
  public:
    enum class Look { plain, destructive };

    IconButton(Icon icon, Look look, Theme& theme, QWidget* parent = nullptr);

    /// What the button does, as tooltip; with `object`, a name of the user's own, for whoever listens.
    void setCaption(const QString& caption, const QString& object = {});

    QSize sizeHint() const override { return {32, 32}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Icon icon_;
    Look look_;
};

}  // namespace orlix
