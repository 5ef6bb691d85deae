// What the tests of the board's views share: a game of two people on fakes, and pictures of widgets.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QColor>
#include <QEvent>
#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QWidget>
#include <cstdlib>
#include <vector>

#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_tests.h"
#include "support/fake_process_launcher.h"
#include "support/fake_sounds.h"
#include "support/fake_system_settings.h"
#include "support/fake_time_source.h"

namespace orlix::test {

/// A game between two people, nothing of the system behind it.
class TestGame {
  public:
    TestGame() {
        game.setGameMode(GameMode::humanVsHuman);
        game.startNewGame();
    }

    void click(const char* square) { game.handleSquareClick(*Square::fromText(square)); }
    void play(const char* from, const char* to) {
        click(from);
        click(to);
    }

    FakeTimeSource time;
    FakeDefaultsStore defaults;
    FakeFileTests files;
    FakeSystemSettings system;
    FakeProcessLauncher launcher;
    FakeFileDialogs dialogs;
    FakeGameSounds sounds;
    EngineManager engines{EngineManager::Platform{defaults, files, system, launcher, dialogs}};
    GameManager game{time, engines, sounds,
                     [](const EngineConfiguration&) { return std::unique_ptr<UCIEngineProcess>(); }};
    LocalizationManager loc{defaults, system};
};

inline Square at(const char* text) {
    return *Square::fromText(text);
}

/// The widget as it stands, on a ground of magenta, at `ratio` device pixels to one of its units.
inline QImage pictureOf(QWidget& widget, qreal ratio) {
    const QSize size(qRound(widget.width() * ratio), qRound(widget.height() * ratio));
    QImage image(size, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

/// The widget's picture, with `region` wiped out and painted alone afterwards.
inline QImage repaintedPictureOf(QWidget& widget, qreal ratio, const QRegion& region) {
    QImage image = pictureOf(widget, ratio);
    QPainter painter(&image);
    for (const QRect& rect : region)
        painter.fillRect(rect, Qt::magenta);
    painter.end();
    widget.render(&image, region.boundingRect().topLeft(), region, QWidget::DrawChildren);
    return image;
}

inline bool isNear(const QColor& actual, const QColor& expected, int tolerance = 1) {
    return std::abs(actual.red() - expected.red()) <= tolerance &&
           std::abs(actual.green() - expected.green()) <= tolerance &&
           std::abs(actual.blue() - expected.blue()) <= tolerance;
}

/// Counts the paint events of a widget and collects their regions.
class PaintWatch : public QObject {
  public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }

    void clear() {
        count = 0;
        region = {};
    }

    int count = 0;
    QRegion region;

  private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++count;
            region += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
};

/// Lets queued events and repaints happen.
inline void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

}  // namespace orlix::test

// Colours print as text when a comparison fails.
inline void PrintTo(const QColor& color, std::ostream* stream) {
    *stream << color.name().toStdString();
}
