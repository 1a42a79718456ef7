#include "conversion/triangle_quality.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace vorel::tessalo2d;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

double plane(vec2 a, vec2 b, vec2 c)
{
    return triangle_quality(a, b, c);
}

double space(vec3 a, vec3 b, vec3 c)
{
    return triangle_quality(a, b, c);
}

} // namespace

TEST(TriangleQuality, IsOneForAnEquilateralTriangleAndNegativeForAClockwiseOne)
{
    const double h = std::sqrt(3.0) / 2;
    EXPECT_NEAR(plane({{0, 0}}, {{1, 0}}, {{0.5, h}}), 1.0, 1e-15);
    EXPECT_NEAR(plane({{0.5, h}}, {{1, 0}}, {{0, 0}}), -1.0, 1e-15);
    EXPECT_NEAR(space({{0.5, h, 0}}, {{1, 0, 0}}, {{0, 0, 0}}), 1.0, 1e-15);
}

TEST(TriangleQuality, IsTheDoubledAreaOverLongestSideTimesPerimeter)
{
    // 3-4-5: doubled area 12, longest 5, perimeter 12.
    EXPECT_DOUBLE_EQ(plane({{0, 0}}, {{4, 0}}, {{0, 3}}), 2 * std::sqrt(3.0) / 5);
    EXPECT_DOUBLE_EQ(space({{0, 0, 1}}, {{4, 0, 1}}, {{0, 3, 1}}), 2 * std::sqrt(3.0) / 5);
}

TEST(TriangleQuality, IsZeroWithoutAreaAndWithoutSides)
{
    EXPECT_EQ(plane({{0, 0}}, {{1, 1}}, {{2, 2}}), 0.0);
    EXPECT_EQ(plane({{1, 2}}, {{1, 2}}, {{1, 2}}), 0.0);
    EXPECT_EQ(space({{0, 0, 0}}, {{1, 1, 1}}, {{1, 1, 1}}), 0.0);
}

TEST(TriangleQuality, IsZeroWhereASideIsNotANumberAndLeastWhereOnlyTheRatioIsNot)
{
    EXPECT_EQ(plane({{0, NOT_A_NUMBER}}, {{1, 0}}, {{0, 1}}), 0.0);
    EXPECT_EQ(plane({{0, 0}}, {{INF, 0}}, {{0, 1}}), -1.0);
}

TEST(TriangleQuality, NeverLeavesItsRange)
{
    const double huge = std::numeric_limits<double>::max();
    const double values[] = {0.0, -0.0, 1.0, -1.0, 1e-300, 5e-324, 1e200, -huge, INF, NOT_A_NUMBER};
    for (const double x : values)
        for (const double y : values)
            for (const double z : values) {
                const double q = plane({{x, y}}, {{y, z}}, {{z, x}});
                EXPECT_TRUE(q >= -1 && q <= 1) << x << ' ' << y << ' ' << z;
                const double r = space({{x, y, z}}, {{y, z, x}}, {{z, z, y}});
                EXPECT_TRUE(r >= -1 && r <= 1) << x << ' ' << y << ' ' << z;
            }
}

TEST(TriangleQuality, IsCutToItsRangeWhateverTheAreaOfTheSides)
{
    EXPECT_EQ(quality_of_sides(1.0, 1.0, 1.0, 1.0), 1.0);
    EXPECT_EQ(quality_of_sides(INF, 1.0, 1.0, 1.0), 1.0);
    EXPECT_EQ(quality_of_sides(-1.0, 1.0, 1.0, 1.0), -1.0);
    EXPECT_EQ(quality_of_sides(-INF, 1.0, 1.0, 1.0), -1.0);
    EXPECT_EQ(quality_of_sides(NOT_A_NUMBER, 1.0, 1.0, 1.0), -1.0);
    EXPECT_EQ(quality_of_sides(1.0, NOT_A_NUMBER, 1.0, 1.0), 0.0);
}

TEST(TriangleQuality, TakesTheShorterSidesWhereTheLongestWouldLoseTheArea)
{
    // The height 1e-17 of this needle is lost in the side that carries it over a distance of 1.
    const double needle = plane({{0, 0}}, {{0, 1e-17}}, {{1, 1}});
    EXPECT_NEAR(needle / 1e-17, -2 * std::sqrt(3.0) / (std::sqrt(2.0) * 2 * std::sqrt(2.0)), 1);
}

TEST(TriangleQuality, OnATieUsesTheThirdSideInThePlaneAndTheFirstTwoInSpace)
{
    // d is b turned by a right angle, so both have one length and are shorter than a. The two
    // products round differently: which one was taken shows in the last bits.
    std::mt19937 draw(5);
    std::uniform_real_distribution<double> number(0.5, 1.0);
    int told_apart = 0;
    for (int k = 0; k < 200; ++k) {
        const double x = number(draw);
        const double y = number(draw);
        const vec2 b{{x, y}};
        const vec2 a = b - vec2{{y, -x}};
        const vec2 d = b - a;
        if (length(d) != length(b) || cross(a, b) == cross(a, d)) continue;
        ++told_apart;
        const double lengths[] = {length(a), length(b), length(d)};
        EXPECT_EQ(double_area_by_lengths(a, b, d, lengths[0], lengths[1], lengths[2]), cross(a, d));
        const vec3 a3{{a[0], a[1], 0}};
        const vec3 b3{{b[0], b[1], 0}};
        EXPECT_EQ(double_area_by_lengths(a3, b3, b3 - a3, lengths[0], lengths[1], lengths[2]),
                  std::abs(cross(a, b)));
    }
    EXPECT_GT(told_apart, 10);
}
