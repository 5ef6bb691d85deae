#include "automatch/automatch_texts.h"

namespace orlix {
namespace {

QString points(double first, double second) {
    return QString::asprintf(" (%.1f : %.1f)!", first, second);
}

}  // namespace

QString automatchResult(const GameEndReason& reason) {
    if (!reason.winner) return QStringLiteral("1/2-1/2");
    return *reason.winner == PieceColor::white ? QStringLiteral("1-0") : QStringLiteral("0-1");
}

QString automatchReasonText(const GameEndReason& reason) {
    const QString winner = reason.winner == PieceColor::white ? QStringLiteral(" (Weiß gewinnt)")
                                                              : QStringLiteral(" (Schwarz gewinnt)");
    switch (reason.kind) {
        case GameEndReason::Kind::checkmate: return QStringLiteral("Schachmatt") + winner;
        case GameEndReason::Kind::timeout: return QStringLiteral("Zeitüberschreitung") + winner;
        case GameEndReason::Kind::resignation: return QStringLiteral("Aufgabe") + winner;
        case GameEndReason::Kind::stalemate: return QStringLiteral("Remis (Patt)");
        case GameEndReason::Kind::fiftyMoveRule: return QStringLiteral("Remis (50-Züge-Regel)");
        case GameEndReason::Kind::threefoldRepetition:
            return QStringLiteral("Remis (Dreifache Wiederholung)");
        case GameEndReason::Kind::insufficientMaterial: return QStringLiteral("Remis (Ungenügend Material)");
    }
    Q_UNREACHABLE();
}

QString automatchVerdict(const QString& engine1Name, double engine1Points, const QString& engine2Name,
                         double engine2Points) {
    if (engine1Points > engine2Points)
        return engine1Name + QStringLiteral(" gewinnt das Match") + points(engine1Points, engine2Points);
    if (engine2Points > engine1Points)
        return engine2Name + QStringLiteral(" gewinnt das Match") + points(engine2Points, engine1Points);
    return QStringLiteral("Match unentschieden") + points(engine1Points, engine2Points);
}

}  // namespace orlix
