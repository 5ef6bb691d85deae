// The board in words, for assistive technology: one square, one move, and what has changed since it was last
// asked. Main thread only; nobody asks while no assistive technology is active.
#pragma once

#include <QString>
#include <optional>
#include <string>

#include "core/move_record.h"
#include "ui/board_picture.h"

namespace orlix {

class GameManager;
class LocalizationManager;

/// "e4, white pawn, selected, last move".
QString squareInWords(Square square, const BoardPicture::Cell& cell, const LocalizationManager& loc);
/// "white pawn from e4 to d5, captured: black pawn".
QString moveInWords(const MoveRecord& record, const LocalizationManager& loc);

/// Tells what a player at the board would have seen happen: moves, check, the end, a promotion that waits.
class BoardNarrator {
  public:
    /// Both outlive the narrator.
    BoardNarrator(const GameManager& game, const LocalizationManager& loc) : game_(game), loc_(loc) {}

    /// What has happened since the last call; empty for nothing, and at the first one.
    QString news();
    /// The next call begins anew, without telling what was missed.
    void forget() { seen_.reset(); }

  private:
    struct Seen {
        std::size_t plies = 0;
        std::string lastPosition;         ///< after the last ply
        std::optional<qint64> inspected;  ///< only a past ply
        QString status;                   ///< text key
        bool isPromoting = false;
    };
    Seen look() const;
    QString moveNews(const Seen& before, const Seen& now) const;
    QString statusNews(const Seen& before, const Seen& now, bool hasMoved) const;

    const GameManager& game_;
    const LocalizationManager& loc_;
    std::optional<Seen> seen_;
};

}  // namespace orlix
