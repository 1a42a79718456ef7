#include "measures/triangle_normal.h"

#include <gtest/gtest.h>

#include <random>

using namespace vorel::tessalo2d;

namespace {

void expect_equal(const vec3& a, const vec3& b)
{
    for (int i = 0; i < 3; ++i) EXPECT_EQ(a[i], b[i]) << "component " << i;
}

} // namespace

TEST(TriangleNormal, IsTwiceTheAreaLongAndFollowsTheTurn)
{
    const vec3 a{{0, 0, 0}};
    const vec3 b{{3, 0, 0}};
    const vec3 c{{0, 2, 0}};
    expect_equal(triangle_normal(a, b, c), {{0, 0, 6}});
    expect_equal(triangle_normal(a, c, b), {{0, 0, -6}});
}

TEST(TriangleNormal, IsZeroForCoincidentAndForAlignedCorners)
{
    const vec3 a{{1, 2, 3}};
    expect_equal(triangle_normal(a, a, a), {{0, 0, 0}});
    expect_equal(triangle_normal(vec3{{0, 0, 0}}, vec3{{1, 1, 1}}, vec3{{2, 2, 2}}), {{0, 0, 0}});
}

TEST(TriangleNormal, MultipliesTheSidesAtTheLastCornerUnlessTheThirdIsNoLonger)
{
    // The side a-b is the shortest and 1e-17 gets lost in p = a - c: only e keeps it.
    const vec3 a{{0, 1e-17, 0}};
    const vec3 b{{0, 0, 0}};
    const vec3 c{{1, 1, 0}};
    EXPECT_EQ(triangle_normal(a, b, c)[2], 1e-17);
    // With the short side at the last corner it is q that keeps it.
    EXPECT_EQ(triangle_normal(c, a, b)[2], 1e-17);
}

TEST(TriangleNormal, GoesToTheThirdSideOnATie)
{
    // e is q turned by a right angle about z, so |e| = |q| to the bit, and both are shorter than p.
    // The two products round differently, so the result tells which one it was.
    std::mt19937 draw(11);
    std::uniform_real_distribution<double> number(0.5, 1.0);
    int told_apart = 0;
    for (int k = 0; k < 100; ++k) {
        const double x = number(draw);
        const double y = number(draw);
        const vec3 q{{x, y, 0.125}};
        const vec3 e{{y, -x, 0.125}};
        const vec3 b{{0, 0, 0}};
        const vec3 a = b - e;
        const vec3 c = b - q;
        ASSERT_EQ(squared_length(q), squared_length(e));
        const vec3 by_q = cross(a - c, q);
        const vec3 by_e = cross(a - c, e);
        expect_equal(triangle_normal(a, b, c), by_e);
        told_apart += by_q[2] != by_e[2];
    }
    EXPECT_GT(told_apart, 20);
}

TEST(TriangleNormal, ReadsTheNodesOfAColumnAtTheirDistance)
{
    const double points[] = {0, 0, 0, 99, 3, 0, 0, 99, 0, 2, 0, 99, 7, 7, 7, 99};
    const unsigned column[] = {0, 1, 2};
    expect_equal(triangle_normal(points, 4, column), {{0, 0, 6}});
}

TEST(QuadNormal, IsTheProductOfTheDiagonals)
{
    const double points[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    const unsigned column[] = {0, 1, 2, 3};
    expect_equal(quad_normal(points, 3, column), {{0, 0, 2}});
    const unsigned clockwise[] = {3, 2, 1, 0};
    expect_equal(quad_normal(points, 3, clockwise), {{0, 0, -2}});
}

TEST(QuadNormal, IsTwiceTheVectorAreaOfAWarpedQuadrilateral)
{
    // Half the sum of the corner products is the vector area of a closed loop about any point.
    const double points[] = {0, 0, 1, 2, 0, -1, 3, 2, 2, 0, 1, -3};
    const unsigned column[] = {0, 1, 2, 3};
    vec3 sum{{0, 0, 0}};
    for (int k = 0; k < 4; ++k)
        sum = sum + cross(load<3>(points + 3 * k), load<3>(points + 3 * ((k + 1) % 4)));
    expect_equal(quad_normal(points, 3, column), sum);
}
