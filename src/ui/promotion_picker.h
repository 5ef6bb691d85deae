// The overlay that asks for the promotion piece: it covers the board while a promotion waits. Owned by the
// board view; it decides nothing, its two signals carry the answer.
#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

#include "core/piece.h"
#include "ui/controls/text_fit.h"

namespace orlix {

class LocalizationManager;
class PromotionButton;
class Theme;

class PromotionPicker : public QWidget, public ShowsText {
    Q_OBJECT
  public:
    PromotionPicker(LocalizationManager& loc, Theme& theme, QWidget* parent);

    /// Shows the choice in the mover's colour and takes the keyboard, the queen in focus.
    void open(PieceColor color);
    /// Hides it and hands the keyboard back to whatever had it.
    void close();
    /// The title; the buttons tell their own.
    QList<ShownText> shownTexts() const override;

  Q_SIGNALS:
    void pieceChosen(orlix::PieceType type);
    void cancelled();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    void addPieceButton(PieceType type, const char* textKey);
    void updateTexts();
    void arrange();
    QRect titleRect() const;
    QFont titleFont() const;
    void moveFocus(int step);

    LocalizationManager& loc_;
    Theme& theme_;
    std::vector<PromotionButton*> buttons_;  ///< the pieces in promotion order, then cancel; children of this
    std::vector<const char*> textKeys_;      ///< of each button
    QRect panel_;
    QString title_;
    QPointer<QWidget> previousFocus_;
};

}  // namespace orlix
