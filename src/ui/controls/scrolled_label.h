// A label that scrolls, by wheel and keyboard, where its text is longer than the room it has.
#pragma once

#include <QScrollArea>

#include "ui/theme.h"

namespace orlix {

class TextLabel;

class ScrolledLabel : public QScrollArea {
    Q_OBJECT
  public:
    ScrolledLabel(TextStyle style, ColorRole role, Theme& theme, QWidget* parent = nullptr);

    /// Begins at its top.
    void setText(const QString& text);
    QString text() const;
    void setRole(ColorRole role);
    /// How high the whole text is.
    int heightForText(int width) const;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void followRoom();

    TextLabel* label_;
};

}  // namespace orlix
