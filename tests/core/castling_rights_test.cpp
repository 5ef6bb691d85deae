#include "core/castling_rights.h"

#include <gmock/gmock.h>

#include <array>
#include <unordered_set>
#include <vector>

namespace orlix {
namespace {

TEST(CastlingRights, everyCombinationPrintsInOrderAndReadsBack) {
    constexpr std::array<const char*, 16> texts{"-", "K",  "Q",  "KQ",  "k",  "Kk",  "Qk",  "KQk",
                                                "q", "Kq", "Qq", "KQq", "kq", "Kkq", "Qkq", "KQkq"};
    std::unordered_set<std::size_t> hashes;
    for (unsigned bits = 0; bits < texts.size(); ++bits) {
        SCOPED_TRACE(texts[bits]);
        const CastlingRights rights{(bits & 1U) != 0, (bits & 2U) != 0, (bits & 4U) != 0, (bits & 8U) != 0};
        EXPECT_EQ(rights.fenString(), texts[bits]);
        EXPECT_EQ(CastlingRights::fromFen(texts[bits]), rights);
        hashes.insert(std::hash<CastlingRights>{}(rights));
    }
    EXPECT_EQ(hashes.size(), 16U);
}

TEST(CastlingRights, aLetterAnywhereSetsItsFlag) {
    EXPECT_EQ(CastlingRights::fromFen("qK"), (CastlingRights{true, false, false, true}));
    EXPECT_EQ(CastlingRights::fromFen("qK").fenString(), "Kq");
    EXPECT_EQ(CastlingRights::fromFen("xxkkyK-"), (CastlingRights{true, false, true, false}));
    EXPECT_EQ(CastlingRights::fromFen("qkQK"), (CastlingRights{true, true, true, true}));
    for (const char* text : {"", "-", "HAha", "none"}) {
        EXPECT_EQ(CastlingRights::fromFen(text), CastlingRights{}) << text;
    }
}

}  // namespace
}  // namespace orlix
