#include "ui/app_delegate.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>

namespace orlix {

AppDelegate::AppDelegate(QObject* parent) : QObject(parent) {
    QGuiApplication::setQuitOnLastWindowClosed(applicationShouldTerminateAfterLastWindowClosed());
    QCoreApplication::instance()->installEventFilter(this);
}

void AppDelegate::applicationDidFinishLaunching(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

bool AppDelegate::applicationShouldTerminate() {
    return true;
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance()) return false;
    if (applicationShouldTerminate()) return false;
    event->ignore();
    return true;
}

}  // namespace orlix
