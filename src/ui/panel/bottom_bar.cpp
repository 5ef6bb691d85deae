#include "ui/panel/bottom_bar.h"

#include <numeric>

#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/column_widths.h"
#include "ui/controls/panel_button.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int margin = metrics::space3;
constexpr int gap = metrics::space2;
constexpr int verticalMargin = 10;
/// Between a label and its button's edge, beyond what the button keeps itself.
constexpr int sidePadding = 2;

// The same in every language.
QString pauseLabel() {
    return QStringLiteral("Pause");
}

QString resumeLabel() {
    return QStringLiteral("Resume");
}

qreal roomFor(int width) {
    return width - 2.0 * margin - 4.0 * gap;
}

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
    make(pause, Look::secondary, Icon::pause, "pauseGame")->setLabel(pauseLabel());
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
    buttons_[pause]->setLabel(isPaused ? resumeLabel() : pauseLabel());
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

/// Every label on one line where the bar has the room for that, otherwise on as many as it has words.
QList<qreal> BottomBar::needs(int width) const {
    QList<qreal> lines;
    for (const PanelButton* button : buttons_)
        lines.append(button->widthFor(button->label()) + 2 * sidePadding);
    // It stays as wide when its label changes.
    for (const QString& label : {pauseLabel(), resumeLabel()})
        lines[pause] = qMax<qreal>(lines[pause], buttons_[pause]->widthFor(label) + 2 * sidePadding);
    if (std::accumulate(lines.begin(), lines.end(), 0.0) <= roomFor(width)) return lines;
    QList<qreal> words;
    for (const PanelButton* button : buttons_)
        words.append(button->leastWidth() + 2 * sidePadding);
    return words;
}

QList<QRect> BottomBar::places(int width) const {
    QList<QRect> places;
    qreal left = margin;
    for (const qreal wide : columnWidths(needs(width), roomFor(width))) {
        places.append(QRect(QPoint(qRound(left), verticalMargin), QPoint(qRound(left + wide) - 1, 0)));
        left += wide + gap;
    }
    return places;
}

int BottomBar::heightForWidth(int width) const {
    int height = 48;
    const QList<QRect> at = places(width);
    for (int index = 0; index < commandCount; ++index)
        height = qMax(height, buttons_[static_cast<std::size_t>(index)]->heightForWidth(at[index].width()));
    return height + 2 * verticalMargin;
}

void BottomBar::arrange() {
    QList<QRect> at = places(width());
    // One line of symbols, also where a label of one of them takes two lines.
    int shared = 0;
    for (int index = 0; index < commandCount; ++index)
        shared = qMax(shared, buttons_[static_cast<std::size_t>(index)]->columnHeight(at[index].width()));
    for (int index = 0; index < commandCount; ++index) {
        at[index].setHeight(height() - 2 * verticalMargin);
        buttons_[static_cast<std::size_t>(index)]->setGeometry(at[index]);
        buttons_[static_cast<std::size_t>(index)]->setSharedHeight(shared);
    }
}

void BottomBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

}  // namespace orlix
