#include "e2e/desktop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <stdexcept>

// After Qt's headers: Xlib defines macros over common words.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace orlix::e2e {

namespace {

constexpr int startLimitMs = 60000;
constexpr int repeatPauseMs = 300;  // a repeated click finds nothing to wait for

// The first line that a starting helper writes; throws when none comes.
QString firstLine(QProcess& process) {
    QElapsedTimer timer;
    timer.start();
    while (!process.canReadLine()) {
        if (timer.elapsed() > startLimitMs || process.state() == QProcess::NotRunning)
            throw std::runtime_error(process.program().toStdString() + " did not start");
        process.waitForReadyRead(100);
    }
    return QString::fromUtf8(process.readLine()).trimmed();
}

// A window manager says that it manages by a property of the root window. A window that appears before is
// placed twice, or never.
bool isManaged(const QString& displayName) {
    Display* display = XOpenDisplay(displayName.toLatin1().constData());
    if (display == nullptr) return false;
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(display, XDefaultRootWindow(display),
                       XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False), 0, 1, False, AnyPropertyType,
                       &type, &format, &count, &left, &value);
    if (value != nullptr) XFree(value);
    XCloseDisplay(display);
    return count > 0;
}

void end(QProcess& process) {
    if (process.state() == QProcess::NotRunning) return;
    process.terminate();
    if (!process.waitForFinished(5000)) process.kill();
    process.waitForFinished(1000);
}

}  // namespace

bool waitUntil(const std::function<bool()>& condition, int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > milliseconds) return false;
        QCoreApplication::processEvents();
        QThread::msleep(20);
    }
    return true;
}

Desktop::Desktop() {
    server_.start(QStringLiteral("Xvfb"),
                  {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                   QStringLiteral("0"), QStringLiteral("1400x1000x24"), QStringLiteral("-nolisten"),
                   QStringLiteral("tcp"), QStringLiteral("-noreset")});
    display_ = u':' + firstLine(server_);
    bus_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                               QStringLiteral("--print-address=1")});
    busAddress_ = firstLine(bus_);
    windowManager_.setProcessEnvironment(environment());
    windowManager_.setStandardErrorFile(QProcess::nullDevice());
    windowManager_.start(QStringLiteral("openbox"), {});
    if (!waitUntil([this] { return isManaged(display_); }, startLimitMs))
        throw std::runtime_error("openbox did not start");
}

Desktop::~Desktop() {
    end(windowManager_);
    end(bus_);
    end(server_);
}

QProcessEnvironment Desktop::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), display_);
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress_);
    if (isAccessible_)
        environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    environment.remove(QStringLiteral("AT_SPI_BUS_ADDRESS"));
    return environment;
}

void Desktop::repeat(const QList<QStringList>& input) const {
    for (const QStringList& arguments : input) {
        xdotool(arguments);
        waitUntil([] { return false; }, repeatPauseMs);
    }
}

void Desktop::xdotool(const QStringList& arguments) const {
    input_ << arguments;
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(QStringLiteral("xdotool"), arguments);
    if (!process.waitForFinished(startLimitMs) || process.exitCode() != 0)
        throw std::runtime_error("xdotool failed: " + arguments.join(u' ').toStdString());
}

void Desktop::moveTo(QPoint position) const {
    xdotool({QStringLiteral("mousemove"), QString::number(position.x()), QString::number(position.y())});
}

void Desktop::scrollDown(QPoint position) const {
    xdotool({QStringLiteral("mousemove"), QString::number(position.x()), QString::number(position.y()),
             QStringLiteral("click"), QStringLiteral("5")});
}

void Desktop::click(QPoint position) const {
    xdotool({QStringLiteral("mousemove"), QString::number(position.x()), QString::number(position.y()),
             QStringLiteral("click"), QStringLiteral("1")});
}

void Desktop::press(const QString& key) const {
    xdotool({QStringLiteral("key"), key});
}

void Desktop::type(const QString& text) const {
    xdotool({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("5"), text});
}

QString Desktop::clipboard() const {
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(QStringLiteral("xclip"),
                  {QStringLiteral("-o"), QStringLiteral("-selection"), QStringLiteral("clipboard"),
                   QStringLiteral("-target"), QStringLiteral("UTF8_STRING")});
    if (!process.waitForFinished(startLimitMs)) throw std::runtime_error("xclip does not end");
    return process.exitCode() == 0 ? QString::fromUtf8(process.readAllStandardOutput()) : QString();
}

QImage Desktop::screen() const {
    Display* display = XOpenDisplay(display_.toLatin1().constData());
    if (display == nullptr) throw std::runtime_error("no connection to the X server");
    const int screen = XDefaultScreen(display);
    const int width = XDisplayWidth(display, screen);
    const int height = XDisplayHeight(display, screen);
    XImage* source = XGetImage(display, XDefaultRootWindow(display), 0, 0, static_cast<unsigned>(width),
                               static_cast<unsigned>(height), AllPlanes, ZPixmap);
    QImage picture;
    if (source != nullptr) {
        picture = QImage(reinterpret_cast<const uchar*>(source->data), width, height, source->bytes_per_line,
                         QImage::Format_RGB32)
                      .copy();
        XDestroyImage(source);
    }
    XCloseDisplay(display);
    return picture;
}

}  // namespace orlix::e2e
