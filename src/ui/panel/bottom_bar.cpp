#include "ui/panel/bottom_bar.h"

#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/panel_button.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int margin = metrics::space3;
constexpr int gap = metrics::space2;
constexpr int verticalMargin = 10;
}  // namespace

BottomBar::BottomBar(const PanelContext& context, QWidget* parent) : QWidget(parent), context_(context) {
    using Look = PanelButton::Look;
    const auto make = [this](Command command, Look look, Icon icon, const char* name) {
        auto* button = new PanelButton(look, PanelButton::Arrangement::column, context_.theme, this);
        button->setSymbol(icon);
        button->setObjectName(QString::fromLatin1(name));
        buttons_[command] = button;
        return button;
    };
    GameManager& game = context_.game;
    // These three are written the same in every language.
    make(flip, Look::secondary, Icon::flip, "flipBoard")->setLabel(QStringLiteral("Flip Board"));
    make(undo, Look::secondary, Icon::undo, "undoMove")->setLabel(QStringLiteral("Undo Move"));
    make(pause, Look::secondary, Icon::pause, "pauseGame")->setLabel(QStringLiteral("Pause"));
    make(resign, Look::destructive, Icon::resign, "resignGame");
    make(newGame, Look::primary, Icon::plus, "newGame");
    connect(buttons_[flip], &QAbstractButton::clicked, &game, [&game] { game.flipBoard(); });
    connect(buttons_[undo], &QAbstractButton::clicked, &game, [&game] { game.undoMove(); });
    connect(buttons_[pause], &QAbstractButton::clicked, &game, [&game] { game.togglePause(); });
    connect(buttons_[resign], &QAbstractButton::clicked, &game, [&game] { game.resign(game.board().turn); });
    connect(buttons_[newGame], &QAbstractButton::clicked, &game, [&game] { game.startNewGame(); });
    setLabels();
    takeGame();
    connect(&game, &GameManager::changed, this, &BottomBar::takeGame);
    connect(&context_.loc, &LocalizationManager::changed, this, &BottomBar::retranslate);
}

void BottomBar::takeGame() {
    const bool isPaused = context_.game.isPaused();
    buttons_[pause]->setLabel(isPaused ? QStringLiteral("Resume") : QStringLiteral("Pause"));
    buttons_[pause]->setSymbol(isPaused ? Icon::play : Icon::pause);
    // A finished game ignores both. Focus does not move on by itself: the next Return would start a new game.
    const bool isOpen = !context_.game.isGameOver();
    for (const Command command : {undo, resign}) {
        PanelButton* button = buttons_[command];
        if (!isOpen && button->hasFocus()) button->clearFocus();
        if (button->isEnabled() != isOpen) button->setEnabled(isOpen);
    }
}

void BottomBar::setLabels() {
    buttons_[resign]->setLabel(context_.loc.text("btn_resign"));
    buttons_[newGame]->setLabel(context_.loc.text("btn_new_game"));
}

void BottomBar::retranslate() {
    setLabels();
    arrange();
}

QRect BottomBar::place(int index, int width) const {
    const int room = width - 2 * margin + gap;
    const int left = margin + room * index / commandCount;
    const int right = margin + room * (index + 1) / commandCount - gap;
    return {left, verticalMargin, right - left, 0};
}

int BottomBar::heightForWidth(int width) const {
    int height = 48;
    for (int index = 0; index < commandCount; ++index) {
        const auto* button = buttons_[static_cast<std::size_t>(index)];
        height = qMax(height, button->heightForWidth(place(index, width).width()));
    }
    return height + 2 * verticalMargin;
}

void BottomBar::arrange() {
    // One line of symbols, also where a label of one of them takes two lines.
    int shared = 0;
    for (int index = 0; index < commandCount; ++index)
        shared = qMax(shared,
                      buttons_[static_cast<std::size_t>(index)]->columnHeight(place(index, width()).width()));
    for (int index = 0; index < commandCount; ++index) {
        QRect at = place(index, width());
        at.setHeight(height() - 2 * verticalMargin);
        buttons_[static_cast<std::size_t>(index)]->setGeometry(at);
        buttons_[static_cast<std::size_t>(index)]->setSharedHeight(shared);
    }
}

void BottomBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

}  // namespace orlix
