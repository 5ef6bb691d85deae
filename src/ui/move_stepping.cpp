#include "ui/move_stepping.h"

#include <QKeyEvent>
#include <optional>

#include "game/game_manager.h"

namespace orlix {

namespace {

void show(GameManager& game, qint64 ply) {
    const qint64 last = static_cast<qint64>(game.board().history.size()) - 1;
    if (ply < 0 || last < 0) return;
    const std::optional<qint64> index = ply < last ? std::optional(ply) : std::nullopt;
    if (index != game.inspectingMoveIndex()) game.inspectMove(index);
}

}  // namespace

bool stepThroughGame(GameManager& game, const QKeyEvent& event) {
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
    const qint64 last = static_cast<qint64>(game.board().history.size()) - 1;
    const std::optional<qint64>& inspected = game.inspectingMoveIndex();
    // An index outside shows the live position, so the way begins there.
    const qint64 shown = inspected && *inspected >= 0 && *inspected <= last ? *inspected : last;
    switch (event.key()) {
        case Qt::Key_Left: show(game, shown - 1); return true;
        case Qt::Key_Right: show(game, shown + 1); return true;
        case Qt::Key_Home: show(game, 0); return true;
        case Qt::Key_End: show(game, last); return true;
        default: return false;
    }
}

}  // namespace orlix
