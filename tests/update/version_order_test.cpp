#include "update/version_order.h"

#include <gmock/gmock.h>

#include <QString>

#include <vector>

namespace orlix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

QList<qint64> parts(const char16_t* text) {
    return versionParts(QStringView(text));
}

TEST(VersionParts, areTheLeadingNumbersBetweenDots) {
    EXPECT_THAT(parts(u"1.2.3"), ElementsAre(1, 2, 3));
    EXPECT_THAT(parts(u"V1.2.3-beta"), ElementsAre(1, 2, 3));
    EXPECT_THAT(parts(u"2.0b4"), ElementsAre(2, 0));
    EXPECT_THAT(parts(u"007.010"), ElementsAre(7, 10));
}

TEST(VersionParts, blanksAndTheLetterAreTrimmedFromBothEnds) {
    EXPECT_THAT(parts(u" v 1.2 V"), ElementsAre(1, 2));
    EXPECT_THAT(parts(u"vvV3"), ElementsAre(3));
    EXPECT_THAT(parts(u"1. 2"), ElementsAre(1, 0)) << "blanks inside stay";
    EXPECT_THAT(parts(u"\t1"), ElementsAre(0)) << "a tab is no blank";
}

TEST(VersionParts, emptyPiecesAreDropped) {
    EXPECT_THAT(parts(u"1..2"), ElementsAre(1, 2));
    EXPECT_THAT(parts(u".1."), ElementsAre(1));
    EXPECT_THAT(parts(u""), IsEmpty());
    EXPECT_THAT(parts(u"..."), IsEmpty());
    EXPECT_THAT(parts(u"v V"), IsEmpty());
}

TEST(VersionParts, whatIsNoNumberOf64BitsCountsAsZero) {
    EXPECT_THAT(parts(u"beta.1"), ElementsAre(0, 1));
    EXPECT_THAT(parts(u"-3.+4"), ElementsAre(0, 0));
    EXPECT_THAT(parts(u"9223372036854775807"), ElementsAre(9223372036854775807LL));
    EXPECT_THAT(parts(u"9223372036854775808.5"), ElementsAre(0, 5));
    EXPECT_THAT(parts(u"123456789012345678901234567890"), ElementsAre(0));
}

TEST(VersionParts, numericCharactersThatAreNoDigitsSpoilTheNumber) {
    EXPECT_THAT(parts(u"1½.2"), ElementsAre(0, 2));
    EXPECT_THAT(parts(u"٣.4"), ElementsAre(0, 4));
    EXPECT_THAT(parts(u"1é.2"), ElementsAre(1, 2)) << "a letter only ends it";
}

struct Pair {
    const char16_t* left;
    const char16_t* right;
    VersionOrder order;
};

VersionOrder reversed(VersionOrder order) {
    switch (order) {
        case VersionOrder::ascending: return VersionOrder::descending;
        case VersionOrder::same: return VersionOrder::same;
        case VersionOrder::descending: return VersionOrder::ascending;
    }
    return order;
}

TEST(CompareVersions, goesByNumbersFromTheFront) {
    const std::vector<Pair> pairs{
        {u"1.9", u"1.10", VersionOrder::ascending},    {u"1.2", u"1.2.0", VersionOrder::same},
        {u"1.2", u"1.2.0.0", VersionOrder::same},      {u"V2.0", u"2.0", VersionOrder::same},
        {u"1.0.0.1", u"1", VersionOrder::descending},  {u"", u"0.0.0", VersionOrder::same},
        {u"", u"0.0.1", VersionOrder::ascending},      {u"2", u"1.99.99", VersionOrder::descending},
        {u"1.2.3-beta", u"1.2.3", VersionOrder::same}, {u"41", u"42", VersionOrder::ascending},
        {u"1.2.9", u"1.3", VersionOrder::ascending},   {u"1..2", u"1.2", VersionOrder::same},
    };
    for (const Pair& pair : pairs) {
        SCOPED_TRACE(QStringView(pair.left).toString().toStdString() + " and " +
                     QStringView(pair.right).toString().toStdString());
        EXPECT_EQ(compareVersions(QStringView(pair.left), QStringView(pair.right)), pair.order);
        EXPECT_EQ(compareVersions(QStringView(pair.right), QStringView(pair.left)), reversed(pair.order));
    }
}

TEST(NewerRelease, isDecidedByTheVersionAndThenByTheBuild) {
    EXPECT_TRUE(isNewerRelease(u"1.10", u"1", u"1.9", u"99"));
    EXPECT_FALSE(isNewerRelease(u"1.8", u"100", u"1.9", u"1")) << "an older version never wins on its build";
    EXPECT_TRUE(isNewerRelease(u"V2.0", u"42", u"2.0", u"41"));
    EXPECT_FALSE(isNewerRelease(u"2.0", u"41", u"2.0.0", u"41"));
    EXPECT_FALSE(isNewerRelease(u"2.0", u"40", u"2.0", u"41"));
    EXPECT_FALSE(isNewerRelease(u"2.0", u"0", u"2.0", u"0"));
}

}  // namespace
}  // namespace orlix
