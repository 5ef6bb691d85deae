// Start, or pause, resume and stop: the commands of a series, those that apply now.
#pragma once

#include <QWidget>

#include "ui/panel/panel_context.h"

namespace orlix {

class PanelButton;

class AutomatchControls : public QWidget {
    Q_OBJECT
  public:
    explicit AutomatchControls(const PanelContext& context, QWidget* parent = nullptr);

    void takeSeries();

  private:
    void showPause();
    void retranslate();

    PanelContext context_;
    PanelButton* start_;
    PanelButton* pause_;  ///< resumes while the series is paused
    PanelButton* stop_;
};

}  // namespace orlix
