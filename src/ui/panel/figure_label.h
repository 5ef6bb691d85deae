// A number with its unit on one line, in digits of equal width, with or without a symbol before it. A new
// number of the same width moves nothing. Too little room makes it smaller.
#pragma once

#include <QWidget>
#include <optional>

#include "ui/controls/text_fit.h"
#include "ui/icons.h"
#include "ui/theme.h"

namespace orlix {

class FigureLabel : public QWidget, public ShowsText {
    Q_OBJECT
  public:
    FigureLabel(TextStyle style, ColorRole role, Theme& theme, QWidget* parent = nullptr);

    /// Also the accessible name, unless `setCaption` names what is counted.
    void setText(const QString& text);
    const QString& text() const { return text_; }
    /// What the number says, read out before it and shown as tooltip.
    void setCaption(const QString& caption);
    void setSymbol(Icon symbol);
    void setAlignment(Qt::Alignment alignment);
    /// Lets a layout give it less than its natural width.
    void setShrinkable(bool isShrinkable);

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF textRoom() const;
    QFont fittedFont() const;
    void describe();

    TextStyle style_;
    ColorRole role_;
    Theme& theme_;
    QString text_;
    QString caption_;
    std::optional<Icon> symbol_;
    Qt::Alignment alignment_ = Qt::AlignRight | Qt::AlignVCenter;
    bool isShrinkable_ = false;
};

}  // namespace orlix
