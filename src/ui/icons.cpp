#include "ui/icons.h"

#include <QHash>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtMath>
#include <mutex>
#include <optional>
#include <utility>

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

struct Shape {
    Icon icon;
    int pixels;
    friend bool operator==(const Shape&, const Shape&) = default;
};
std::size_t qHash(const Shape& shape, std::size_t seed = 0) {
    return qHashMulti(seed, static_cast<int>(shape.icon), shape.pixels);
}

struct Look {
    Shape shape;
    QRgb color;
    qreal ratio;
    friend bool operator==(const Look&, const Look&) = default;
};
std::size_t qHash(const Look& look, std::size_t seed = 0) {
    return qHashMulti(seed, look.shape, look.color, look.ratio);
}

/// Beyond that everything is forgotten and drawn again: another screen or scheme has made the old ones
/// useless.
constexpr qsizetype mostKept = 256;

struct Shapes {
    std::mutex mutex;  // never held while one is drawn: at worst two threads draw the same
    QHash<Shape, QImage> kept;
};

Shapes& shapes() {
    static Shapes all;
    return all;
}

QHash<Look, QPixmap>& pictures() {
    static QHash<Look, QPixmap> all;
    return all;
}

QImage drawn(const Shape& shape) {
    QSvgRenderer renderer(QLatin1String(":/icons/") + fileName(shape.icon) + QLatin1String(".svg"));
    QImage image(shape.pixels, shape.pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(0, 0, shape.pixels, shape.pixels));
    return image;
}

std::optional<QImage> knownShape(const Shape& shape) {
    const std::scoped_lock lock(shapes().mutex);
    const auto known = shapes().kept.constFind(shape);
    if (known == shapes().kept.constEnd()) return std::nullopt;
    return *known;
}

QImage shapeOf(const Shape& shape) {
    if (std::optional<QImage> known = knownShape(shape)) return *known;
    // Outside the lock: Qt may hand parts of the drawing to the pool, whose one thread may be waiting for it.
    QImage image = drawn(shape);
    const std::scoped_lock lock(shapes().mutex);
    QHash<Shape, QImage>& kept = shapes().kept;
    if (kept.size() >= mostKept) kept.clear();
    kept.insert(shape, image);
    return image;
}

Shape shapeFor(Icon icon, int size, qreal ratio) {
    return {icon, qCeil(size * ratio)};
}

}  // namespace

QPixmap iconPixmap(Icon icon, const QColor& color, int size, qreal devicePixelRatio) {
    QHash<Look, QPixmap>& kept = pictures();
    const Look look{shapeFor(icon, size, devicePixelRatio), color.rgba(), devicePixelRatio};
    if (look.shape.pixels <= 0) return {};
    const auto known = kept.constFind(look);
    if (known != kept.constEnd()) return *known;

    QImage image = shapeOf(look.shape);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    QPixmap pixmap = QPixmap::fromImage(std::move(image));
    pixmap.setDevicePixelRatio(devicePixelRatio);
    if (kept.size() >= mostKept) kept.clear();
    return *kept.insert(look, pixmap);
}

void prepareIcons(std::span<const SizedIcon> icons, qreal devicePixelRatio) {
    for (const SizedIcon& sized : icons)
        shapeOf(shapeFor(sized.icon, sized.size, devicePixelRatio));
}

qsizetype preparedIcons() {
    const std::scoped_lock lock(shapes().mutex);
    return shapes().kept.size();
}

void forgetIcons() {
    const std::scoped_lock lock(shapes().mutex);
    shapes().kept.clear();
    pictures().clear();
}

}  // namespace orlix
