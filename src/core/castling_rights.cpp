#include "core/castling_rights.h"

#include "core/hash_combine.h"

namespace orlix {

CastlingRights CastlingRights::fromFen(std::string_view text) {
    const auto contains = [text](char letter) { return text.find(letter) != std::string_view::npos; };
    return {contains('K'), contains('Q'), contains('k'), contains('q')};
}

std::string CastlingRights::fenString() const {
    std::string letters;
    if (whiteKingside) letters += 'K';
    if (whiteQueenside) letters += 'Q';
    if (blackKingside) letters += 'k';
    if (blackQueenside) letters += 'q';
    return letters.empty() ? "-" : letters;
}

}  // namespace orlix

std::size_t std::hash<orlix::CastlingRights>::operator()(const orlix::CastlingRights& rights) const noexcept {
    return orlix::hashOf(rights.whiteKingside, rights.whiteQueenside, rights.blackKingside,
                         rights.blackQueenside);
}
