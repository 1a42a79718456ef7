// The size inside a quadrilateral.
#include "interpolation/size_quad.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using vorel::tessalo2d::interpolate_size_quad;

namespace {

double size(double xi, double eta, bool expected = true, double f0 = 1, double f1 = 2,
            double f2 = 4, double f3 = 8)
{
    double out = -7;
    EXPECT_EQ(interpolate_size_quad(xi, eta, f0, f1, f2, f3, out), expected);
    return out;
}

} // namespace

TEST(InterpolateSizeQuad, ThreeSidesAreThePairsOfTheirEnds)
{
    EXPECT_EQ(size(0, -1), 1.5);
    EXPECT_EQ(size(-1, 0), 4.5);
    EXPECT_EQ(size(0, 1), 6.0);
    EXPECT_EQ(size(-1, -1), 1.0);
    EXPECT_EQ(size(1, -1), 2.0);
    EXPECT_EQ(size(1, 1), 4.0);
    EXPECT_EQ(size(-1, 1), 8.0);
    // Within the tolerance of a side counts as on it: s and t are off by half of 1e-12.
    EXPECT_EQ(size(0, -1 + 1e-12), 1.5);
}

TEST(InterpolateSizeQuad, CentreHasTheWeightsOfThreeQuartersOfTheWay)
{
    EXPECT_EQ(size(0, 0), 0.0625 * 1 + 0.1875 * 2 + 0.5625 * 4 + 0.1875 * 8);
}

TEST(InterpolateSizeQuad, FourthSideRunsThroughTheGeneralCase)
{
    // s2 = 1, t2 = 0.75: between f1 and f2 three quarters of the way.
    EXPECT_EQ(size(1, 0), 3.5);
}

TEST(InterpolateSizeQuad, InsideDoesNotJoinTheSides)
{
    // A little above eta = -1 the second mapping begins at t2 = 0.5 and at xi = 0 s2 = 0.75.
    const double low = 0.25 * 1 + 0.75 * 2;
    const double high = 0.25 * 8 + 0.75 * 4;
    EXPECT_NEAR(size(0, -1 + 1e-9), 0.5 * (low + high), 1e-8);
}

TEST(InterpolateSizeQuad, RefusesSizesThatAreNotAboveZero)
{
    EXPECT_EQ(size(0, 0, false, 0), 0.0);
    EXPECT_EQ(size(0, 0, false, 1, -1), 0.0);
    EXPECT_EQ(size(0, 0, false, 1, 2, NAN), 0.0);
    EXPECT_EQ(size(0, 0, false, 1, 2, 3, 0), 0.0);
    // A side asks its own two ends only.
    EXPECT_EQ(size(0, -1, true, 1, 2, 0, 0), 1.5);
    (void)size(0, -1, false, 0, 2);
}

TEST(InterpolateSizeQuad, RefusesResultsOutOfRange)
{
    const double largest = std::numeric_limits<double>::max();
    (void)size(1e-3, 1e-3, false, largest, largest, largest, largest);
    EXPECT_LE(size(-9, 0, false, 1, 4, 4, 1), 0.0);
}
