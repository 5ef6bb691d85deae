// The vertical evaluation bar: White's share of the game and the score on a small plate. Built from values
// handed to it; it reads no other state.
#pragma once

#include <QWidget>
#include <memory>

#include "core/piece.h"
#include "engine/engine_evaluation.h"

namespace orlix {

class EvaluationBarView : public QWidget {
    Q_OBJECT
  public:
    explicit EvaluationBarView(QWidget* parent = nullptr);
    ~EvaluationBarView() override;

    /// `turn` is the side to move of the evaluated position. Repaints only when the picture differs.
    void setValues(const EngineEvaluation& evaluation, PieceColor turn, bool isFlipped);
    /// What assistive technology calls the score, in the interface's language.
    void setCaption(const QString& caption);
    void setAnimated(bool animated);  ///< false: heights change at once
    /// The colours behind the rounded corners and of the line around the bar. With them the bar paints every
    /// pixel of its own, and what is behind it need not be painted for each step of a motion.
    void setSurroundings(const QColor& ground, const QColor& line);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace orlix
