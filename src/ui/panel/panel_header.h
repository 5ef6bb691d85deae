// The top of the side panel: the game's status as a pill, a word beside it, and the language picker.
#pragma once

#include <QHash>
#include <QWidget>

#include "ui/controls/text_fit.h"
#include "ui/panel/game_status.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class PickerButton;
class TextLabel;

/// The pill: it wraps its text onto two lines before it makes it smaller.
class StatusBadge : public QWidget, public ShowsText {
    Q_OBJECT
  public:
    explicit StatusBadge(Theme& theme, QWidget* parent = nullptr);

    void setStatus(const GameStatus& status, const QString& text);
    const GameStatus& status() const { return status_; }
    const QString& text() const { return text_; }
    /// The width in which the text stands on one line.
    int naturalWidth() const { return naturalWidth_; }
    /// The width that it takes of `room`: on more lines no wider than the longest of them.
    int widthWithin(int room) const;
    QList<ShownText> shownTexts() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int symbolRoom() const;
    QRectF textRoom() const;

    Theme& theme_;
    GameStatus status_;
    QString text_;
    QHash<QString, int> textWidths_;  ///< of every text so far
    int naturalWidth_ = 0;
};

class PanelHeader : public QWidget {
    Q_OBJECT
  public:
    static constexpr int barHeight = 52;

    explicit PanelHeader(const PanelContext& context, QWidget* parent = nullptr);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void takeGame();
    void retranslate();
    void arrange();

    PanelContext context_;
    StatusBadge* badge_;
    TextLabel* secondary_;
    PickerButton* language_;
    int languageWidth_ = 0;
    bool isShown_ = false;  ///< a status has been taken once
};

}  // namespace orlix
