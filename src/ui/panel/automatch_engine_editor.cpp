#include "ui/panel/automatch_engine_editor.h"

#include <QVBoxLayout>
#include <algorithm>

#include "automatch/automatch_manager.h"
#include "engine/engine_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/picker_button.h"
#include "ui/localized_text.h"
#include "ui/panel/elo_editor.h"

namespace orlix {

namespace {

const char* headKey(AutomatchEngineEditor::Slot slot) {
    return slot == AutomatchEngineEditor::Slot::engine1 ? "automatch_engine_1" : "automatch_engine_2";
}

}  // namespace

AutomatchEngineEditor::AutomatchEngineEditor(Slot slot, const PanelContext& context, QWidget* parent)
    : QWidget(parent),
      slot_(slot),
      context_(context),
      picker_(new PickerButton(context.theme)),
      elo_(new EloEditor("limit_elo", context)) {
    const bool isFirst = slot == Slot::engine1;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(metrics::space2);
    layout->addWidget(new LocalizedText(QString::fromLatin1(headKey(slot)), TextStyle::bodyStrong,
                                        ColorRole::text, context.loc, context.theme, this));
    picker_->setObjectName(isFirst ? QStringLiteral("automatchEngine1") : QStringLiteral("automatchEngine2"));
    layout->addWidget(picker_);
    elo_->setPartNames(isFirst ? QStringLiteral("engine1") : QStringLiteral("engine2"));
    layout->addWidget(elo_);

    AutomatchManager& series = context_.automatch;
    connect(picker_, &PickerButton::chosen, this, &AutomatchEngineEditor::choose);
    connect(elo_, &EloEditor::edited, this, [this, &series, isFirst](bool limitElo, qint64 elo) {
        dropCachedSizes();
        if (isFirst) {
            series.setEngine1Limit(limitElo, elo);
        } else {
            series.setEngine2Limit(limitElo, elo);
        }
    });
    retranslate();
    takeSeries();
    connect(&context_.loc, &LocalizationManager::changed, this, &AutomatchEngineEditor::retranslate);
}

void AutomatchEngineEditor::takeSeries() {
    const AutomatchManager& series = context_.automatch;
    const auto assigned = series.assignedEngines();
    const std::optional<EngineConfiguration>& engine =
        slot_ == Slot::engine1 ? assigned.engine1 : assigned.engine2;
    QList<EngineConfiguration> offered = context_.engines.availableEngines();
    const auto sameId = [&](const EngineConfiguration& one) { return one.id == engine->id; };
    // A series goes on with an engine that was removed from the registry meanwhile.
    if (engine && std::none_of(offered.cbegin(), offered.cend(), sameId)) offered.append(*engine);
    if (offered != offered_) {
        offered_ = offered;
        QStringList names;
        for (const EngineConfiguration& one : offered_)
            names.append(one.name);
        picker_->setItems(names, true);
    }
    int current = -1;
    if (engine) {
        current =
            static_cast<int>(std::find_if(offered_.cbegin(), offered_.cend(), sameId) - offered_.cbegin());
    }
    if (current != picker_->currentIndex()) picker_->setCurrentIndex(current);

    const bool isFirst = slot_ == Slot::engine1;
    const bool limitElo = isFirst ? series.engine1LimitElo() : series.engine2LimitElo();
    const qint64 elo = isFirst ? series.engine1Elo() : series.engine2Elo();
    if (limitElo == elo_->limitElo() && elo == elo_->elo()) return;
    elo_->setStrength(limitElo, elo);
    dropCachedSizes();
}

// The editor's rows come and go: its own layout notices, the card that holds this one would not.
void AutomatchEngineEditor::dropCachedSizes() {
    elo_->layout()->activate();
    updateGeometry();
    if (parentWidget()) parentWidget()->updateGeometry();
}

void AutomatchEngineEditor::choose(int index) {
    const EngineConfiguration engine = offered_.at(index);
    if (slot_ == Slot::engine1) {
        context_.automatch.setEngine1(engine);
    } else {
        context_.automatch.setEngine2(engine);
    }
}

void AutomatchEngineEditor::retranslate() {
    picker_->setCaption(context_.loc.text(headKey(slot_)));
    elo_->setCaption(context_.loc.text(headKey(slot_)));
}

}  // namespace orlix
