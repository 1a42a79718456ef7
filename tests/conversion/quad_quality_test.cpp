#include "conversion/quad_quality.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace vorel::tessalo2d;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
const double PI = std::acos(-1.0);
const unsigned IN_ORDER[] = {0, 1, 2, 3};

using points = std::vector<double>;

double shape(const points& p, const unsigned* ids = IN_ORDER)
{
    return quad_shape_quality(p.data(), 2, ids);
}

double shape3(const points& p, const unsigned* ids = IN_ORDER)
{
    return quad_shape_quality3(p.data(), 3, ids);
}

double warp(const points& p, const unsigned* ids = IN_ORDER)
{
    return quad_warp(p.data(), 3, ids);
}

/// Two unit squares' halves folded by `angle` about the diagonal from node 0 to node 2.
points folded(double angle)
{
    const double h = std::sqrt(0.5);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {0, 0, 0, h, -h, 0, 2 * h, 0, 0, h, h * c, h * s};
}

} // namespace

TEST(QuadShapeQuality, IsOneForASquareAndMinusOneForAClockwiseOne)
{
    const points square{0, 0, 1, 0, 1, 1, 0, 1};
    EXPECT_DOUBLE_EQ(shape(square), 1.0);
    const unsigned clockwise[] = {3, 2, 1, 0};
    EXPECT_DOUBLE_EQ(shape(square, clockwise), -1.0);
}

TEST(QuadShapeQuality, ComparesTheLeastCornerWithTheLongestExtentAndThePerimeter)
{
    // 2 x 1: corners of doubled area 2, diagonal sqrt(5), perimeter 6.
    EXPECT_DOUBLE_EQ(shape({0, 0, 2, 0, 2, 1, 0, 1}),
                     2 / (std::sqrt(5.0) * 6) * 4 * std::sqrt(2.0));
}

TEST(QuadShapeQuality, TakesASideWhereNoDiagonalIsLonger)
{
    // A trapezium over a base of 10 with both diagonals sqrt(82).
    const double legs = 2 * std::sqrt(2.0);
    EXPECT_DOUBLE_EQ(shape({0, 0, 10, 0, 9, 1, 1, 1}),
                     std::min(10.0, 8.0) / (10 * (18 + legs)) * 4 * std::sqrt(2.0));
}

TEST(QuadShapeQuality, IsNegativeForAConcaveOneAndZeroForACornerWithoutArea)
{
    EXPECT_LT(shape({0, 0, 4, 1, 1, 1, 1, 4}), 0.0);
    EXPECT_EQ(shape({0, 0, 1, 0, 2, 0, 0, 2}), 0.0);
    EXPECT_EQ(shape({1, 1, 1, 1, 1, 1, 1, 1}), 0.0);
}

TEST(QuadShapeQuality3, IsOneForASquareInAnyPlaneAndTurn)
{
    const points square{0, 0, 0, 1, 0, 1, 1, std::sqrt(2.0), 1, 0, std::sqrt(2.0), 0};
    const unsigned clockwise[] = {3, 2, 1, 0};
    EXPECT_NEAR(shape3(square), 1.0, 1e-15);
    EXPECT_NEAR(shape3(square, clockwise), 1.0, 1e-15);
}

TEST(QuadShapeQuality3, IsThePlaneMeasureWithoutSignForAFlatConvexOne)
{
    std::mt19937 draw(3);
    std::uniform_real_distribution<double> move(-0.2, 0.2);
    for (int k = 0; k < 100; ++k) {
        points flat{0, 0, 1, 0, 1, 1, 0, 1};
        for (double& x : flat) x += move(draw);
        points lifted;
        for (std::size_t i = 0; i < 4; ++i)
            lifted.insert(lifted.end(), {flat[2 * i], flat[2 * i + 1], 0});
        // A cosine that rounds to just below 1 moves the fold by the root of the rounding.
        EXPECT_NEAR(shape3(lifted), shape(flat), 1e-8) << "draw " << k;
    }
}

TEST(QuadShapeQuality3, IsMultipliedByTheFold)
{
    for (const double angle : {0.3, 1.0, PI / 2, 2.0}) {
        const points p = folded(angle);
        // Corners 1 and 3 keep their area of 1; those on the fold shrink with it.
        const auto corner = [&](int a, int b, int c) {
            const vec3 u = load<3>(p.data() + 3 * a) - load<3>(p.data() + 3 * b);
            const vec3 w = load<3>(p.data() + 3 * c) - load<3>(p.data() + 3 * b);
            return length(cross(u, w));
        };
        const double least = std::min(corner(3, 0, 1), corner(1, 2, 3));
        const double longest = std::sqrt(2.0);
        EXPECT_NEAR(shape3(p), least / (longest * 4) * 4 * std::sqrt(2.0) * warp(p), 1e-14);
    }
}

TEST(QuadShapeQuality3, DoesNotDependOnTheUnitOfLength)
{
    std::mt19937 draw(5);
    std::uniform_real_distribution<double> move(-0.3, 0.3);
    for (int k = 0; k < 100; ++k) {
        points p{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
        for (double& x : p) x += move(draw);
        // Powers of two round nothing.
        for (const double unit : {0x1p-20, 0x1p-3, 0x1p20}) {
            points scaled = p;
            for (double& x : scaled) x *= unit;
            EXPECT_EQ(shape3(scaled), shape3(p)) << "draw " << k << ", unit " << unit;
        }
    }
}

TEST(QuadShapeQuality3, IsZeroForACornerWithoutAreaAndForNoNumbers)
{
    EXPECT_EQ(shape3({0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 2, 0}), 0.0);
    EXPECT_EQ(shape3({0, 0, NOT_A_NUMBER, 1, 0, 0, 1, 1, 0, 0, 1, 0}), 0.0);
    EXPECT_EQ(shape3(points(12, 5.0)), 0.0);
}

TEST(QuadWarp, IsOneForAPlanarOneAndFallsWithTheFold)
{
    EXPECT_DOUBLE_EQ(warp({0, 0, 0, 2, 0, 0, 3, 2, 0, 0, 1, 0}), 1.0);
    // The normals of the corners off the diagonal make the angle of the fold.
    EXPECT_NEAR(warp(folded(0.0)), 1.0, 1e-7);
    EXPECT_NEAR(warp(folded(PI / 4)), 0.75, 1e-14);
    EXPECT_NEAR(warp(folded(PI / 2)), 0.5, 1e-14);
    EXPECT_NEAR(warp(folded(3 * PI / 4)), 0.25, 1e-14);
}

TEST(QuadWarp, IsZeroWithACornerWithoutAreaOrTurnedOver)
{
    EXPECT_EQ(warp({0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 2, 0}), 0.0);
    // A flat dart: the normal of its reflex corner is opposed.
    EXPECT_EQ(warp({0, 0, 0, 4, 1, 0, 1, 1, 0, 1, 4, 0}), 0.0);
    EXPECT_EQ(warp({0, 0, INF, 1, 0, 0, 1, 1, 0, 0, 1, 0}), 0.0);
}

TEST(QuadWarp, IsThatOfThePairSharedWithTheShape)
{
    std::mt19937 draw(4);
    std::uniform_real_distribution<double> number(-1, 1);
    for (int k = 0; k < 200; ++k) {
        points p(12);
        for (double& x : p) x = number(draw);
        const shape_and_warp both = quad_shape_and_warp(p.data(), 3, IN_ORDER);
        EXPECT_EQ(both.shape, shape3(p));
        EXPECT_EQ(both.warp, warp(p));
        EXPECT_TRUE(both.shape >= 0 && both.shape <= 1 && both.warp >= 0 && both.warp <= 1);
    }
}

TEST(FoldFactor, TakesThePairThatAgreesLess)
{
    const vec3 x{{1, 0, 0}};
    const vec3 y{{0, 3, 0}};
    const vec3 minus{{-5, 0, 0}};
    const vec3 slant{{2, 2, 0}};
    EXPECT_DOUBLE_EQ(fold_factor(x, x, x, x), 1.0);
    EXPECT_DOUBLE_EQ(fold_factor(x, y, x, x), 0.5);
    EXPECT_DOUBLE_EQ(fold_factor(x, x, x, y), 0.5);
    EXPECT_DOUBLE_EQ(fold_factor(x, slant, x, x), 0.75);
    EXPECT_EQ(fold_factor(x, y, x, minus), 0.0);
    EXPECT_EQ(fold_factor(x, minus, x, y), 0.0);
}

TEST(FoldFactor, StaysInRangeWhereTheCosineIsRoundedOutOfIt)
{
    std::mt19937 draw(6);
    std::uniform_real_distribution<double> entry(-1.0, 1.0);
    int beyond[2] = {0, 0};
    for (int round = 0; round < 1000; ++round) {
        const vec3 n{{entry(draw), entry(draw), entry(draw)}};
        const double factor = entry(draw);
        const vec3 m = factor * n;
        const double squares =
            (n[0] * n[0] + n[1] * n[1] + n[2] * n[2]) * (m[0] * m[0] + m[1] * m[1] + m[2] * m[2]);
        const double cosine = (n[0] * m[0] + n[1] * m[1] + n[2] * m[2]) / std::sqrt(squares);
        if (cosine < -1.0) {
            ++beyond[0];
            EXPECT_EQ(fold_factor(n, m, n, m), 0.0) << "round " << round;
        } else if (cosine > 1.0) {
            ++beyond[1];
            EXPECT_DOUBLE_EQ(fold_factor(n, m, n, m), 1.0) << "round " << round;
        }
    }
    EXPECT_GT(beyond[0], 20);
    EXPECT_GT(beyond[1], 20);
}

TEST(FoldFactor, OfANormalWithoutLengthIsNotANumber)
{
    const vec3 none{{0, 0, 0}};
    const vec3 x{{1, 0, 0}};
    EXPECT_TRUE(std::isnan(fold_factor(none, x, x, x)));
}

TEST(QuadAngleQuality, IsOneForRectanglesAndZeroWithAFlatCorner)
{
    const points rectangle{0, 0, 2, 0, 2, 1, 0, 1};
    EXPECT_DOUBLE_EQ(quad_angle_quality<2>(rectangle.data(), 2, IN_ORDER), 1.0);
    const points flat{0, 0, 1, 0, 2, 0, 0, 2};
    EXPECT_NEAR(quad_angle_quality<2>(flat.data(), 2, IN_ORDER), 0.0, 1e-15);
}

TEST(QuadAngleQuality, IsTheWorstCornersNearnessToARightAngle)
{
    // 45 and 135 degrees are equally far from 90.
    const points rhombus{0, 0, 1, 0, 2, 1, 1, 1};
    EXPECT_DOUBLE_EQ(quad_angle_quality<2>(rhombus.data(), 2, IN_ORDER), 0.5);
    const points space{0, 0, 7, 1, 0, 7, 2, 1, 7, 1, 1, 7};
    EXPECT_DOUBLE_EQ(quad_angle_quality<3>(space.data(), 3, IN_ORDER), 0.5);
}

TEST(QuadAngleQuality, IsNegativeForAReflexCornerAndAtLeastMinusOne)
{
    const points dart{0, 0, 4, 1, 1, 1, 1, 4};
    EXPECT_DOUBLE_EQ(quad_angle_quality<2>(dart.data(), 2, IN_ORDER), -1.0);
    // A corner of a little more than 180 degrees.
    const points blunt{0, 0, 2, 0, 0.99, 0.99, 0, 2};
    EXPECT_EQ(quad_angle_quality<2>(blunt.data(), 2, IN_ORDER), -1.0);
}

TEST(QuadAngleQuality, PassesOverCornersWithoutAnAngle)
{
    const points none(8, NOT_A_NUMBER);
    EXPECT_EQ(quad_angle_quality<2>(none.data(), 2, IN_ORDER), 1.0);
}

TEST(TriangleAngleQuality, IsOneForARightTwoThirdsForAnEquilateralAndZeroForAFlatTriangle)
{
    const points right{0, 0, 3, 0, 0, 1};
    EXPECT_DOUBLE_EQ(triangle_angle_quality<2>(right.data(), 2, IN_ORDER), 1.0);
    const points equilateral{0, 0, 1, 0, 0.5, std::sqrt(3.0) / 2};
    EXPECT_DOUBLE_EQ(triangle_angle_quality<2>(equilateral.data(), 2, IN_ORDER), 2.0 / 3);
    const points flat{0, 0, 2, 0, 1, 0};
    EXPECT_NEAR(triangle_angle_quality<2>(flat.data(), 2, IN_ORDER), 0.0, 1e-15);
    // 135 degrees, in the plane z = 5.
    const points obtuse{0, 0, 5, 1, 0, 5, -1, 1, 5};
    EXPECT_DOUBLE_EQ(triangle_angle_quality<3>(obtuse.data(), 3, IN_ORDER), 0.5);
}

TEST(TriangleAngleQuality, OfAClockwiseTriangleIsItsLeastAngleNegative)
{
    const points clockwise{0, 0, 0, 1, 1, 0};
    EXPECT_DOUBLE_EQ(triangle_angle_quality<2>(clockwise.data(), 2, IN_ORDER), -0.5);
}

TEST(TriangleAngleQuality, IsLeastWithoutAnyAngle)
{
    const points none(6, NOT_A_NUMBER);
    EXPECT_EQ(triangle_angle_quality<2>(none.data(), 2, IN_ORDER), -1.0);
}
