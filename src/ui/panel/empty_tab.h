// A tab that has nothing to show yet, and says so.
#pragma once

#include <QWidget>

#include "ui/icons.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class TextLabel;

class EmptyTab : public QWidget {
    Q_OBJECT
  public:
    EmptyTab(Icon icon, const PanelContext& context, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void retranslate();
    void arrange();

    Icon icon_;
    PanelContext context_;
    TextLabel* text_;
};

}  // namespace orlix
