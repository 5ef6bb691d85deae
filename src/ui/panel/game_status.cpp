#include "ui/panel/game_status.h"

#include "automatch/automatch_manager.h"
#include "game/game_manager.h"
#include "ui/panel/automatch_formats.h"

namespace orlix {

namespace {

QString turnKey(PieceColor color) {
    return color == PieceColor::white ? QStringLiteral("status_white_turn")
                                      : QStringLiteral("status_black_turn");
}

GameStatus endStatus(const GameEndReason& reason) {
    const bool whiteWins = reason.winner == PieceColor::white;
    switch (reason.kind) {
        case GameEndReason::Kind::checkmate:
            return {whiteWins ? QStringLiteral("status_checkmate_white")
                              : QStringLiteral("status_checkmate_black"),
                    StatusTone::won,
                    Icon::flag,
                    {}};
        // These keys name the side that lost.
        case GameEndReason::Kind::timeout:
            return {
                whiteWins ? QStringLiteral("status_black_timeout") : QStringLiteral("status_white_timeout"),
                StatusTone::won,
                Icon::warning,
                {}};
        case GameEndReason::Kind::resignation:
            return {
                whiteWins ? QStringLiteral("status_black_resigned") : QStringLiteral("status_white_resigned"),
                StatusTone::won,
                Icon::flag,
                {}};
        case GameEndReason::Kind::stalemate:
            return {QStringLiteral("status_stalemate"), StatusTone::drawn, Icon::flag, {}};
        case GameEndReason::Kind::fiftyMoveRule:
            return {QStringLiteral("status_draw_50"), StatusTone::drawn, Icon::flag, {}};
        case GameEndReason::Kind::threefoldRepetition:
            return {QStringLiteral("status_draw_rep"), StatusTone::drawn, Icon::flag, {}};
        case GameEndReason::Kind::insufficientMaterial:
            return {QStringLiteral("status_draw_material"), StatusTone::drawn, Icon::flag, {}};
    }
    return {};
}

bool showsOnBoard(GameEndReason::Kind kind) {
    return kind != GameEndReason::Kind::timeout && kind != GameEndReason::Kind::resignation;
}

}  // namespace

GameStatus gameStatus(const GameManager& game) {
    const ChessBoard& board = game.board();
    const QString turn = turnKey(board.turn);
    if (game.isGameOver()) {
        // A finished game that is only shown keeps the reason of the game before it, if there was one: what
        // the board shows comes first, and an end that it would show but does not is another game's.
        if (const auto onBoard = board.gameEndReason()) return endStatus(*onBoard);
        const std::optional<GameEndReason>& reason = game.gameEndReason();
        if (reason && !showsOnBoard(reason->kind)) return endStatus(*reason);
        return {turn, StatusTone::drawn, Icon::flag, {}};
    }
    if (game.isPaused()) return {QStringLiteral("status_paused"), StatusTone::paused, Icon::pause, turn};
    if (board.isKingInCheck(board.turn)) {
        return {QStringLiteral("status_check"), StatusTone::check, Icon::warning, turn};
    }
    return {turn, StatusTone::playing, std::nullopt, QStringLiteral("status_active")};
}

GameStatus gameStatus(const GameManager& game, const AutomatchManager& series) {
    GameStatus status = gameStatus(game);
    if (!series.isAutomatchActive()) return status;
    const QString number = QStringLiteral("automatch_game_n");
    // In the narrow header a line may break before the count, not within it.
    const QString count =
        u' ' + gamesText(series.currentGameIndex(), series.totalGames()).trimmed().replace(u' ', QChar(0xA0));
    if (series.isAutomatchPaused())
        return {QStringLiteral("automatch_paused"), StatusTone::paused, Icon::pause, number, count};
    if (status.tone != StatusTone::playing) return status;
    return {QStringLiteral("automatch_in_progress"), StatusTone::playing, std::nullopt, number, count};
}

StatusColors statusColors(StatusTone tone, const Theme& theme) {
    ColorRole role = ColorRole::accent;
    switch (tone) {
        case StatusTone::playing: role = ColorRole::accent; break;
        case StatusTone::check: role = ColorRole::bad; break;
        case StatusTone::paused: role = ColorRole::caution; break;
        case StatusTone::drawn: role = ColorRole::secondary; break;
        case StatusTone::won: role = ColorRole::good; break;
    }
    // A colour on its own tint falls short of 4.5 : 1; moved toward the text's colour it does not.
    const bool isDark = theme.scheme() == Theme::Scheme::dark;
    return {theme.tint(role, ColorRole::panel, 0.16),
            theme.tint(ColorRole::text, role, isDark ? 0.15 : 0.22)};
}

}  // namespace orlix
