// Why a game has ended.
#pragma once

#include <cstdint>
#include <optional>

#include "core/piece.h"

namespace orlix {

struct GameEndReason {
    enum class Kind : std::uint8_t {
        checkmate,
        timeout,
        resignation,
        stalemate,
        fiftyMoveRule,
        threefoldRepetition,
        insufficientMaterial,
    };
    Kind kind = Kind::stalemate;
    std::optional<PieceColor> winner;  ///< present for checkmate, timeout and resignation only

    bool operator==(const GameEndReason&) const = default;

    static GameEndReason checkmate(PieceColor winner) { return {Kind::checkmate, winner}; }
    static GameEndReason timeout(PieceColor winner) { return {Kind::timeout, winner}; }
    static GameEndReason resignation(PieceColor winner) { return {Kind::resignation, winner}; }
    static GameEndReason stalemate() { return {Kind::stalemate, {}}; }
    static GameEndReason fiftyMoveRule() { return {Kind::fiftyMoveRule, {}}; }
    static GameEndReason threefoldRepetition() { return {Kind::threefoldRepetition, {}}; }
    static GameEndReason insufficientMaterial() { return {Kind::insufficientMaterial, {}}; }
};

}  // namespace orlix
