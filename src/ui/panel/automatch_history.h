// The card of finished games: the list, the details of the one that is chosen, and the commands for a game
// and for all of them.
#pragma once

#include "ui/controls/card.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class AutomatchHistoryList;
class AutomatchHistoryModel;
class AutomatchRecordDetails;
class IconButton;
class SectionHead;
class TextLabel;

class AutomatchHistory : public Card {
    Q_OBJECT
  public:
    explicit AutomatchHistory(const PanelContext& context, QWidget* parent = nullptr);

    void takeSeries();

  Q_SIGNALS:
    void toastRequested(const QString& message);
    /// `details` have come to stand at the card's end, which may be out of sight.
    void detailsOpened(QWidget* details);

  private:
    void showChosen();
    void load(int row);
    void copy(int row);
    void copyAll();
    void clear();
    void retranslate();

    PanelContext context_;
    SectionHead* head_;
    IconButton* copyAll_;
    IconButton* clear_;
    TextLabel* empty_;
    AutomatchHistoryModel* model_;
    AutomatchHistoryList* list_;
    AutomatchRecordDetails* details_;
};

}  // namespace orlix
