// A button of the promotion picker: a piece above its name, or the name alone. Owned by the picker.
#pragma once

#include <QAbstractButton>
#include <optional>

#include "core/piece.h"
#include "ui/controls/text_fit.h"
#include "ui/piece_view.h"

namespace orlix {

class Theme;

class PromotionButton : public QAbstractButton, public ShowsText {
    Q_OBJECT
  public:
    PromotionButton(Theme& theme, std::optional<PieceType> type, QWidget* parent);

    void setPieceColor(PieceColor color);
    QSize sizeHint() const override;
    QList<ShownText> shownTexts() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QRect pieceRect() const;
    QRect textRect() const;
    QFont labelFont() const;

    Theme& theme_;
    std::optional<PieceType> type_;
    PieceColor color_ = PieceColor::white;
    PiecePixmaps pixmaps_;
};

}  // namespace orlix
