// Renders the board, the banners and the evaluation bar in the states that matter into PNG files, to be
// looked at: `board_pictures <folder>`.
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPainter>

#include "board_test_support.h"
#include "ui/board_view.h"
#include "ui/evaluation_bar_view.h"
#include "ui/player_banner_view.h"
#include "ui/theme.h"

namespace orlix {
namespace {

using test::TestGame;

struct Scene {
    TestGame& game;
    Theme& theme;
    QString folder;

    // Board, bar and banners as the window arranges them.
    void save(const QString& name, qreal ratio, const EngineEvaluation& evaluation,
              const PlayerBannerView::Values& top, const PlayerBannerView::Values& bottom) const {
        QWidget column;
        column.setPalette(theme.palette());
        column.setAutoFillBackground(true);
        column.resize(742, 832);
        BoardView board(game.game, game.loc, theme, game.system, &column);
        board.setGeometry(56, 80, 672, 672);
        EvaluationBarView bar(&column);
        bar.setAnimated(false);
        bar.setGeometry(14, 80, 32, 672);
        bar.setValues(evaluation, PieceColor::white, game.game.isFlipped());
        PlayerBannerView topBanner(theme, &column);
        topBanner.setGeometry(14, 14, 714, 56);
        topBanner.setValues(top);
        PlayerBannerView bottomBanner(theme, &column);
        bottomBanner.setGeometry(14, 762, 714, 56);
        bottomBanner.setValues(bottom);
        column.setAttribute(Qt::WA_DontShowOnScreen);
        column.show();
        test::settle();
        test::pictureOf(column, ratio).save(QDir(folder).filePath(name + QStringLiteral(".png")));
    }
};

Piece piece(PieceType type, PieceColor color) {
    return Piece::make(type, color);
}

PlayerBannerView::Values engine(PieceColor color) {
    PlayerBannerView::Values values;
    values.color = color;
    values.name = QStringLiteral("Ethereal 12.75");
    values.isEngine = true;
    values.timeString = QStringLiteral("4:12");
    values.capturedPieces = {piece(PieceType::pawn, opponent(color)), piece(PieceType::pawn, opponent(color)),
                             piece(PieceType::knight, opponent(color)),
                             piece(PieceType::queen, opponent(color))};
    return values;
}

PlayerBannerView::Values person(PieceColor color) {
    PlayerBannerView::Values values;
    values.color = color;
    values.name = QStringLiteral("Player");
    values.timeString = QStringLiteral("0:07.4");
    values.isLowOnTime = true;
    values.isActiveTurn = true;
    values.capturedPieces = {
        piece(PieceType::pawn, opponent(color)),   piece(PieceType::pawn, opponent(color)),
        piece(PieceType::pawn, opponent(color)),   piece(PieceType::knight, opponent(color)),
        piece(PieceType::bishop, opponent(color)), piece(PieceType::bishop, opponent(color)),
        piece(PieceType::rook, opponent(color)),   piece(PieceType::queen, opponent(color))};
    values.materialAdvantage = 3;
    return values;
}

EngineEvaluation centipawns(qint64 score) {
    EngineEvaluation evaluation;
    evaluation.scoreCp = score;
    return evaluation;
}

EngineEvaluation mate(qint64 moves) {
    EngineEvaluation evaluation;
    evaluation.mateIn = moves;
    return evaluation;
}

void saveAll(const QString& folder) {
    TestGame game;
    Theme theme;
    const Scene scene{game, theme, folder};
    const auto white = PieceColor::white;
    const auto black = PieceColor::black;

    theme.setScheme(Theme::Scheme::light);
    scene.save(QStringLiteral("start-light"), 1, EngineEvaluation(), engine(black), person(white));
    game.play("e2", "e4");
    game.play("e7", "e5");
    game.click("g1");
    scene.save(QStringLiteral("selection-light"), 1, centipawns(31), engine(black), person(white));
    theme.setScheme(Theme::Scheme::dark);
    auto thinking = engine(black);
    thinking.isThinking = true;
    thinking.isActiveTurn = true;
    auto waiting = person(white);
    waiting.isActiveTurn = false;
    waiting.isLowOnTime = false;
    waiting.timeString = QStringLiteral("4:58");
    scene.save(QStringLiteral("selection-dark-2x"), 2, centipawns(-1240), thinking, waiting);
    game.click("g1");
    game.game.flipBoard();
    scene.save(QStringLiteral("flipped-dark"), 1, mate(-12), person(white), engine(black));
    game.game.flipBoard();
    theme.setScheme(Theme::Scheme::light);
    game.game.loadFEN(QStringLiteral("rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3"));
    scene.save(QStringLiteral("check-light-2x"), 2, mate(3), engine(black), person(white));
    game.game.loadFEN(QStringLiteral("r1bqk1nr/pPp2ppp/8/3pP3/8/8/PPP2PPP/RNBQKBNR w KQkq d6 0 5"));
    game.click("e5");
    scene.save(QStringLiteral("en-passant-light"), 1, centipawns(210), engine(black), person(white));
    game.click("e5");
    game.click("b7");
    game.click("a8");
    theme.setScheme(Theme::Scheme::light);
    scene.save(QStringLiteral("promotion-light"), 1, centipawns(900), engine(black), person(white));
    theme.setScheme(Theme::Scheme::dark);
    scene.save(QStringLiteral("promotion-dark"), 1, centipawns(900), engine(black), person(white));
    game.game.cancelPromotion();
    game.game.startNewGame();
    game.play("e2", "e4");
    game.play("d7", "d5");
    game.play("e4", "d5");
    game.game.inspectMove(1);
    theme.setScheme(Theme::Scheme::light);
    auto longName = engine(black);
    longName.name =
        QStringLiteral("An engine whose name goes on and on until nobody can read the end of it, 64 bit");
    scene.save(QStringLiteral("inspecting-light"), 1, centipawns(80), longName, person(white));
}

}  // namespace
}  // namespace orlix

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QString folder = QString::fromLocal8Bit(argc > 1 ? argv[1] : ".");
    QDir().mkpath(folder);
    orlix::saveAll(folder);
    return 0;
}
