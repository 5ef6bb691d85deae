// The control column beside the board: header with the game's status, six tabs, the bottom bar of game
// commands and the toast. Owned by the main view; main thread only. It holds no game state: every control
// reads or calls the managers handed to it.
#pragma once

#include <QString>
#include <QWidget>
#include <memory>

#include "ui/assistive_technology.h"

namespace orlix {

class AutomatchManager;
class EngineManager;
class GameManager;
class LocalizationManager;
class PGNExporter;
class Theme;
class TimeSource;

class RightPanelView : public QWidget {
    Q_OBJECT
  public:
    static constexpr int tabCount = 6;
    static constexpr int minimumPanelWidth = 400;
    static constexpr int maximumPanelWidth = 460;

    /// All references outlive the view. `listener` is told of what the panel has to say unasked.
    RightPanelView(GameManager& game, EngineManager& engines, LocalizationManager& loc,
                   AutomatchManager& automatch, Theme& theme, PGNExporter& exporter, TimeSource& time,
                   QWidget* parent = nullptr,
                   AssistiveTechnology& listener = AssistiveTechnology::ofSystem());
    ~RightPanelView() override;

    /// Shows tab `index`, 0 to 5; any other index is ignored. A tab is built when it is first shown.
    void setSelectedTab(int index);
    int selectedTab() const;

    /// Shows `message` above the bottom bar and takes it away 2.5 seconds after the latest call.
    void showToast(const QString& message);
    /// The toast currently shown; empty without one.
    QString toastMessage() const;

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace orlix
