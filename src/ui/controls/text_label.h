// A painted text in one of the theme's styles and colours. It wraps between words and never cuts.
#pragma once

#include <QWidget>

#include "ui/controls/text_fit.h"
#include "ui/theme.h"

namespace orlix {

class TextLabel : public QWidget, public ShowsText {
    Q_OBJECT
  public:
    TextLabel(TextStyle style, ColorRole role, Theme& theme, QWidget* parent = nullptr);

    void setText(const QString& text);
    const QString& text() const { return text_; }
    void setRole(ColorRole role);
    void setAlignment(Qt::Alignment alignment);
    /// Keeps the text on one line, its natural width being the least that a layout may give it.
    void setSingleLine(bool isSingleLine);

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return !isSingleLine_; }
    int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QFont fittedFont() const;

    TextStyle style_;
    ColorRole role_;
    Theme& theme_;
    QString text_;
    Qt::Alignment alignment_ = Qt::AlignLeft | Qt::AlignVCenter;
    bool isSingleLine_ = false;
};

}  // namespace orlix
