#include "ui/board_picture.h"

namespace orlix {

namespace {

// While a ply is inspected the highlight belongs to the position shown: it is that ply's move.
std::optional<Move> shownMove(const GameManager& game) {
    const std::optional<qint64>& index = game.inspectingMoveIndex();
    const std::vector<MoveRecord>& history = game.board().history;
    if (index && *index >= 0 && *index < static_cast<qint64>(history.size())) {
        return history[static_cast<std::size_t>(*index)].move;
    }
    return game.lastMove();
}

void markCheck(BoardPicture& picture, const ChessBoard& board) {
    const std::optional<Square> king = board.findKing(board.turn);
    if (!king || !board.isSquareAttacked(*king, opponent(board.turn))) return;
    for (BoardPicture::Cell& cell : picture.cells) {
        cell.isInCheck = cell.piece && cell.piece->type == PieceType::king && cell.piece->color == board.turn;
    }
}

void markSelection(BoardPicture& picture, const GameManager& game, const ChessBoard& board) {
    // The selection stays with the live game; on a past position its squares would mean nothing.
    if (game.isInspectingPast() || !game.selectedSquare()) return;
    const Square selected = *game.selectedSquare();
    picture[selected].isSelected = true;
    const bool isPawn = board[selected] && board[selected]->type == PieceType::pawn;
    for (const Square target : game.legalDestinationSquares()) {
        const bool isCapture = board[target].has_value() || (isPawn && board.enPassantTarget == target);
        picture[target].target = isCapture ? BoardPicture::Target::ring : BoardPicture::Target::dot;
    }
}

}  // namespace

BoardPicture BoardPicture::of(const GameManager& game) {
    BoardPicture picture;
    const ChessBoard& board = game.displayedBoard();
    for (std::size_t index = 0; index < picture.cells.size(); ++index) {
        if (const std::optional<Piece>& piece = board.squares[index]) {
            picture.cells[index].piece = PieceLook{piece->type, piece->color};
        }
    }
    picture.isFlipped = game.isFlipped();
    if (const std::optional<Move> move = shownMove(game)) {
        picture[move->from].isLastMove = true;
        picture[move->to].isLastMove = true;
    }
    markCheck(picture, board);
    markSelection(picture, game, board);
    if (const std::optional<GameManager::PendingPromotion>& pending = game.pendingPromotion()) {
        const std::optional<Piece>& pawn = game.board()[pending->from];
        picture.promotingColor = pawn ? pawn->color : game.board().turn;
    }
    return picture;
}

}  // namespace orlix
