#include "e2e/played_game.h"

#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

namespace orlix::e2e {

namespace {

constexpr int confirmLimitMs = 60000;
constexpr int answerLimitMs = 60000;

// White's material after Black's best capture in reply, in pawns; a mate that Black has is worse than all.
std::int64_t worstMaterial(const ChessBoard& board) {
    std::int64_t worst = board.materialScore();
    for (const Move& reply : board.generateLegalMoves()) {
        ChessBoard after = board;
        after.play(reply);
        if (after.isGameOver()) return std::numeric_limits<std::int64_t>::min();
        worst = std::min(worst, after.materialScore());
    }
    return worst;
}

// Twice the distance from the middle of the board.
std::int64_t fromMiddle(Square square) {
    return std::abs(2 * square.file - 7) + std::abs(2 * square.rank - 7);
}

// Looks one answer ahead, counts pieces and likes the middle, which makes a game of some length; chance with
// a fixed seed does the rest.
Move chosenMove(const ChessBoard& board, std::mt19937& random) {
    using Worth = std::pair<std::int64_t, std::int64_t>;
    std::vector<Move> best;
    Worth most{};
    for (const Move& move : board.generateLegalMoves()) {
        ChessBoard after = board;
        after.play(move);
        const bool isKing = board[move.from]->type == PieceType::king;
        const Worth worth{worstMaterial(after), isKing ? -4 : fromMiddle(move.from) - fromMiddle(move.to)};
        if (worth > most || best.empty()) best.clear();
        if (best.empty()) most = worth;
        if (worth == most) best.push_back(move);
    }
    return best[random() % best.size()];
}

QStringList bestMoves(const PlayedApplication& application) {
    QStringList moves;
    for (const QString& line : application.receivedLines())
        if (line.startsWith(QLatin1String("bestmove "))) moves << line.section(u' ', 1, 1);
    return moves;
}

bool isSent(const PlayedApplication& application, const QString& position) {
    return application.sentLines().contains(position);
}

}  // namespace

QStringList uciMoves(const ChessBoard& board) {
    QStringList moves;
    for (const MoveRecord& record : board.history)
        moves << QString::fromStdString(record.move.uciString());
    return moves;
}

ChessBoard playAgainstEngine(PlayedApplication& application, int mostPlies,
                             const std::function<void(const MoveRecord&)>& played) {
    const qsizetype answersBefore = bestMoves(application).size();
    std::mt19937 random(20261120);
    ChessBoard board;
    const auto play = [&](const Move& move) {
        if (!board.play(move)) throw std::runtime_error("illegal move " + move.uciString());
        if (played) played(board.history.back());
    };
    qsizetype answers = answersBefore;
    while (static_cast<int>(board.history.size()) < mostPlies && !board.isGameOver()) {
        const Move move = chosenMove(board, random);
        application.clickMove(move);
        play(move);
        if (board.isGameOver()) break;
        const QString position = QStringLiteral("position startpos moves ") + uciMoves(board).join(u' ');
        if (!waitUntil([&] { return isSent(application, position); }, confirmLimitMs))
            application.fail("the program did not take " + move.uciString());
        if (!waitUntil([&] { return bestMoves(application).size() > answers; }, answerLimitMs))
            application.fail("the engine did not answer " + move.uciString());
        const auto answer = Move::fromUci(bestMoves(application).at(answers++).toStdString());
        if (!answer) application.fail("the engine answered no move");
        play(*answer);
        const auto isShown = [&] {
            return application.isLastMove(answer->from) && application.isLastMove(answer->to);
        };
        if (!waitUntil(isShown, confirmLimitMs))
            application.fail("the board does not show " + answer->uciString());
    }
    return board;
}

QStringList movesReadByPgnExtract(const QString& path) {
    // Debian keeps it among the games, which are not in every user's search path.
    QString program = QStandardPaths::findExecutable(QStringLiteral("pgn-extract"));
    if (program.isEmpty()) program = QStringLiteral("/usr/games/pgn-extract");
    QProcess process;
    process.start(program, {QStringLiteral("-Wuci"), QStringLiteral("--notags"), path});
    process.waitForFinished(confirmLimitMs);
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    if (process.exitCode() != 0 || !errors.contains(QLatin1String("1 game matched")))
        throw std::runtime_error("pgn-extract: " + errors.toStdString());
    static const QRegularExpression moveText(QStringLiteral("^[a-h][1-8][a-h][1-8][qrbn]?$"));
    QStringList moves;
    const QStringList words =
        QString::fromUtf8(process.readAllStandardOutput()).split(QRegularExpression(QStringLiteral("\\s+")));
    for (const QString& word : words)
        if (moveText.match(word).hasMatch()) moves << word;
    return moves;
}

}  // namespace orlix::e2e
