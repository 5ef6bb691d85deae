#include "ui/controls/stepper.h"

#include <QIntValidator>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include "ui/controls/control_button.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int buttonWidth = 32;
}

/// The minus or plus at one end. The field takes the keys, so Tab leaves these out.
class StepButton : public ControlButton {
  public:
    StepButton(bool isPlus, Theme& theme, QWidget* parent) : ControlButton(theme, parent), isPlus_(isPlus) {
        setFocusPolicy(Qt::NoFocus);
        setAutoRepeat(true);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (underMouse() || isDown()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(theme().tint(ColorRole::text, ColorRole::card, isDown() ? 0.16 : 0.08));
            painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), metrics::controlRadius - 2,
                                    metrics::controlRadius - 2);
        }
        painter.setPen(QPen(theme().color(ColorRole::text), 1.5, Qt::SolidLine, Qt::RoundCap));
        const QPointF middle = QRectF(rect()).center();
        painter.drawLine(middle - QPointF(5, 0), middle + QPointF(5, 0));
        if (isPlus_) painter.drawLine(middle - QPointF(0, 5), middle + QPointF(0, 5));
    }

  private:
    bool isPlus_;
};

Stepper::Stepper(int minimum, int maximum, Theme& theme, QWidget* parent)
    : QWidget(parent),
      minimum_(minimum),
      maximum_(maximum),
      value_(minimum),
      theme_(theme),
      field_(new QLineEdit(this)),
      minus_(new StepButton(false, theme, this)),
      plus_(new StepButton(true, theme, this)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    field_->setFrame(false);
    field_->setAlignment(Qt::AlignCenter);
    field_->setFont(Theme::font(TextStyle::body));
    field_->setValidator(new QIntValidator(0, maximum, field_));
    field_->setAttribute(Qt::WA_MacShowFocusRect, false);
    field_->installEventFilter(this);
    setFocusProxy(field_);
    applyTheme();
    setValue(minimum);
    connect(field_, &QLineEdit::textEdited, this, &Stepper::takeText);
    connect(minus_, &QAbstractButton::clicked, this, [this] { step(-1); });
    connect(plus_, &QAbstractButton::clicked, this, [this] { step(1); });
    connect(&theme_, &Theme::changed, this, &Stepper::applyTheme);
}

QAbstractButton* Stepper::minusButton() const {
    return minus_;
}

QAbstractButton* Stepper::plusButton() const {
    return plus_;
}

QSize Stepper::sizeHint() const {
    return {128, 30};
}

void Stepper::setValue(int value) {
    value_ = qBound(minimum_, value, maximum_);
    const QString text = QString::number(value_);
    if (field_->text() != text) field_->setText(text);
}

void Stepper::setCaption(const QString& caption) {
    field_->setAccessibleName(caption);
    minus_->setAccessibleName(caption + QStringLiteral(" \u2212"));
    plus_->setAccessibleName(caption + QStringLiteral(" +"));
}

void Stepper::step(int by) {
    const int before = value_;
    setValue(value_ + by);
    if (value_ != before) Q_EMIT valueEdited(value_);
}

void Stepper::takeText(const QString& text) {
    bool isNumber = false;
    const int typed = text.toInt(&isNumber);
    if (!isNumber || typed < minimum_ || typed > maximum_ || typed == value_) return;
    value_ = typed;
    Q_EMIT valueEdited(value_);
}

void Stepper::applyTheme() {
    QPalette colors = theme_.palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    field_->setPalette(colors);
    update();
}

bool Stepper::eventFilter(QObject* watched, QEvent* event) {
    if (watched == field_) {
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Up || key == Qt::Key_Down) {
                step(key == Qt::Key_Up ? 1 : -1);
                return true;
            }
        }
        // What is no number of the range is replaced by the value in force when the field is left.
        if (event->type() == QEvent::FocusOut) setValue(value_);
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
    }
    return QWidget::eventFilter(watched, event);
}

void Stepper::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    minus_->setGeometry(0, 0, buttonWidth, height());
    plus_->setGeometry(width() - buttonWidth, 0, buttonWidth, height());
    field_->setGeometry(buttonWidth, 3, width() - 2 * buttonWidth, height() - 6);
}

void Stepper::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme_.color(ColorRole::hairline));
    painter.setBrush(
        theme_.tint(ColorRole::text, ColorRole::panel, theme_.scheme() == Theme::Scheme::dark ? 0.08 : 0.0));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), metrics::controlRadius,
                            metrics::controlRadius);
    if (field_->hasFocus()) paintFocusRing(painter, theme_, rect(), metrics::controlRadius);
}

}  // namespace orlix
