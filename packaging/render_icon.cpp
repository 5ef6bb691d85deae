// Renders an SVG file into square PNG files: render_icon <icon.svg> <prefix> <size>... writes
// <prefix>-<size>.png.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 4) {
        std::fputs("usage: render_icon <icon.svg> <prefix> <size>...\n", stderr);
        return 2;
    }
    QSvgRenderer svg(arguments[1]);
    if (!svg.isValid()) {
        std::fputs("not an SVG file\n", stderr);
        return 1;
    }
    for (const QString& size : arguments.mid(3)) {
        const int side = size.toInt();
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        svg.render(&painter);
        painter.end();
        if (!image.save(arguments[2] + u'-' + size + QStringLiteral(".png"))) return 1;
    }
    return 0;
}
