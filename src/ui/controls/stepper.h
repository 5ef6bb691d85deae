// A whole number that is typed or stepped with minus and plus, within a range.
#pragma once

#include <QWidget>

class QAbstractButton;
class QLineEdit;

namespace orlix {

class StepButton;
class Theme;

class Stepper : public QWidget {
    Q_OBJECT
  public:
    Stepper(int minimum, int maximum, Theme& theme, QWidget* parent = nullptr);

    /// Shows `value`, moved into the range, without a signal.
    void setValue(int value);
    int value() const { return value_; }
    /// Accessible name of the field; the buttons are named after it.
    void setCaption(const QString& caption);
    QLineEdit* field() const { return field_; }
    QAbstractButton* minusButton() const;
    QAbstractButton* plusButton() const;
    QSize sizeHint() const override;

  Q_SIGNALS:
    void valueEdited(int value);  ///< by the user, with every accepted character and step

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void step(int by);
    void takeText(const QString& text);
    void applyTheme();

    int minimum_;
    int maximum_;
    int value_;
    Theme& theme_;
    QLineEdit* field_;
    StepButton* minus_;
    StepButton* plus_;
};

}  // namespace orlix
