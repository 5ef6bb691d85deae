// What an engine says about the position it searches: score, depth, nodes, speed and its best line. Shows a
// value and repaints only what differs.
#pragma once

#include <QStringList>
#include <optional>

#include "engine/engine_evaluation.h"
#include "ui/controls/card.h"
#include "ui/controls/text_fit.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class ElidedLabel;
class SectionHead;
class TextLabel;

/// Four captioned numbers in one row and the best line below them.
class EvaluationFigures : public QWidget, public ShowsText {
    Q_OBJECT
  public:
    static constexpr int figureCount = 4;

    explicit EvaluationFigures(const PanelContext& context, QWidget* parent = nullptr);

    void setEvaluation(const EngineEvaluation& evaluation);
    /// Score, depth, nodes and speed as shown; a dash for what the engine has not said.
    const QStringList& values() const { return values_; }
    const QString& line() const { return line_; }

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    QRectF place(int index) const;
    void breakLine();
    void retranslate();
    void describe();

    PanelContext context_;
    QStringList captions_;
    QStringList values_;
    QString lineCaption_;
    QString line_;
    QStringList rows_;  ///< the line as shown
};

class AnalysisCard : public Card {
    Q_OBJECT
  public:
    explicit AnalysisCard(const PanelContext& context, QWidget* parent = nullptr);

    /// `engineName` is absent while no engine thinks.
    void setThinkingEngine(const std::optional<QString>& engineName);
    void setEvaluation(const EngineEvaluation& evaluation);
    EvaluationFigures* figures() const { return figures_; }

  private:
    void retranslate();

    PanelContext context_;
    SectionHead* head_;
    ElidedLabel* engine_;
    TextLabel* idle_;
    EvaluationFigures* figures_;
};

/// Groups of three digits set apart by a narrow space, the same in every locale.
QString groupedNumber(qint64 number);

}  // namespace orlix
