#include "measures/corner_angles.h"

#include <gtest/gtest.h>

using namespace vorel::tessalo2d;

namespace {

const double PI = std::acos(-1.0);
const unsigned IN_ORDER[] = {0, 1, 2, 3};

} // namespace

TEST(TriangleCornerAngle, IsFormedAtEachCornerFromTheNextToThePrevious)
{
    // Legs 1 and sqrt(3): 90, 60 and 30 degrees.
    const double points[] = {0, 0, 1, 0, 0, std::sqrt(3.0)};
    EXPECT_DOUBLE_EQ(triangle_corner_angle<2>(points, 2, IN_ORDER, 0), PI / 2);
    EXPECT_DOUBLE_EQ(triangle_corner_angle<2>(points, 2, IN_ORDER, 1), PI / 3);
    EXPECT_DOUBLE_EQ(triangle_corner_angle<2>(points, 2, IN_ORDER, 2), PI / 6);
}

TEST(TriangleCornerAngle, HasTheSignOfTheTurnInThePlaneOnly)
{
    const double points[] = {0, 0, 1, 0, 0, 1};
    const unsigned clockwise[] = {0, 2, 1};
    EXPECT_DOUBLE_EQ(triangle_corner_angle<2>(points, 2, clockwise, 0), -PI / 2);
    EXPECT_DOUBLE_EQ(triangle_corner_angle<2>(points, 2, clockwise, 1), -PI / 4);
    const double space[] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    EXPECT_DOUBLE_EQ(triangle_corner_angle<3>(space, 3, clockwise, 0), PI / 2);
    EXPECT_DOUBLE_EQ(triangle_corner_angle<3>(space, 3, clockwise, 1), PI / 4);
}

TEST(TriangleCornerAngle, IsZeroWhereAllCornersCoincide)
{
    const double points[] = {3, 4, 3, 4, 3, 4};
    for (int k = 0; k < 3; ++k) EXPECT_EQ(triangle_corner_angle<2>(points, 2, IN_ORDER, k), 0.0);
}

TEST(QuadCornerAngle, OfAReflexCornerIsNegativeInThePlaneAndBelowPiInSpace)
{
    // A dart: the corner at (1, 1) opens by 270 degrees.
    const double points[] = {0, 0, 4, 1, 1, 1, 1, 4};
    EXPECT_DOUBLE_EQ(quad_corner_angle<2>(points, 2, IN_ORDER, 2), -PI / 2);
    const double space[] = {0, 0, 0, 4, 1, 0, 1, 1, 0, 1, 4, 0};
    EXPECT_DOUBLE_EQ(quad_corner_angle<3>(space, 3, IN_ORDER, 2), PI / 2);
}

TEST(CornerAngles, AreListedInOrderAndScaledToTheIdealAngle)
{
    const double points[] = {0, 0, 2, 0, 1, 1, 0, 1};
    double four[4];
    quad_corner_angles<2>(points, 2, IN_ORDER, false, four);
    EXPECT_DOUBLE_EQ(four[0], PI / 2);
    EXPECT_DOUBLE_EQ(four[1], PI / 4);
    EXPECT_DOUBLE_EQ(four[2], 3 * PI / 4);
    EXPECT_DOUBLE_EQ(four[3], PI / 2);
    quad_corner_angles<2>(points, 2, IN_ORDER, true, four);
    EXPECT_DOUBLE_EQ(four[0], 1.0);
    EXPECT_DOUBLE_EQ(four[2], 1.5);

    double three[3];
    triangle_corner_angles<2>(points, 2, IN_ORDER, false, three);
    EXPECT_DOUBLE_EQ(three[1], PI / 4);
    triangle_corner_angles<2>(points, 2, IN_ORDER, true, three);
    EXPECT_DOUBLE_EQ(three[1], 0.75);
}
