#include "ui/evaluation_bar_view.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QTimer>
#include <cmath>

#include "board_test_support.h"
#include "support/event_pump.h"

namespace orlix {
namespace {

using test::isNear;
using test::PaintWatch;
using test::pictureOf;
using test::settle;

const QColor darkPart(46, 51, 56);
const QColor lightPart(242, 242, 235);

EngineEvaluation centipawns(qint64 score) {
    EngineEvaluation evaluation;
    evaluation.scoreCp = score;
    return evaluation;
}

EngineEvaluation mate(qint64 moves) {
    EngineEvaluation evaluation;
    evaluation.mateIn = moves;
    return evaluation;
}

class EvaluationBarTest : public ::testing::Test {
  protected:
    EvaluationBarTest() {
        bar_.resize(32, 400);
        bar_.setAnimated(false);
    }

    /// From the first light row to the foot, in device pixels, along a column that the label's plate does not
    /// reach.
    int lightHeight(qreal ratio = 1) {
        const QImage image = pictureOf(bar_, ratio);
        const int x = qRound(1.25 * ratio);
        int y = 0;
        while (y < image.height() && image.pixelColor(x, y).lightness() <= 150)
            ++y;
        return image.height() - y;
    }
    /// Height of the shown light part, waiting for the motion with a limit.
    bool reaches(int height) {
        return pumpUntil([this, height] { return lightHeight() == height; });
    }
    bool timerRuns() {
        for (const QTimer* timer : bar_.findChildren<QTimer*>()) {
            if (timer->isActive()) return true;
        }
        return false;
    }
    /// The plate's ground and whether its text is light or dark.
    QColor plateGround() {
        const QImage image = pictureOf(bar_, 1);
        return image.pixelColor(16, isLabelOnTop() ? 4 : 395);
    }
    bool isLabelOnTop() { return inkIn(0, 24) > 0; }
    int whiteInk() {
        return pixels(0, 400, [](int grey) { return grey > 250; });
    }
    int blackInk() {
        return pixels(0, 400, [](int grey) { return grey < 20; });
    }
    int inkIn(int top, int bottom) {
        return pixels(top, bottom, [](int grey) { return grey < 20 || grey > 250; });
    }
    int pixels(int top, int bottom, bool (*count)(int grey)) {
        const QImage image = pictureOf(bar_, 1);
        int found = 0;
        for (int y = top; y < bottom; ++y) {
            for (int x = 4; x < 28; ++x)
                found += count(qGray(image.pixel(x, y))) ? 1 : 0;
        }
        return found;
    }

    EvaluationBarView bar_;
};

TEST_F(EvaluationBarTest, isThirtyTwoWide) {
    EXPECT_EQ(bar_.minimumWidth(), 32);
    EXPECT_EQ(bar_.maximumWidth(), 32);
    EXPECT_EQ(bar_.sizeHint().width(), 32);
}

TEST_F(EvaluationBarTest, theLightPartHasExactlyTheStatedHeight) {
    struct Case {
        const char* name;
        EngineEvaluation evaluation;
        PieceColor turn;
        bool isFlipped;
        double share;
    };
    const double f35 = 1 / (1 + std::exp(-35 / 400.0));
    const double f400 = 1 / (1 + std::exp(-1.0));
    const std::vector<Case> cases{
        {"no score", EngineEvaluation(), PieceColor::white, false, 0.5},
        {"a pawn third for White", centipawns(35), PieceColor::white, false, f35},
        {"the same seen by Black", centipawns(35), PieceColor::black, false, 1 - f35},
        {"four pawns", centipawns(400), PieceColor::white, false, f400},
        {"four pawns, flipped", centipawns(400), PieceColor::white, true, 1 - f400},
        {"White mates", mate(3), PieceColor::white, false, 0.95},
        {"White mates, flipped", mate(3), PieceColor::white, true, 0.05},
        {"White is mated", mate(-2), PieceColor::white, false, 0.05},
        {"Black mates", mate(3), PieceColor::black, false, 0.05},
        {"Black mates, flipped", mate(3), PieceColor::black, true, 0.95},
    };
    for (const Case& each : cases) {
        bar_.setValues(each.evaluation, each.turn, each.isFlipped);
        EXPECT_EQ(lightHeight(1), qRound(each.share * 400)) << each.name;
        EXPECT_EQ(lightHeight(2), qRound(each.share * 800)) << each.name;
    }
}

TEST_F(EvaluationBarTest, partsHaveTheirColoursAndTheLightOneStandsBelowInBothOrientations) {
    for (const bool isFlipped : {false, true}) {
        bar_.setValues(centipawns(0), PieceColor::white, isFlipped);
        for (const qreal ratio : {1.0, 2.0}) {
            const QImage image = pictureOf(bar_, ratio);
            const int middle = qRound(16 * ratio);
            EXPECT_TRUE(isNear(image.pixelColor(middle, qRound(100 * ratio)), darkPart));
            EXPECT_TRUE(isNear(image.pixelColor(middle, qRound(300 * ratio)), lightPart));
            EXPECT_TRUE(isNear(image.pixelColor(middle, qRound(200 * ratio) - 1), darkPart)) << "crisp";
            EXPECT_TRUE(isNear(image.pixelColor(middle, qRound(200 * ratio)), lightPart)) << "crisp";
        }
    }
}

TEST_F(EvaluationBarTest, isClippedToRoundedCornersWithAFaintOutline) {
    const QImage image = pictureOf(bar_, 1);
    for (const QPoint corner : {QPoint(0, 0), QPoint(31, 0), QPoint(0, 399), QPoint(31, 399)}) {
        EXPECT_EQ(image.pixelColor(corner), QColor(Qt::magenta));
    }
    EXPECT_NE(image.pixelColor(6, 0), QColor(Qt::magenta));
    const QColor outline(qRound(46 * 0.85 + 255 * 0.15), qRound(51 * 0.85 + 255 * 0.15),
                         qRound(56 * 0.85 + 255 * 0.15));
    EXPECT_TRUE(isNear(image.pixelColor(0, 100), outline, 2));
    EXPECT_TRUE(isNear(image.pixelColor(31, 100), outline, 2));
    EXPECT_TRUE(isNear(image.pixelColor(1, 100), darkPart));
}

TEST_F(EvaluationBarTest, theLabelStandsBelowAndFlippedAbove) {
    bar_.setValues(centipawns(35), PieceColor::white, false);
    EXPECT_GT(inkIn(376, 400), 20);
    EXPECT_EQ(inkIn(4, 24), 0);
    bar_.setValues(centipawns(35), PieceColor::white, true);
    EXPECT_GT(inkIn(0, 24), 20);
    EXPECT_EQ(inkIn(376, 396), 0);
}

TEST_F(EvaluationBarTest, theLabelIsWhiteOnDarkBelowAHalfAndBlackOnLightFromAHalf) {
    struct Case {
        EngineEvaluation evaluation;
        bool isFlipped;
        bool isWhite;
    };
    for (const Case& each : {Case{centipawns(0), false, false}, Case{centipawns(80), false, false},
                             Case{centipawns(-80), false, true}, Case{centipawns(80), true, true},
                             Case{centipawns(-80), true, false}, Case{EngineEvaluation(), true, false}}) {
        bar_.setValues(each.evaluation, PieceColor::white, each.isFlipped);
        EXPECT_TRUE(isNear(plateGround(), each.isWhite ? darkPart : lightPart))
            << each.evaluation.formattedScore().toStdString() << each.isFlipped;
        EXPECT_EQ(whiteInk() > 10, each.isWhite) << each.evaluation.formattedScore().toStdString();
        EXPECT_EQ(blackInk() > 10, !each.isWhite) << each.evaluation.formattedScore().toStdString();
    }
}

TEST_F(EvaluationBarTest, theScoreIsReadByAssistiveTechnology) {
    EXPECT_EQ(bar_.accessibleName(), QStringLiteral("0.00"));
    bar_.setValues(mate(-4), PieceColor::white, false);
    EXPECT_EQ(bar_.accessibleName(), QStringLiteral("-M4"));
    bar_.setValues(centipawns(-120), PieceColor::black, false);
    EXPECT_EQ(bar_.accessibleName(), QStringLiteral("-1.20"));
    bar_.setCaption(QStringLiteral("Evaluation"));
    EXPECT_EQ(bar_.accessibleName(), QStringLiteral("Evaluation: -1.20"));
    bar_.setValues(centipawns(35), PieceColor::white, false);
    EXPECT_EQ(bar_.accessibleName(), QStringLiteral("Evaluation: +0.35"));
}

TEST_F(EvaluationBarTest, everyScoreFitsOnThePlate) {
    for (const EngineEvaluation& evaluation : {centipawns(-1240), centipawns(25500), mate(-123)}) {
        bar_.setValues(evaluation, PieceColor::white, false);
        const QImage image = pictureOf(bar_, 2);
        for (int y = 760; y < 790; ++y) {
            EXPECT_LT(std::abs(qGray(image.pixel(2, y)) - qGray(lightPart.rgb())), 16)
                << evaluation.formattedScore().toStdString();
        }
    }
}

TEST_F(EvaluationBarTest, theSameValuesPaintNothing) {
    bar_.setValues(centipawns(35), PieceColor::white, false);
    bar_.show();
    settle();
    PaintWatch paints(bar_);
    bar_.setValues(centipawns(35), PieceColor::white, false);
    EngineEvaluation deeper = centipawns(35);
    deeper.depth = 30;
    deeper.nodes = 123456;
    bar_.setValues(deeper, PieceColor::white, false);
    settle();
    EXPECT_EQ(paints.count, 0);
}

TEST_F(EvaluationBarTest, anotherScoreOfTheSameHeightPaintsTheLabelAlone) {
    bar_.setAnimated(true);
    bar_.setValues(mate(3), PieceColor::white, false);
    bar_.show();
    settle();
    PaintWatch paints(bar_);
    bar_.setValues(mate(2), PieceColor::white, false);
    EXPECT_FALSE(timerRuns());
    settle();
    EXPECT_EQ(paints.count, 1);
    EXPECT_LT(paints.region.boundingRect().height(), 24);
    EXPECT_GT(paints.region.boundingRect().top(), 370);
}

TEST_F(EvaluationBarTest, aStripPaintedAloneLooksAsInTheWholePicture) {
    bar_.setValues(centipawns(150), PieceColor::white, false);
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        // Over the edge between the parts, over the label's plate, and over the round corners.
        for (const QRect& strip : {QRect(0, 60, 32, 100), QRect(0, 360, 32, 30), QRect(0, 0, 32, 20)})
            EXPECT_EQ(test::repaintedPictureOf(bar_, ratio, strip), pictureOf(bar_, ratio))
                << ratio << " " << strip.top();
    }
}

TEST_F(EvaluationBarTest, withItsSurroundingsItCoversWhatIsBehindIt) {
    const QColor ground(10, 200, 30);
    bar_.setValues(centipawns(150), PieceColor::white, false);
    bar_.setSurroundings(ground, Qt::yellow);
    const QImage image = pictureOf(bar_, 1);
    EXPECT_TRUE(isNear(image.pixelColor(0, 0), ground));
    EXPECT_TRUE(isNear(image.pixelColor(31, 399), ground));
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        for (const QRect& strip : {QRect(0, 60, 32, 100), QRect(0, 360, 32, 40), QRect(0, 0, 32, 20)})
            EXPECT_EQ(test::repaintedPictureOf(bar_, ratio, strip), pictureOf(bar_, ratio))
                << ratio << " " << strip.top();
    }

    QWidget window;
    window.resize(100, 420);
    bar_.setParent(&window);
    window.show();
    settle();
    PaintWatch behind(window);
    PaintWatch paints(bar_);
    bar_.setValues(mate(2), PieceColor::white, false);
    settle();
    EXPECT_GE(paints.count, 1);
    EXPECT_EQ(behind.count, 0);
    bar_.setParent(nullptr);
}

TEST_F(EvaluationBarTest, aStepOfOneDevicePixelIsNoPictureOfItsOwn) {
    bar_.setAnimated(true);
    bar_.setValues(centipawns(0), PieceColor::white, false);
    bar_.show();
    settle();
    PaintWatch paints(bar_);
    // Six pixels: at most every second one is shown, and the label once.
    bar_.setValues(centipawns(24), PieceColor::white, false);
    EXPECT_TRUE(pumpUntil([this] { return !timerRuns(); }));
    settle();
    EXPECT_GE(paints.count, 2);
    EXPECT_LE(paints.count, 4);
    EXPECT_EQ(lightHeight(), 206);
}

TEST_F(EvaluationBarTest, aWayOfOneStepGoesWithTheLabelsPicture) {
    bar_.setAnimated(true);
    bar_.setValues(centipawns(0), PieceColor::white, false);
    bar_.show();
    settle();
    PaintWatch paints(bar_);
    bar_.setValues(centipawns(12), PieceColor::white, false);  // three pixels
    EXPECT_FALSE(timerRuns());
    settle();
    EXPECT_EQ(paints.count, 1);
    EXPECT_EQ(lightHeight(), 203);
}

TEST_F(EvaluationBarTest, theStripAndTheLabelArePaintedWithoutWhatLiesBetween) {
    bar_.setValues(centipawns(0), PieceColor::white, false);
    bar_.show();
    settle();
    PaintWatch paints(bar_);
    bar_.setValues(centipawns(50), PieceColor::white, false);
    settle();
    EXPECT_FALSE(paints.region.contains(QPoint(16, 300)));
    EXPECT_EQ(paints.region.rectCount(), 2);
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        const QRegion both = QRegion(0, 150, 32, 60) + QRegion(0, 370, 32, 30);
        EXPECT_EQ(test::repaintedPictureOf(bar_, ratio, both), pictureOf(bar_, ratio)) << ratio;
    }
}

TEST_F(EvaluationBarTest, aChangeUnderOneDevicePixelDoesNotMove) {
    bar_.setAnimated(true);
    bar_.show();
    settle();
    bar_.setValues(centipawns(1), PieceColor::white, false);  // 0.25 of a pixel
    EXPECT_FALSE(timerRuns());
    EXPECT_EQ(lightHeight(), 200);
}

TEST_F(EvaluationBarTest, heightsTravelAndThenNoTimerRuns) {
    bar_.setAnimated(true);
    bar_.show();
    settle();
    PaintWatch paints(bar_);
    bar_.setValues(mate(1), PieceColor::white, false);
    EXPECT_TRUE(timerRuns());
    EXPECT_EQ(lightHeight(), 200) << "it begins where it was";
    paints.clear();
    EXPECT_TRUE(pumpUntil([this] { return !timerRuns(); }));
    settle();
    EXPECT_GE(paints.count, 1);
    EXPECT_LE(paints.count, 7) << "a quarter of a second at twenty frames, and the label";
    EXPECT_EQ(lightHeight(), 380);
}

TEST_F(EvaluationBarTest, aNewValueDuringAMotionGoesOnFromThere) {
    bar_.setAnimated(true);
    bar_.show();
    settle();
    bar_.setValues(mate(1), PieceColor::white, false);
    EXPECT_TRUE(pumpUntil([this] { return lightHeight() > 210; }));
    const int reached = lightHeight();
    bar_.setValues(mate(-1), PieceColor::white, false);
    EXPECT_NEAR(lightHeight(), reached, 2);
    EXPECT_TRUE(reaches(20));
}

TEST_F(EvaluationBarTest, reducedMotionChangesAtOnce) {
    bar_.show();
    settle();
    bar_.setValues(mate(1), PieceColor::white, false);
    EXPECT_EQ(lightHeight(), 380);
    EXPECT_FALSE(timerRuns());
    bar_.setAnimated(true);
    bar_.setValues(mate(-1), PieceColor::white, false);
    EXPECT_TRUE(timerRuns());
    bar_.setAnimated(false);
    EXPECT_EQ(lightHeight(), 20) << "a motion under way ends";
    EXPECT_FALSE(timerRuns());
}

TEST_F(EvaluationBarTest, aHiddenBarDoesNotAnimate) {
    bar_.setAnimated(true);
    bar_.setValues(mate(1), PieceColor::white, false);
    EXPECT_FALSE(timerRuns());
    EXPECT_EQ(lightHeight(), 380);
}

}  // namespace
}  // namespace orlix
