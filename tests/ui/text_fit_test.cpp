#include "ui/controls/text_fit.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>

#include "ui/theme.h"

namespace orlix {
namespace {

QSizeF measured(const QString& text, const QFont& font, qreal width) {
    return QFontMetricsF(font).boundingRect(QRectF(0, 0, width, 100000), Qt::TextWordWrap, text).size();
}

TEST(TextFit, theSizeIsThatOfTheTextInTheFontAtTheWidthHoweverOftenAsked) {
    const QStringList texts{QStringLiteral("New Game"), QStringLiteral("Export & Notation"), QString()};
    QFont wide = Theme::font(TextStyle::body);
    wide.setLetterSpacing(QFont::AbsoluteSpacing, 3);
    const QList<QFont> fonts{Theme::font(TextStyle::caption), Theme::font(TextStyle::body),
                             Theme::font(TextStyle::bodyStrong), wide};
    for (int round = 0; round < 2; ++round) {
        for (const QString& text : texts)
            for (const QFont& font : fonts)
                for (const qreal width : {40.0, 40.5, 10000.0})
                    EXPECT_EQ(wrappedSize(text, font, width), measured(text, font, width))
                        << qPrintable(text);
    }
    EXPECT_LT(wrappedSize(texts[1], fonts[1], 40).width(), wrappedSize(texts[1], fonts[1], 10000).width());
    EXPECT_LT(wrappedSize(texts[1], fonts[1], 10000).width(), wrappedSize(texts[1], wide, 10000).width());
}

TEST(TextFit, longTextsAndManyTextsAreMeasuredToo) {
    const QFont font = Theme::font(TextStyle::body);
    const QString longText = QStringLiteral("Nimzowitsch ").repeated(40);
    EXPECT_EQ(wrappedSize(longText, font, 200), measured(longText, font, 200));
    for (int number = 0; number < 2500; ++number) {
        const QString text = QString::number(number);
        ASSERT_EQ(wrappedSize(text, font, 200), measured(text, font, 200));
    }
}

}  // namespace
}  // namespace orlix
