#include "ui/main_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <utility>

#include "l10n/localization_manager.h"
#include "platform/system_settings.h"
#include "ui/menus.h"
#include "ui/theme.h"
#include "ui/update_view.h"
#include "update/update_controller.h"

namespace orlix {
namespace {

/// The default size, or what the screen has for a window where that is less; never below the smallest.
QSize sizeOn(const QScreen* screen, QSize smallest) {
    const QSize room = screen != nullptr ? screen->availableSize() : MainWindow::defaultSize;
    return MainWindow::defaultSize.boundedTo(room).expandedTo(smallest);
}

/// Ends in a hairline like the panel's. The style's own is broken after each title on dense screens and
/// stands half a pixel higher there.
class MenuBar : public QMenuBar {
  public:
    MenuBar(const Theme& theme, QWidget* parent) : QMenuBar(parent), theme_(theme) {}

  protected:
    void paintEvent(QPaintEvent* event) override {
        QMenuBar::paintEvent(event);
        const QColor ground = theme_.color(ColorRole::window);
        QPainter painter(this);
        painter.fillRect(0, height() - 2, width(), 1, ground);
        painter.fillRect(0, height() - 1, width(), 1, theme_.hairlineOn(ground));
    }

  private:
    const Theme& theme_;
};

}  // namespace

MainWindow::MainWindow(Theme& theme) : theme_(theme) {
    resize(sizeOn(screen(), QSize()));
}

MainWindow::MainWindow(const MainView::Collaborators& with, UpdateController& updates)
    : MainWindow(with.theme) {
    fill(with, updates);
}

void MainWindow::fill(const MainView::Collaborators& with, UpdateController& updates) {
    auto* menuBar = new MenuBar(theme_, this);
    auto* applicationMenu = new ApplicationMenu(updates, with.loc, menuBar);
    auto* gameMenu = new GameMenu(with.game, with.loc, with.exporter, menuBar);
    // Everything else paints itself; these are the style's, in the theme's colours.
    const auto recolor = [this, menuBar, applicationMenu, gameMenu] {
        for (QWidget* part : {static_cast<QWidget*>(menuBar), static_cast<QWidget*>(applicationMenu),
                              static_cast<QWidget*>(gameMenu)})
            part->setPalette(theme_.palette());
        update();
    };
    connect(&theme_, &Theme::changed, this, recolor);
    recolor();

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->setMenuBar(menuBar);
    auto* view = new MainView(with, this);
    column->addWidget(view);
    view->setFocus();  // so that no control shows a focus ring before the user has asked for one
    // A control that goes lets go of the keyboard; the window itself would hear its keys, but not the view.
    connect(qApp, &QApplication::focusChanged, this, [this, view](QWidget*, QWidget* now) {
        if (!now && isActiveWindow() && !focusWidget()) view->setFocus();
    });

    const auto presentUpdates = [this, &updates, &loc = with.loc, &system = with.system] {
        if (updateSheet_ != nullptr || !updates.isPresented()) return;
        updateSheet_ = new UpdateView(updates, loc, theme_, !system.prefersReducedMotion(), this);
    };
    connect(&updates, &UpdateController::changed, this, presentUpdates);

    const auto retitle = [this, &loc = with.loc] { setWindowTitle(loc.text("app_title")); };
    connect(&with.loc, &LocalizationManager::changed, this, retitle);
    retitle();
    resize(sizeOn(screen(), column->totalMinimumSize()));
    column->activate();
    view->prepareFirstPicture();
}

MainWindow::~MainWindow() {
    // The view goes first, and its controls let go of the keyboard one by one.
    disconnect(qApp, nullptr, this, nullptr);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    // Space belongs to the pause command, so Return presses the button that has the focus. The button itself
    // leaves the key to its parents.
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto* button = qobject_cast<QAbstractButton*>(focusWidget());
    if (isReturn && button != nullptr && button->hasFocus() && !event->isAutoRepeat()) {
        button->click();
        return;
    }
    QWidget::keyPressEvent(event);
}

void MainWindow::paintEvent(QPaintEvent*) {
    if (!std::exchange(wasPainted_, true))
        QMetaObject::invokeMethod(this, &MainWindow::firstPainted, Qt::QueuedConnection);
    QPainter(this).fillRect(rect(), theme_.color(ColorRole::window));
}

}  // namespace orlix
