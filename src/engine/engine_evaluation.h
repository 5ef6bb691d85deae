// What an engine says about a position: one value, merged from its info lines.
#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <optional>

#include "core/piece.h"

namespace orlix {

/// Scores are from the point of view of the side to move in the position that the engine searched.
struct EngineEvaluation {
    qint64 depth = 0;               ///< plies
    std::optional<qint64> scoreCp;  ///< centipawns; absent beside a mate score
    std::optional<qint64> mateIn;   ///< moves, positive when the side to move mates
    std::optional<qint64> nodes;
    std::optional<qint64> nps;     ///< nodes per second
    std::optional<qint64> timeMs;  ///< milliseconds
    QStringList pv;                ///< moves in UCI text, first move first

    bool operator==(const EngineEvaluation&) const = default;

    /// "+0.35", "-1.20", "+M3", "-M0"; "0.00" without a score. A point whatever the locale.
    QString formattedScore() const;

    /// White's share of the evaluation bar, 0.05 to 0.95, when `color` was to move in the evaluated position.
    double evalBarFraction(PieceColor color) const;
};

}  // namespace orlix
