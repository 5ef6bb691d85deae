#include "ui/theme.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QtMath>
#include <array>

namespace orlix {

namespace {

Theme* sharedInstance = nullptr;
constexpr int bodyPixels = 13;
QString monospaceFamily;  // empty: as the system names it

struct Token {
    QRgb light;
    QRgb dark;
};

constexpr QRgb opaque(QRgb rgb) {
    return 0xFF000000u | rgb;
}

Token token(ColorRole role) {
    switch (role) {
        case ColorRole::window: return {opaque(0xF3F3F0), opaque(0x1B1D21)};
        case ColorRole::panel: return {opaque(0xFFFFFF), opaque(0x222529)};
        case ColorRole::card: return {opaque(0xF7F7F5), opaque(0x2A2E33)};
        case ColorRole::hairline: return {0x17000000u, 0x17FFFFFFu};  // 9 %
        case ColorRole::text: return {opaque(0x1D1F23), opaque(0xECEDEE)};
        case ColorRole::secondary: return {opaque(0x5E646C), opaque(0xA4ABB3)};
        // A shade darker than the design's #2F6FDB, which stays at 4.4 : 1 on a card.
        case ColorRole::accent: return {opaque(0x2E6DD7), opaque(0x5E9CF3)};
        // The dark scheme's accent is bright: white on it stays under 3 : 1.
        case ColorRole::accentText: return {opaque(0xFFFFFF), opaque(0x10141A)};
        case ColorRole::good: return {opaque(0x2E7D4F), opaque(0x57B983)};
        case ColorRole::caution: return {opaque(0x9A6700), opaque(0xE0A63F)};
        // A shade lighter in the dark scheme than the design's #F0645C: 4.3 : 1 on a card.
        case ColorRole::bad: return {opaque(0xC9362F), opaque(0xF16B64)};
        case ColorRole::console: return {opaque(0x14161A), opaque(0x14161A)};
        case ColorRole::consoleText: return {opaque(0xC9D1D9), opaque(0xC9D1D9)};
    }
    return {};
}

Theme::Scheme schemeOf(const QPalette& palette) {
    const bool isDark =
        palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
    return isDark ? Theme::Scheme::dark : Theme::Scheme::light;
}

double linearChannel(double value) {
    return value <= 0.04045 ? value / 12.92 : qPow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linearChannel(color.redF()) + 0.7152 * linearChannel(color.greenF()) +
           0.0722 * linearChannel(color.blueF());
}

qreal digitCell(const QFontMetricsF& metrics) {
    qreal widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        widest = qMax(widest, metrics.horizontalAdvance(QChar(digit)));
    }
    return widest;
}

qreal cellWidth(QChar character, const QFontMetricsF& metrics, qreal digitWidth) {
    return character.isDigit() ? digitWidth : metrics.horizontalAdvance(character);
}

}  // namespace

Theme& Theme::shared() {
    Q_ASSERT(sharedInstance);
    return *sharedInstance;
}

void Theme::registerShared(Theme* instance) {
    sharedInstance = instance;
}

Theme::Theme(QObject* parent) : QObject(parent), scheme_(schemeOf(QApplication::palette())) {
    qApp->installEventFilter(this);
}

Theme::~Theme() {
    if (sharedInstance == this) sharedInstance = nullptr;
}

void Theme::setScheme(Scheme scheme) {
    followsSystem_ = false;
    if (scheme == scheme_) return;
    scheme_ = scheme;
    Q_EMIT changed();
}

QColor Theme::color(ColorRole role, Scheme scheme) {
    const Token both = token(role);
    return QColor::fromRgba(scheme == Scheme::dark ? both.dark : both.light);
}

QColor Theme::hairlineOn(const QColor& ground) const {
    return blended(color(ColorRole::hairline), ground);
}

QColor Theme::hairlineBetween(const QColor& inside, const QColor& outside) const {
    QColor half = inside;
    half.setAlpha(128);
    return hairlineOn(blended(half, outside));
}

QColor Theme::tint(ColorRole role, ColorRole ground, qreal opacity) const {
    QColor top = color(role);
    top.setAlphaF(static_cast<float>(opacity));
    return blended(top, color(ground));
}

QColor Theme::inkOn(ColorRole role, const QColor& ground) const {
    QColor towards = color(ColorRole::text);
    const QColor ink = color(role);
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        towards.setAlpha(255 * step / steps);
        const QColor candidate = blended(towards, ink);
        if (contrastRatio(candidate, ground) >= 4.5) return candidate;
    }
    return color(ColorRole::text);
}

void Theme::nameGenericFamilies(const QString& sansSerif, const QString& monospace) {
    QFont font = QApplication::font();
    const bool isGeneric = font.family().compare(QLatin1String("Sans Serif"), Qt::CaseInsensitive) == 0;
    if (isGeneric && !sansSerif.isEmpty()) {
        font.setFamily(sansSerif);
        font.setPixelSize(bodyPixels);
        QApplication::setFont(font);
    }
    monospaceFamily = monospace;
}

QFont Theme::font(TextStyle style) {
    QFont font = QApplication::font();
    switch (style) {
        case TextStyle::caption: font.setPixelSize(11); break;
        case TextStyle::body: font.setPixelSize(bodyPixels); break;
        case TextStyle::bodyStrong:
            font.setPixelSize(bodyPixels);
            font.setWeight(QFont::DemiBold);
            break;
        case TextStyle::sectionHead:
            font.setPixelSize(15);
            font.setWeight(QFont::DemiBold);
            break;
        case TextStyle::title:
            font.setPixelSize(20);
            font.setWeight(QFont::DemiBold);
            break;
        case TextStyle::clock:
            font.setPixelSize(18);
            font.setWeight(QFont::Bold);
            break;
        case TextStyle::monospaced:
            font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
            if (!monospaceFamily.isEmpty() &&
                font.family().compare(QLatin1String("monospace"), Qt::CaseInsensitive) == 0)
                font.setFamily(monospaceFamily);
            font.setPixelSize(12);
            break;
    }
    return font;
}

QPalette Theme::palette() const {
    QPalette palette(color(ColorRole::text), color(ColorRole::card), color(ColorRole::panel),
                     hairlineOn(color(ColorRole::panel)), color(ColorRole::hairline), color(ColorRole::text),
                     color(ColorRole::text), color(ColorRole::panel), color(ColorRole::panel));
    palette.setColor(QPalette::Window, color(ColorRole::window));
    palette.setColor(QPalette::WindowText, color(ColorRole::text));
    palette.setColor(QPalette::AlternateBase, color(ColorRole::card));
    palette.setColor(QPalette::PlaceholderText, color(ColorRole::secondary));
    palette.setColor(QPalette::Highlight, color(ColorRole::accent));
    palette.setColor(QPalette::HighlightedText, color(ColorRole::accentText));
    palette.setColor(QPalette::Link, color(ColorRole::accent));
    palette.setColor(QPalette::ToolTipBase, color(ColorRole::card));
    palette.setColor(QPalette::ToolTipText, color(ColorRole::text));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        QColor faded = color(ColorRole::text);
        faded.setAlphaF(0.4f);
        palette.setColor(QPalette::Disabled, role, faded);
    }
    return palette;
}

bool Theme::eventFilter(QObject* watched, QEvent* event) {
    if (followsSystem_ && watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        const Scheme system = schemeOf(QApplication::palette());
        if (system != scheme_) {
            scheme_ = system;
            Q_EMIT changed();
        }
    }
    return false;
}

double contrastRatio(const QColor& text, const QColor& ground) {
    const double first = luminance(text);
    const double second = luminance(ground);
    return (qMax(first, second) + 0.05) / (qMin(first, second) + 0.05);
}

QColor blended(const QColor& top, const QColor& ground) {
    const int alpha = top.alpha();
    const auto channel = [alpha](int over, int under) {
        return qRound((over * alpha + under * (255 - alpha)) / 255.0);
    };
    return QColor(channel(top.red(), ground.red()), channel(top.green(), ground.green()),
                  channel(top.blue(), ground.blue()));
}

qreal tabularWidth(const QFont& font, const QString& text) {
    const QFontMetricsF metrics(font);
    const qreal digitWidth = digitCell(metrics);
    qreal width = 0;
    for (const QChar character : text)
        width += cellWidth(character, metrics, digitWidth);
    return width;
}

void drawTabularText(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text) {
    const QFontMetricsF metrics(painter.font());
    const qreal digitWidth = digitCell(metrics);
    const qreal width = tabularWidth(painter.font(), text);
    qreal x = rect.left();
    if (alignment & Qt::AlignRight) x = rect.right() - width;
    if (alignment & Qt::AlignHCenter) x = rect.center().x() - width / 2;
    qreal baseline = rect.top() + metrics.ascent();
    if (alignment & Qt::AlignBottom) baseline = rect.bottom() - metrics.descent();
    if (alignment & Qt::AlignVCenter) baseline = rect.center().y() + metrics.capHeight() / 2;
    for (const QChar character : text) {
        const qreal cell = cellWidth(character, metrics, digitWidth);
        const qreal advance = metrics.horizontalAdvance(character);
        painter.drawText(QPointF(x + (cell - advance) / 2, baseline), QString(character));
        x += cell;
    }
}

}  // namespace orlix
