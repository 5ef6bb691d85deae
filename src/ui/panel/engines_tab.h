// The registry of engines: a row for each, and the commands that find and add more.
#pragma once

#include <QList>
#include <QWidget>

#include "ui/panel/panel_context.h"

class QVBoxLayout;

namespace orlix {

class EngineNotice;
class EngineRow;
class PanelButton;
class SectionHead;
class TextLabel;

class EnginesTab : public QWidget {
    Q_OBJECT
  public:
    /// `state` is the panel's and outlives the tab.
    EnginesTab(const PanelContext& context, PanelState& state, QWidget* parent = nullptr);

    /// Says that a chosen file is being tested before it is added.
    void setCheckingEngine(bool isChecking);
    const QList<EngineRow*>& rows() const { return rows_; }

  Q_SIGNALS:
    void addEngineRequested();

  private:
    EngineRow* addRow(int index);
    void takeEngines();
    void showEditor();
    void remove(EngineRow* row);
    void retranslate();

    PanelContext context_;
    PanelState& state_;
    SectionHead* head_;
    PanelButton* scan_;
    PanelButton* add_;
    TextLabel* checking_;
    EngineNotice* notice_ = nullptr;
    QWidget* noticeCard_ = nullptr;
    QVBoxLayout* list_;
    QList<EngineRow*> rows_;
};

}  // namespace orlix
