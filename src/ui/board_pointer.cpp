#include "ui/board_pointer.h"

#include <QApplication>
#include <utility>

#include "game/game_manager.h"

namespace orlix {

bool isPieceToMove(const GameManager& game, Square square) {
    if (game.isGameOver() || game.isPaused() || game.isInspectingPast() || game.pendingPromotion()) {
        return false;
    }
    const PieceColor turn = game.board().turn;
    switch (game.gameMode()) {
        case GameMode::humanVsHuman: break;
        case GameMode::humanVsEngine:
            if (turn != game.humanColor()) return false;
            break;
        case GameMode::engineVsEngine: return false;
    }
    const std::optional<Piece>& piece = game.board()[square];
    return piece && piece->color == turn;
}

std::optional<Square> BoardPointer::pressedSquare() const {
    if (stage_ == Stage::pressed || stage_ == Stage::lifted) return square_;
    return std::nullopt;
}

std::optional<Square> BoardPointer::liftedSquare() const {
    if (stage_ == Stage::lifted || stage_ == Stage::dragged) return square_;
    return std::nullopt;
}

void BoardPointer::press(std::optional<Square> square, const QPointF& position) {
    stage_ = square ? Stage::pressed : Stage::up;
    square_ = square.value_or(Square());
    start_ = position_ = position;
}

void BoardPointer::move(std::optional<Square> square, const QPointF& position) {
    if (stage_ == Stage::up) return;
    position_ = position;
    if (stage_ == Stage::dragged) return;
    if (square == square_) {
        const bool isFar = (position - start_).manhattanLength() >= QApplication::startDragDistance();
        if (isFar && isPieceToMove(game_, square_)) stage_ = Stage::lifted;
        return;
    }
    if (isPieceToMove(game_, square_)) {
        stage_ = Stage::lifted;
        if (game_.selectedSquare() != square_) game_.handleSquareClick(square_);
        // Whoever heard of the click may have changed everything.
        if (stage_ == Stage::lifted && game_.selectedSquare() == square_) {
            stage_ = Stage::dragged;
            return;
        }
    }
    stage_ = Stage::up;
}

BoardPointer::Release BoardPointer::release(std::optional<Square> square, const QPointF& position) {
    // The last way to here may not have been told as a move.
    move(square, position);
    const Stage stage = std::exchange(stage_, Stage::up);
    switch (stage) {
        case Stage::up: return {};
        case Stage::pressed:
        case Stage::lifted: return {square_, std::nullopt};
        case Stage::dragged: return {std::nullopt, Drop{square_, square}};
    }
    return {};
}

void BoardPointer::reconsider(bool isOtherPosition) {
    if (!liftedSquare()) return;
    const bool isStillHeld = !isOtherPosition && isPieceToMove(game_, square_);
    if (stage_ == Stage::lifted) {
        if (!isStillHeld) stage_ = Stage::pressed;
    } else if (!isStillHeld || game_.selectedSquare() != square_) {
        stage_ = Stage::up;
    }
}

}  // namespace orlix
