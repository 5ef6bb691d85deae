#include "ui/controls/text_fit.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QHash>
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

struct Question {
    QString text;
    QString font;
    qreal width;
    bool operator==(const Question&) const = default;
};

std::size_t qHash(const Question& question, std::size_t seed) {
    return qHashMulti(seed, question.text, question.font, question.width);
}

}  // namespace

QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? wrappedToolTip(text) : text;
}

QString wrappedToolTip(const QString& text) {
    return QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
}

QSizeF wrappedSize(const QString& text, const QFont& font, qreal width) {
    const auto measured = [&] {
        return QFontMetricsF(font).boundingRect(QRectF(0, 0, width, 100000), Qt::TextWordWrap, text).size();
    };
    // Before a window stands, its layouts ask for the size of each label five to twenty times.
    static QHash<Question, QSizeF> known;
    constexpr int longestLabel = 100;
    constexpr int mostKnown = 300;
    if (text.size() > longestLabel) return measured();
    const Question question{text, font.key(), width};
    if (const auto found = known.constFind(question); found != known.constEnd()) return *found;
    if (known.size() >= mostKnown) known.clear();
    return *known.insert(question, measured());
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
