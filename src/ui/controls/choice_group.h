// A set of alternatives of which one is chosen: a segmented control with equal parts, or chips that wrap.
// Tab reaches the chosen one, the arrows choose another.
#pragma once

#include <QList>
#include <QRect>
#include <QStringList>
#include <QWidget>

#include "ui/controls/panel_button.h"

namespace orlix {

class ChoiceGroup : public QWidget {
    Q_OBJECT
  public:
    enum class Layout { segments, chips };

    ChoiceGroup(Layout layout, int count, Theme& theme, QWidget* parent = nullptr);

    void setLabels(const QStringList& labels);  ///< as many as there are alternatives
    void setSymbol(int index, Icon symbol);
    /// Marks `index` as chosen without a signal; -1 chooses none.
    void setCurrentIndex(int index);
    int currentIndex() const;
    PanelButton* button(int index) const { return buttons_[index]; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

  Q_SIGNALS:
    void chosen(int index);  ///< by the user

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

  private:
    QList<QRect> places(int width) const;
    void arrange();

    Layout layout_;
    Theme& theme_;
    QList<PanelButton*> buttons_;
};

}  // namespace orlix
