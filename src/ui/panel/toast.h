// A short message over the panel that fades in and out. It takes no mouse and no keys; when it goes is
// decided by the panel.
#pragma once

#include <QVariantAnimation>
#include <QWidget>

#include "ui/controls/text_fit.h"

namespace orlix {

class AssistiveTechnology;
class Theme;

class Toast : public QWidget, public ShowsText {
    Q_OBJECT
  public:
    /// Both references outlive the toast. `listener` is told of each message.
    Toast(Theme& theme, AssistiveTechnology& listener, QWidget* parent);

    void showMessage(const QString& message);
    void fadeOut();
    /// Where the toast stands: its lower edge at `bottom`, centred in `width`, with a margin at both sides.
    void placeAbove(int bottom, int width);

    QList<ShownText> shownTexts() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF textRoom() const;

    Theme& theme_;
    AssistiveTechnology& listener_;
    QString message_;
    QVariantAnimation fade_;
    int bottom_ = 0;
    int available_ = 0;
};

}  // namespace orlix
