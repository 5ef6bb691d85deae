// Drives the program without a person, for scripts/play-a-game, scripts/play-a-series and scripts/measure:
//   drive play <program> <game.pgn>     plays a whole game against Stockfish at 0.1 s a move and saves it
//   drive series <program> <games.pgn> <games> <depth>  plays a series of Stockfish against Ethereal
//   drive clock <program> <seconds>     the processor share of the program while a person's clock runs
//   drive engines <program> <seconds>   the same while two engines play at one second a move
//   drive overhead <program> <plies>    what the program adds to a move between two engines
//   drive picture <program> <file.png> <plies>  a picture of the window after some plies of a game
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <thread>

#include "e2e/accessible_tree.h"
#include "e2e/desktop.h"
#include "e2e/played_application.h"
#include "e2e/played_game.h"
#include "e2e/played_series.h"
#include "e2e/turn_overhead.h"

namespace {

using namespace orlix;
using namespace orlix::e2e;

constexpr int settleMs = 3000;
// Until all is over that is done once after a start, as the look for an update.
constexpr int startedMs = 8000;
constexpr int mostPlies = 600;
constexpr int oneSecond = 10;  // tenths

void pause(int milliseconds) {
    waitUntil([] { return false; }, milliseconds);
}

// User and system time of the process itself in seconds; its children are not in it.
double processorSeconds(qint64 processId) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(static_cast<pid_t>(processId), &clock) != 0 || clock_gettime(clock, &time) != 0)
        throw std::runtime_error("the program has gone");
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

void printShare(const PlayedApplication& application, int seconds) {
    const double before = processorSeconds(application.processId());
    QElapsedTimer timer;
    timer.start();
    // Not `pause`, which looks fifty times a second: what measures shall not itself wake the machine.
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const double used = processorSeconds(application.processId()) - before;
    std::printf("%.3f\n", 100 * used * 1000 / double(timer.elapsed()));
}

QString resultText(const ChessBoard& board) {
    const auto reason = board.gameEndReason();
    if (!reason) return QStringLiteral("not over");
    switch (reason->kind) {
        case GameEndReason::Kind::checkmate:
            return reason->winner == PieceColor::white ? QStringLiteral("White mates")
                                                       : QStringLiteral("Black mates");
        case GameEndReason::Kind::stalemate: return QStringLiteral("stalemate");
        case GameEndReason::Kind::fiftyMoveRule: return QStringLiteral("draw by the fifty-move rule");
        case GameEndReason::Kind::threefoldRepetition: return QStringLiteral("draw by repetition");
        case GameEndReason::Kind::insufficientMaterial:
            return QStringLiteral("draw by insufficient material");
        case GameEndReason::Kind::timeout:
        case GameEndReason::Kind::resignation: break;  // not a board's own ends
    }
    return QStringLiteral("over");
}

int play(Desktop& desktop, AccessibleTree& tree, const QString& program, const QString& pgn) {
    PlayedApplication application(desktop, tree, program);
    application.startGame(QStringLiteral("Player vs UCI Engine"), 1);
    const ChessBoard board = playAgainstEngine(application, mostPlies, [](const MoveRecord& record) {
        std::printf("%s ", record.san.c_str());
        std::fflush(stdout);
    });
    const QString file = QFileInfo(pgn).absoluteFilePath();
    QFile::remove(file);
    application.savePgn(file);
    if (movesReadByPgnExtract(file) != uciMoves(board))
        throw std::runtime_error("the PGN holds another game");
    application.closeWindow();
    if (!waitUntil([&] { return application.processesLeft().isEmpty(); }, settleMs))
        throw std::runtime_error("left running: " + application.processesLeft().join(u'\n').toStdString());
    std::printf("\n%zu plies, %s; saved as %s\n", board.history.size(), qUtf8Printable(resultText(board)),
                qUtf8Printable(file));
    return 0;
}

int series(Desktop& desktop, AccessibleTree& tree, const QString& program, const QString& pgn, int games,
           int depth) {
    const QString stockfish = QStringLiteral("Stockfish");
    const QString ethereal = QStringLiteral("Ethereal");
    PlayedApplication application(desktop, tree, program,
                                  {{stockfish, QStringLiteral("exec /usr/games/stockfish")},
                                   {ethereal, QStringLiteral("exec /usr/games/ethereal-chess")}});
    const PlayedSeries played = playSeries(desktop, tree, application, stockfish, ethereal, games, depth);
    const QString path = QFileInfo(pgn).absoluteFilePath();
    QFile file(path);
    const QByteArray text = played.pgn.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush())
        throw std::runtime_error("the games cannot be written");
    const SeriesScore counted = scoreByPgnExtract(path, stockfish, games);
    if (!(counted == played.shown))
        throw std::runtime_error("shown: " + played.shown.text().toStdString() +
                                 ", counted: " + counted.text().toStdString());
    application.closeWindow();
    if (!waitUntil([&] { return application.processesLeft().isEmpty(); }, settleMs))
        throw std::runtime_error("left running: " + application.processesLeft().join(u'\n').toStdString());
    std::printf("%s\n%s: %s, by the scoreboard and by pgn-extract; no process left; saved as %s\n",
                qUtf8Printable(played.verdict), qUtf8Printable(stockfish), qUtf8Printable(counted.text()),
                qUtf8Printable(path));
    return 0;
}

int clockShare(Desktop& desktop, AccessibleTree& tree, const QString& program, int seconds) {
    desktop.setAccessible(false);
    const PlayedApplication application(desktop, tree, program);
    pause(startedMs);
    printShare(application, seconds);
    return 0;
}

// The clicks are found by accessible names in one run and repeated in a second one, which is measured without
// the cost of describing itself.
int enginesShare(Desktop& desktop, AccessibleTree& tree, const QString& program, int seconds) {
    {
        PlayedApplication application(desktop, tree, program);
        application.startGame(QStringLiteral("UCI Engine vs UCI Engine"), oneSecond);
    }
    const QList<QStringList> input = desktop.input();
    desktop.setAccessible(false);
    const PlayedApplication application(desktop, tree, program);
    desktop.repeat(input);
    const auto isStarted = [&] {
        return application.sentLines().contains(QStringLiteral("go movetime 1000"));
    };
    if (!waitUntil(isStarted, settleMs)) throw std::runtime_error("the engines do not play");
    pause(startedMs);
    printShare(application, seconds);
    return 0;
}

int overhead(Desktop& desktop, AccessibleTree& tree, const QString& program, int plies) {
    const TurnOverhead measured = measureTurnOverhead(desktop, tree, program, plies);
    std::printf("%d moves: median %.3f ms, 99th percentile %.3f ms, longest %.3f ms, processor %.3f ms\n",
                measured.moves, measured.median, measured.percentile99, measured.longest, measured.processor);
    return 0;
}

int picture(Desktop& desktop, AccessibleTree& tree, const QString& program, const QString& file, int plies) {
    PlayedApplication application(desktop, tree, program);
    application.startGame(QStringLiteral("Player vs UCI Engine"), 1);
    playAgainstEngine(application, plies);
    application.clickControl(QStringLiteral("Game State"));
    pause(settleMs);
    return application.windowPicture().save(file) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.value(1);
    if (arguments.size() < 4) {
        std::fputs(
            "usage: drive play|series|clock|engines|overhead|picture <program> <file or seconds> [...]\n",
            stderr);
        return 2;
    }
    try {
        Desktop desktop;
        AccessibleTree tree(desktop.busAddress());
        const QString& program = arguments[2];
        if (command == QLatin1String("play")) return play(desktop, tree, program, arguments[3]);
        if (command == QLatin1String("series"))
            return series(desktop, tree, program, arguments[3], arguments.value(4).toInt(),
                          arguments.value(5).toInt());
        if (command == QLatin1String("clock"))
            return clockShare(desktop, tree, program, arguments[3].toInt());
        if (command == QLatin1String("engines"))
            return enginesShare(desktop, tree, program, arguments[3].toInt());
        if (command == QLatin1String("overhead"))
            return overhead(desktop, tree, program, arguments[3].toInt());
        if (command == QLatin1String("picture"))
            return picture(desktop, tree, program, arguments[3], arguments.value(4).toInt());
        std::fputs("unknown command\n", stderr);
        return 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
