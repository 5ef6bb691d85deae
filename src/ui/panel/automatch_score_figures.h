// The score of a series as three columns, engine 1, draws, engine 2, with a bar of their shares below. Shows
// a value and repaints only when it differs.
#pragma once

#include <QWidget>

#include "automatch/match_statistics.h"
#include "ui/controls/text_fit.h"
#include "ui/panel/panel_context.h"
#include "ui/theme.h"

namespace orlix {

class AutomatchScoreFigures : public QWidget, public ShowsText {
    Q_OBJECT
  public:
    struct Values {
        QString engine1;
        QString engine1Cap;  ///< the strength it plays with
        QString engine2;
        QString engine2Cap;
        MatchScore score;  ///< from engine 1's side

        bool operator==(const Values&) const = default;
    };

    explicit AutomatchScoreFigures(const PanelContext& context, QWidget* parent = nullptr);

    void setValues(const Values& values);
    const Values& values() const { return values_; }

    QList<ShownText> shownTexts() const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    /// One painted line: where, in which style, and aligned to which side.
    struct Line {
        QString text;
        QRectF room;
        QFont font;
        ColorRole role;
        Qt::Alignment alignment;
        bool isUserName = false;  ///< shortened when it is too long
    };

    QList<Line> lines() const;
    void appendSide(QList<Line>& lines, bool isFirst) const;
    void paintBar(QPainter& painter) const;
    void retranslate();
    void describe();

    PanelContext context_;
    Values values_;
    QString winsCaption_;
    QString drawsCaption_;
};

}  // namespace orlix
