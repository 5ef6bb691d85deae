// A painted push button, tab, segment, chip or menu row: one class, its look chosen from a table.
#pragma once

#include <optional>

#include "ui/controls/control_button.h"
#include "ui/controls/text_fit.h"
#include "ui/icons.h"

namespace orlix {

class PanelButton : public ControlButton, public ShowsText {
    Q_OBJECT
  public:
    enum class Look {
        primary,    ///< the one thing to do, in the accent colour
        secondary,  ///< any other command
        onCard,     ///< any other command, on a card: outlined
        destructive,
        alarming,  ///< ends what is running, in the bad colour
        tab,       ///< one of the tabs: highlighted while checked
        segment,   ///< one part of a segmented control: raised while checked
        chip,      ///< a pill: filled while checked
        option,    ///< a row of a picker's list: ticked while checked
    };
    enum class Arrangement { row, column };  ///< symbol beside the label, or above it

    PanelButton(Look look, Arrangement arrangement, Theme& theme, QWidget* parent = nullptr);

    /// Also the accessible name. An ampersand is shown as it is: no key is taken from it.
    void setLabel(const QString& label);
    const QString& label() const { return label_; }
    void setSymbol(Icon symbol);
    /// Of a column: places the symbol as above a label that makes both `height` high together, so that
    /// buttons beside each other share one line of symbols. 0 centres the button's own symbol and label.
    void setSharedHeight(int height);
    /// How high symbol and label of a column are together at this width of the button.
    int columnHeight(int width) const;
    /// How wide it has to be for `label` on one line in full size.
    int widthFor(const QString& label) const;
    /// How wide it has to be for its label in full size, with lines broken between words.
    int leastWidth() const;
    /// Shortens a label that is too long instead of breaking and shrinking it: for names that users give.
    void setElided(bool isElided);

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

    /// The ink and ground of `look`, for checks of their contrast; an invalid ground is the card's.
    struct Colors {
        QColor ground;
        QColor ink;
    };
    static Colors colors(Look look, bool isChecked, bool isHovered, const Theme& theme);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    /// Symbol and label in full size, the label's lines broken at `width`.
    QSizeF naturalSize(const QString& label, qreal width) const;
    QFont labelFont() const;
    QRectF content() const;
    QRectF labelRoom() const;
    qreal radius() const;

    Look look_;
    Arrangement arrangement_;
    QString label_;
    std::optional<Icon> symbol_;
    bool isElided_ = false;
    int sharedHeight_ = 0;
};

}  // namespace orlix
