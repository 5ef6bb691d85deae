#include "e2e/soak_windows.h"

#include <QElapsedTimer>
#include <stdexcept>

#include "e2e/desktop.h"

// After Qt's headers: Xlib defines macros over common words.
#include <X11/Xlib.h>

namespace orlix::e2e {

namespace {

Display* asDisplay(void* display) {
    return static_cast<Display*>(display);
}

// A dialog may close between the look at the list and the question about it.
int ignoreError(Display*, XErrorEvent*) {
    return 0;
}

// The windows that a property of the root window lists.
QList<unsigned long> windowsIn(Display* display, const char* property) {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(display, XDefaultRootWindow(display), XInternAtom(display, property, False), 0, 1024,
                       False, AnyPropertyType, &type, &format, &count, &left, &value);
    QList<unsigned long> windows;
    if (value != nullptr && format == 32) {
        const auto* all = reinterpret_cast<const unsigned long*>(value);
        for (unsigned long index = 0; index < count; ++index)
            windows << all[index];
    }
    if (value != nullptr) XFree(value);
    return windows;
}

}  // namespace

SoakWindows::SoakWindows(const QString& displayName)
    : display_(XOpenDisplay(displayName.toLatin1().constData())) {
    if (display_ == nullptr) throw std::runtime_error("no connection to the X server");
    XSetErrorHandler(ignoreError);
    Display* display = asDisplay(display_);
    // Answers to the question whether a program runs go to the root window.
    XSelectInput(display, XDefaultRootWindow(display), StructureNotifyMask | SubstructureNotifyMask);
}

SoakWindows::~SoakWindows() {
    XCloseDisplay(asDisplay(display_));
}

QList<unsigned long> SoakWindows::managed() const {
    return windowsIn(asDisplay(display_), "_NET_CLIENT_LIST");
}

bool SoakWindows::isManaging() const {
    // The property outlives a window manager that was killed; the window that it names does not.
    const QList<unsigned long> mark = windowsIn(asDisplay(display_), "_NET_SUPPORTING_WM_CHECK");
    return !mark.isEmpty() && !area(mark.constFirst()).isEmpty();
}

QRect SoakWindows::area(unsigned long window) const {
    Display* display = asDisplay(display_);
    Window root = 0;
    Window child = 0;
    int x = 0;
    int y = 0;
    unsigned width = 0;
    unsigned height = 0;
    unsigned border = 0;
    unsigned depth = 0;
    if (XGetGeometry(display, window, &root, &x, &y, &width, &height, &border, &depth) == 0) return {};
    if (XTranslateCoordinates(display, window, root, 0, 0, &x, &y, &child) == 0) return {};
    return {x, y, static_cast<int>(width), static_cast<int>(height)};
}

void SoakWindows::activate(unsigned long window) {
    constexpr long fromPager = 2;  // the person's own wish, which a window manager does not weigh
    Display* display = asDisplay(display_);
    XEvent request{};
    request.xclient.type = ClientMessage;
    request.xclient.window = window;
    request.xclient.message_type = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
    request.xclient.format = 32;
    request.xclient.data.l[0] = fromPager;
    request.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, XDefaultRootWindow(display), False, SubstructureRedirectMask | SubstructureNotifyMask,
               &request);
    XFlush(display);
}

void SoakWindows::askToClose(unsigned long window) {
    Display* display = asDisplay(display_);
    XEvent request{};
    request.xclient.type = ClientMessage;
    request.xclient.window = window;
    request.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    request.xclient.format = 32;
    request.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    request.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, window, False, NoEventMask, &request);
    XFlush(display);
}

std::optional<int> SoakWindows::answerTime(unsigned long window, int limitMs) {
    Display* display = asDisplay(display_);
    const Atom ping = XInternAtom(display, "_NET_WM_PING", False);
    ++serial_;
    XEvent question{};
    question.xclient.type = ClientMessage;
    question.xclient.window = window;
    question.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    question.xclient.format = 32;
    question.xclient.data.l[0] = static_cast<long>(ping);
    question.xclient.data.l[1] = serial_;
    question.xclient.data.l[2] = static_cast<long>(window);
    QElapsedTimer timer;
    timer.start();
    XSendEvent(display, window, False, NoEventMask, &question);
    XFlush(display);
    bool isAnswered = false;
    while (!isAnswered && timer.elapsed() <= limitMs) {
        waitUntil([&] { return XPending(display) > 0; }, limitMs - static_cast<int>(timer.elapsed()));
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            // An earlier question may be answered late; its answer is not this one's.
            if (event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == ping &&
                event.xclient.data.l[1] == serial_)
                isAnswered = true;
        }
    }
    if (!isAnswered) return std::nullopt;
    return static_cast<int>(timer.elapsed());
}

}  // namespace orlix::e2e
