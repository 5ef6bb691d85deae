// The program's own icon set: SVG on a 20-unit grid with one stroke weight, tinted when drawn, named after
// what each icon means.
#pragma once

#include <QColor>
#include <QPixmap>
#include <span>

namespace orlix {

enum class Icon {
    gameState,
    engine,
    automatch,
    newGame,
    engines,
    exportNotation,  // tabs
    flip,
    undo,
    pause,
    resume,
    resign,
    plus,  // bottom bar
    person,
    clock,
    check,
    flag,
    warning,
    dice,
    play,
    stop,
    chart,
    sliders,
    terminal,
    list,
    copy,
    trash,
    save,
    scan,
    viewOnBoard,
    add,
    tune,
    automatchStart,
    replay,
    chevronDown,
};

/// The icon tinted in `color`, `size` device-independent pixels wide and high, crisp at `devicePixelRatio`.
/// Cached. Main thread only.
QPixmap iconPixmap(Icon icon, const QColor& color, int size, qreal devicePixelRatio);

struct SizedIcon {
    Icon icon;
    int size;  ///< device-independent pixels
};
/// Draws the icons' shapes ahead, on any thread; the tint comes when they are asked for.
void prepareIcons(std::span<const SizedIcon> icons, qreal devicePixelRatio);
/// How many shapes are drawn and kept, whoever asked for them.
qsizetype preparedIcons();
void forgetIcons();

}  // namespace orlix
