#include "ui/right_panel_view.h"

#include <QLayout>
#include <QMessageBox>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <array>

#include "engine/engine_manager.h"
#include "l10n/extra_texts.h"
#include "l10n/localization_manager.h"
#include "platform/time_source.h"
#include "ui/icons.h"
#include "ui/panel/automatch_tab.h"
#include "ui/panel/bottom_bar.h"
#include "ui/panel/engine_add_error.h"
#include "ui/panel/engine_tab.h"
#include "ui/panel/engines_tab.h"
#include "ui/panel/export_tab.h"
#include "ui/panel/game_tab.h"
#include "ui/panel/new_game_tab.h"
#include "ui/panel/panel_context.h"
#include "ui/panel/panel_header.h"
#include "ui/panel/scroll_page.h"
#include "ui/panel/tab_bar.h"
#include "ui/panel/toast.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr std::chrono::milliseconds toastDuration{2500};
constexpr int alertSymbol = 32;
enum Tab { gameTab, engineTab, automatchTab, newGameTab, enginesTab, exportTab };

}  // namespace

class RightPanelView::Impl {
  public:
    Impl(const PanelContext& context, RightPanelView& view)
        : view_(view),
          context_(context),
          header_(new PanelHeader(context, &view)),
          tabs_(new TabBar(context, &view)),
          bottom_(new BottomBar(context, &view)) {}

    QWidget* makePage(int index);
    void select(int index);
    void arrange();
    void showToast(const QString& message);
    void placeToast();
    void clearToast();
    void addEngine();
    void engineAdded(const std::optional<EngineConfiguration>& engine, const std::optional<QString>& error);
    void showEngineAddAlert();
    void setCheckingEngine(bool isChecking);

    RightPanelView& view_;
    PanelContext context_;
    PanelState state_;
    PanelHeader* header_;
    TabBar* tabs_;
    BottomBar* bottom_;
    std::array<QWidget*, tabCount> pages_{};
    Toast* toast_ = nullptr;
    std::unique_ptr<Timer> toastTimer_;
    bool isAddingEngine_ = false;
    bool isCheckingEngine_ = false;  ///< the file is chosen, its test runs
};

QWidget* RightPanelView::Impl::makePage(int index) {
    switch (static_cast<Tab>(index)) {
        case gameTab: return new GameTab(context_, &view_);
        case newGameTab: {
            auto* tab = new NewGameTab(context_, state_, &view_);
            QObject::connect(tab, &NewGameTab::addEngineRequested, &view_, [this] { addEngine(); });
            QObject::connect(tab, &NewGameTab::started, &view_, [this] { select(gameTab); });
            return tab;
        }
        case engineTab: {
            auto* tab = new EngineTab(context_, &view_);
            QObject::connect(tab, &EngineTab::toastRequested, &view_, &RightPanelView::showToast);
            return tab;
        }
        case automatchTab: {
            auto* tab = new AutomatchTab(context_, &view_);
            QObject::connect(tab, &AutomatchTab::addEngineRequested, &view_, [this] { addEngine(); });
            QObject::connect(tab, &AutomatchTab::toastRequested, &view_, &RightPanelView::showToast);
            return tab;
        }
        case enginesTab: {
            auto* tab = new EnginesTab(context_, state_, &view_);
            tab->setCheckingEngine(isCheckingEngine_);
            QObject::connect(tab, &EnginesTab::addEngineRequested, &view_, [this] { addEngine(); });
            return tab;
        }
        case exportTab: {
            auto* tab = new ExportTab(context_, state_, &view_);
            QObject::connect(tab, &ExportTab::toastRequested, &view_, &RightPanelView::showToast);
            return tab;
        }
    }
    return nullptr;
}

void RightPanelView::Impl::select(int index) {
    if (index < 0 || index >= tabCount) return;
    auto& page = pages_[static_cast<std::size_t>(index)];
    if (!page) {
        page = makePage(index);
        // Assistive technology reads the parts in their stacking order.
        page->stackUnder(bottom_);
    }
    state_.selectedTab = index;
    tabs_->setCurrentIndex(index);
    arrange();
    page->show();
    for (QWidget* other : pages_) {
        if (!other || other == page) continue;
        // Hiding it would send the keyboard on to whatever control comes next.
        QWidget* focus = view_.window()->focusWidget();
        if (focus && other->isAncestorOf(focus)) focus->clearFocus();
        other->hide();
    }
    placeToast();
    if (toast_) toast_->raise();
}

void RightPanelView::Impl::arrange() {
    const int width = view_.width();
    const int height = view_.height();
    header_->setGeometry(0, 0, width, PanelHeader::barHeight);
    const int tabsTop = PanelHeader::barHeight + 1;
    const int tabsHeight = tabs_->heightForWidth(width);
    tabs_->setGeometry(0, tabsTop, width, tabsHeight);
    const int barHeight = bottom_->heightForWidth(width);
    bottom_->setGeometry(0, height - barHeight, width, barHeight);
    const int top = tabsTop + tabsHeight + 1;
    if (QWidget* page = pages_[static_cast<std::size_t>(state_.selectedTab)]) {
        page->setGeometry(0, top, width, height - barHeight - 1 - top);
    }
    placeToast();
    view_.update();
}

// Over what scrolls, where a tab has commands below it that a toast would cover.
void RightPanelView::Impl::placeToast() {
    if (!toast_) return;
    int bottom = bottom_->y() - 1;
    if (QWidget* page = pages_[static_cast<std::size_t>(state_.selectedTab)]) {
        if (const auto* scrolled = page->findChild<ScrollPage*>()) {
            page->layout()->activate();
            bottom = page->y() + scrolled->geometry().bottom() + 1;
        }
    }
    toast_->placeAbove(bottom, view_.width());
}

void RightPanelView::Impl::showToast(const QString& message) {
    state_.toastMessage = message;
    if (!toast_) {
        toast_ = new Toast(context_.theme, context_.listener, &view_);
    }
    placeToast();
    toast_->showMessage(message);
    toastTimer_ = context_.time.after(toastDuration, [this] { clearToast(); });
}

void RightPanelView::Impl::clearToast() {
    state_.toastMessage.reset();
    toast_->fadeOut();
    toastTimer_.reset();
}

void RightPanelView::Impl::addEngine() {
    // One at a time: the file panel, and then the test of up to three seconds.
    if (isAddingEngine_) return;
    isAddingEngine_ = true;
    const QPointer<RightPanelView> view(&view_);
    context_.engines.pickEngineFile([view](const std::optional<QString>& path) {
        if (!view) return;
        Impl& self = *view->impl_;
        if (!path) {
            self.isAddingEngine_ = false;
            return;
        }
        self.setCheckingEngine(true);
        self.context_.engines.addEngine(
            *path, std::nullopt,
            [view](const std::optional<EngineConfiguration>& engine, const std::optional<QString>& error) {
                if (view) view->impl_->engineAdded(engine, error);
            });
    });
}

void RightPanelView::Impl::engineAdded(const std::optional<EngineConfiguration>& engine,
                                       const std::optional<QString>& error) {
    isAddingEngine_ = false;
    setCheckingEngine(false);
    if (!engine) {
        state_.engineAddError = engineAddErrorText(error);
        state_.showEngineAddAlert = true;
        showEngineAddAlert();
        return;
    }
    showToast(extraText(context_.loc.currentLanguage(), ExtraText::engineAdded).arg(engine->name));
    // The one just added takes the seats that nobody has; the next game is played with it.
    if (!context_.engines.selectedWhiteEngine()) context_.engines.setSelectedWhiteEngine(engine);
    if (!context_.engines.selectedBlackEngine()) context_.engines.setSelectedBlackEngine(engine);
}

void RightPanelView::Impl::setCheckingEngine(bool isChecking) {
    isCheckingEngine_ = isChecking;
    if (auto* tab = qobject_cast<EnginesTab*>(pages_[enginesTab])) tab->setCheckingEngine(isChecking);
}

void RightPanelView::Impl::showEngineAddAlert() {
    auto* alert = new QMessageBox(QMessageBox::Warning, QStringLiteral("Engine Error"),
                                  state_.engineAddError.value_or(QString()), QMessageBox::Ok, &view_);
    // The error quotes what the system said, which may look like markup.
    alert->setTextFormat(Qt::PlainText);
#ifndef Q_OS_MACOS
    alert->setIconPixmap(iconPixmap(Icon::warning, context_.theme.color(ColorRole::caution), alertSymbol,
                                    view_.devicePixelRatioF()));
#else
    // Alerts show no window title there: it becomes the heading of the text.
    alert->setInformativeText(alert->text());
    alert->setText(QStringLiteral("Engine Error"));
#endif
    alert->setObjectName(QStringLiteral("engineAddAlert"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setPalette(context_.theme.palette());
    QObject::connect(alert, &QDialog::finished, &view_, [this] {
        state_.showEngineAddAlert = false;
        state_.engineAddError.reset();
    });
    alert->open();
}

RightPanelView::RightPanelView(GameManager& game, EngineManager& engines, LocalizationManager& loc,
                               AutomatchManager& automatch, Theme& theme, PGNExporter& exporter,
                               TimeSource& time, QWidget* parent, AssistiveTechnology& listener)
    : QWidget(parent),
      impl_(std::make_unique<Impl>(
          PanelContext{game, engines, loc, automatch, theme, exporter, time, listener}, *this)) {
    setMinimumWidth(minimumPanelWidth);
    setMaximumWidth(maximumPanelWidth);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(impl_->tabs_, &TabBar::chosen, this, &RightPanelView::setSelectedTab);
    // The bars have set their new texts by now; they were connected first.
    connect(&loc, &LocalizationManager::changed, this, [this] { impl_->arrange(); });
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    impl_->select(0);
}

RightPanelView::~RightPanelView() = default;

void RightPanelView::setSelectedTab(int index) {
    impl_->select(index);
}

int RightPanelView::selectedTab() const {
    return impl_->state_.selectedTab;
}

void RightPanelView::showToast(const QString& message) {
    impl_->showToast(message);
}

QString RightPanelView::toastMessage() const {
    return impl_->state_.toastMessage.value_or(QString());
}

QSize RightPanelView::sizeHint() const {
    return {minimumPanelWidth, 740};
}

void RightPanelView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const Theme& theme = impl_->context_.theme;
    const QColor ground = theme.color(ColorRole::panel);
    painter.fillRect(event->rect(), ground);
    const QColor line = theme.hairlineOn(ground);
    painter.fillRect(0, PanelHeader::barHeight, width(), 1, line);
    painter.fillRect(0, impl_->tabs_->geometry().bottom() + 1, width(), 1, line);
    painter.fillRect(0, impl_->bottom_->y() - 1, width(), 1, line);
    painter.fillRect(0, 0, 1, height(), line);
}

void RightPanelView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    impl_->arrange();
}

}  // namespace orlix
