#include "ui/panel/export_tab.h"

#include <QEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QVBoxLayout>

#include "core/chess_board.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "records/pgn_exporter.h"
#include "ui/assistive_technology.h"
#include "ui/controls/card.h"
#include "ui/controls/control_button.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/text_label.h"
#include "ui/panel/scroll_page.h"
#include "ui/panel/section_head.h"
#include "ui/theme.h"

namespace orlix {

FenField::FenField(Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme), edit_(new QLineEdit(this)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(metrics::space2, 3, metrics::space2, 3);
    layout->addWidget(edit_);
    edit_->setObjectName(QStringLiteral("fenInput"));
    edit_->setFrame(false);
    edit_->setFont(Theme::font(TextStyle::monospaced));
    edit_->setAttribute(Qt::WA_MacShowFocusRect, false);
    // What a FEN looks like; the same in every language.
    edit_->setPlaceholderText(QStringLiteral("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"));
    edit_->installEventFilter(this);
    setFocusProxy(edit_);
    applyTheme();
    connect(&theme_, &Theme::changed, this, &FenField::applyTheme);
}

void FenField::setRefused(bool isRefused) {
    isRefused_ = isRefused;
    update();
}

void FenField::applyTheme() {
    QPalette colors = theme_.palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    edit_->setPalette(colors);
    update();
}

bool FenField::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
    return QWidget::eventFilter(watched, event);
}

void FenField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isDark = theme_.scheme() == Theme::Scheme::dark;
    painter.setPen(theme_.color(isRefused_ ? ColorRole::bad : ColorRole::hairline));
    painter.setBrush(theme_.tint(ColorRole::text, ColorRole::panel, isDark ? 0.08 : 0.0));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), metrics::controlRadius,
                            metrics::controlRadius);
    if (edit_->hasFocus()) paintFocusRing(painter, theme_, rect(), metrics::controlRadius);
}

ExportTab::ExportTab(const PanelContext& context, PanelState& state, QWidget* parent)
    : QWidget(parent), context_(context), state_(state) {
    Theme& theme = context.theme;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* page = new ScrollPage(theme, this);
    layout->addWidget(page);
    const auto addCard = [&](Icon icon, const QString& title, SectionHead** head) {
        auto* card = new Card(theme);
        *head = new SectionHead(icon, theme, card);
        (*head)->setTitle(title);
        card->setAccessibleName(title);
        card->content()->addWidget(*head);
        page->content()->addWidget(card);
        return card;
    };
    const auto makeButton = [&](QWidget* card, PanelButton::Look look, Icon icon, const char* name) {
        auto* button = new PanelButton(look, PanelButton::Arrangement::row, theme, card);
        button->setSymbol(icon);
        button->setObjectName(QString::fromLatin1(name));
        return button;
    };
    const auto addPair = [](Card* card, QWidget* first, QWidget* second) {
        auto* row = new QHBoxLayout;
        row->setSpacing(metrics::space2);
        row->addWidget(first);
        row->addWidget(second);
        card->content()->addLayout(row);
    };
    constexpr auto command = PanelButton::Look::onCard;

    SectionHead* head = nullptr;
    Card* card = addCard(Icon::list, QStringLiteral("PGN"), &head);
    copyPgn_ = makeButton(card, command, Icon::copy, "copyPgn");
    savePgn_ = makeButton(card, command, Icon::save, "savePgn");
    addPair(card, copyPgn_, savePgn_);

    card = addCard(Icon::gameState, QStringLiteral("FEN"), &head);
    position_ = new TextLabel(TextStyle::monospaced, ColorRole::secondary, theme, card);
    position_->setObjectName(QStringLiteral("currentFen"));
    card->content()->addWidget(position_);
    copyFen_ = makeButton(card, command, Icon::copy, "copyFen");
    saveFen_ = makeButton(card, command, Icon::save, "saveFen");
    // The same in every language.
    saveFen_->setLabel(QStringLiteral("Save FEN..."));
    addPair(card, copyFen_, saveFen_);

    card = addCard(Icon::viewOnBoard, QString(), &loadHead_);
    field_ = new FenField(theme, card);
    field_->edit()->setText(state_.fenInputText);
    card->content()->addWidget(field_);
    refusal_ = new TextLabel(TextStyle::body, ColorRole::bad, theme, card);
    refusal_->setObjectName(QStringLiteral("invalidFen"));
    makeNotice(*refusal_);
    refusal_->hide();
    card->content()->addWidget(refusal_);
    load_ = makeButton(card, PanelButton::Look::primary, Icon::check, "loadFen");
    card->content()->addWidget(load_);
    page->content()->addStretch(1);

    connect(copyPgn_, &QAbstractButton::clicked, this, [this] { copy(context_.game.exportPGN()); });
    connect(copyFen_, &QAbstractButton::clicked, this, [this] { copy(context_.game.exportFEN()); });
    connect(savePgn_, &QAbstractButton::clicked, this, &ExportTab::savePgn);
    connect(saveFen_, &QAbstractButton::clicked, this, [this] {
        context_.exporter.saveFENDialog(context_.game.exportFEN(),
                                        QStringLiteral("velmorandix_position.fen"));
    });
    connect(field_->edit(), &QLineEdit::textChanged, this, [this](const QString& text) {
        state_.fenInputText = text;
        setRefused(false);
    });
    connect(field_->edit(), &QLineEdit::returnPressed, this, &ExportTab::loadFen);
    connect(load_, &QAbstractButton::clicked, this, &ExportTab::loadFen);
    retranslate();
    takeGame();
    connect(&context_.game, &GameManager::changed, this, [this] {
        if (isVisible()) takeGame();
    });
    connect(&context_.loc, &LocalizationManager::changed, this, &ExportTab::retranslate);
}

void ExportTab::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    takeGame();
}

void ExportTab::takeGame() {
    position_->setText(context_.game.exportFEN());
}

void ExportTab::copy(const QString& text) {
    context_.exporter.copyToClipboard(text);
    Q_EMIT toastRequested(context_.loc.text("copied_to_clipboard"));
}

void ExportTab::savePgn() {
    // The panel may stay open for long; by then this tab may be gone.
    const QPointer<ExportTab> self(this);
    context_.exporter.savePGNDialog(
        context_.game.exportPGN(), QStringLiteral("velmorandix_game.pgn"),
        [self](PGNExporter::SaveOutcome outcome) {
            if (!self || outcome != PGNExporter::SaveOutcome::saved) return;
            Q_EMIT self->toastRequested(self->context_.loc.text("pgn_saved_successfully"));
        });
}

void ExportTab::loadFen() {
    try {
        context_.game.loadFEN(state_.fenInputText);
    } catch (const FenError&) {
        setRefused(true);
        return;
    }
    setRefused(false);
    Q_EMIT toastRequested(context_.loc.text("fen_loaded_successfully"));
}

void ExportTab::setRefused(bool isRefused) {
    if (isRefused) {
        showNotice(*refusal_, context_.listener);
    } else {
        refusal_->hide();
    }
    field_->setRefused(isRefused);
    field_->edit()->setAccessibleDescription(isRefused ? refusal_->text() : QString());
}

void ExportTab::retranslate() {
    const auto& loc = context_.loc;
    copyPgn_->setLabel(loc.text("btn_copy_pgn"));
    savePgn_->setLabel(loc.text("btn_save_pgn"));
    copyFen_->setLabel(loc.text("btn_copy_fen"));
    loadHead_->setTitle(loc.text("btn_load_fen"));
    load_->setLabel(loc.text("btn_apply"));
    refusal_->setText(loc.text("invalid_fen"));
    field_->edit()->setAccessibleName(loc.text("btn_load_fen"));
    if (!refusal_->isHidden()) field_->edit()->setAccessibleDescription(refusal_->text());
}

}  // namespace orlix
