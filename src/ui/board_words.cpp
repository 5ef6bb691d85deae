#include "ui/board_words.h"

#include <QStringList>
#include <cstdlib>
#include <utility>

#include "game/game_manager.h"
#include "l10n/extra_texts.h"
#include "l10n/localization_manager.h"
#include "ui/panel/game_status.h"

namespace orlix {

namespace {

QString pieceInWords(PieceType type, PieceColor color, const LocalizationManager& loc) {
    const int first =
        static_cast<int>(color == PieceColor::white ? ExtraText::whitePawn : ExtraText::blackPawn);
    return loc.text(static_cast<ExtraText>(first + static_cast<int>(type)));
}

QString nameOf(Square square) {
    return QString::fromStdString(square.algebraic());
}

QString joined(const QStringList& parts) {
    return parts.join(QLatin1String(", "));
}

}  // namespace

QString squareInWords(Square square, const BoardPicture::Cell& cell, const LocalizationManager& loc) {
    QStringList parts{nameOf(square), cell.piece ? pieceInWords(cell.piece->type, cell.piece->color, loc)
                                                 : loc.text(ExtraText::squareEmpty)};
    if (cell.isSelected) parts += loc.text(ExtraText::squareSelected);
    if (cell.target != BoardPicture::Target::none) parts += loc.text(ExtraText::squareLegalTarget);
    if (cell.isLastMove) parts += loc.text(ExtraText::squareLastMove);
    if (cell.isInCheck) parts += loc.text(ExtraText::squareInCheck);
    return joined(parts);
}

QString moveInWords(const MoveRecord& record, const LocalizationManager& loc) {
    const ChessBoard after = ChessBoard::fromFen(record.fenAfter);
    const PieceColor color = opponent(after.turn);
    const std::optional<Piece>& arrived = after[record.move.to];
    const PieceType arrivedType = arrived ? arrived->type : PieceType::pawn;
    const PieceType type = record.move.promotion ? PieceType::pawn : arrivedType;
    QStringList parts{
        loc.text(ExtraText::moveFromTo)
            .arg(pieceInWords(type, color, loc), nameOf(record.move.from), nameOf(record.move.to))};
    if (type == PieceType::king && std::abs(record.move.to.file - record.move.from.file) == 2) {
        parts += loc.text(ExtraText::moveCastles);
    }
    if (record.capturedPiece) {
        parts += loc.text(ExtraText::moveCaptures)
                     .arg(pieceInWords(record.capturedPiece->type, record.capturedPiece->color, loc));
    }
    if (record.move.promotion) {
        parts += loc.text(ExtraText::movePromotes).arg(pieceInWords(arrivedType, color, loc));
    }
    return joined(parts);
}

BoardNarrator::Seen BoardNarrator::look() const {
    Seen seen;
    const std::vector<MoveRecord>& history = game_.board().history;
    seen.plies = history.size();
    if (!history.empty()) seen.lastPosition = history.back().fenAfter;
    if (game_.isInspectingPast() && *game_.inspectingMoveIndex() >= 0 &&
        *game_.inspectingMoveIndex() < static_cast<qint64>(history.size())) {
        seen.inspected = game_.inspectingMoveIndex();
    }
    seen.status = gameStatus(game_).key;
    seen.isPromoting = game_.pendingPromotion().has_value();
    return seen;
}

QString BoardNarrator::moveNews(const Seen& before, const Seen& now) const {
    const std::vector<MoveRecord>& history = game_.board().history;
    const bool isOtherGame = now.plies != before.plies || now.lastPosition != before.lastPosition;
    if (now.inspected) {
        if (now.inspected == before.inspected && !isOtherGame) return {};
        const MoveRecord& record = history[static_cast<std::size_t>(*now.inspected)];
        const bool isCheck = !record.san.empty() && record.san.back() == '+';
        const QString move = moveInWords(record, loc_);
        return isCheck ? joined({move, loc_.text("status_check")}) : move;
    }
    if (!isOtherGame && !before.inspected) return {};
    if (now.plies < before.plies) {
        return now.plies == 0 ? loc_.text(now.status) : loc_.text(ExtraText::moveTakenBack);
    }
    return history.empty() ? loc_.text(now.status) : moveInWords(history.back(), loc_);
}

QString BoardNarrator::statusNews(const Seen& before, const Seen& now, bool hasMoved) const {
    if (now.inspected) return {};
    const GameStatus status = gameStatus(game_);
    if (status.tone == StatusTone::playing) {
        // Whose turn it is, every move tells; only the end of a pause does not.
        return before.status == QLatin1String("status_paused") ? loc_.text(now.status) : QString();
    }
    return hasMoved || now.status != before.status ? loc_.text(now.status) : QString();
}

QString BoardNarrator::news() {
    const Seen now = look();
    const std::optional<Seen> before = std::exchange(seen_, now);
    if (!before) return {};
    QStringList parts{moveNews(*before, now)};
    const QString status = statusNews(*before, now, !parts.front().isEmpty());
    if (status != parts.front()) parts += status;
    if (now.isPromoting && !before->isPromoting) parts += loc_.text("promote_pawn");
    parts.removeAll(QString());
    return joined(parts);
}

}  // namespace orlix
