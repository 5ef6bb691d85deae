// The windows of a program as its window manager sees them: which there are, where they stand, and whether
// the program still answers for them. Owned by a SoakedApplication; main thread. Windows may vanish at any
// moment.
#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <optional>

namespace orlix::e2e {

class SoakWindows {
  public:
    /// Throws std::runtime_error when the display does not answer.
    explicit SoakWindows(const QString& displayName);
    ~SoakWindows();
    SoakWindows(const SoakWindows&) = delete;
    SoakWindows& operator=(const SoakWindows&) = delete;

    /// The managed windows, oldest first; menus and pop-up lists are not among them.
    QList<unsigned long> managed() const;
    /// Whether the window manager that these functions ask still runs.
    bool isManaging() const;
    /// On the screen, without the frame; empty for a window that is gone.
    QRect area(unsigned long window) const;
    /// Asks the program's event loop whether it runs. The milliseconds until the answer, or nothing after
    /// `limitMs`.
    std::optional<int> answerTime(unsigned long window, int limitMs);

    /// Gives a window the keyboard, as a click on its title does.
    void activate(unsigned long window);
    /// Asks for the end of a window as its close button does; the window manager is not needed for it.
    void askToClose(unsigned long window);

  private:
    void* display_;  ///< Xlib's Display; its header defines macros over common words
    long serial_ = 0;
};

}  // namespace orlix::e2e
