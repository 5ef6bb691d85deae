#include "ui/controls/text_fit.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QTextDocument>

namespace orlix {

QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()) : text;
}

QSizeF wrappedSize(const QString& text, const QFont& font, qreal width) {
    return QFontMetricsF(font).boundingRect(QRectF(0, 0, width, 100000), Qt::TextWordWrap, text).size();
}

QFont fittingFont(const QString& text, const QFont& font, const QSizeF& room, int minimumPixels) {
    QFont fitting = font;
    for (int pixels = QFontInfo(font).pixelSize(); pixels > minimumPixels; --pixels) {
        fitting.setPixelSize(pixels);
        const QSizeF needed = wrappedSize(text, fitting, room.width());
        if (needed.width() <= room.width() && needed.height() <= room.height()) return fitting;
    }
    fitting.setPixelSize(minimumPixels);
    return fitting;
}

}  // namespace orlix
