#include "ui/app_delegate.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>

#include "update/update_controller.h"

namespace orlix {

AppDelegate::AppDelegate(UpdateController& updates, QObject* parent) : QObject(parent), updates_(updates) {
    QGuiApplication::setQuitOnLastWindowClosed(applicationShouldTerminateAfterLastWindowClosed());
    QCoreApplication::instance()->installEventFilter(this);
}

void AppDelegate::applicationDidFinishLaunching(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
    window_ = &window;
    updates_.handleLaunch();
}

TerminationReply AppDelegate::applicationShouldTerminate() {
    return updates_.launchScheduledInstallerIfNeeded();
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) return false;
    if (applicationShouldTerminate() == TerminationReply::terminateNow) return false;
    event->ignore();
    // It may have been closed already: that is how most users quit.
    if (window_ && !window_->isVisible()) window_->show();
    return true;
}

}  // namespace orlix
