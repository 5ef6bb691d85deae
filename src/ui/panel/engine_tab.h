// What the engines of the running game think and say: the analysis card, their strength, and the dialogue
// with one of them. Hears of evaluations and log lines only while it is in sight.
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <optional>

#include "core/piece.h"
#include "engine/uci_engine_process.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class AnalysisCard;
class ChoiceGroup;
class LiveEloEditor;
class PanelButton;
class SectionHead;
class Timer;
class UciConsoleView;

class EngineTab : public QWidget {
    Q_OBJECT
  public:
    explicit EngineTab(const PanelContext& context, QWidget* parent = nullptr);
    ~EngineTab() override;

  Q_SIGNALS:
    void toastRequested(const QString& message);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    UCIEngineProcess* engineOf(PieceColor color) const;
    std::optional<PieceColor> activeSide() const;
    void takeGame();
    void takeEngines();
    void followAnalysis();
    void followConsole();
    void takeEvaluation();
    void copyLog();
    void retranslate();

    PanelContext context_;
    AnalysisCard* analysis_;
    LiveEloEditor* strength_;
    SectionHead* consoleHead_;
    PanelButton* copy_;
    ChoiceGroup* sides_;
    UciConsoleView* console_;
    QPointer<UCIEngineProcess> analyzed_;
    QMetaObject::Connection evaluationConnection_;
    std::unique_ptr<Timer> refresh_;
    std::optional<PieceColor> lastThinking_;
    std::optional<PieceColor> chosenSide_;  ///< by the user, until the engines are replaced
};

}  // namespace orlix
