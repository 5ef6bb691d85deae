// Renders the states of the window that matter into PNG files, on the offscreen platform: the real window
// over fakes of the platform. `screenshots <folder>` renders at the process's pixel ratio, `screenshots
// --sheet <folder>` puts all pictures of a folder on contact sheets.
#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QtMath>
#include <cstdio>

#include "screenshot_scenes.h"

namespace orlix::test {
namespace {

/// The window with whatever pop-ups and dialogs stand over it.
QPixmap pictureOf(const Shell& shell) {
    QPixmap picture = shell.window->grab();
    QPainter painter(&picture);
    for (QWidget* other : QApplication::topLevelWidgets()) {
        if (other == shell.window.get() || !other->isVisible()) continue;
        painter.drawPixmap(other->pos() - shell.window->pos(), other->grab());
    }
    return picture;
}

void render(const QString& folder, const PictureOf& what) {
    Shell shell;
    shell.theme.setScheme(what.scheme);
    shell.loc.setCurrentLanguage(what.language);
    what.scene(shell);
    QTest::qWait(50);  // what the views put off until the event loop runs
    const QString ratio = QString::number(shell.window->devicePixelRatioF());
    const QString file = QStringLiteral("%1/%2@%3x.png").arg(folder, what.name, ratio);
    if (!pictureOf(shell).save(file)) qFatal("cannot write %s", qPrintable(file));
    std::printf("%s\n", qPrintable(file));
}

/// All pictures of `folder`, small, with their names, at most thirty a sheet.
void makeContactSheets(const QString& folder) {
    constexpr int columns = 5;
    constexpr int perSheet = 30;
    constexpr QSize cell(420, 320);
    const QStringList names = QDir(folder).entryList({QStringLiteral("[0-9]*.png")}, QDir::Files, QDir::Name);
    for (qsizetype first = 0; first < names.size(); first += perSheet) {
        const QStringList page = names.mid(first, perSheet);
        const int rows = qCeil(static_cast<double>(page.size()) / columns);
        QImage sheet(columns * cell.width(), rows * cell.height(), QImage::Format_RGB32);
        sheet.fill(Qt::gray);
        QPainter painter(&sheet);
        for (int index = 0; index < page.size(); ++index) {
            const QRect place(QPoint(index % columns * cell.width(), index / columns * cell.height()), cell);
            QImage picture(folder + QLatin1Char('/') + page[index]);
            picture.setDevicePixelRatio(1);
            const QImage small =
                picture.scaled(cell - QSize(16, 32), Qt::KeepAspectRatio, Qt::SmoothTransformation);
            painter.drawImage(place.topLeft() + QPoint(8, 8), small);
            painter.drawText(place.adjusted(8, 0, -8, -4), Qt::AlignBottom | Qt::AlignLeft, page[index]);
        }
        const QString file = QStringLiteral("%1/sheet-%2.png").arg(folder).arg(first / perSheet + 1);
        if (!sheet.save(file)) qFatal("cannot write %s", qPrintable(file));
        std::printf("%s\n", qPrintable(file));
    }
}

}  // namespace
}  // namespace orlix::test

int main(int argc, char** argv) {
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2 || !QFileInfo(arguments.last()).isDir()) {
        std::fputs("usage: screenshots [--sheet] <folder>\n", stderr);
        return 2;
    }
    if (arguments.contains(QStringLiteral("--sheet"))) {
        orlix::test::makeContactSheets(arguments.last());
    } else {
        using namespace orlix::test;
        for (const auto& pictures :
             {gamePictures(), tabPictures(), seriesPictures(), updatePictures(), fullestPictures()}) {
            for (const PictureOf& picture : pictures)
                render(arguments.last(), picture);
        }
    }
    return 0;
}
