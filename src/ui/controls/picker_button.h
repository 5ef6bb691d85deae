// A button that shows the chosen one of several items and opens the list of them. The list exists only while
// it is open.
#pragma once

#include <QPointer>
#include <QStringList>

#include "ui/controls/control_button.h"
#include "ui/controls/text_fit.h"

namespace orlix {

class PickerButton : public ControlButton, public ShowsText {
    Q_OBJECT
  public:
    explicit PickerButton(Theme& theme, QWidget* parent = nullptr);

    /// Items that users named may be longer than the button: they are shortened, with the whole as tooltip.
    void setItems(const QStringList& items, bool areUserNames);
    const QStringList& items() const { return items_; }
    /// Marks `index` as chosen without a signal; -1 shows nothing.
    void setCurrentIndex(int index);
    int currentIndex() const { return currentIndex_; }
    /// What is read out before the chosen item.
    void setCaption(const QString& caption);

    /// The open list, or null.
    QWidget* popup() const { return popup_; }
    void openPopup();

    /// The width in which the chosen item stands whole.
    int currentItemWidth() const;

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void chosen(int index);  ///< by the user; also for the item chosen already

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QString shown() const;
    QRectF textRoom() const;
    void describe();

    QStringList items_;
    bool areUserNames_ = false;
    int currentIndex_ = -1;
    QString caption_;
    QPointer<QWidget> popup_;
};

}  // namespace orlix
