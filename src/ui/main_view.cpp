#include "ui/main_view.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <algorithm>

#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "platform/system_settings.h"
#include "ui/board_view.h"
#include "ui/engine_notice_view.h"
#include "ui/evaluation_bar_view.h"
#include "ui/keyboard_order.h"
#include "ui/main_layout.h"
#include "ui/move_stepping.h"
#include "ui/right_panel_view.h"
#include "ui/theme.h"

namespace orlix {
namespace {

constexpr qint64 lowTimeMs = 10'000;
// In its first moments an engine has more to say than anyone can read, and each word costs a picture. Lines
// that rest in between come further apart than this, and are shown without another wake.
constexpr std::chrono::milliseconds evaluationInterval{150};

/// The pieces of `color`'s opponent that are gone, queens first and each type together.
std::vector<Piece> capturesOf(PieceColor color, const ChessBoard& board) {
    ChessBoard::CapturedPieces gone = board.capturedPieces();
    std::vector<Piece> pieces = std::move(color == PieceColor::white ? gone.black : gone.white);
    std::stable_sort(pieces.begin(), pieces.end(),
                     [](const Piece& left, const Piece& right) { return left.type > right.type; });
    return pieces;
}

/// Every list of missing pieces is made of new ones, so identities say nothing here.
bool looksSame(const std::vector<Piece>& left, const std::vector<Piece>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const Piece& a, const Piece& b) { return a.type == b.type && a.color == b.color; });
}

bool isLowOnTime(const ChessClock& clock, PieceColor color) {
    if (clock.isUnlimited()) return false;
    return (color == PieceColor::white ? clock.whiteRemainingMs() : clock.blackRemainingMs()) < lowTimeMs;
}

}  // namespace

MainView::MainView(const Collaborators& with, QWidget* parent)
    : QWidget(parent),
      game_(with.game),
      loc_(with.loc),
      theme_(with.theme),
      time_(with.time),
      banners_{Banner{new PlayerBannerView(with.theme, this), {}},
               Banner{new PlayerBannerView(with.theme, this), {}}},
      board_(new BoardView(with.game, with.loc, with.theme, with.system, this)),
      evaluationBar_(new EvaluationBarView(this)),
      rightPanel_(new RightPanelView(with.game, with.engines, with.loc, with.automatch, with.theme,
                                     with.exporter, with.time, this)),
      notice_(new EngineNoticeView(with.game, with.engines, with.loc, with.theme, this)) {
    setMinimumSize(smallestSize);
    setAttribute(Qt::WA_OpaquePaintEvent);
    evaluationBar_->setAnimated(!with.system.prefersReducedMotion());

    connect(&game_, &GameManager::changed, this, [this] { showGame(); });
    connect(&game_, &GameManager::enginesChanged, this, [this] { showGame(); });
    connect(&game_, &GameManager::liveEvaluationChanged, this, &MainView::followEvaluation);
    connect(&game_.clock(), &ChessClock::changed, this, &MainView::showClock);
    const auto nameBar = [this] { evaluationBar_->setCaption(loc_.text(ExtraText::evaluation)); };
    nameBar();
    connect(&loc_, &LocalizationManager::changed, this, nameBar);
    const auto colourBar = [this] {
        const QColor ground = theme_.color(ColorRole::window);
        evaluationBar_->setSurroundings(ground, theme_.hairlineOn(ground));
    };
    colourBar();
    connect(&theme_, &Theme::changed, this, colourBar);
    connect(&theme_, &Theme::changed, this, qOverload<>(&MainView::update));
    connect(notice_, &EngineNoticeView::sizeChanged, this, &MainView::layOutChildren);
    showGame();
}

MainView::~MainView() = default;

PlayerInfo MainView::playerInfo(PieceColor color) const {
    return orlix::playerInfo(color, game_);
}

void MainView::prepareFirstPicture() {
    layOutChildren();
    board_->preparePieces();
}

bool MainView::event(QEvent* event) {
    // Another screen may have another pixel ratio, and the board stands on whole device pixels.
    if (event->type() == QEvent::ScreenChangeInternal) layOutChildren();
    return QWidget::event(event);
}

void MainView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (wasShown_) return;
    wasShown_ = true;
    game_.startNewGame();
}

void MainView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOutChildren();
}

void MainView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), theme_.color(ColorRole::window));
    // The bar's light part is almost the window's colour in the light scheme.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme_.hairlineOn(theme_.color(ColorRole::window)));
    const QRectF around = QRectF(evaluationBar_->geometry()).adjusted(-0.5, -0.5, 0.5, 0.5);
    painter.drawRoundedRect(around, metrics::controlRadius, metrics::controlRadius);
}

// Keys that nothing inside the window has a use for.
void MainView::keyPressEvent(QKeyEvent* event) {
    const bool isInText = qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr;
    if (isInText || !stepThroughGame(game_, *event)) QWidget::keyPressEvent(event);
}

// Tabs and rows are built when they are needed: the order of building says nothing about where they stand.
bool MainView::focusNextPrevChild(bool next) {
    return moveKeyboardFocus(*this, next);
}

void MainView::layOutChildren() {
    const MainLayout layout = MainLayout::forSize(size(), devicePixelRatioF());
    banners_[0].view->setGeometry(layout.topBanner);
    banners_[1].view->setGeometry(layout.bottomBanner);
    board_->setGeometry(layout.board);
    evaluationBar_->setGeometry(layout.evaluationBar);
    rightPanel_->setGeometry(layout.rightPanel);

    // Over the middle ranks, which are empty when a game begins.
    const int width = std::min(EngineNoticeView::preferredWidth, layout.board.width() - 2 * MainLayout::gap);
    QRect notice(0, 0, width, notice_->heightForWidth(width));
    notice.moveCenter(layout.board.center());
    notice_->setGeometry(notice);
}

void MainView::showGame() {
    const PieceColor top = game_.isFlipped() ? PieceColor::white : PieceColor::black;
    showGame(banners_[0], top);
    showGame(banners_[1], opponent(top));
    showEvaluation();
}

void MainView::showGame(Banner& banner, PieceColor color) {
    PlayerBannerView::Values& values = banner.values;
    const PlayerInfo info = playerInfo(color);
    values.color = color;
    values.name = info.name;
    values.isEngine = info.isEngine;
    values.isActiveTurn = !game_.isGameOver() && game_.board().turn == color;
    // Captures belong to the pieces on the board, also while an earlier position is looked at.
    const ChessBoard& board = game_.displayedBoard();
    std::vector<Piece> captures = capturesOf(color, board);
    if (!looksSame(captures, values.capturedPieces)) values.capturedPieces = std::move(captures);
    values.materialAdvantage = color == PieceColor::white ? board.materialScore() : -board.materialScore();
    values.timeString = game_.clock().formattedTime(color);
    values.isLowOnTime = isLowOnTime(game_.clock(), color);
    // The game forgets neither pause nor end when it leaves a search running.
    values.isThinking = game_.currentlyThinkingColor() == color && !game_.isPaused() && !game_.isGameOver();
    banner.tenths = -1;  // the banner may be another side's now
    banner.view->setValues(values);
}

void MainView::showClock() {
    for (Banner& banner : banners_) {
        PlayerBannerView::Values& values = banner.values;
        // Every second tick changes a tenth, and a digit that is shown changes more seldom still.
        const qint64 tenths = game_.clock().remainingMs(values.color) / 100;
        if (std::exchange(banner.tenths, tenths) == tenths) continue;
        const bool isLow = isLowOnTime(game_.clock(), values.color);
        QString time = game_.clock().formattedTime(values.color);
        if (time == values.timeString && isLow == values.isLowOnTime) continue;
        values.timeString = std::move(time);
        values.isLowOnTime = isLow;
        banner.view->setValues(values);
    }
}

void MainView::followEvaluation() {
    if (nextEvaluation_) return;
    const auto since = time_.now() - evaluationShown_;
    std::chrono::milliseconds wait{0};
    if (since >= since.zero() && since < evaluationInterval)
        wait = std::chrono::ceil<std::chrono::milliseconds>(evaluationInterval - since);
    // Also without a wait through the event loop: lines come several at once, and the last one counts.
    nextEvaluation_ = time_.after(wait, [this] { showEvaluation(); });
}

void MainView::showEvaluation() {
    nextEvaluation_.reset();
    evaluationShown_ = time_.now();
    evaluationBar_->setValues(game_.liveEvaluation(), game_.liveEvaluationTurn(), game_.isFlipped());
}

}  // namespace orlix
