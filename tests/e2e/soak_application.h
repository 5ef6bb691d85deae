// The program in an empty home with two misbehaving engines in its registry, watched from outside: what it
// costs, what it says on standard error, what it leaves behind. Main thread; the destructor leaves no process
// of its own behind.
#pragma once

#include <QList>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>
#include <optional>
#include <string>

#include "e2e/accessible_tree.h"
#include "e2e/desktop.h"
#include "e2e/soak_windows.h"
#include "l10n/language.h"

namespace orlix::e2e {

/// What a process holds at one moment.
struct SoakFigures {
    qint64 anonymousKib = 0;  ///< memory of its own
    qint64 pssKib = 0;        ///< with its share of what it has in common with others
    int descriptors = 0;
    int threads = 0;
};

/// The lines of `written` that are not among `known`, word for word.
QStringList unknownMessages(const QByteArray& written, const QStringList& known);
/// The lines of a list of messages; a line that starts with '#' is a remark.
QStringList messageList(const QByteArray& file);

class SoakedApplication {
  public:
    /// `engine` is the scripted engine. Throws std::runtime_error when the program shows no board.
    SoakedApplication(Desktop& desktop, AccessibleTree& tree, const QString& program, const QString& engine);
    ~SoakedApplication();
    SoakedApplication(const SoakedApplication&) = delete;
    SoakedApplication& operator=(const SoakedApplication&) = delete;

    Desktop& desktop() const { return desktop_; }
    qint64 processId() const { return process_.processId(); }
    bool isRunning() const { return process_.state() != QProcess::NotRunning; }
    SoakFigures figures() const;
    /// What the open descriptors lead to, one text each.
    QStringList descriptors() const;
    /// Processes other than the program that were started in this home and still run.
    QStringList otherProcesses() const;
    QStringList unknownMessages() const;

    /// The window without its frame.
    QRect window() const { return windows_->area(mainWindow_); }
    const QRect& board() const { return board_; }
    /// Whether a dialog is open beside the window.
    bool hasDialog() const { return windows_->managed().size() > 1; }
    /// Gives the newest dialog the keyboard: a window manager may leave it with the window when a click there
    /// came before the dialog.
    void activateDialog() const;
    /// Throws when the program has ended, does not answer within the limit, or wrote an unknown message.
    /// Returns the milliseconds until it answered.
    int check(int answerLimitMs);

    /// The control with the text of `key` in any language; the topmost on the screen when there are several.
    std::optional<QPoint> control(const char* key);
    /// The picker of the window's language, and the language that it shows.
    std::optional<QRect> languagePicker();
    std::optional<Language> language();
    /// The pickers of engines on the open page.
    QList<QRect> enginePickers();
    /// Switches the colours of the system that the program runs in.
    void setDark(bool isDark) const;
    /// Paths of registered engines that the program's store does not hold any more.
    QStringList missingEngines() const;
    /// Where the registered engines stand in the list of all, and how long that list is.
    QList<int> engineRows() const;
    int engineCount() const;

    /// Closes the window as its close button does and gives the exit code; nothing when it does not end.
    std::optional<int> close();
    /// Throws std::runtime_error with a picture of the screen written beside it.
    [[noreturn]] void fail(const std::string& why) const;

  private:
    void writeEngines(const QString& engine);
    void writeColors(bool isDark) const;
    QRect findBoard() const;
    std::optional<AccessibleNode> pickerNode();

    Desktop& desktop_;
    AccessibleTree& tree_;
    QTemporaryDir home_;
    QProcess process_;
    QStringList enginePaths_;
    std::unique_ptr<SoakWindows> windows_;
    unsigned long mainWindow_ = 0;
    QRect board_;
    QStringList known_;
};

}  // namespace orlix::e2e
