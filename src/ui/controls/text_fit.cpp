#include "ui/controls/text_fit.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QTextDocument>

namespace orlix {

namespace {

template <class Fits>
QFont shrunk(const QFont& font, int minimumPixels, const Fits& fits) {
    QFont smaller = font;
    for (int pixels = QFontInfo(font).pixelSize(); pixels > minimumPixels; --pixels) {
        smaller.setPixelSize(pixels);
        if (fits(smaller)) return smaller;
    }
    smaller.setPixelSize(minimumPixels);
    return smaller;
}

}  // namespace

QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? wrappedToolTip(text) : text;
}

QString wrappedToolTip(const QString& text) {
    return QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
}

QSizeF wrappedSize(const QString& text, const QFont& font, qreal width) {
    return QFontMetricsF(font).boundingRect(QRectF(0, 0, width, 100000), Qt::TextWordWrap, text).size();
}

QFont fittingFont(const QString& text, const QFont& font, const QSizeF& room, int minimumPixels) {
    return shrunk(font, minimumPixels, [&](const QFont& smaller) {
        const QSizeF needed = wrappedSize(text, smaller, room.width());
        return needed.width() <= room.width() && needed.height() <= room.height();
    });
}

qreal lineWidth(const QFont& font, const QString& text) {
    return QFontMetricsF(font).horizontalAdvance(text);
}

QFont fittingLineFont(const QString& text, const QFont& font, qreal width, int minimumPixels,
                      WidthOf widthOf) {
    return shrunk(font, minimumPixels, [&](const QFont& smaller) { return widthOf(smaller, text) <= width; });
}

}  // namespace orlix
