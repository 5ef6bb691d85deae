#include "ui/panel/automatch_tab.h"

#include <QCoreApplication>
#include <QVBoxLayout>

#include "automatch/automatch_manager.h"
#include "engine/engine_manager.h"
#include "ui/panel/automatch_configuration.h"
#include "ui/panel/automatch_controls.h"
#include "ui/panel/automatch_history.h"
#include "ui/panel/automatch_scoreboard.h"
#include "ui/panel/scroll_page.h"
#include "ui/theme.h"

namespace orlix {

AutomatchTab::AutomatchTab(const PanelContext& context, QWidget* parent)
    : QWidget(parent),
      scoreboard_(new AutomatchScoreboard(context)),
      controls_(new AutomatchControls(context)),
      configuration_(new AutomatchConfiguration(context)),
      history_(new AutomatchHistory(context)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* page = new ScrollPage(context.theme, this);
    layout->addWidget(page);
    page->content()->addWidget(scoreboard_);
    page->content()->addWidget(controls_);
    page->content()->addWidget(configuration_);
    page->content()->addWidget(history_, 1);
    connect(configuration_, &AutomatchConfiguration::addEngineRequested, this,
            &AutomatchTab::addEngineRequested);
    connect(history_, &AutomatchHistory::toastRequested, this, &AutomatchTab::toastRequested);
    connect(history_, &AutomatchHistory::detailsOpened, page, [page](QWidget* details) {
        // The page learns its new height from the event loop, one holder after the other.
        QMetaObject::invokeMethod(
            page,
            [page, details] {
                QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
                page->ensureWidgetVisible(details, 0, metrics::space6);
            },
            Qt::QueuedConnection);
    });
    const auto follow = [this] {
        if (isVisible()) takeSeries();
    };
    connect(&context.automatch, &AutomatchManager::changed, this, follow);
    connect(&context.engines, &EngineManager::changed, this, follow);
}

void AutomatchTab::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    takeSeries();
}

void AutomatchTab::takeSeries() {
    scoreboard_->takeSeries();
    controls_->takeSeries();
    configuration_->takeSeries();
    history_->takeSeries();
}

}  // namespace orlix
