#include "e2e/played_series.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <cstdio>
#include <stdexcept>

namespace orlix::e2e {

namespace {

constexpr int mostMinutesAGame = 5;
constexpr int controlLimitMs = 60000;
constexpr int readLimitMs = 60000;

/// The first name among the showing nodes that matches.
QRegularExpressionMatch shownMatch(AccessibleTree& tree, const QRegularExpression& pattern) {
    for (const AccessibleNode& node : tree.nodes()) {
        const auto match = pattern.match(node.name);
        if (node.isShowing && match.hasMatch()) return match;
    }
    return {};
}

QString pickerName(const char* caption, const QString& engine) {
    return QString::fromLatin1(caption) + QStringLiteral(": ") + engine;
}

SeriesScore shownScore(AccessibleTree& tree) {
    static const QRegularExpression figures(
        QStringLiteral("Wins (\\d+), [^;]*; Draws (\\d+); .*Wins (\\d+), "));
    const auto match = shownMatch(tree, figures);
    if (!match.hasMatch()) throw std::runtime_error("no score on the scoreboard");
    return {match.captured(1).toInt(), match.captured(3).toInt(), match.captured(2).toInt()};
}

struct Extracted {
    int matched = 0;
    QString output;
    QString errors;
};

Extracted extract(const QStringList& arguments) {
    // Debian keeps it among the games, which are not in every user's search path.
    QString program = QStandardPaths::findExecutable(QStringLiteral("pgn-extract"));
    if (program.isEmpty()) program = QStringLiteral("/usr/games/pgn-extract");
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(readLimitMs) || process.exitCode() != 0)
        throw std::runtime_error("pgn-extract fails");
    Extracted result{0, QString::fromUtf8(process.readAllStandardOutput()),
                     QString::fromUtf8(process.readAllStandardError())};
    static const QRegularExpression matched(QStringLiteral("(\\d+) games? matched"));
    result.matched = matched.match(result.errors).captured(1).toInt();
    return result;
}

}  // namespace

QString SeriesScore::text() const {
    return QStringLiteral("%1 won, %2 lost, %3 drawn").arg(wins).arg(losses).arg(draws);
}

PlayedSeries playSeries(const Desktop& desktop, AccessibleTree& tree, PlayedApplication& application,
                        const QString& engine1, const QString& engine2, int games, int depth) {
    // Depth and clock are those of the last game that was started by hand.
    application.startGameAtDepth(QStringLiteral("UCI Engine vs UCI Engine"), depth);
    application.clickControl(QStringLiteral("Automatch"));
    // All settings are open before the first series, and both slots offer the first engine.
    application.clickControl(QString::number(games) + QStringLiteral(" Partien"));
    const char* const picker = "Engine 2 (Starts as Black)";
    application.chooseFromList(pickerName(picker, engine1), 1);
    const auto isChosen = [&] { return tree.find(pickerName(picker, engine2)).has_value(); };
    if (!waitUntil(isChosen, controlLimitMs)) application.fail("engine 2 is not chosen");
    // With its strength limited it varies its moves: otherwise every other game would be the same.
    application.clickControl(QStringLiteral("Engine 1 (Starts as White): Limit Engine ELO / Strength"));
    application.clickControl(QStringLiteral("Start Automatch"));

    static const QRegularExpression closing(QStringLiteral("^Automatch beendet: .*!$"));
    QElapsedTimer timer;
    timer.start();
    PlayedSeries series;
    while (series.verdict.isEmpty()) {
        if (timer.elapsed() > qint64(games) * mostMinutesAGame * 60'000)
            application.fail("the series does not end");
        // Seldom, for describing itself costs the program time.
        waitUntil([&] { return !application.isRunning(); }, 5000);
        if (!application.isRunning()) throw std::runtime_error("the program has ended");
        series.verdict = shownMatch(tree, closing).captured(0);
    }
    series.shown = shownScore(tree);
    application.clickControl(QStringLiteral("Copy All Games (PGN)"));
    const bool isCopied = waitUntil(
        [&] {
            series.pgn = desktop.clipboard();
            return !series.pgn.isEmpty();
        },
        controlLimitMs);
    if (!isCopied) application.fail("nothing was copied");
    return series;
}

SeriesScore scoreByPgnExtract(const QString& file, const QString& engine1, int games) {
    const Extracted all = extract({QStringLiteral("-Wuci"), file});
    if (all.matched != games)
        throw std::runtime_error("pgn-extract takes " + std::to_string(all.matched) + " games:\n" +
                                 all.errors.toStdString());
    SeriesScore score;
    static const QRegularExpression tag(QStringLiteral("^\\[(White|Result) \"(.*)\"\\]$"),
                                        QRegularExpression::MultilineOption);
    bool isWhite = false;
    for (auto tags = tag.globalMatch(all.output); tags.hasNext();) {
        const auto match = tags.next();
        const QString value = match.captured(2);
        if (match.captured(1) == QLatin1String("White")) {
            isWhite = value == engine1;
        } else if (value == QLatin1String("1/2-1/2")) {
            ++score.draws;
        } else if (value == QLatin1String("1-0") || value == QLatin1String("0-1")) {
            ++((value == QLatin1String("1-0")) == isWhite ? score.wins : score.losses);
        }
    }
    const int mates = extract({QStringLiteral("--checkmate"), file}).matched;
    if (mates != score.wins + score.losses)
        throw std::runtime_error("pgn-extract finds " + std::to_string(mates) + " mates for " +
                                 score.text().toStdString());
    return score;
}

}  // namespace orlix::e2e
