#include "ui/icons.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QtMath>

namespace orlix {

namespace {

QLatin1String fileName(Icon icon) {
    switch (icon) {
        case Icon::gameState: return QLatin1String("game_state");
        case Icon::engine: return QLatin1String("engine");
        case Icon::automatch: return QLatin1String("automatch");
        case Icon::newGame: return QLatin1String("new_game");
        case Icon::engines: return QLatin1String("engines");
        case Icon::exportNotation: return QLatin1String("export_notation");
        case Icon::flip: return QLatin1String("flip");
        case Icon::undo: return QLatin1String("undo");
        case Icon::pause: return QLatin1String("pause");
        case Icon::resume: return QLatin1String("resume");
        case Icon::resign: return QLatin1String("resign");
        case Icon::plus: return QLatin1String("plus");
        case Icon::person: return QLatin1String("person");
        case Icon::clock: return QLatin1String("clock");
        case Icon::check: return QLatin1String("check");
        case Icon::flag: return QLatin1String("flag");
        case Icon::warning: return QLatin1String("warning");
        case Icon::dice: return QLatin1String("dice");
        case Icon::play: return QLatin1String("play");
        case Icon::stop: return QLatin1String("stop");
        case Icon::chart: return QLatin1String("chart");
        case Icon::sliders: return QLatin1String("sliders");
        case Icon::terminal: return QLatin1String("terminal");
        case Icon::list: return QLatin1String("list");
        case Icon::copy: return QLatin1String("copy");
        case Icon::trash: return QLatin1String("trash");
        case Icon::save: return QLatin1String("save");
        case Icon::scan: return QLatin1String("scan");
        case Icon::viewOnBoard: return QLatin1String("view_on_board");
        case Icon::add: return QLatin1String("add");
        case Icon::tune: return QLatin1String("tune");
        case Icon::automatchStart: return QLatin1String("automatch_start");
        case Icon::replay: return QLatin1String("replay");
        case Icon::chevronDown: return QLatin1String("chevron_down");
    }
    return {};
}

// SVG Tiny knows no alpha in a colour: the drawing is tinted opaque and the painter adds the opacity.
QByteArray tinted(QByteArray source, const QColor& color) {
    return source.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
}

}  // namespace

QPixmap iconPixmap(Icon icon, const QColor& color, int size, qreal devicePixelRatio) {
    const int pixels = qCeil(size * devicePixelRatio);
    if (pixels <= 0) return {};
    const QString key = QStringLiteral("orlix-icon/%1/%2/%3/%4")
                            .arg(static_cast<int>(icon))
                            .arg(color.name(QColor::HexArgb))
                            .arg(pixels)
                            .arg(devicePixelRatio);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;

    QFile file(QLatin1String(":/icons/") + fileName(icon) + QLatin1String(".svg"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    QSvgRenderer renderer(tinted(file.readAll(), color));
    pixmap = QPixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        painter.setOpacity(color.alphaF());
        renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    }
    pixmap.setDevicePixelRatio(devicePixelRatio);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

}  // namespace orlix
