// Everything about one finished game of a series, with the commands that show it on the board and copy it.
#pragma once

#include <QWidget>
#include <array>
#include <optional>

#include "automatch/automatch_game_record.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class ElidedLabel;
class PanelButton;
class TextLabel;

class AutomatchRecordDetails : public QWidget {
    Q_OBJECT
  public:
    explicit AutomatchRecordDetails(const PanelContext& context, QWidget* parent = nullptr);

    void setRecord(const AutomatchGameRecord& record);

  Q_SIGNALS:
    void loadRequested();
    void copyRequested();

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    /// One player: the colour, the engine, its strength.
    struct Player {
        TextLabel* color = nullptr;
        ElidedLabel* name = nullptr;
        TextLabel* elo = nullptr;
    };

    void showRecord();
    void retranslate();

    PanelContext context_;
    std::optional<AutomatchGameRecord> record_;
    std::array<Player, 2> players_;  ///< White and Black
    TextLabel* outcome_;
    TextLabel* facts_;
    PanelButton* load_;
    PanelButton* copy_;
};

}  // namespace orlix
