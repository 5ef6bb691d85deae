#include "ui/engine_notice_view.h"

#include <QPainter>
#include <QPointer>
#include <algorithm>

#include "engine/engine_manager.h"
#include "game/game_manager.h"
#include "l10n/extra_texts.h"
#include "l10n/localization_manager.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/text_label.h"
#include "ui/panel/engine_add_error.h"
#include "ui/player_info.h"
#include "ui/theme.h"

namespace orlix {
namespace {

constexpr int buttonHeight = 36;

const std::optional<EngineConfiguration>& selected(PieceColor color, const EngineManager& engines) {
    return color == PieceColor::white ? engines.selectedWhiteEngine() : engines.selectedBlackEngine();
}

}  // namespace

EngineNoticeView::EngineNoticeView(GameManager& game, EngineManager& engines, LocalizationManager& loc,
                                   Theme& theme, QWidget* parent)
    : QWidget(parent),
      game_(game),
      engines_(engines),
      loc_(loc),
      theme_(theme),
      text_(new TextLabel(TextStyle::body, ColorRole::text, theme, this)),
      addEngine_(new PanelButton(PanelButton::Look::primary, PanelButton::Arrangement::row, theme, this)),
      newGame_(new PanelButton(PanelButton::Look::primary, PanelButton::Arrangement::row, theme, this)),
      close_(new PanelButton(PanelButton::Look::secondary, PanelButton::Arrangement::row, theme, this)) {
    hide();
    text_->setAlignment(Qt::AlignCenter);
    addEngine_->setSymbol(Icon::add);
    newGame_->setSymbol(Icon::newGame);
    connect(addEngine_, &PanelButton::clicked, this, &EngineNoticeView::chooseFile);
    connect(newGame_, &PanelButton::clicked, this, [this] { game_.startNewGame(); });
    connect(close_, &PanelButton::clicked, this, [this] {
        dismissedAt_ = game_.board().history.size();
        refresh();
    });
    connect(&game_, &GameManager::changed, this, &EngineNoticeView::refresh);
    connect(&game_, &GameManager::enginesChanged, this, [this] {
        dismissedAt_.reset();
        failure_.reset();
        refresh();
    });
    connect(&engines_, &EngineManager::changed, this, &EngineNoticeView::refresh);
    connect(&loc_, &LocalizationManager::changed, this, &EngineNoticeView::refresh);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

int EngineNoticeView::heightForWidth(int width) const {
    return metrics::space4 + text_->heightForWidth(width - 2 * metrics::space4) + metrics::space4 +
           buttonHeight + metrics::space4;
}

void EngineNoticeView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const QRect inside =
        rect().adjusted(metrics::space4, metrics::space4, -metrics::space4, -metrics::space4);
    text_->setGeometry(inside.adjusted(0, 0, 0, -(buttonHeight + metrics::space4)));

    const int closeWidth = std::max(96, close_->sizeHint().width());
    const QRect buttons(inside.left(), inside.bottom() + 1 - buttonHeight, inside.width(), buttonHeight);
    close_->setGeometry(buttons.adjusted(buttons.width() - closeWidth, 0, 0, 0));
    const QRect rest = buttons.adjusted(0, 0, -(closeWidth + metrics::space2), 0);
    addEngine_->setGeometry(rest);
    newGame_->setGeometry(rest);
}

void EngineNoticeView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(theme_.color(ColorRole::hairline));
    painter.setBrush(theme_.color(ColorRole::panel));
    painter.drawRoundedRect(card, metrics::cardRadius, metrics::cardRadius);
}

void EngineNoticeView::refresh() {
    const bool isNeeded = !game_.isGameOver() && !emptyEngineSeats(game_).empty();
    if (dismissedAt_ != game_.board().history.size()) dismissedAt_.reset();
    if (!isNeeded || dismissedAt_) {
        hide();
        return;
    }
    const bool offersFile = isBusy_ || isAnEmptySeatWithoutEngine();
    text_->setText(message());
    text_->setRole(failure_ && !isChecking_ ? ColorRole::bad : ColorRole::text);
    addEngine_->setLabel(loc_.text("add_engine"));
    addEngine_->setEnabled(!isBusy_);
    addEngine_->setVisible(offersFile);
    newGame_->setLabel(loc_.text("btn_new_game"));
    newGame_->setVisible(!offersFile);
    close_->setLabel(loc_.text("btn_close"));
    show();
    raise();
    Q_EMIT sizeChanged();
}

QString EngineNoticeView::message() const {
    const auto text = [this](ExtraText id) { return extraText(loc_.currentLanguage(), id); };
    if (isChecking_) return text(ExtraText::checkingEngine);
    if (!isAnEmptySeatWithoutEngine()) return text(ExtraText::newGameSeatsEngine);
    if (failure_) return *failure_;
    return text(engines_.availableEngines().isEmpty() ? ExtraText::noEngineRegistered
                                                      : ExtraText::noEngineChosen);
}

bool EngineNoticeView::isAnEmptySeatWithoutEngine() const {
    const std::vector<PieceColor> seats = emptyEngineSeats(game_);
    return std::any_of(seats.begin(), seats.end(),
                       [this](PieceColor color) { return !selected(color, engines_).has_value(); });
}

void EngineNoticeView::chooseFile() {
    isBusy_ = true;
    refresh();
    engines_.pickEngineFile([self = QPointer(this)](const std::optional<QString>& path) {
        if (self == nullptr) return;
        if (path) {
            self->add(*path);
            return;
        }
        self->isBusy_ = false;
        self->refresh();
    });
}

void EngineNoticeView::add(const QString& path) {
    isChecking_ = true;
    failure_.reset();
    refresh();
    engines_.addEngine(path, std::nullopt,
                       [self = QPointer(this)](const std::optional<EngineConfiguration>& engine,
                                               const std::optional<QString>& error) {
                           if (self == nullptr) return;
                           self->isBusy_ = false;
                           self->isChecking_ = false;
                           if (engine) {
                               self->seat(*engine);
                               return;
                           }
                           self->failure_ = engineAddErrorText(error);
                           self->refresh();
                       });
}

void EngineNoticeView::seat(const EngineConfiguration& engine) {
    // A side that has its engine chosen keeps it, whether that engine plays now or not.
    if (!engines_.selectedWhiteEngine()) engines_.setSelectedWhiteEngine(engine);
    if (!engines_.selectedBlackEngine()) engines_.setSelectedBlackEngine(engine);
    // A game that has begun is not thrown away; the card then offers the next one.
    if (!emptyEngineSeats(game_).empty() && game_.board().history.empty()) game_.startNewGame();
    refresh();
}

}  // namespace orlix
