// The row of six tabs: symbol above title, one highlighted. Tab reaches the chosen one, the arrows change it.
#pragma once

#include <QList>
#include <QWidget>

#include "ui/panel/panel_context.h"

namespace orlix {

class PanelButton;

class TabBar : public QWidget {
    Q_OBJECT
  public:
    explicit TabBar(const PanelContext& context, QWidget* parent = nullptr);

    void setCurrentIndex(int index);  ///< without a signal
    PanelButton* button(int index) const { return buttons_[index]; }
    int heightForWidth(int width) const override;

  Q_SIGNALS:
    void chosen(int index);  ///< by the user

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QList<QRect> places(int width) const;
    void retranslate();
    void arrange();

    PanelContext context_;
    QList<PanelButton*> buttons_;
};

}  // namespace orlix
