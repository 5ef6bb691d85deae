// Judges from outside when a program's window is painted: start_probe [--picture <file.ppm>] <program>
// [argument]... The X server's background gets a colour that nobody paints. A window without a background
// shows it until its program has painted; the window counts as painted when not one pixel of that colour is
// left. Prints the milliseconds from fork to that moment, then ends the program.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned long nobodysColor = 0xFE01FD;
constexpr auto pollInterval = std::chrono::microseconds(500);
constexpr auto limit = std::chrono::seconds(60);

struct Area {
    int x, y, width, height;
};

// Waits for the first large window that comes onto the screen, without asking for it: questions would keep
// the server and a core busy while the program starts.
std::optional<Area> nextMappedWindow(Display* display, std::chrono::milliseconds longest) {
    pollfd answer{ConnectionNumber(display), POLLIN, 0};
    if (XPending(display) == 0) poll(&answer, 1, static_cast<int>(longest.count()));
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type != MapNotify) continue;
        XWindowAttributes attributes;
        if (XGetWindowAttributes(display, event.xmap.window, &attributes) == 0) continue;
        if (attributes.width > 400 && attributes.height > 300)
            return Area{attributes.x, attributes.y, attributes.width, attributes.height};
    }
    return std::nullopt;
}

bool hasNobodysColor(Display* display, const Area& area, const char* picture) {
    XImage* image =
        XGetImage(display, DefaultRootWindow(display), area.x, area.y, static_cast<unsigned>(area.width),
                  static_cast<unsigned>(area.height), AllPlanes, ZPixmap);
    if (image == nullptr) return true;
    bool found = false;
    for (int y = 0; y < area.height && !found; ++y)
        for (int x = 0; x < area.width && !found; ++x)
            found = (XGetPixel(image, x, y) & 0xFFFFFF) == nobodysColor;
    if (!found && picture != nullptr) {
        if (FILE* file = std::fopen(picture, "wb")) {
            std::fprintf(file, "P6\n%d %d\n255\n", area.width, area.height);
            for (int y = 0; y < area.height; ++y) {
                for (int x = 0; x < area.width; ++x) {
                    const unsigned long pixel = XGetPixel(image, x, y);
                    for (const int shift : {16, 8, 0})
                        std::fputc(static_cast<int>(pixel >> shift & 0xFF), file);
                }
            }
            std::fclose(file);
        }
    }
    XDestroyImage(image);
    return found;
}

Area cornerOf(const Area& area) {
    return {area.x + area.width - 4, area.y + area.height - 4, 4, 4};
}

}  // namespace

int main(int argc, char** argv) {
    const char* picture = nullptr;
    const char* then = nullptr;
    int first = 1;
    for (; first + 1 < argc; first += 2) {
        if (std::strcmp(argv[first], "--picture") == 0)
            picture = argv[first + 1];
        else if (std::strcmp(argv[first], "--then") == 0)
            then = argv[first + 1];
        else
            break;
    }
    Display* display = XOpenDisplay(nullptr);
    if (first >= argc || display == nullptr) {
        std::fputs(
            "usage: start_probe [--picture <file.ppm>] [--then <command>] <program> [argument]..., "
            "with a DISPLAY\n",
            stderr);
        return 2;
    }
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // a window may go while it is looked at
    XSetWindowBackground(display, DefaultRootWindow(display), nobodysColor);
    XClearWindow(display, DefaultRootWindow(display));
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, 0);

    const Clock::time_point start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(argv[first], argv + first);
        std::perror(argv[first]);
        _exit(127);
    }
    bool painted = false;
    Clock::time_point end = start;
    std::optional<Area> area;
    while (!painted && Clock::now() - start < limit && waitpid(child, nullptr, WNOHANG) == 0) {
        if (!area) {
            area = nextMappedWindow(display, std::chrono::milliseconds(20));
            continue;
        }
        // The last corner first: it is cheap to ask for.
        if (!hasNobodysColor(display, cornerOf(*area), nullptr)) {
            end = Clock::now();
            painted = !hasNobodysColor(display, *area, picture);
        }
        if (!painted) std::this_thread::sleep_for(pollInterval);
    }
    if (painted && then != nullptr && std::system((then + (" " + std::to_string(child))).c_str()) != 0)
        std::fprintf(stderr, "failed: %s\n", then);
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    XCloseDisplay(display);
    if (!painted) {
        std::fputs("no painted window\n", stderr);
        return 1;
    }
    std::printf("%.1f\n", std::chrono::duration<double, std::milli>(end - start).count());
    return 0;
}
