// What a person asks of a game: clicks, promotion, undo, pause, resignation, browsing, positions and replays.
#include <QTextBoundaryFinder>

#include "game/game_manager.h"
#include "game/game_manager_impl.h"

namespace orlix {
namespace {

bool isOnBoard(Square square) {
    return square.file >= 0 && square.file < 8 && square.rank >= 0 && square.rank < 8;
}

/// Whether `move` takes something in the position before it: also a pawn that changes file onto an empty
/// square (en passant).
bool isCapture(const ChessBoard& board, const Move& move) {
    if (board[move.to]) return true;
    const std::optional<Piece>& mover = board[move.from];
    return mover && mover->type == PieceType::pawn && move.from.file != move.to.file;
}

/// The text's characters as a reader counts them.
QStringList characters(const QString& text) {
    QStringList found;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    while (finder.toNextBoundary() > start) {
        found.append(text.mid(start, finder.position() - start));
        start = finder.position();
    }
    return found;
}

/// Reads "e2e4" or "E7E8Q" with white space around it. An unknown fifth character counts as none.
std::optional<Move> moveFromRecord(const QString& text) {
    const QStringList parts = characters(text.trimmed().toLower());
    if (parts.size() != 4 && parts.size() != 5) return std::nullopt;
    const auto from = Square::fromText((parts[0] + parts[1]).toStdString());
    const auto to = Square::fromText((parts[2] + parts[3]).toStdString());
    if (!from || !to) return std::nullopt;
    Move move{*from, *to, std::nullopt};
    if (parts.size() == 5) move.promotion = pieceTypeFromRawValue(parts[4].toStdString());
    return move;
}

std::optional<Move> lastMoveOf(const ChessBoard& board) {
    if (board.history.empty()) return std::nullopt;
    return board.history.back().move;
}

}  // namespace

void GameManager::Impl::selectSquare(Square square) {
    selectedSquare = square;
    legalDestinationSquares.clear();
    for (const Move& move : board.legalMoves(square)) {
        legalDestinationSquares.push_back(move.to);
    }
}

void GameManager::Impl::clearSelection() {
    selectedSquare.reset();
    legalDestinationSquares.clear();
}

bool GameManager::Impl::holdsPieceToMove(Square square) const {
    const std::optional<Piece>& piece = board[square];
    return piece && piece->color == board.turn;
}

void GameManager::Impl::clickTarget(Square square) {
    std::vector<Move> candidates;
    for (const Move& move : board.legalMoves(*selectedSquare)) {
        if (move.to == square) candidates.push_back(move);
    }
    if (candidates.empty()) {
        if (holdsPieceToMove(square)) {
            selectSquare(square);
        } else {
            clearSelection();
        }
        return;
    }
    if (candidates.size() > 1 || candidates.front().promotion) {
        pendingPromotion = PendingPromotion{*selectedSquare, square};
        return;
    }
    userExecuteMove(candidates.front());
    clearSelection();
}

bool GameManager::Impl::playMove(const Move& move) {
    const bool captures = isCapture(board, move);
    if (!board.play(move)) return false;
    lastMove = move;
    inspectingMoveIndex.reset();
    if (board.isKingInCheck(board.turn)) {
        effects.sounds.push_back(SoundEffect::check);
    } else {
        effects.sounds.push_back(captures ? SoundEffect::capture : SoundEffect::move);
    }
    return true;
}

void GameManager::Impl::userExecuteMove(const Move& move) {
    if (playMove(move)) finishTurn();
}

void GameManager::startNewGame() {
    impl_->command([this] {
        impl_->resetForNewGame();
        impl_->setupEnginesForGame();
        impl_->clock.start(PieceColor::white);
        impl_->effects.sounds.push_back(SoundEffect::gameEnd);
        impl_->triggerEngineIfNeeded();
    });
}

void GameManager::handleSquareClick(Square square) {
    if (!isOnBoard(square)) return;
    if (impl_->isGameOver || impl_->isPaused || isInspectingPast()) return;
    switch (impl_->gameMode) {
        case GameMode::engineVsEngine: return;
        case GameMode::humanVsEngine:
            if (impl_->board.turn != impl_->humanColor) return;
            break;
        case GameMode::humanVsHuman: break;
    }
    if (!impl_->selectedSquare) {
        if (impl_->holdsPieceToMove(square)) impl_->command([&] { impl_->selectSquare(square); });
        return;
    }
    impl_->command([&] {
        if (*impl_->selectedSquare == square) {
            impl_->clearSelection();
        } else {
            impl_->clickTarget(square);
        }
    });
}

void GameManager::confirmPromotion(PieceType pieceType) {
    if (!impl_->pendingPromotion) return;
    impl_->command([&] {
        const PendingPromotion pending = *impl_->pendingPromotion;
        impl_->userExecuteMove(Move{pending.from, pending.to, pieceType});
        impl_->pendingPromotion.reset();
        impl_->clearSelection();
    });
}

void GameManager::cancelPromotion() {
    impl_->command([this] {
        impl_->pendingPromotion.reset();
        impl_->clearSelection();
    });
}

void GameManager::undoMove() {
    if (impl_->isGameOver) return;
    impl_->command([this] {
        ChessBoard& board = impl_->board;
        // On the person's turn the engine's answer goes first, then the person's own move.
        if (impl_->gameMode == GameMode::humanVsEngine && board.turn == impl_->humanColor) board.undo();
        board.undo();
        impl_->lastMove = lastMoveOf(board);
        impl_->clearSelection();
        impl_->inspectingMoveIndex.reset();
        impl_->clearEvaluation();
        // Credits the increment to the side that was running, as after a move: kept on purpose. A thinking
        // engine is not told either; its answer meets the new position.
        impl_->clock.switchTurn(board.turn);
    });
}

void GameManager::togglePause() {
    impl_->command([this] {
        impl_->isPaused = !impl_->isPaused;
        if (impl_->isPaused) {
            impl_->clock.pause();
            for (const Impl::Seat& seat : impl_->seats) {
                UCIEngineProcess* engine = seat.process.get();
                if (!engine) continue;
                impl_->effects.engineOrders.emplace_back([engine] { engine->send(QStringLiteral("stop")); });
            }
            return;
        }
        if (const auto active = impl_->clock.activeColor()) impl_->clock.start(*active);
        impl_->triggerEngineIfNeeded();
    });
}

void GameManager::resign(PieceColor color) {
    if (impl_->isGameOver) return;
    impl_->command([&] { impl_->endGame(GameEndReason::resignation(opponent(color))); });
}

void GameManager::flipBoard() {
    impl_->command([this] { impl_->isFlipped = !impl_->isFlipped; });
}

void GameManager::inspectMove(std::optional<qint64> index) {
    if (impl_->inspectingMoveIndex == index) return;
    impl_->command([&] { impl_->inspectingMoveIndex = index; });
}

void GameManager::loadFEN(const QString& fen) {
    ChessBoard loaded = ChessBoard::fromFen(fen.toStdString());
    impl_->command([&] {
        impl_->board = std::move(loaded);
        impl_->inspectingMoveIndex.reset();
        impl_->lastMove.reset();
        impl_->clearSelection();
        impl_->isGameOver = false;
        impl_->gameEndReason.reset();
        impl_->clearEvaluation();
        // The pause and a pending promotion stay, and the clock runs all the same: a position is set up in
        // the game as it is.
        impl_->clock.reset(impl_->timeControlConfig);
        impl_->clock.start(impl_->board.turn);
        impl_->triggerEngineIfNeeded();
    });
}

void GameManager::replayGame(const QStringList& moves, const std::optional<QString>& /*reason*/) {
    impl_->command([&] {
        impl_->board = ChessBoard();
        for (const QString& text : moves) {
            if (const auto move = moveFromRecord(text)) impl_->board.play(*move);
        }
        impl_->lastMove = lastMoveOf(impl_->board);
        impl_->inspectingMoveIndex.reset();
        impl_->isGameOver = true;
        impl_->clearSelection();
        impl_->clock.stop();
    });
}

void GameManager::updateWhiteElo(bool limit, qint64 elo) {
    impl_->updateElo(PieceColor::white, limit, elo);
}

void GameManager::updateBlackElo(bool limit, qint64 elo) {
    impl_->updateElo(PieceColor::black, limit, elo);
}

}  // namespace orlix
