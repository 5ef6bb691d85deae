#include "ui/theme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <string>
#include <vector>

namespace orlix {
namespace {

struct Pair {
    std::string name;
    ColorRole text;
    ColorRole ground;
};

std::vector<Pair> pairsInUse() {
    const std::vector<std::pair<std::string, ColorRole>> texts{
        {"text", ColorRole::text}, {"secondary", ColorRole::secondary}, {"accent", ColorRole::accent},
        {"good", ColorRole::good}, {"caution", ColorRole::caution},     {"bad", ColorRole::bad},
    };
    const std::vector<std::pair<std::string, ColorRole>> grounds{
        {"window", ColorRole::window}, {"panel", ColorRole::panel}, {"card", ColorRole::card}};
    std::vector<Pair> pairs;
    for (const auto& text : texts) {
        for (const auto& ground : grounds) {
            // Signal colours stand on panels and cards; the bare window behind the board carries no text in
            // them.
            const bool isPlain = text.second == ColorRole::text || text.second == ColorRole::secondary;
            if (ground.second == ColorRole::window && !isPlain) continue;
            pairs.push_back({text.first + " on " + ground.first, text.second, ground.second});
        }
    }
    pairs.push_back({"accentText on accent", ColorRole::accentText, ColorRole::accent});
    pairs.push_back({"consoleText on console", ColorRole::consoleText, ColorRole::console});
    return pairs;
}

QPalette paletteWith(const QColor& window, const QColor& text) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

TEST(Theme, everyTextReachesFourAndAHalfToOneOnItsGround) {
    for (const Theme::Scheme scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        for (const Pair& pair : pairsInUse()) {
            const double ratio =
                contrastRatio(Theme::color(pair.text, scheme), Theme::color(pair.ground, scheme));
            EXPECT_GE(ratio, 4.5) << pair.name << (scheme == Theme::Scheme::dark ? ", dark" : ", light");
        }
    }
}

TEST(Theme, colouredTextStaysReadableOnATintOfItsOwnColour) {
    Theme theme;
    for (const Theme::Scheme scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        theme.setScheme(scheme);
        for (const ColorRole role :
             {ColorRole::accent, ColorRole::good, ColorRole::caution, ColorRole::bad, ColorRole::secondary}) {
            for (const qreal opacity : {0.08, 0.12, 0.2, 0.3}) {
                const QColor ground = theme.tint(role, ColorRole::panel, opacity);
                EXPECT_GE(contrastRatio(theme.inkOn(role, ground), ground), 4.5)
                    << static_cast<int>(role) << " at " << opacity;
            }
            const QColor panel = theme.color(ColorRole::panel);
            EXPECT_EQ(theme.inkOn(role, panel), theme.color(role)) << "what reads already stays as it is";
        }
    }
}

TEST(Theme, contrastRatioKnowsItsTwoEnds) {
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::black), 21.0, 1e-9);
    EXPECT_NEAR(contrastRatio(Qt::red, Qt::red), 1.0, 1e-9);
    EXPECT_NEAR(contrastRatio(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01);
}

TEST(Theme, tokensAreTheDesignsColours) {
    EXPECT_EQ(Theme::color(ColorRole::window, Theme::Scheme::light), QColor(0xF3, 0xF3, 0xF0));
    EXPECT_EQ(Theme::color(ColorRole::window, Theme::Scheme::dark), QColor(0x1B, 0x1D, 0x21));
    EXPECT_EQ(Theme::color(ColorRole::accent, Theme::Scheme::light), QColor(0x2E, 0x6D, 0xD7));
    EXPECT_EQ(Theme::color(ColorRole::bad, Theme::Scheme::dark), QColor(0xF1, 0x6B, 0x64));
    EXPECT_EQ(Theme::color(ColorRole::console, Theme::Scheme::light),
              Theme::color(ColorRole::console, Theme::Scheme::dark));
    const QColor hairline = Theme::color(ColorRole::hairline, Theme::Scheme::light);
    EXPECT_EQ(hairline.rgb(), QColor(Qt::black).rgb());
    EXPECT_NEAR(hairline.alphaF(), 0.09, 0.002);
}

TEST(Theme, followsTheSystemsPaletteLive) {
    const QPalette before = QApplication::palette();
    QApplication::setPalette(paletteWith(Qt::white, Qt::black));
    Theme theme;
    QSignalSpy changes(&theme, &Theme::changed);
    EXPECT_EQ(theme.scheme(), Theme::Scheme::light);

    QApplication::setPalette(paletteWith(QColor(30, 30, 30), Qt::white));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(theme.scheme(), Theme::Scheme::dark);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(theme.color(ColorRole::text), Theme::color(ColorRole::text, Theme::Scheme::dark));

    QApplication::setPalette(paletteWith(QColor(40, 40, 40), Qt::white));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(changes.count(), 1) << "another dark palette is no change";
    QApplication::setPalette(before);
    QCoreApplication::sendPostedEvents();
}

TEST(Theme, aFixedSchemeNoLongerFollowsTheSystem) {
    const QPalette before = QApplication::palette();
    Theme theme;
    theme.setScheme(Theme::Scheme::dark);
    QSignalSpy changes(&theme, &Theme::changed);
    theme.setScheme(Theme::Scheme::dark);
    QApplication::setPalette(paletteWith(QColor(30, 30, 30), Qt::white));
    QApplication::setPalette(paletteWith(Qt::white, Qt::black));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(theme.scheme(), Theme::Scheme::dark);
    EXPECT_EQ(changes.count(), 0);
    theme.setScheme(Theme::Scheme::light);
    EXPECT_EQ(changes.count(), 1);
    QApplication::setPalette(before);
}

TEST(Theme, fontsHaveTheDesignsSizes) {
    EXPECT_EQ(Theme::font(TextStyle::caption).pixelSize(), 11);
    EXPECT_EQ(Theme::font(TextStyle::body).pixelSize(), 13);
    EXPECT_EQ(Theme::font(TextStyle::bodyStrong).pixelSize(), 13);
    EXPECT_EQ(Theme::font(TextStyle::sectionHead).pixelSize(), 15);
    EXPECT_EQ(Theme::font(TextStyle::sectionHead).weight(), QFont::DemiBold);
    EXPECT_EQ(Theme::font(TextStyle::title).pixelSize(), 20);
    EXPECT_EQ(Theme::font(TextStyle::clock).pixelSize(), 18);
}

TEST(Theme, genericNamesGiveWayToInstalledFamiliesAndOthersStay) {
    const QFont before = QApplication::font();
    QFont generic = before;
    generic.setFamily(QStringLiteral("Sans Serif"));
    QApplication::setFont(generic);
    Theme::nameGenericFamilies(QString(), QString());
    EXPECT_EQ(Theme::font(TextStyle::body).family(), QStringLiteral("Sans Serif"));
    const QString fixed = Theme::font(TextStyle::monospaced).family();

    Theme::nameGenericFamilies(QStringLiteral("DejaVu Sans"), QStringLiteral("DejaVu Sans Mono"));
    EXPECT_EQ(Theme::font(TextStyle::body).family(), QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(Theme::font(TextStyle::body).pixelSize(), 13);
    EXPECT_EQ(QApplication::font(), Theme::font(TextStyle::body));
    EXPECT_EQ(Theme::font(TextStyle::monospaced).family(),
              fixed.compare(QLatin1String("monospace"), Qt::CaseInsensitive) == 0
                  ? QStringLiteral("DejaVu Sans Mono")
                  : fixed);

    // What a desktop or a person has chosen stands.
    generic.setFamily(QStringLiteral("Cantarell"));
    QApplication::setFont(generic);
    Theme::nameGenericFamilies(QStringLiteral("DejaVu Sans"), QString());
    EXPECT_EQ(Theme::font(TextStyle::body).family(), QStringLiteral("Cantarell"));
    EXPECT_EQ(QApplication::font(), generic);
    EXPECT_EQ(Theme::font(TextStyle::monospaced).family(), fixed);
    QApplication::setFont(before);
}

TEST(Theme, runningNumbersTakeTheSameRoomWhateverTheirDigits) {
    const QFont font = Theme::font(TextStyle::clock);
    EXPECT_DOUBLE_EQ(tabularWidth(font, QStringLiteral("1:11")), tabularWidth(font, QStringLiteral("8:08")));
    EXPECT_GT(tabularWidth(font, QStringLiteral("10:08")), tabularWidth(font, QStringLiteral("8:08")));
}

TEST(Theme, tabularTextStaysInsideItsRectangle) {
    QImage image(120, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(Theme::font(TextStyle::clock));
    drawTabularText(painter, QRectF(20, 5, 80, 30), Qt::AlignRight | Qt::AlignVCenter,
                    QStringLiteral("4:58"));
    painter.end();
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128) ink |= QRect(x, y, 1, 1);
        }
    }
    EXPECT_FALSE(ink.isNull());
    EXPECT_TRUE(QRect(20, 5, 80, 30).contains(ink));
    EXPECT_NEAR(ink.center().y(), 20, 1.5);
    EXPECT_GT(ink.right(), 94);
}

TEST(Theme, blendingLaysAlphaOverAnOpaqueGround) {
    EXPECT_EQ(blended(QColor(0, 0, 0, 0), QColor(10, 20, 30)), QColor(10, 20, 30));
    EXPECT_EQ(blended(QColor(1, 2, 3, 255), QColor(10, 20, 30)), QColor(1, 2, 3));
    EXPECT_EQ(blended(QColor(255, 255, 255, 51), Qt::black), QColor(51, 51, 51));
    Theme theme;
    theme.setScheme(Theme::Scheme::light);
    EXPECT_EQ(theme.tint(ColorRole::text, ColorRole::panel, 0.0), QColor(Qt::white));
    EXPECT_EQ(theme.tint(ColorRole::text, ColorRole::panel, 1.0), theme.color(ColorRole::text));
}

TEST(Theme, thePaletteCarriesTheTokens) {
    Theme theme;
    theme.setScheme(Theme::Scheme::dark);
    const QPalette palette = theme.palette();
    EXPECT_EQ(palette.color(QPalette::Window), theme.color(ColorRole::window));
    EXPECT_EQ(palette.color(QPalette::Text), theme.color(ColorRole::text));
    EXPECT_EQ(palette.color(QPalette::Highlight), theme.color(ColorRole::accent));
    EXPECT_GE(contrastRatio(palette.color(QPalette::PlaceholderText), palette.color(QPalette::Base)), 4.5);
}

}  // namespace
}  // namespace orlix
