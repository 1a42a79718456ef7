#include "measures/circle_through.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <random>

using namespace vorel;
using namespace tessalo2d;
using support::circle;
using support::circle_through;
using support::point;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
long double distance(const point& a, const point& b)
{
    long double sum = 0.0L;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const long double d = static_cast<long double>(a[i]) - b[i];
        sum += d * d;
    }
    return std::sqrt(sum);
}

/// Distances from the centre to the corners agree with each other and with the radius to
/// `bound` times the radius.
void expect_equidistant(const std::vector<point>& corners, double bound)
{
    const circle c = circle_through(corners);
    const long double radius = std::sqrt(static_cast<long double>(c.radius2));
    for (const point& corner : corners)
        EXPECT_LE(std::fabs(distance(c.center, corner) - radius), bound * radius);
}

std::vector<point> lifted(const std::vector<point>& flat)
{
    std::vector<point> all = flat;
    for (point& p : all) p.push_back(0.0);
    return all;
}

} // namespace

TEST(Circumcenters, IsoscelesTriangleInThePlane)
{
    for (const double h : {0.25, 0.5, 1.0, 2.0, 1.75, 1e3, 1e-3, 1e-6, 1e6}) {
        const circle c = circle_through({{-1, 0}, {1, 0}, {0, h}});
        const double expected = (h * h - 1.0) / (2.0 * h);
        EXPECT_EQ(c.center[0], 0.0) << h;
        EXPECT_NEAR(c.center[1], expected, 4e-16 * (std::fabs(expected) + h)) << h;
        EXPECT_NEAR(c.radius2, 1.0 + expected * expected, 1e-15 * c.radius2) << h;
    }
}

TEST(Circumcenters, RightTriangleHasItsCentreOnTheHypotenuse)
{
    const circle plane = circle_through({{0, 0}, {3, 0}, {0, 4}});
    EXPECT_EQ(plane.center, (point{1.5, 2.0}));
    EXPECT_EQ(plane.radius2, 6.25);
    const circle space = circle_through({{0, 0, 1}, {3, 0, 1}, {0, 4, 1}});
    EXPECT_NEAR(space.center[0], 1.5, 1e-15);
    EXPECT_NEAR(space.center[1], 2.0, 1e-15);
    EXPECT_EQ(space.center[2], 1.0);
    EXPECT_NEAR(space.radius2, 6.25, 1e-14);
}

TEST(Circumcenters, PlanePointsOnALineGetTheMiddleOfTheLongSide)
{
    const std::vector<point> line{{0, 0}, {4, 2}, {1, 0.5}};
    std::vector<std::size_t> order{0, 1, 2};
    do {
        const circle c = circle_through({line[order[0]], line[order[1]], line[order[2]]});
        EXPECT_EQ(c.center, (point{2, 1}));
        EXPECT_EQ(c.radius2, DBL_MAX);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(Circumcenters, PlaneCornersAtOnePlaceHaveTheCircleOverTheirSide)
{
    for (const auto& corners :
         {std::vector<point>{{1, 1}, {1, 1}, {4, 5}}, std::vector<point>{{1, 1}, {4, 5}, {1, 1}},
          std::vector<point>{{4, 5}, {1, 1}, {1, 1}}}) {
        const circle c = circle_through(corners);
        EXPECT_EQ(c.center, (point{2.5, 3}));
        EXPECT_EQ(c.radius2, 6.25);
    }
    const circle one = circle_through({{3, 7}, {3, 7}, {3, 7}});
    EXPECT_EQ(one.center, (point{3, 7}));
    EXPECT_EQ(one.radius2, 0.0);
}

TEST(Circumcenters, SpacePointsWithoutAreaGetTheThirdCorner)
{
    // The last one has its shortest side between the first two corners: the origin has moved.
    for (const auto& corners : {std::vector<point>{{0, 0, 0}, {4, 2, 6}, {2, 1, 3}},
                                std::vector<point>{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}},
                                std::vector<point>{{1, 1, 1}, {2, 2, 2}, {1, 1, 1}},
                                std::vector<point>{{0, 0, 0}, {1, 1, 1}, {9, 9, 9}}}) {
        const circle c = circle_through(corners);
        EXPECT_EQ(c.center, corners[2]);
        EXPECT_EQ(c.radius2, DBL_MAX);
    }
}

TEST(Circumcenters, EquilateralTriangleInSpace)
{
    const circle c = circle_through({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    for (const double x : c.center) EXPECT_NEAR(x, 1.0 / 3.0, 1e-16);
    EXPECT_NEAR(c.radius2, 2.0 / 3.0, 3e-16);
    // From the third corner: all products are exact and so is the centre's way from there.
    EXPECT_EQ(c.center[0], c.center[1]);
}

TEST(Circumcenters, LongestSideIsTheFirstOfEquals)
{
    // Sides 0 and 1 are equally long: side 0 decides the bits of the midpoint, here exact.
    const std::vector<point> corners{{1, 3}, {-1, 3}, {0, 0}};
    const circle c = circle_through(corners);
    // e = (0, 0) - (-1, 3) = (1, -3), m = (-0.5, 1.5), d = (1.5, 1.5).
    const double side_c = 1.0 * 1.5 - -3.0 * 1.5;
    const double s = (4.5 - 2.5) / side_c;
    EXPECT_EQ(c.center[0], -0.5 + (s / 2) * 3.0);
    EXPECT_EQ(c.center[1], 1.5 + (s / 2) * 1.0);
    EXPECT_EQ(c.radius2, (1.0 + s * s) * 2.5);
}

TEST(Circumcenters, CentreIsEquidistantOnGoodAndOnThinTriangles)
{
    std::mt19937 draw(5);
    std::uniform_real_distribution<double> anywhere(-1.0, 1.0);
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        for (const std::size_t dimension : {2u, 3u}) {
            std::vector<point> corners(3, point(dimension));
            for (point& p : corners)
                for (double& x : p) x = anywhere(draw);
            // The squared sine of the angle of two sides says how well the centre is known.
            const double a = static_cast<double>(distance(corners[0], corners[1]));
            const double b = static_cast<double>(distance(corners[1], corners[2]));
            const double c = static_cast<double>(distance(corners[2], corners[0]));
            if (std::min({a + b - c, b + c - a, c + a - b}) < 0.05) continue;
            expect_equidistant(corners, 2e-14);
        }
        // Needles: a short side across a long one.
        const double thin = std::pow(10.0, -1.0 - 4.0 * std::fabs(anywhere(draw)));
        std::vector<point> needle{{0, 0}, {1, 0.3}, {1 - 0.2 * thin, 0.3 + thin}};
        std::rotate(needle.begin(), needle.begin() + round % 3, needle.end());
        expect_equidistant(needle, 1e-15 + 4e-16 / thin);
        expect_equidistant(lifted(needle), 1e-15 + 4e-16 / thin);
    }
}

TEST(Circumcenters, RotatedNodeOrderChangesTheLastBitsOnly)
{
    std::mt19937 draw(6);
    std::uniform_real_distribution<double> anywhere(-1.0, 1.0);
    for (int round = 0; round < 500; ++round)
        for (const std::size_t dimension : {2u, 3u}) {
            std::vector<point> corners(3, point(dimension));
            for (point& p : corners)
                for (double& x : p) x = anywhere(draw);
            const circle first = circle_through(corners);
            if (!(first.radius2 < 4.0)) continue;
            for (int k = 0; k < 2; ++k) {
                std::rotate(corners.begin(), corners.begin() + 1, corners.end());
                const circle other = circle_through(corners);
                for (std::size_t i = 0; i < dimension; ++i)
                    EXPECT_NEAR(other.center[i], first.center[i], 2e-13) << round;
            }
        }
}

TEST(Circumcenters, PlaneAndSpaceAgree)
{
    support::mesh flat = support::grid_T3(6, 6);
    support::jitter(flat, 0.2, 11);
    support::mesh space = support::lifted(flat, [](double, double) { return 0.0; });
    dense2D<double> in_plane;
    dense2D<double> in_space;
    ASSERT_EQ(circumcenters(flat.coords, flat.connect, in_plane), 0);
    ASSERT_EQ(circumcenters(space.coords, space.connect, in_space), 0);
    ASSERT_EQ(in_plane.rows, 2u);
    ASSERT_EQ(in_space.rows, 3u);
    for (std::size_t e = 0; e < flat.connect.cols; ++e) {
        EXPECT_NEAR(in_plane(0, e), in_space(0, e), 1e-13);
        EXPECT_NEAR(in_plane(1, e), in_space(1, e), 1e-13);
        EXPECT_EQ(in_space(2, e), 0.0);
    }
}

TEST(Circumcenters, MeshGivesTheBitsOfTheSingleTriangles)
{
    std::mt19937 draw(9);
    std::uniform_real_distribution<double> anywhere(-1.0, 1.0);
    for (const std::size_t dimension : {2u, 3u})
        for (const std::size_t elements : {1u, 2u, 63u, 64u, 65u, 200u}) {
            dense2D<double> coords(dimension, 50);
            for (std::size_t j = 0; j < 50; ++j)
                for (std::size_t i = 0; i < dimension; ++i)
                    // Few places, so that all kinds of degenerate triangles occur.
                    coords(i, j) = j % 2 ? anywhere(draw) : std::floor(4.0 * anywhere(draw));
            coords(0, 7) = NOT_A_NUMBER;
            coords(1, 9) = HUGE_VAL;
            dense2D<unsigned> connect(3, elements);
            for (std::size_t e = 0; e < elements; ++e)
                for (std::size_t i = 0; i < 3; ++i)
                    connect(i, e) = static_cast<unsigned>(draw() % 50);
            dense2D<double> expected(dimension, elements);
            double radius2;
            for (std::size_t e = 0; e < elements; ++e)
                if (dimension == 2)
                    circumcenter_2d(coords, connect.column(e), radius2, expected.column(e));
                else
                    circumcenter_3d(coords, connect.column(e), radius2, expected.column(e));
            dense2D<double> centers(5, 5, 1.0);
            ASSERT_EQ(circumcenters(coords, connect, centers), 0);
            EXPECT_EQ(support::bits(centers), support::bits(expected));

            support::placed<double> placed_coords(coords, 3, 2);
            support::placed<unsigned> placed_connect(connect, 1, 4);
            support::placed<double> placed_centers(dense2D<double>(2, 2, 0.0), 6, 3);
            ASSERT_EQ(circumcenters(placed_coords.view, placed_connect.view, placed_centers.view),
                      0);
            EXPECT_EQ(support::bits(placed_centers.view), support::bits(expected));
            placed_coords.expect_gaps_untouched();
            placed_connect.expect_gaps_untouched();
        }
}

TEST(Circumcenters, AwkwardMeshesPass)
{
    for (const std::size_t dimension : {2u, 3u})
        for (const support::mesh& m : support::awkward_meshes(dimension)) {
            if (m.connect.rows != 3) continue;
            dense2D<double> centers;
            EXPECT_EQ(circumcenters(m.coords, m.connect, centers), 0) << m.name;
            EXPECT_EQ(centers.cols, m.connect.cols) << m.name;
        }
}

TEST(Circumcenters, EachCheckHasItsCodeInOrderAndTheOutputIsEmptiedFirst)
{
    dense2D<double> coords(4, 3, 0.0);
    dense2D<unsigned> connect(4, 1, 9u);
    const auto expect = [&](int status) {
        dense2D<double> centers(3, 7, 1.0);
        EXPECT_EQ(circumcenters(coords, connect, centers), status);
        EXPECT_EQ(centers.rows, 0u);
        EXPECT_EQ(centers.cols, 0u);
    };
    expect(-1);
    coords = dense2D<double>(1, 3, 0.0);
    expect(-1);
    coords = dense2D<double>(2, 3, 0.0);
    expect(-2);
    connect = dense2D<unsigned>(2, 1, 0u);
    expect(-2);
    connect = dense2D<unsigned>{{0, 1, 3}};
    expect(-2);
    connect = dense2D<unsigned>{{0, 1, UNSET_ID}};
    expect(-2);
    connect = dense2D<unsigned>();
    expect(-2);
}

TEST(Circumcenters, NoColumnsGiveAnEmptyResultOfTheRightRows)
{
    for (const std::size_t rows : {2u, 3u}) {
        dense2D<double> centers;
        EXPECT_EQ(circumcenters(support::without_columns<double>(rows),
                                support::without_columns<unsigned>(3), centers),
                  0);
        EXPECT_EQ(centers.rows, rows);
        EXPECT_EQ(centers.cols, 0u);
    }
    dense2D<double> centers;
    EXPECT_EQ(circumcenters(dense2D<double>(), support::without_columns<unsigned>(3), centers), -1);
}

TEST(Circumcenters, RefusedStorageLeavesAnEmptyOutput)
{
    const support::mesh m = support::grid_T3(2, 2);
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            dense2D<double> centers;
            int status = 1;
            const bool refused =
                armed([&] { status = circumcenters(m.coords, m.connect, centers); });
            EXPECT_EQ(status, refused ? -199 : 0) << told;
            EXPECT_EQ(centers.cols, refused ? 0u : 8u) << told;
        });
    EXPECT_EQ(refusals, 2u);
}

TEST(Circumcenters, OutputThatIsTheCoordinatesIsRefused)
{
    support::mesh m = support::grid_T3(2, 2);
    EXPECT_EQ(circumcenters(m.coords, m.connect, m.coords), -1);
}

TEST(Circumcenters, OutputInTheBlockOfTheCoordinatesGivesTheSame)
{
    const support::mesh m = support::grid_T3(7, 5);
    dense2D<double> expected;
    ASSERT_EQ(circumcenters(m.coords, m.connect, expected), 0);
    for (const std::size_t offset : {std::size_t(0), std::size_t(5), m.coords.size}) {
        const dense2D<double> coords = support::copy_of(m.coords);
        dense2D<double> centers;
        centers.block = coords.block;
        centers.offset = offset;
        ASSERT_EQ(circumcenters(coords, m.connect, centers), 0);
        EXPECT_EQ(support::bits(centers), support::bits(expected)) << offset;
        EXPECT_EQ(support::bits(coords), support::bits(m.coords)) << offset;
    }
}

TEST(Solve2x2Refined, PassesImproveAnIllConditionedSystem)
{
    // Rows (1, b) and (b, 1) with b near 1; the solution is (1, 1) for the right side 1 + b.
    const double b = 1.0 - 1e-9;
    const double inv_det = 1.0 / (1.0 - b * b);
    double x = 0.0;
    double y = 0.0;
    // A reciprocal that is off by 1 % costs the plain solution that much.
    solve_2x2_refined(1.0, b, 1.0, 1.01 * inv_det, 1.0 + b, 1.0 + b, x, y, 0);
    const double plain = std::fabs(x - 1.0);
    EXPECT_GT(plain, 1e-3);
    solve_2x2_refined(1.0, b, 1.0, 1.01 * inv_det, 1.0 + b, 1.0 + b, x, y, 1);
    const double once = std::fabs(x - 1.0);
    EXPECT_LT(once, 0.02 * plain);
    solve_2x2_refined(1.0, b, 1.0, 1.01 * inv_det, 1.0 + b, 1.0 + b, x, y, 2);
    EXPECT_LT(std::fabs(x - 1.0), 0.5 * once);
    EXPECT_LT(std::fabs(y - 1.0), 0.5 * once);
}

TEST(Solve2x2Refined, StopsWhenTheCorrectionIsSmall)
{
    // A hundred passes from a good solution give what one gives.
    double x = 0.0;
    double y = 0.0;
    double many_x = 0.0;
    double many_y = 0.0;
    const double det = 2.0 * 3.0 - 0.3 * 0.3;
    solve_2x2_refined(2.0, 0.3, 3.0, 1.0 / det, 0.7, -1.9, x, y, 1);
    solve_2x2_refined(2.0, 0.3, 3.0, 1.0 / det, 0.7, -1.9, many_x, many_y, 100);
    EXPECT_EQ(x, many_x);
    EXPECT_EQ(y, many_y);
    EXPECT_NEAR(2.0 * x + 0.3 * y, 0.7, 1e-15);
    EXPECT_NEAR(0.3 * x + 3.0 * y, -1.9, 1e-15);
}
