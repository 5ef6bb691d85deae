// Captioned numbers side by side in columns that their captions share evenly: what changes many times a
// second is painted, not laid out, and only where it differs.
#pragma once

#include <QStringList>
#include <QWidget>

#include "ui/controls/text_fit.h"

namespace orlix {

class Theme;

class FigureRow : public QWidget, public ShowsText {
    Q_OBJECT
  public:
    FigureRow(int count, Theme& theme, QWidget* parent = nullptr);

    void setCaptions(const QStringList& captions);  ///< as many as there are columns
    void setValue(int index, const QString& value);
    const QStringList& captions() const { return captions_; }
    const QStringList& values() const { return values_; }

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF column(int index) const;
    void share();
    void describe();

    Theme& theme_;
    QStringList captions_;
    QStringList values_;
    QList<qreal> widths_;
};

}  // namespace orlix
