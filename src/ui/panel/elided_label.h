// A name or path of the user's own on one line: too long, it is shortened in the middle and stands whole in
// the tooltip.
#pragma once

#include <QWidget>

#include "ui/theme.h"

namespace orlix {

class ElidedLabel : public QWidget {
    Q_OBJECT
  public:
    ElidedLabel(TextStyle style, ColorRole role, Theme& theme, QWidget* parent = nullptr);

    void setText(const QString& text);
    const QString& text() const { return text_; }
    QString shownText() const;  ///< shortened as painted now

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void refreshToolTip();

    TextStyle style_;
    ColorRole role_;
    Theme& theme_;
    QString text_;
};

}  // namespace orlix
