// A thin bar with a part that glides along: something is going on, for as long as it takes. Its timer runs
// only while it is shown.
#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace orlix {

class Theme;

class ActivityBar : public QWidget {
    Q_OBJECT
  public:
    static constexpr int thickness = 4;

    explicit ActivityBar(Theme& theme, QWidget* parent = nullptr);

    /// Off for users who want no motion: the bar is then one even tone.
    void setAnimated(bool isAnimated);
    /// Whether it moves now.
    bool isRunning() const { return timer_.isActive(); }

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void startOrStop();

    Theme& theme_;
    QBasicTimer timer_;
    bool isAnimated_ = true;
    int step_ = 0;
};

}  // namespace orlix
