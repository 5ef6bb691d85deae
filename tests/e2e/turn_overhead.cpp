#include "e2e/turn_overhead.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <map>
#include <stdexcept>

#include "e2e/played_application.h"
#include "support/built_programs.h"
#include "support/endless_game.h"

namespace orlix::e2e {

namespace {

constexpr int startLimitMs = 60'000;
constexpr int mostMsAMove = 5000;
constexpr double pauseMs = 200;
constexpr int firstMovesLeftOut = 4;  // the window still settles from the start of the game

/// One word with commas between the moves.
QString gameOf(int plies) {
    QStringList moves;
    for (const std::string& move : test::endlessGame(static_cast<std::size_t>(plies)))
        moves << QString::fromStdString(move);
    return moves.join(u',');
}

/// Nanoseconds that all threads of a process have run.
double processorNanoseconds(qint64 processId) {
    double sum = 0;
    const QString folder = QStringLiteral("/proc/%1/task").arg(processId);
    const QStringList threads = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& thread : threads) {
        QFile file(folder + u'/' + thread + QStringLiteral("/schedstat"));
        if (file.open(QIODevice::ReadOnly)) sum += file.readAll().split(' ').value(0).toDouble();
    }
    return sum;
}

struct Times {
    double read = 0;
    double answered = 0;
};

std::map<int, Times> timesIn(const QString& path) {
    QFile file(path);
    std::map<int, Times> times;
    if (!file.open(QIODevice::ReadOnly)) return times;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() == 3) times[words[0].toInt()] = {words[1].toDouble(), words[2].toDouble()};
    }
    return times;
}

}  // namespace

TurnOverhead measureTurnOverhead(Desktop& desktop, AccessibleTree& tree, const QString& program, int plies) {
    const QList<PlayedEngine> engines{
        {QStringLiteral("Prompt"),
         QStringLiteral("exec '%1' --times=times --game=").arg(QString::fromUtf8(scriptedEngineProgram)) +
             gameOf(plies)}};
    // The clicks are found by accessible names in one run and repeated in the one that is measured.
    {
        PlayedApplication application(desktop, tree, program, engines);
        application.startGame(QStringLiteral("UCI Engine vs UCI Engine"), 1);
    }
    const QList<QStringList> input = desktop.input();
    desktop.setAccessible(false);
    const PlayedApplication application(desktop, tree, program, engines);
    desktop.repeat(input);
    const QString path = application.home() + QStringLiteral("/times");
    const auto count = [&] { return static_cast<int>(timesIn(path).size()); };
    if (!waitUntil([&] { return count() >= firstMovesLeftOut; }, startLimitMs))
        throw std::runtime_error("the engines do not play");
    const int first = count();
    const double before = processorNanoseconds(application.processId());
    // Seldom: whoever looks takes processor time from what is measured.
    for (int waitedMs = 0; count() < plies; waitedMs += 1000) {
        if (waitedMs > plies * mostMsAMove) throw std::runtime_error("the game stands still");
        waitUntil([] { return false; }, 1000);
    }
    TurnOverhead result;
    result.processor = (processorNanoseconds(application.processId()) - before) / 1e6 / (plies - first);

    const std::map<int, Times> times = timesIn(path);
    std::vector<double> overheads;
    for (int ply = first; ply < plies; ++ply)
        overheads.push_back((times.at(ply).read - times.at(ply - 1).answered) / 1e6 - pauseMs);
    std::sort(overheads.begin(), overheads.end());
    const auto quantile = [&](double share) {
        return overheads[static_cast<std::size_t>(share * static_cast<double>(overheads.size() - 1))];
    };
    result.moves = static_cast<int>(overheads.size());
    result.median = quantile(0.5);
    result.percentile99 = quantile(0.99);
    result.longest = overheads.back();
    return result;
}

}  // namespace orlix::e2e
