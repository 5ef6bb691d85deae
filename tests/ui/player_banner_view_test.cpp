#include "ui/player_banner_view.h"

#include <gtest/gtest.h>

#include <QAccessible>

#include "board_test_support.h"
#include "ui/theme.h"

namespace orlix {
namespace {

using test::isNear;
using test::PaintWatch;
using test::pictureOf;
using test::settle;

class PlayerBannerTest : public ::testing::Test {
  protected:
    PlayerBannerTest() {
        theme_.setScheme(Theme::Scheme::light);
        banner_.resize(714, 56);
        values_.name = QStringLiteral("Player");
        values_.timeString = QStringLiteral("5:00");
        banner_.setValues(values_);
    }

    void apply() { banner_.setValues(values_); }
    QImage picture() { return pictureOf(banner_, 1); }
    /// Where two pictures differ.
    static QRect difference(const QImage& one, const QImage& other) {
        QRect area;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x) {
                if (one.pixel(x, y) != other.pixel(x, y)) area |= QRect(x, y, 1, 1);
            }
        }
        return area;
    }
    /// What changes in the picture when the values do.
    template <typename Change>
    QRect effectOf(const Change& change) {
        const QImage before = picture();
        change(values_);
        apply();
        return difference(before, picture());
    }
    /// What is painted again on screen when the values change.
    template <typename Change>
    QRect repaintOf(const Change& change) {
        banner_.show();
        settle();
        PaintWatch paints(banner_);
        change(values_);
        apply();
        settle();
        return paints.region.boundingRect();
    }
    int countOf(const QColor& color, const QRect& area) {
        const QImage image = picture();
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                count += isNear(image.pixelColor(x, y), color, 2) ? 1 : 0;
            }
        }
        return count;
    }
    static Piece piece(PieceType type, PieceColor color = PieceColor::black) {
        return Piece::make(type, color);
    }

    Theme theme_;
    PlayerBannerView banner_{theme_};
    PlayerBannerView::Values values_;
    const QRect clockSide_{560, 0, 154, 56};
    const QRect symbolSide_{10, 0, 38, 56};
    const QRect nameRow_{50, 6, 564, 22};
    const QRect nameAlone_{50, 17, 564, 22};
    const QRect capturedRow_{50, 28, 564, 22};
};

TEST_F(PlayerBannerTest, aPartPaintedAloneLooksAsInTheWholePicture) {
    values_.isEngine = true;
    for (const bool isActive : {false, true}) {
        values_.isActiveTurn = isActive;
        apply();
        const QRect end(0, 0, 20, 56);
        const QRect clock(600, 5, 90, 46);
        for (const QRegion& part :
             {QRegion(end), QRegion(clock), QRegion(end) + QRect(20, 10, 24, 36) + clock,
              QRegion(QRect(300, 0, 50, 56))}) {
            for (const qreal ratio : {1.0, 2.0})
                EXPECT_EQ(test::repaintedPictureOf(banner_, ratio, part), pictureOf(banner_, ratio));
        }
    }
}

TEST_F(PlayerBannerTest, isFiftySixHigh) {
    EXPECT_EQ(banner_.minimumHeight(), 56);
    EXPECT_EQ(banner_.maximumHeight(), 56);
}

TEST_F(PlayerBannerTest, showsTheNameAndTheClockReading) {
    const QRect name = effectOf([](auto& values) { values.name = QStringLiteral("Somebody else"); });
    EXPECT_TRUE(nameAlone_.contains(name));
    EXPECT_FALSE(name.isNull());
    const QRect clock = effectOf([](auto& values) { values.timeString = QStringLiteral("4:59"); });
    EXPECT_TRUE(clockSide_.contains(clock));
    EXPECT_FALSE(clock.isNull());
}

TEST_F(PlayerBannerTest, theNameStandsInTheMiddleWhileThereIsNothingBelowIt) {
    const auto rename = [](auto& values) { values.name += QLatin1Char('H'); };
    const QImage bare = picture();
    EXPECT_NEAR(effectOf(rename).center().y(), banner_.height() / 2, 1);
    values_.capturedPieces = {piece(PieceType::pawn)};
    apply();
    EXPECT_TRUE(nameRow_.contains(effectOf(rename)));
    values_.capturedPieces.clear();
    values_.materialAdvantage = 1;
    apply();
    EXPECT_TRUE(nameRow_.contains(effectOf(rename))) << "an advantage without captured pieces";
    values_.materialAdvantage = -1;
    values_.name.chop(3);
    apply();
    EXPECT_EQ(picture(), bare) << "a deficit is not shown";
}

TEST_F(PlayerBannerTest, theSymbolTellsAPersonFromAnEngine) {
    const QRect change = effectOf([](auto& values) { values.isEngine = true; });
    EXPECT_TRUE(change.intersects(symbolSide_));
    EXPECT_LT(change.right(), clockSide_.left());
}

TEST_F(PlayerBannerTest, aSmallDiscShowsTheColourOfThePieces) {
    EXPECT_GT(countOf(QColor(250, 250, 245), symbolSide_), 20);
    const QRect change = effectOf([](auto& values) { values.color = PieceColor::black; });
    EXPECT_TRUE(symbolSide_.contains(change));
    EXPECT_GT(countOf(QColor(31, 33, 38), symbolSide_), 20);
}

TEST_F(PlayerBannerTest, anAdvantageIsShownFromOneOn) {
    for (const std::int64_t advantage : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{-9}}) {
        const QRect change = effectOf([advantage](auto& values) { values.materialAdvantage = advantage; });
        EXPECT_TRUE(change.isNull()) << advantage;
    }
    values_.capturedPieces = {piece(PieceType::pawn)};
    apply();
    const QRect one = effectOf([](auto& values) { values.materialAdvantage = 1; });
    EXPECT_TRUE(capturedRow_.contains(one));
    EXPECT_FALSE(one.isNull());
    const QRect three = effectOf([](auto& values) { values.materialAdvantage = 3; });
    EXPECT_FALSE(three.isNull());
}

TEST_F(PlayerBannerTest, capturedPiecesAreShownInTheOrderGiven) {
    values_.capturedPieces = {piece(PieceType::pawn)};
    apply();
    const QRect first =
        effectOf([](auto& values) { values.capturedPieces.push_back(piece(PieceType::rook)); });
    const QRect second =
        effectOf([](auto& values) { values.capturedPieces.push_back(piece(PieceType::queen)); });
    EXPECT_TRUE(capturedRow_.contains(first.united(second)));
    EXPECT_GT(second.left(), first.right()) << "the later piece stands to the right";
    const QRect swapped =
        effectOf([](auto& values) { std::swap(values.capturedPieces[0], values.capturedPieces[2]); });
    EXPECT_FALSE(swapped.isNull());
}

TEST_F(PlayerBannerTest, piecesOfOneTypeStandCloserThanTypes) {
    effectOf([](auto& values) { values.capturedPieces = {piece(PieceType::pawn)}; });
    const QRect same =
        effectOf([](auto& values) { values.capturedPieces.push_back(piece(PieceType::pawn)); });
    values_.capturedPieces.pop_back();
    apply();
    const QRect other =
        effectOf([](auto& values) { values.capturedPieces.push_back(piece(PieceType::rook)); });
    EXPECT_GT(other.left(), same.left() + 2);
}

TEST_F(PlayerBannerTest, capturedWhiteAndBlackPiecesHaveTheirOwnSymbols) {
    effectOf([](auto& values) { values.capturedPieces = {piece(PieceType::rook, PieceColor::black)}; });
    const QRect change =
        effectOf([](auto& values) { values.capturedPieces = {piece(PieceType::rook, PieceColor::white)}; });
    EXPECT_FALSE(change.isNull());
}

TEST_F(PlayerBannerTest, theSideToMoveHasAnAccentEdgeAndABrightClock) {
    const QColor accent = theme_.color(ColorRole::accent);
    const QRect edge(0, 12, 4, 32);
    EXPECT_EQ(countOf(accent, edge), 0);
    EXPECT_EQ(countOf(theme_.color(ColorRole::text), clockSide_), 0) << "a waiting clock is in secondary";
    values_.isActiveTurn = true;
    apply();
    EXPECT_EQ(countOf(accent, edge), 4 * 32);
    EXPECT_GT(countOf(theme_.color(ColorRole::text), clockSide_), 20);
    EXPECT_GT(countOf(accent, clockSide_), 60) << "the clock's frame";
}

TEST_F(PlayerBannerTest, aClockLowOnTimeTurnsBad) {
    const QColor bad = theme_.color(ColorRole::bad);
    EXPECT_EQ(countOf(bad, clockSide_), 0);
    values_.isLowOnTime = true;
    values_.isActiveTurn = true;
    apply();
    EXPECT_GT(countOf(bad, clockSide_), 100);
    EXPECT_EQ(countOf(theme_.color(ColorRole::accent), clockSide_), 0);
}

TEST_F(PlayerBannerTest, anEnginesSymbolChangesItsTintWhileItThinks) {
    values_.isEngine = true;
    values_.isActiveTurn = true;
    apply();
    EXPECT_EQ(countOf(theme_.color(ColorRole::accent), symbolSide_), 0);
    values_.isThinking = true;
    apply();
    EXPECT_GT(countOf(theme_.color(ColorRole::accent), symbolSide_), 10);
}

TEST_F(PlayerBannerTest, aNameThatLooksLikeMarkupIsShownLetterByLetter) {
    banner_.show();
    settle();
    banner_.resize(210, 56);
    values_.name = QStringLiteral("<b>A very long engine name</b> in bold letters");
    apply();
    EXPECT_FALSE(banner_.toolTip().contains(QStringLiteral("<b>")));
    EXPECT_TRUE(banner_.toolTip().contains(QStringLiteral("&lt;b&gt;A very")));
}

TEST_F(PlayerBannerTest, aLongNameIsElidedInTheMiddleWithTheWholeAsToolTip) {
    banner_.show();
    settle();
    EXPECT_EQ(banner_.toolTip(), QString());
    const QString name = QStringLiteral(
        "An engine whose name goes on and on and on until nobody can read the end "
        "of it, build 20240119");
    const QRect change = effectOf([&name](auto& values) { values.name = name; });
    EXPECT_TRUE(nameAlone_.adjusted(0, 0, 60, 0).contains(change));
    EXPECT_EQ(banner_.toolTip(), name);
    // The end of the name shows: another end is another picture, another middle is not.
    EXPECT_FALSE(effectOf([](auto& values) {
                     values.name.replace(QStringLiteral("0119"), QStringLiteral("7777"));
                 }).isNull());
    values_.name = QStringLiteral("Player");
    apply();
    EXPECT_EQ(banner_.toolTip(), QString());
    banner_.resize(210, 56);
    values_.name = QStringLiteral("White Engine");
    apply();
    EXPECT_EQ(banner_.toolTip(), QStringLiteral("White Engine")) << "the room counts, not the length";
    banner_.resize(714, 56);
    EXPECT_EQ(banner_.toolTip(), QString());
}

TEST_F(PlayerBannerTest, aTickPaintsTheDigitsAlone) {
    const QRect painted = repaintOf([](auto& values) { values.timeString = QStringLiteral("4:59"); });
    EXPECT_FALSE(painted.isNull());
    EXPECT_TRUE(clockSide_.adjusted(70, 12, -14, -12).contains(painted)) << "neither frame nor symbol";
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0})
        EXPECT_EQ(test::repaintedPictureOf(banner_, ratio, painted), pictureOf(banner_, ratio)) << ratio;
}

TEST_F(PlayerBannerTest, theSameValuesPaintNothing) {
    banner_.show();
    settle();
    PaintWatch paints(banner_);
    for (int tick = 0; tick < 20; ++tick)
        apply();
    settle();
    EXPECT_EQ(paints.count, 0);
}

TEST_F(PlayerBannerTest, everyChangePaintsItsOwnRegion) {
    const QRect first = repaintOf([](auto& values) { values.capturedPieces = {piece(PieceType::pawn)}; });
    EXPECT_TRUE(nameRow_.united(capturedRow_).contains(first)) << "the name gives way to the first one";
    EXPECT_TRUE(capturedRow_.contains(
        repaintOf([](auto& values) { values.capturedPieces.push_back(piece(PieceType::pawn)); })));
    EXPECT_TRUE(symbolSide_.contains(repaintOf([](auto& values) { values.color = PieceColor::black; })));
    EXPECT_EQ(repaintOf([](auto& values) { values.name = QStringLiteral("Another"); }).height(), 20);
    const QRect thinking = repaintOf([](auto& values) { values.isThinking = true; });
    EXPECT_TRUE(symbolSide_.contains(thinking));
}

TEST_F(PlayerBannerTest, whatIsPaintedInPartsEqualsWhatIsPaintedWhole) {
    banner_.show();
    settle();
    values_.isActiveTurn = true;
    values_.timeString = QStringLiteral("12:34");
    values_.capturedPieces = {piece(PieceType::pawn)};
    apply();
    settle();
    const QImage inParts = banner_.grab().toImage();
    PlayerBannerView fresh(theme_);
    fresh.resize(banner_.size());
    fresh.setValues(values_);
    EXPECT_EQ(inParts.convertToFormat(QImage::Format_RGB32),
              fresh.grab().toImage().convertToFormat(QImage::Format_RGB32));
}

TEST_F(PlayerBannerTest, followsTheTheme) {
    const QPoint inside(300, 40);
    EXPECT_EQ(picture().pixelColor(inside), Theme::color(ColorRole::panel, Theme::Scheme::light));
    banner_.show();
    settle();
    PaintWatch paints(banner_);
    theme_.setScheme(Theme::Scheme::dark);
    settle();
    EXPECT_EQ(paints.count, 1);
    EXPECT_EQ(picture().pixelColor(inside), Theme::color(ColorRole::panel, Theme::Scheme::dark));
}

TEST_F(PlayerBannerTest, coversItsPlaceWhollyAtFractionalPixelRatios) {
    for (const qreal ratio : {1.25, 1.5, 1.75, 2.0}) {
        for (const int offset : {1, 2, 3, 4}) {
            QWidget window;
            window.resize(800, 100);
            banner_.setParent(&window);
            banner_.move(offset, offset);
            banner_.show();
            const QImage image = pictureOf(window, ratio);
            banner_.setParent(nullptr);
            // Whatever was there before shines through nowhere.
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QColor color = image.pixelColor(x, y);
                    if (color == QColor(Qt::magenta)) continue;
                    ASSERT_LT(qMin(color.red(), color.blue()) - color.green(), 12)
                        << ratio << ", " << offset << ": " << x << ", " << y;
                }
            }
        }
    }
}

TEST_F(PlayerBannerTest, isReadByAssistiveTechnologyWithItsClock) {
    const auto read = [this] {
        return QAccessible::queryAccessibleInterface(&banner_)->text(QAccessible::Name);
    };
    EXPECT_EQ(read(), QStringLiteral("Player, 5:00"));
    values_.materialAdvantage = 3;
    values_.timeString = QStringLiteral("0:09.7");
    apply();
    EXPECT_EQ(read(), QStringLiteral("Player, 0:09.7, +3"));
}

TEST_F(PlayerBannerTest, theRunningClockIsNotAnnounced) {
    // Setting the widget's accessible name announces it.
    EXPECT_EQ(banner_.accessibleName(), QStringLiteral("Player"));
    for (const char* time : {"4:59", "0:09.7", "--:--"}) {
        values_.timeString = QString::fromLatin1(time);
        apply();
        EXPECT_EQ(banner_.accessibleName(), QStringLiteral("Player"));
    }
    values_.materialAdvantage = 3;
    apply();
    EXPECT_EQ(banner_.accessibleName(), QStringLiteral("Player, +3"));
}

}  // namespace
}  // namespace orlix
