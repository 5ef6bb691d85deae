// How the painted controls measure their texts: one place decides whether a text fits, for layout, painting
// and for whoever asks a control what it shows.
#pragma once

#include <QFont>
#include <QList>
#include <QSizeF>
#include <QString>

namespace orlix {

/// A text as a control shows it now: the size that it takes in the font used, and the room it has.
struct ShownText {
    QString text;
    QSizeF needed;
    QSizeF room;
};

/// Implemented by every control that paints text.
class ShowsText {
  public:
    virtual ~ShowsText() = default;
    /// What is painted now. A name of the user's own (an engine's) that is shortened on purpose is left out.
    virtual QList<ShownText> shownTexts() const = 0;
};

/// The size of `text` when lines break between words at `width`; a word that is wider than that counts whole.
/// Remembered for short texts: main thread only.
QSizeF wrappedSize(const QString& text, const QFont& font, qreal width);

/// `font`, made smaller pixel by pixel until `text` fits `room` with lines broken between words, but never
/// under `minimumPixels`.
QFont fittingFont(const QString& text, const QFont& font, const QSizeF& room, int minimumPixels);

/// The width of `text` in `font`, in the way in which it is painted.
using WidthOf = qreal (*)(const QFont& font, const QString& text);

/// The width of `text` on one line, painted in one piece.
qreal lineWidth(const QFont& font, const QString& text);

/// `font`, made smaller pixel by pixel until `text` fits `width` on one line, but never under
/// `minimumPixels`.
QFont fittingLineFont(const QString& text, const QFont& font, qreal width, int minimumPixels,
                      WidthOf widthOf = lineWidth);

/// `text` as a tooltip that shows it letter by letter: Qt would read as markup what looks like it.
QString plainToolTip(const QString& text);
/// The same in several lines where one would be too long: Qt breaks the lines of markup only.
QString wrappedToolTip(const QString& text);

}  // namespace orlix
