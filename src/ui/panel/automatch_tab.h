// The series of engine games: its score, its commands, its settings and its finished games. While another tab
// is shown it costs nothing.
#pragma once

#include <QWidget>

#include "ui/panel/panel_context.h"

namespace orlix {

class AutomatchConfiguration;
class AutomatchControls;
class AutomatchHistory;
class AutomatchScoreboard;

class AutomatchTab : public QWidget {
    Q_OBJECT
  public:
    explicit AutomatchTab(const PanelContext& context, QWidget* parent = nullptr);

  Q_SIGNALS:
    void addEngineRequested();
    void toastRequested(const QString& message);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void takeSeries();

    AutomatchScoreboard* scoreboard_;
    AutomatchControls* controls_;
    AutomatchConfiguration* configuration_;
    AutomatchHistory* history_;
};

}  // namespace orlix
