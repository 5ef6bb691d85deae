// The live log of one engine: the last few hundred lines sent and received. Owned by the engine process; main
// thread only. Received lines stay UTF-8 until somebody looks, so that a flood costs next to nothing a line.
#pragma once

#include <QString>
#include <QStringList>
#include <deque>
#include <string>

namespace orlix {

class EngineLog {
  public:
    static constexpr std::size_t fullSize = 301;
    static constexpr std::size_t droppedAtOnce = 50;

    /// Appends one entry as it stands. A full log first drops its oldest fifty.
    void append(QString entry);
    /// Appends "< " and the line, which is UTF-8.
    void appendReceived(std::string line);

    /// Oldest first, at most 301 entries; valid until the next append.
    const QStringList& lines() const;

  private:
    struct Entry {
        QString text;
        std::string received;  // while not empty, `text` is still to be made from it
    };

    void makeRoom();

    mutable std::deque<Entry> entries_;
    mutable QStringList lines_;
    mutable bool isCurrent_ = true;  // `lines_` says what `entries_` says
};

}  // namespace orlix
