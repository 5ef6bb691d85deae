// The game's commands at the foot of the side panel, shown under every tab.
#pragma once

#include <QList>
#include <QWidget>
#include <array>

#include "ui/panel/panel_context.h"

namespace orlix {

class PanelButton;

class BottomBar : public QWidget {
    Q_OBJECT
  public:
    explicit BottomBar(const PanelContext& context, QWidget* parent = nullptr);

    int heightForWidth(int width) const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    enum Command { flip, undo, pause, resign, newGame, commandCount };

    QList<qreal> needs(int width) const;
    QList<QRect> places(int width) const;
    void takeGame();
    void setLabels();
    void retranslate();
    void arrange();

    PanelContext context_;
    std::array<PanelButton*, commandCount> buttons_{};
};

}  // namespace orlix
