// The installed program as a person meets it: started in an empty home with the given engines in its
// registry, seen through its picture and its accessible names, worked by pointer and keyboard. Unless a test
// brings its own, the engine is the real Stockfish behind a script that writes the dialogue down. Main
// thread; the destructor leaves no process behind.
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

/// An engine of the registry: its name, and the line that a shell in the program's home runs for it.
struct PlayedEngine {
    QString name;
    QString command;
};

class PlayedApplication {
  public:
    /// `variables` ("NAME=value") are added to the program's environment. Throws std::runtime_error when the
    /// program shows no window.
    PlayedApplication(Desktop& desktop, AccessibleTree& tree, const QString& program,
                      const QList<PlayedEngine>& engines = {recordedStockfish()},
                      const QStringList& variables = {});
    ~PlayedApplication();
    PlayedApplication(const PlayedApplication&) = delete;
    PlayedApplication& operator=(const PlayedApplication&) = delete;

    qint64 processId() const { return process_.processId(); }
    bool isRunning() const { return process_.state() != QProcess::NotRunning; }
    int exitCode() const { return process_.exitCode(); }
    QString home() const { return home_.path(); }
    /// Stockfish, with its dialogue in the files "sent" and "received" of the home.
    static PlayedEngine recordedStockfish();

    /// Clicks the control with this accessible name; the topmost on the screen when there are several. Throws
    /// when there is none.
    void clickControl(const QString& name);
    /// The same for a control of the New game tab, scrolled into view first.
    void clickSetting(const QString& name);
    /// Clicks the slider of that tab with this accessible name where it takes this value. Throws when no
    /// place on it does.
    void setSlider(const QString& name, int value);
    /// Opens the list of the button with this accessible name and clicks its item `index`, counted from 0.
    /// The open list is a window of its own that does not describe itself: the place is known by its look.
    void chooseFromList(const QString& name, int index);
    /// Starts a new game through the New game tab, its engines thinking for `tenths` tenths of a second a
    /// move, in the game mode with this name.
    void startGame(const QString& mode, int tenths);
    /// The same without a clock, its engines searching `depth` plies a move.
    void startGameAtDepth(const QString& mode, int depth);

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
    AccessibleNode control(const QString& name, const QString& role = {}) const;
    AccessibleNode setting(const QString& name, const QString& role = {}) const;
    QStringList lines(const QString& log) const;
    void writeEngines(const QList<PlayedEngine>& engines) const;

    Desktop& desktop_;
    AccessibleTree& tree_;
    QTemporaryDir home_;
    QProcess process_;
    QRect board_;
};

}  // namespace orlix::e2e
