#include "conversion/high_order.h"
#include "conversion/node_placement.h"
#include "support/matrices.h"

#include <cmath>
#include <limits>

using namespace vorel;
using support::bits;
using support::columns;
using tessalo2d::convert_worker;
using tessalo2d::vec2;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double LARGEST = std::numeric_limits<double>::max();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

const dense2D<unsigned> NO_EDGES;

/// Coordinates of the nodes that a conversion adds to `coords`.
std::vector<std::vector<double>> added(const dense2D<double>& coords,
                                       const dense2D<unsigned>& connect, unsigned a, unsigned b,
                                       unsigned c, const dense1D<double, 8>& sizes)
{
    dense2D<double> all = support::copy_of(coords);
    dense2D<unsigned> result;
    EXPECT_EQ(convert_worker(all, connect, a, b, c, result, NO_EDGES, sizes), 0);
    const auto list = columns(all);
    return {list.begin() + static_cast<std::ptrdiff_t>(coords.cols), list.end()};
}

void expect_near(const std::vector<double>& point, double x, double y)
{
    ASSERT_EQ(point.size(), 2u);
    EXPECT_NEAR(point[0], x, 1e-15 * (1.0 + std::fabs(x)));
    EXPECT_NEAR(point[1], y, 1e-15 * (1.0 + std::fabs(y)));
}

} // namespace

TEST(PointOnEdge, FractionZeroIsTheFirstEndWhateverTheOther)
{
    const vec2 point = tessalo2d::point_on_edge(vec2{{1, -0.0}}, vec2{{INF, NOT_A_NUMBER}}, 0.0);
    EXPECT_EQ(point[0], 1.0);
    EXPECT_TRUE(std::signbit(point[1]));
}

TEST(PointInTriangle, ZeroWeightsAddNothing)
{
    const vec2 far{{INF, INF}};
    const vec2 near{{2, 4}};
    const vec2 origin{{0, 0}};
    EXPECT_EQ(tessalo2d::point_in_triangle(far, near, origin, 0.0, 0.5)[1], 2.0);
    EXPECT_EQ(tessalo2d::point_in_triangle(near, far, origin, 0.5, 0.0)[0], 1.0);
    EXPECT_EQ(tessalo2d::point_in_triangle(far, far, near, 0.0, 0.0)[0], 2.0);
}

TEST(PointInQuad, ZeroWeightsAddNothingAndTheSumStartsWithItsFirstTerm)
{
    const vec2 far{{INF, NOT_A_NUMBER}};
    const vec2 zero{{-0.0, -0.0}};
    EXPECT_TRUE(std::signbit(tessalo2d::point_in_quad({zero, zero, zero, zero}, 0.5, 0.5)[0]));
    EXPECT_TRUE(std::signbit(tessalo2d::point_in_quad({far, zero, zero, far}, 1.0, 0.5)[1]));
    const vec2 corners[4] = {{{1, 2}}, far, far, far};
    EXPECT_EQ(tessalo2d::point_in_quad(corners, 0.0, 0.0)[1], 2.0);
}

TEST(InteriorNodes, OneInATriangleIsItsCentroid)
{
    const auto nodes = added({{6, 0}, {0, 6}, {0, 0}}, {{0, 1, 2}}, 1, 0, 1, {});
    expect_near(nodes[3], 2, 2);
}

TEST(InteriorNodes, ThreeInATriangleCrowdTowardsCornerTwo)
{
    const auto nodes = added({{6, 0}, {0, 6}, {0, 0}}, {{0, 1, 2}}, 1, 0, 3, {});
    ASSERT_EQ(nodes.size(), 6u);
    expect_near(nodes[3], 1, 1);
    expect_near(nodes[4], 2, 1);
    expect_near(nodes[5], 1, 2);
}

TEST(InteriorNodes, AQuadrilateralGetsABilinearGrid)
{
    // x = 4u + uv, y = 8v on these corners.
    const auto nodes = added({{0, 0}, {4, 0}, {5, 8}, {0, 8}}, {{0, 1, 2, 3}}, 1, 9, 0, {});
    ASSERT_EQ(nodes.size(), 13u);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            const double v = (i + 1) / 4.0;
            const double u = (j + 1) / 4.0;
            expect_near(nodes[static_cast<std::size_t>(4 + 3 * i + j)], 4 * u + u * v, 8 * v);
        }
}

TEST(SizedNodes, EdgeNodesFollowTheGeometricProgression)
{
    // Sizes 1 to 4 put the middle at (sqrt(4) - 1) / (4 - 1); 4 to 1 at the mirror image; equal
    // ones in the middle.
    const auto nodes =
        added({{0, 0}, {3, 0}, {3, 3}}, {{0, 1, 2}}, 1, 0, 0, dense1D<double, 8>{1, 4, 1});
    expect_near(nodes[0], 3, 2);
    expect_near(nodes[1], 1.5, 1.5);
    expect_near(nodes[2], 1, 0);
}

TEST(SizedNodes, SeveralEdgeNodesFollowTheGeometricProgression)
{
    // Steps of 1, 2, 4 and 8 from size 1 to size 16.
    const auto nodes =
        added({{0, 0}, {15, 0}, {0, 0}}, {{0, 1, 2}}, 3, 0, 0, dense1D<double, 8>{1, 16, 1});
    expect_near(nodes[6], 1, 0);
    expect_near(nodes[7], 3, 0);
    expect_near(nodes[8], 7, 0);
}

TEST(SizedNodes, TriangleWeightsGrowFromCornerTwo)
{
    // (8^(1/3) - 1) / 7 and (27^(1/3) - 1) / 26.
    const auto one =
        added({{7, 0}, {0, 13}, {0, 0}}, {{0, 1, 2}}, 1, 0, 1, dense1D<double, 8>{8, 27, 1});
    expect_near(one[3], 1, 1);
    // With 64: 64^(1/6) = 2 and 64^(1/3) = 4 make 1/63 and 3/63.
    const auto three =
        added({{63, 0}, {0, 63}, {0, 0}}, {{0, 1, 2}}, 1, 0, 3, dense1D<double, 8>{64, 64, 1});
    expect_near(three[3], 1, 1);
    expect_near(three[4], 3, 1);
    expect_near(three[5], 1, 3);
}

TEST(SizedNodes, AQuadrilateralNodeIsTheCrossingOfTheLinesBetweenItsSides)
{
    // The fractions are 1/3 on side 0-1, 1/2 on 0-3 and 3-2, 2/3 on 1-2: the lines
    // s = 1/3 + t/6 and t = 1/2 + s/6 meet in (3/7, 4/7).
    const auto nodes = added({{0, 0}, {7, 0}, {7, 7}, {0, 7}}, {{0, 1, 2, 3}}, 1, 1, 0,
                             dense1D<double, 8>{1, 4, 1, 1});
    expect_near(nodes[4], 3, 4);
}

TEST(SizedNodes, AQuadrilateralGridKeepsTheFirstParameterFastest)
{
    // Sizes grow by 8 along side 0-1 and 3-2 alone: fractions (2 - 1) / 7 and (4 - 1) / 7.
    const auto nodes = added({{0, 0}, {7, 0}, {7, 3}, {0, 3}}, {{0, 1, 2, 3}}, 1, 4, 0,
                             dense1D<double, 8>{1, 8, 8, 1});
    ASSERT_EQ(nodes.size(), 8u);
    expect_near(nodes[4], 1, 1);
    expect_near(nodes[5], 3, 1);
    expect_near(nodes[6], 1, 2);
    expect_near(nodes[7], 3, 2);
}

TEST(SizedNodes, ACornerOfZeroWeightIsSkipped)
{
    // The ratio of the sizes underflows, which puts the node on side 1-2.
    const auto nodes = added({{INF, INF}, {1, 0}, {1, 2}, {NOT_A_NUMBER, 0}}, {{0, 1, 2, 3}}, 1, 1,
                             0, dense1D<double, 8>{1e300, 1e-300, 1e-300, 1e300});
    EXPECT_EQ(nodes[4], (std::vector<double>{1, 1}));
}

TEST(SizedNodes, ASizeThatIsNotPositiveAndFiniteIsNone)
{
    const dense2D<double> coords{{0, 0}, {4, 0}, {5, 8}, {0, 8}};
    for (const dense2D<unsigned>& connect :
         {dense2D<unsigned>{{0, 1, 2}}, dense2D<unsigned>{{0, 1, 2, 3}}}) {
        const auto plain = added(coords, connect, 2, 1, 1, {});
        for (const double bad : {0.0, -0.0, -1.0, INF, -INF, NOT_A_NUMBER, LARGEST})
            for (std::size_t corner = 0; corner < connect.rows; ++corner) {
                dense1D<double, 8> sizes{1, 3, 9, 27};
                sizes[corner] = bad;
                const auto nodes = added(coords, connect, 2, 1, 1, sizes);
                // The edges at that corner and the interior fall back to even fractions.
                EXPECT_EQ(nodes.back(), plain.back()) << bad << " at " << corner;
                EXPECT_NE(nodes, plain);
            }
    }
}

TEST(SizedNodes, TheSmallestAndTheLargestUsableSizeCount)
{
    const double below = std::nextafter(LARGEST, 0.0);
    const auto nodes =
        added({{0, 0}, {1, 0}, {0, 1}}, {{0, 1, 2}}, 1, 0, 0, dense1D<double, 8>{below, 5e-324, 1});
    // From the largest size to nothing: everything lies at the far end.
    expect_near(nodes[2], 1, 0);
}

TEST(SizedNodes, NodesBeyondTheSizesHaveNone)
{
    const dense2D<double> coords{{0, 0}, {4, 0}, {5, 8}, {0, 8}};
    const auto plain = added(coords, {{0, 1, 2, 3}}, 1, 1, 0, {});
    const auto sized = added(coords, {{0, 1, 2, 3}}, 1, 1, 0, dense1D<double, 8>{1, 4, 9, 16});
    for (const std::size_t known : {0u, 1u, 2u, 3u}) {
        dense1D<double, 8> sizes{1, 4, 9, 16};
        ASSERT_TRUE(sizes.resize(known));
        const auto nodes = added(coords, {{0, 1, 2, 3}}, 1, 1, 0, sizes);
        EXPECT_EQ(nodes[0], known >= 2 ? sized[0] : plain[0]);
        EXPECT_EQ(nodes[1], known >= 3 ? sized[1] : plain[1]);
        EXPECT_EQ(nodes[2], plain[2]);
        EXPECT_EQ(nodes[3], plain[3]);
        EXPECT_EQ(nodes[4], plain[4]);
    }
}

TEST(SizedNodes, SizesMayStandAnywhereInTheirBlock)
{
    const dense2D<double> coords{{0, 0}, {4, 0}, {5, 8}, {0, 8}};
    const dense1D<double, 8> sizes{1, 4, 9, 16};
    EXPECT_EQ(added(coords, {{0, 1, 2, 3}}, 2, 4, 0, sizes),
              added(coords, {{0, 1, 2, 3}}, 2, 4, 0, support::placed_run(sizes, 5)));
}
