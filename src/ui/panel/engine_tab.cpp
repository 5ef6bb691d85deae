#include "ui/panel/engine_tab.h"

#include <QPainter>
#include <QVBoxLayout>

#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "platform/time_source.h"
#include "records/pgn_exporter.h"
#include "ui/controls/choice_group.h"
#include "ui/controls/panel_button.h"
#include "ui/panel/analysis_card.h"
#include "ui/panel/live_elo_editor.h"
#include "ui/panel/scroll_page.h"
#include "ui/panel/section_head.h"
#include "ui/panel/uci_console_view.h"
#include "ui/theme.h"

namespace orlix {

namespace {

// A little under thirty times a second.
constexpr std::chrono::milliseconds refreshInterval{34};

/// The dark plate with round corners that the square console lies on.
class ConsoleFrame : public QWidget {
  public:
    ConsoleFrame(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(4, 4, 4, 4);
        connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool hasFocus = focusWidget() && focusWidget()->hasFocus();
        painter.setPen(hasFocus ? QPen(theme_.color(ColorRole::accent), 2)
                                : QPen(theme_.color(ColorRole::hairline)));
        painter.setBrush(theme_.color(ColorRole::console));
        const qreal inset = hasFocus ? 1 : 0.5;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                                metrics::controlRadius + 2, metrics::controlRadius + 2);
    }

  private:
    Theme& theme_;
};

}  // namespace

EngineTab::EngineTab(const PanelContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      analysis_(new AnalysisCard(context, this)),
      strength_(new LiveEloEditor(context, this)),
      consoleHead_(new SectionHead(Icon::terminal, context.theme, this)),
      copy_(new PanelButton(PanelButton::Look::onCard, PanelButton::Arrangement::row, context.theme)),
      sides_(new ChoiceGroup(ChoiceGroup::Layout::segments, 2, context.theme)),
      console_(nullptr) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* page = new ScrollPage(context.theme, this);
    layout->addWidget(page);
    page->content()->addWidget(analysis_);
    page->content()->addWidget(strength_);

    auto* card = new Card(context.theme);
    copy_->setObjectName(QStringLiteral("copyLog"));
    copy_->setSymbol(Icon::copy);
    // The same in every language.
    copy_->setLabel(QStringLiteral("Copy Log"));
    copy_->setFixedWidth(copy_->sizeHint().width() + metrics::space2);
    consoleHead_->addTrailing(copy_);
    sides_->setObjectName(QStringLiteral("consoleSides"));
    auto* frame = new ConsoleFrame(context.theme, card);
    console_ = new UciConsoleView(context, frame);
    console_->setObjectName(QStringLiteral("console"));
    frame->layout()->addWidget(console_);
    card->content()->addWidget(consoleHead_);
    card->content()->addWidget(sides_);
    card->content()->addWidget(frame, 1);
    page->content()->addWidget(card, 1);

    connect(copy_, &QAbstractButton::clicked, this, &EngineTab::copyLog);
    connect(sides_, &ChoiceGroup::chosen, this, [this](int index) {
        chosenSide_ = index == 0 ? PieceColor::white : PieceColor::black;
        followConsole();
    });
    connect(console_, &UciConsoleView::refreshed, this,
            [this] { copy_->setEnabled(!console_->lines().isEmpty()); });
    copy_->setEnabled(false);
    connect(console_, &UciConsoleView::released, this, &EngineTab::followConsole);
    retranslate();
    takeGame();
    connect(&context_.game, &GameManager::changed, this, &EngineTab::takeGame);
    connect(&context_.game, &GameManager::enginesChanged, this, &EngineTab::takeEngines);
    connect(&context_.loc, &LocalizationManager::changed, this, &EngineTab::retranslate);
}

EngineTab::~EngineTab() = default;

UCIEngineProcess* EngineTab::engineOf(PieceColor color) const {
    return color == PieceColor::white ? context_.game.whiteEngineProcess()
                                      : context_.game.blackEngineProcess();
}

std::optional<PieceColor> EngineTab::activeSide() const {
    for (const std::optional<PieceColor>& side : {context_.game.currentlyThinkingColor(), lastThinking_}) {
        if (side && engineOf(*side)) return side;
    }
    if (engineOf(PieceColor::white)) return PieceColor::white;
    if (engineOf(PieceColor::black)) return PieceColor::black;
    return std::nullopt;
}

void EngineTab::takeEngines() {
    lastThinking_.reset();
    chosenSide_.reset();
    takeGame();
}

void EngineTab::takeGame() {
    if (const auto& thinking = context_.game.currentlyThinkingColor()) lastThinking_ = thinking;
    if (!isVisible()) return;
    strength_->takeGame();
    const auto& engine = context_.game.currentlyThinkingEngine();
    analysis_->setThinkingEngine(engine ? std::optional(engine->name) : std::nullopt);
    followAnalysis();
    followConsole();
}

void EngineTab::followAnalysis() {
    const std::optional<PieceColor> side = activeSide();
    UCIEngineProcess* engine = side ? engineOf(*side) : nullptr;
    if (engine == analyzed_ && evaluationConnection_) return;
    disconnect(evaluationConnection_);
    evaluationConnection_ = {};
    refresh_.reset();
    analyzed_ = engine;
    if (engine) {
        evaluationConnection_ = connect(engine, &UCIEngineProcess::evaluationChanged, this, [this] {
            if (refresh_) return;
            refresh_ = context_.time.after(refreshInterval, [this] {
                refresh_.reset();
                takeEvaluation();
            });
        });
    }
    takeEvaluation();
}

void EngineTab::takeEvaluation() {
    analysis_->setEvaluation(analyzed_ ? analyzed_->currentEvaluation() : EngineEvaluation());
}

void EngineTab::followConsole() {
    const bool hasBoth = engineOf(PieceColor::white) && engineOf(PieceColor::black);
    sides_->setVisible(hasBoth);
    UCIEngineProcess* shown = console_->engine();
    const bool isSeated =
        shown && (shown == engineOf(PieceColor::white) || shown == engineOf(PieceColor::black));
    // A reader who scrolled up or selects is not taken to the other engine when the turn passes.
    if (chosenSide_ || !isSeated || !console_->isHeld()) {
        const std::optional<PieceColor> side = chosenSide_ ? chosenSide_ : activeSide();
        shown = side ? engineOf(*side) : nullptr;
        console_->setEngine(shown);
    }
    if (hasBoth) sides_->setCurrentIndex(shown == engineOf(PieceColor::white) ? 0 : 1);
}

void EngineTab::copyLog() {
    const UCIEngineProcess* engine = console_->engine();
    if (!engine) return;
    context_.exporter.copyToClipboard(engine->logLines().join(u'\n'));
    Q_EMIT toastRequested(context_.loc.text("copied_to_clipboard"));
}

void EngineTab::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    takeGame();
}

void EngineTab::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    disconnect(evaluationConnection_);
    evaluationConnection_ = {};
    refresh_.reset();
}

void EngineTab::retranslate() {
    const auto& loc = context_.loc;
    consoleHead_->setTitle(loc.text("engine_log"));
    sides_->setLabels({loc.text("color_white"), loc.text("color_black")});
}

}  // namespace orlix
