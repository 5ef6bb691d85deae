// The installed program as a person meets it: started in an empty home with one engine in its registry, seen
// through its picture and its accessible names, worked by pointer and keyboard. The engine is the real
// Stockfish behind a script that writes the dialogue down. Main thread; the destructor leaves no process
// behind.
#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <optional>
#include <string>

#include "core/move.h"
#include "core/piece.h"
#include "e2e/accessible_tree.h"
#include "e2e/desktop.h"

namespace orlix::e2e {

class PlayedApplication {
  public:
    /// Throws std::runtime_error when the program shows no window.
    PlayedApplication(Desktop& desktop, AccessibleTree& tree, const QString& program);
    ~PlayedApplication();
    PlayedApplication(const PlayedApplication&) = delete;
    PlayedApplication& operator=(const PlayedApplication&) = delete;

    qint64 processId() const { return process_.processId(); }
    bool isRunning() const { return process_.state() != QProcess::NotRunning; }
    int exitCode() const { return process_.exitCode(); }
    QString home() const { return home_.path(); }
    /// The name of the engine in the registry.
    static QString engineName() { return QStringLiteral("Stockfish"); }

    /// Clicks the control with this accessible name; the topmost on the screen when there are several. Throws
    /// when there is none.
    void clickControl(const QString& name);
    /// The same for a control of the New game tab, scrolled into view first.
    void clickSetting(const QString& name);
    /// Clicks the slider of that tab with this accessible name at its least value; it then has the focus.
    void setSliderToLeast(const QString& name);
    /// Starts a new game through the New game tab, its engines thinking for `tenths` tenths of a second a
    /// move, in the game mode with this name.
    void startGame(const QString& mode, int tenths);

    /// The 64 squares on the screen, found by the two colours of the board; empty when there are none.
    QRect findBoard() const;
    /// The program's window without its frame.
    QImage windowPicture() const;
    /// Clicks both squares of the move, and the piece in the promotion picker when it needs one.
    void clickMove(const Move& move);
    /// Whether the square has the tint of the last move.
    bool isLastMove(Square square) const;

    /// Lines that the program wrote to the engine, and lines that it got back, so far.
    QStringList sentLines() const { return lines(QStringLiteral("sent")); }
    QStringList receivedLines() const { return lines(QStringLiteral("received")); }

    /// Saves the game through the menu's shortcut and the save dialog.
    void savePgn(const QString& path);
    /// Asks the window to close, as its close button does.
    void closeWindow();
    /// Processes, the program's own included, that were started in this home and still run.
    QStringList processesLeft() const;

    /// Throws std::runtime_error with a picture of the screen written beside it.
    [[noreturn]] void fail(const std::string& why) const;

  private:
    QPoint squareCenter(Square square) const;
    AccessibleNode control(const QString& name) const;
    AccessibleNode setting(const QString& name) const;
    QStringList lines(const QString& log) const;
    void writeEngine(const QString& script) const;
    void writeRegistry(const QString& engine) const;

    Desktop& desktop_;
    AccessibleTree& tree_;
    QTemporaryDir home_;
    QProcess process_;
    QRect board_;
};

}  // namespace orlix::e2e
