// The left mouse button on the board, turned into clicks of the game manager: a press that never leaves its
// square is one click, made on release; a dragged piece is two, its own square and the one it is let go on.
// Owned by the board view, which paints what is told here.
#pragma once

#include <QPointF>
#include <optional>

#include "core/square.h"

namespace orlix {

class GameManager;

/// Whether a click on the square would pick up its piece, or has done so already.
bool isPieceToMove(const GameManager& game, Square square);

class BoardPointer {
  public:
    /// A piece let go: where it came from, and the square under the pointer, if any.
    struct Drop {
        Square from;
        std::optional<Square> to;
    };

    explicit BoardPointer(GameManager& game) : game_(game) {}

    bool isDown() const { return stage_ != Stage::up; }
    /// The square under the button, until the pointer leaves it.
    std::optional<Square> pressedSquare() const;
    /// Where the piece that hangs on the pointer came from.
    std::optional<Square> liftedSquare() const;
    /// The pointer's latest place while the button is down, in the widget's units.
    QPointF position() const { return position_; }

    /// `square` is absent beside the board: then nothing was pressed.
    void press(std::optional<Square> square, const QPointF& position);
    /// May make a drag's first click.
    void move(std::optional<Square> square, const QPointF& position);
    /// What release means: a click on the square it gives, a drop, or nothing. The button is up afterwards;
    /// the click of either is the caller's to make.
    struct Release {
        std::optional<Square> click;
        std::optional<Drop> drop;
    };
    Release release(std::optional<Square> square, const QPointF& position);
    /// Forgets the press; no click follows.
    void cancel() { stage_ = Stage::up; }
    /// To be told when the game has changed. A piece whose turn has passed is let go of; a press that has not
    /// left its square stays a click, for the pointer is still on it.
    void reconsider(bool isOtherPosition);

  private:
    enum class Stage {
        up,
        pressed,  ///< on its square
        lifted,   ///< likewise, but the piece follows the pointer already
        dragged   ///< has left its square, which is selected
    };

    GameManager& game_;
    Stage stage_ = Stage::up;
    Square square_;
    QPointF start_;
    QPointF position_;
};

}  // namespace orlix
