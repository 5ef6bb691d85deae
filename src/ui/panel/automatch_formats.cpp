#include "ui/panel/automatch_formats.h"

#include <cmath>

#include "ui/panel/elo_editor.h"

namespace orlix {

namespace {

constexpr char16_t noBreakSpace = 0x00A0;

QString signedNumber(double number) {
    const auto rounded = std::llround(number);
    if (rounded == 0) return QStringLiteral("0");
    return (rounded > 0 ? QStringLiteral("+") : QStringLiteral("\u2212")) +
           QString::number(std::abs(rounded));
}

}  // namespace

QString automatchDash() {
    return QStringLiteral("\u2013");
}

QString gamesText(qint64 games, qint64 total) {
    return QStringLiteral(" %1 / %2").arg(games).arg(total);
}

QString eloCapText(bool limitElo, qint64 elo) {
    return limitElo ? eloText(elo) : QStringLiteral("Max ELO");
}

QString secondsText(double seconds) {
    return QString::number(seconds, 'f', 1) + QStringLiteral(" s");
}

QString pointsText(qint64 wins, qint64 draws) {
    return QString::number(static_cast<double>(wins) + 0.5 * static_cast<double>(draws), 'f', 1);
}

QString strengthText(const MatchScore& score) {
    QString difference = automatchDash();
    if (const auto elo = eloDifference(score)) {
        const auto error = eloError95(score);
        difference = signedNumber(*elo) + QStringLiteral(" ± ") +
                     (error ? QString::number(std::llround(*error)) : automatchDash());
    }
    QString superiority = automatchDash();
    if (const auto likelihood = likelihoodOfSuperiority(score))
        superiority = QString::number(std::llround(100 * *likelihood)) + QChar(noBreakSpace) + u'%';
    return QStringLiteral("Elo %1 · LOS %2").arg(difference, superiority);
}

QString automatchGameTitle(qint64 gameNumber) {
    return QStringLiteral("Partie #") + QString::number(gameNumber);
}

}  // namespace orlix
