#include "ui/panel/automatch_controls.h"

#include <QHBoxLayout>

#include "automatch/automatch_manager.h"
#include "engine/engine_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/panel_button.h"
#include "ui/theme.h"

namespace orlix {

AutomatchControls::AutomatchControls(const PanelContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    using Look = PanelButton::Look;
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(metrics::space2);
    const auto add = [&](Look look, Icon icon, const char* name) {
        auto* button = new PanelButton(look, PanelButton::Arrangement::row, context.theme, this);
        button->setSymbol(icon);
        button->setObjectName(QString::fromLatin1(name));
        layout->addWidget(button);
        return button;
    };
    start_ = add(Look::primary, Icon::automatchStart, "startAutomatch");
    pause_ = add(Look::secondary, Icon::pause, "pauseAutomatch");
    stop_ = add(Look::alarming, Icon::stop, "stopAutomatch");
    // Side by side they are equally high, though a secondary command alone is lower.
    pause_->setMinimumHeight(stop_->minimumSizeHint().height());
    AutomatchManager& series = context_.automatch;
    connect(start_, &QAbstractButton::clicked, &series, [&series] { series.startAutomatch(); });
    connect(pause_, &QAbstractButton::clicked, &series, [&series] {
        if (series.isAutomatchPaused()) {
            series.resumeAutomatch();
        } else {
            series.pauseAutomatch();
        }
    });
    connect(stop_, &QAbstractButton::clicked, &series, [&series] { series.stopAutomatch(); });
    retranslate();
    takeSeries();
    connect(&context_.loc, &LocalizationManager::changed, this, &AutomatchControls::retranslate);
}

void AutomatchControls::takeSeries() {
    const bool isActive = context_.automatch.isAutomatchActive();
    const bool startsAnew = isActive && !start_->isHidden();
    const bool hadKeyboard =
        (start_->hasFocus() && isActive) || ((pause_->hasFocus() || stop_->hasFocus()) && !isActive);
    // Where a button goes away the keyboard does not move on by itself: the next Return would press another.
    if (hadKeyboard) window()->focusWidget()->clearFocus();
    start_->setVisible(!isActive);
    pause_->setVisible(isActive);
    stop_->setVisible(isActive);
    // Pausing what was just started loses nothing; starting what was just stopped would clear the history.
    if (hadKeyboard && startsAnew) pause_->setFocus(Qt::TabFocusReason);
    const bool canStart = !context_.engines.availableEngines().isEmpty();
    if (start_->isEnabled() != canStart) start_->setEnabled(canStart);
    showPause();
}

void AutomatchControls::showPause() {
    const bool isPaused = context_.automatch.isAutomatchPaused();
    pause_->setLabel(context_.loc.text(isPaused ? "btn_resume_automatch" : "btn_pause_automatch"));
    pause_->setSymbol(isPaused ? Icon::play : Icon::pause);
}

void AutomatchControls::retranslate() {
    start_->setLabel(context_.loc.text("btn_start_automatch"));
    stop_->setLabel(context_.loc.text("btn_stop_automatch"));
    showPause();
}

}  // namespace orlix
