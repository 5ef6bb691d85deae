#include "engine/engine_evaluation.h"

#include <algorithm>
#include <cmath>

namespace orlix {

QString EngineEvaluation::formattedScore() const {
    if (mateIn) {
        if (*mateIn >= 1) return QStringLiteral("+M") + QString::number(*mateIn);
        // A mate distance of 0 counts for the other side: the side to move has been mated. The magnitude is
        // taken without a sign first, because the most negative distance has no positive twin.
        return QStringLiteral("-M") + QString::number(quint64{0} - static_cast<quint64>(*mateIn));
    }
    if (scoreCp) return QString::asprintf("%+.2f", static_cast<double>(*scoreCp) / 100.0);
    return QStringLiteral("0.00");
}

double EngineEvaluation::evalBarFraction(PieceColor color) const {
    double value = 0;
    if (mateIn) {
        value = static_cast<double>(*mateIn) * 10000.0;
    } else if (scoreCp) {
        value = static_cast<double>(*scoreCp);
    }
    if (color == PieceColor::black) value = -value;
    return std::clamp(1.0 / (1.0 + std::exp(value / -400.0)), 0.05, 0.95);
}

}  // namespace orlix
