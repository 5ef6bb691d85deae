#include "ui/piece_glyph.h"

#include <QApplication>
#include <QFont>
#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>
#include <array>
#include <mutex>
#include <optional>

namespace orlix {

namespace {

constexpr char32_t firstSymbol = 0x2654;
constexpr std::size_t symbolCount = 12;
// Large enough that hinting leaves no trace in the path once it is scaled down.
constexpr int designSize = 512;

// Fonts known to hold the symbols as outlines, in the order of how well their pieces read on a board.
constexpr std::array familyNames{"DejaVu Sans",        "Apple Symbols", "Segoe UI Symbol", "FreeSerif",
                                 "Noto Sans Symbols2", "Symbola",       "Arial Unicode MS"};

QPainterPath outline(const QRawFont& font, char32_t symbol) {
    if (!font.isValid() || !font.supportsCharacter(symbol)) return {};
    const QList<quint32> glyphs = font.glyphIndexesForString(QString::fromUcs4(&symbol, 1));
    if (glyphs.isEmpty() || glyphs.front() == 0) return {};
    QPainterPath path = font.pathForGlyph(glyphs.front());
    path.setFillRule(Qt::WindingFill);
    return path;
}

QRawFont rawFont(const QString& family) {
    QFont font(family);
    font.setPixelSize(designSize);
    font.setWeight(QFont::DemiBold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return QRawFont::fromFont(font);
}

// The system's own choice for the symbol in text form; the variation selector asks for no emoji.
QPainterPath outlineFromFallback(char32_t symbol) {
    QFont font = QApplication::font();
    font.setPixelSize(designSize);
    font.setWeight(QFont::DemiBold);
    QTextLayout layout(QString::fromUcs4(&symbol, 1) + QChar(0xFE0E), font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    for (const QGlyphRun& run : layout.glyphRuns()) {
        QPainterPath path = outline(run.rawFont(), symbol);
        if (!path.isEmpty()) return path;
    }
    return {};
}

QPainterPath findOutline(char32_t symbol) {
    for (const char* name : familyNames) {
        QPainterPath path = outline(rawFont(QLatin1String(name)), symbol);
        if (!path.isEmpty()) return path;
    }
    return outlineFromFallback(symbol);
}

}  // namespace

const QPainterPath& pieceGlyph(char32_t symbol) {
    static std::array<std::optional<QPainterPath>, symbolCount> known;
    static std::mutex mutex;
    static const QPainterPath none;
    if (symbol < firstSymbol || symbol >= firstSymbol + symbolCount) return none;
    const std::scoped_lock lock(mutex);
    std::optional<QPainterPath>& path = known[symbol - firstSymbol];
    if (!path) {
        constexpr qreal unit = 1.0 / designSize;
        path = QTransform::fromScale(unit, unit).map(findOutline(symbol));
        // A path works out its bounds when they are first asked for, and keeps them: after this it is only
        // read, from any thread.
        path->boundingRect();
    }
    return *path;
}

char32_t solidPieceSymbol(PieceType type) {
    switch (type) {
        case PieceType::king: return 0x265A;
        case PieceType::queen: return 0x265B;
        case PieceType::rook: return 0x265C;
        case PieceType::bishop: return 0x265D;
        case PieceType::knight: return 0x265E;
        case PieceType::pawn: return 0x265F;
    }
    return 0x265F;
}

char32_t pieceSymbol(PieceType type, PieceColor color) {
    constexpr char32_t fromSolidToOutline = 6;
    const char32_t solid = solidPieceSymbol(type);
    return color == PieceColor::black ? solid : solid - fromSolidToOutline;
}

}  // namespace orlix
