#include "app/console/EQCurve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace orvanta {
namespace {

using testing::AllOf;
using testing::Each;
using testing::Field;
using testing::Ge;
using testing::Le;

using BandGains = std::array<double, kEQBandCount>;

constexpr BandGains kFlatGains{};
constexpr EQCurve kCurve{.width = 352.0, .height = 136.0};
constexpr double kInfiniteGain = std::numeric_limits<double>::infinity();
constexpr double kNoGain = std::numeric_limits<double>::quiet_NaN();

BandGains onlyBand(std::size_t band, double gain) {
    BandGains gains{};
    gains.at(band) = gain;
    return gains;
}

double centreOf(std::size_t band) {
    return static_cast<double>(kEQFrequencies.at(band));
}

/// Above and below the centre of a band by this many octaves.
double octavesFrom(std::size_t band, double octaves) {
    return centreOf(band) * std::exp2(octaves);
}

TEST(EQCurve, LeavesItsPaddingFreeOnACanvas) {
    const EQCurve curve = EQCurve::onCanvas(376.0, 160.0);
    EXPECT_EQ(curve.width, 352.0);
    EXPECT_EQ(curve.height, 136.0);
    const EQCurve none = EQCurve::onCanvas(20.0, 0.0);
    EXPECT_EQ(none.width, 0.0);
    EXPECT_EQ(none.height, 0.0);
}

TEST(EQCurve, SpansTwentyHertzToTwentyKilohertzLogarithmically) {
    EXPECT_NEAR(kCurve.x(20.0), 0.0, 1e-9);
    EXPECT_NEAR(kCurve.x(200.0), 352.0 / 3.0, 1e-9);
    EXPECT_NEAR(kCurve.x(20000.0), 352.0, 1e-9);
}

TEST(EQCurve, SpansFourteenDecibelsUpAndDown) {
    EXPECT_DOUBLE_EQ(kCurve.y(14.0), 0.0);
    EXPECT_DOUBLE_EQ(kCurve.y(7.0), 34.0);
    EXPECT_DOUBLE_EQ(kCurve.y(0.0), 68.0);
    EXPECT_DOUBLE_EQ(kCurve.y(-14.0), 136.0);
}

TEST(EQCurve, ShowsGainsBeyondItsRangeAtItsEdges) {
    EXPECT_DOUBLE_EQ(kCurve.y(100.0), 0.0);
    EXPECT_DOUBLE_EQ(kCurve.y(-100.0), 136.0);
}

TEST(EQCurve, IsStraightOnZeroWhenFlat) {
    const auto line = kCurve.points(kFlatGains);
    EXPECT_THAT(line, Each(Field(&EQCurve::Point::y, 68.0)));
}

TEST(EQCurve, RunsFromEdgeToEdgeInEqualSteps) {
    const auto line = kCurve.points(kFlatGains);
    ASSERT_EQ(line.size(), 200U);
    for (std::size_t index = 0; index < line.size(); ++index)
        EXPECT_NEAR(line.at(index).x, 352.0 * static_cast<double>(index) / 199.0, 1e-9);
}

TEST(EQCurve, BeginsAndEndsWithTheResponseAtTheEndsOfTheAxis) {
    BandGains gains = onlyBand(0, 6.0);
    gains.back() = -4.0;
    const auto line = kCurve.points(gains);
    EXPECT_NEAR(line.front().y, kCurve.y(EQCurve::responseDB(gains, 20.0)), 1e-9);
    EXPECT_NEAR(line.back().y, kCurve.y(EQCurve::responseDB(gains, 20000.0)), 1e-9);
    EXPECT_LT(line.front().y, 68.0);
    EXPECT_GT(line.back().y, 68.0);
}

TEST(EQCurve, ReachesABandsGainAtItsCentreAndNoHigher) {
    for (std::size_t band = 0; band < kEQFrequencies.size(); ++band) {
        const BandGains gains = onlyBand(band, 12.0);
        EXPECT_DOUBLE_EQ(EQCurve::responseDB(gains, centreOf(band)), 12.0) << band;
        const auto line = kCurve.points(gains);
        EXPECT_THAT(line, Each(Field(&EQCurve::Point::y, Ge(kCurve.y(12.0))))) << band;
    }
}

TEST(EQCurve, MirrorsACut) {
    for (const double frequency : {20.0, 400.0, 500.0, 900.0})
        EXPECT_DOUBLE_EQ(EQCurve::responseDB(onlyBand(4, -12.0), frequency),
                         -EQCurve::responseDB(onlyBand(4, 12.0), frequency));
}

TEST(EQCurve, RisesAboveABandsGainWhereNeighboursAddToIt) {
    BandGains gains = onlyBand(4, 6.0);
    gains[5] = 6.0;
    // A neighbour is an octave away, which is one and a half widths of a bell.
    EXPECT_NEAR(EQCurve::responseDB(gains, centreOf(4)), 6.0 + 6.0 * std::exp(-1.125), 1e-9);
}

TEST(EQCurve, StopsAtTheEdgesOfItsRange) {
    BandGains loud;
    loud.fill(12.0);
    BandGains quiet;
    quiet.fill(-12.0);
    EXPECT_EQ(EQCurve::responseDB(loud, 500.0), 14.0);
    EXPECT_EQ(EQCurve::responseDB(quiet, 500.0), -14.0);
    const auto line = kCurve.points(loud);
    EXPECT_EQ(std::ranges::min(line, {}, &EQCurve::Point::y).y, 0.0);
}

TEST(EQCurve, HasBellsOfTwoThirdsOfAnOctave) {
    for (std::size_t band = 1; band < 9; ++band)
        for (const double side : {-2.0 / 3.0, 2.0 / 3.0})
            EXPECT_NEAR(EQCurve::responseDB(onlyBand(band, 10.0), octavesFrom(band, side)),
                        10.0 * std::exp(-0.5), 1e-9)
                << band;
}

TEST(EQCurve, HasWiderBellsForTheOutermostBands) {
    for (const std::size_t band : {0U, 9U})
        for (const double side : {-1.0 / 0.7, 1.0 / 0.7})
            EXPECT_NEAR(EQCurve::responseDB(onlyBand(band, 10.0), octavesFrom(band, side)),
                        10.0 * std::exp(-0.5), 1e-9)
                << band;
}

TEST(EQCurve, LeavesBandsOutThatAreNearlyFlat) {
    EXPECT_EQ(EQCurve::responseDB(onlyBand(3, 0.05), 250.0), 0.0);
    EXPECT_EQ(EQCurve::responseDB(onlyBand(3, -0.05), 250.0), 0.0);
    EXPECT_DOUBLE_EQ(EQCurve::responseDB(onlyBand(3, 0.06), 250.0), 0.06);
    EXPECT_DOUBLE_EQ(EQCurve::responseDB(onlyBand(3, -0.06), 250.0), -0.06);
}

TEST(EQCurve, TakesWhatIsNoFiniteNumberAsFlat) {
    for (const double odd : {kNoGain, kInfiniteGain, -kInfiniteGain}) {
        BandGains gains = onlyBand(2, odd);
        EXPECT_FALSE(EQCurve::isActive(odd));
        EXPECT_EQ(EQCurve::responseDB(gains, 125.0), 0.0);
        EXPECT_DOUBLE_EQ(kCurve.y(odd), 68.0);
        gains[6] = 5.0;
        const auto line = kCurve.points(gains);
        EXPECT_THAT(line, Each(Field(&EQCurve::Point::y, AllOf(Ge(kCurve.y(5.0)), Le(68.0)))));
    }
}

TEST(EQCurve, TakesMissingBandsAsFlatAndHasNoEleventh) {
    constexpr std::array<double, 2> few{0.0, 3.0};
    EXPECT_EQ(EQCurve::responseDB(few, 62.0), 3.0);
    EXPECT_EQ(EQCurve::responseDB({}, 62.0), 0.0);
    std::array<double, 11> many{};
    many.back() = 12.0;
    EXPECT_EQ(EQCurve::responseDB(many, 16000.0), 0.0);
}

TEST(EQCurve, GivesADragTheGainAtItsHeightUnrounded) {
    EXPECT_DOUBLE_EQ(kCurve.gainAt(68.0), 0.0);
    EXPECT_DOUBLE_EQ(kCurve.gainAt(34.0), 7.0);
    EXPECT_DOUBLE_EQ(kCurve.gainAt(50.0), -14.0 + (1.0 - 50.0 / 136.0) * 28.0);
    for (const double gain : {-11.9, -3.3, 0.1, 8.75})
        EXPECT_NEAR(kCurve.gainAt(kCurve.y(gain)), gain, 1e-9);
}

TEST(EQCurve, StopsADragAtTwelveDecibels) {
    EXPECT_EQ(kCurve.gainAt(0.0), 12.0);
    EXPECT_EQ(kCurve.gainAt(-500.0), 12.0);
    EXPECT_EQ(kCurve.gainAt(136.0), -12.0);
    EXPECT_EQ(kCurve.gainAt(500.0), -12.0);
    EXPECT_EQ(kCurve.gainAt(-kInfiniteGain), 12.0);
    EXPECT_EQ(kCurve.gainAt(kInfiniteGain), -12.0);
}

TEST(EQCurve, GivesADragNothingWhereItHasNoHeight) {
    EXPECT_EQ(EQCurve{}.gainAt(5.0), 0.0);
    EXPECT_EQ(kCurve.gainAt(kNoGain), 0.0);
}

} // namespace
} // namespace orvanta
