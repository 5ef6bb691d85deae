#include "ui/board_painter.h"

#include <QPainter>
#include <QRegion>

#include "ui/theme.h"

namespace orlix {

namespace {

constexpr QRgb yellow = 0xFFCC00;
constexpr QRgb blue = 0x007AFF;
constexpr QRgb red = 0xFF3B30;
constexpr QRgb black = 0x000000;

constexpr qreal lastMoveOpacity = 0.32;
constexpr qreal selectionOpacity = 0.38;
constexpr qreal checkOpacity = 0.55;
constexpr qreal ringOpacity = 0.3;
constexpr qreal dotOpacity = 0.22;
constexpr qreal hoverOpacity = 0.2;
constexpr qreal pressOpacity = 0.1;

// Diameters as shares of the square's side.
constexpr qreal checkDiameter = 0.9;
constexpr qreal ringDiameter = 0.85;
constexpr qreal dotDiameter = 0.28;

constexpr qreal ringStroke = 4;    // device-independent pixels
constexpr qreal cursorStroke = 3;  // likewise
constexpr qreal cursorInnerStroke = 1;
constexpr qreal coordinateSize = 10;  // likewise, as the margin
constexpr qreal coordinateMargin = 3;

QColor overlay(QRgb rgb, qreal opacity) {
    QColor color = QColor::fromRgb(rgb);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QRectF centredCircle(const QRectF& square, qreal diameterShare) {
    QRectF circle(0, 0, square.width() * diameterShare, square.height() * diameterShare);
    circle.moveCenter(square.center());
    return circle;
}

void paintDisc(QPainter& painter, const QRectF& circle, const QColor& color) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(circle);
}

void paintTarget(QPainter& painter, const QRectF& square, BoardPicture::Target target, qreal ratio) {
    switch (target) {
        case BoardPicture::Target::none: return;
        case BoardPicture::Target::dot:
            paintDisc(painter, centredCircle(square, dotDiameter), overlay(black, dotOpacity));
            return;
        case BoardPicture::Target::ring:
            painter.setPen(QPen(overlay(black, ringOpacity), ringStroke * ratio));
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(centredCircle(square, ringDiameter));
            return;
    }
}

}  // namespace

QColor BoardPainter::baseColor(bool isLight) {
    return isLight ? QColor::fromRgbF(0.94f, 0.86f, 0.74f) : QColor::fromRgbF(0.71f, 0.53f, 0.38f);
}

void BoardPainter::paintSquare(QPainter& painter, const BoardGeometry& geometry, Square square,
                               const BoardPicture::Cell& cell, Touch touch, bool showsPiece) {
    const QRect rect = geometry.deviceRect(square);
    // Fills keep whole pixels; only the round marks are smoothed.
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(rect, baseColor(square.isLight()));
    if (cell.isLastMove) painter.fillRect(rect, overlay(yellow, lastMoveOpacity));
    if (cell.isSelected) painter.fillRect(rect, overlay(blue, selectionOpacity));
    if (touch.isHoveredTarget) painter.fillRect(rect, overlay(blue, hoverOpacity));
    if (touch.isPressed) painter.fillRect(rect, overlay(black, pressOpacity));

    painter.setRenderHint(QPainter::Antialiasing);
    if (cell.isInCheck) paintDisc(painter, centredCircle(rect, checkDiameter), overlay(red, checkOpacity));
    if (cell.piece && showsPiece) paintPiece(painter, geometry, *cell.piece, rect.topLeft());
    paintTarget(painter, rect, cell.target, geometry.ratio);
    paintCoordinates(painter, geometry, square);
}

void BoardPainter::paintPiece(QPainter& painter, const BoardGeometry& geometry,
                              const BoardPicture::PieceLook& piece, const QPointF& corner) {
    prepare(geometry);
    painter.drawPixmap(corner, pixmaps_.pixmap(piece.type, piece.color, geometry.squareSide));
}

void BoardPainter::paintCursor(QPainter& painter, const BoardGeometry& geometry, Square square,
                               const QColor& accent) {
    // Whole pixels as the squares' edges. The light line parts the frame from a selected square.
    painter.setRenderHint(QPainter::Antialiasing, false);
    QRect frame = geometry.deviceRect(square);
    const auto ring = [&painter, &frame](int stroke, const QColor& color) {
        const QRect inner = frame.adjusted(stroke, stroke, -stroke, -stroke);
        for (const QRect& edge : QRegion(frame) - inner)
            painter.fillRect(edge, color);
        frame = inner;
    };
    ring(qMax(1, qRound(cursorStroke * geometry.ratio)), accent);
    ring(qMax(1, qRound(cursorInnerStroke * geometry.ratio)), Qt::white);
}

void BoardPainter::paintCoordinates(QPainter& painter, const BoardGeometry& geometry, Square square) {
    const bool showsFile = geometry.row(square) == 7;
    const bool showsRank = geometry.column(square) == 0;
    if (!showsFile && !showsRank) return;
    const int pixels = qRound(coordinateSize * geometry.ratio);
    if (pixels != coordinatePixels_) {
        coordinateFont_ = Theme::font(TextStyle::monospaced);
        coordinateFont_.setPixelSize(pixels);
        coordinateFont_.setWeight(QFont::Bold);
        coordinatePixels_ = pixels;
    }
    painter.setFont(coordinateFont_);
    painter.setPen(baseColor(!square.isLight()));
    const int margin = qRound(coordinateMargin * geometry.ratio);
    const QRect room = geometry.deviceRect(square).adjusted(margin, margin, -margin, -margin);
    if (showsFile) {
        painter.drawText(room, Qt::AlignRight | Qt::AlignBottom, QString(QLatin1Char(square.fileChar())));
    }
    if (showsRank) {
        painter.drawText(room, Qt::AlignLeft | Qt::AlignTop, QString(QLatin1Char(square.rankChar())));
    }
}

}  // namespace orlix
