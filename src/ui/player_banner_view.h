// One player's banner: symbol, name, captured pieces, material and clock. Built from values handed to it.
#pragma once

#include <QString>
#include <QWidget>
#include <memory>
#include <vector>

#include "core/piece.h"

namespace orlix {

class Theme;

class PlayerBannerView : public QWidget {
    Q_OBJECT
  public:
    struct Values {
        PieceColor color = PieceColor::white;
        QString name;
        bool isEngine = false;
        bool isActiveTurn = false;
        QString timeString;
        std::vector<Piece> capturedPieces;   ///< shown in this order
        std::int64_t materialAdvantage = 0;  ///< shown from 1 on, as "+3"
        // Beyond the values of the clock's text: how the clock and symbol are tinted.
        bool isLowOnTime = false;
        bool isThinking = false;
    };

    explicit PlayerBannerView(Theme& theme, QWidget* parent = nullptr);
    ~PlayerBannerView() override;

    /// Repaints only what differs from the values shown.
    void setValues(const Values& values);
    /// What assistive technology reads when it asks: name, clock and material.
    QString spokenText() const;
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace orlix
