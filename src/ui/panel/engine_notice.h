// Says that no engine is registered and offers to add one.
#pragma once

#include <QWidget>

#include "ui/panel/panel_context.h"

namespace orlix {

class PanelButton;
class TextLabel;

class EngineNotice : public QWidget {
    Q_OBJECT
  public:
    explicit EngineNotice(const PanelContext& context, QWidget* parent = nullptr);

  Q_SIGNALS:
    void addRequested();

  private:
    void retranslate();

    PanelContext context_;
    TextLabel* text_;
    PanelButton* add_;
};

}  // namespace orlix
