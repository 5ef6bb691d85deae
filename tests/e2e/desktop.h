// A desktop of one's own for a program under test: an X server, a window manager and a D-Bus bus, with the
// pointer, the keyboard and the picture of the screen. Everything it started ends with it. Main thread.
#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QPoint>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <functional>

namespace orlix::e2e {

/// True as soon as `condition` holds; false when it has not within `milliseconds`. Looks every 20 ms.
bool waitUntil(const std::function<bool()>& condition, int milliseconds);

class Desktop {
  public:
    /// Throws std::runtime_error when a piece of it does not start.
    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    /// DISPLAY and the bus addresses of this desktop on top of the own environment.
    QProcessEnvironment environment() const;
    const QString& busAddress() const { return busAddress_; }

    void click(QPoint position) const;
    void moveTo(QPoint position) const;
    /// One notch of the wheel, toward the user.
    void scrollDown(QPoint position) const;
    /// Key names as xdotool knows them: "ctrl+s", "Return".
    void press(const QString& key) const;
    void type(const QString& text) const;
    QImage screen() const;
    /// What a program has copied; empty when nobody has.
    QString clipboard() const;

    /// All input given so far, to be given again to a program that looks the same.
    const QList<QStringList>& input() const { return input_; }
    void repeat(const QList<QStringList>& input) const;

    /// Whether programs started in `environment` are asked to describe themselves to assistive technology;
    /// true at first. Costs them time.
    void setAccessible(bool isAccessible) { isAccessible_ = isAccessible; }
    bool isAccessible() const { return isAccessible_; }

  private:
    void xdotool(const QStringList& arguments) const;

    QProcess server_;
    QProcess windowManager_;
    QProcess bus_;
    QString display_;
    QString busAddress_;
    mutable QList<QStringList> input_;
    bool isAccessible_ = true;
};

}  // namespace orlix::e2e
