// Principal curvatures of small meshes by hand and of drawn ones by the plain estimator, and what is
// refused.
#include "foundation/vec.h"

#include "curvatures_of.h"
#include "plain_curvature.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

#include <cmath>
#include <limits>

using namespace vorel;
using namespace vorel::tessalo2d;
using namespace curvature_tests;

TEST(PrincipalCurvatures, FlatPatchHasTheAxesOfTheFrameAndNoValues)
{
    const support::mesh m = support::grid_T3(3, 3, 3);
    const dense2D<double> c = curvatures_of(m, 2.0);
    for (std::size_t i = 0; i < c.cols; ++i) {
        const std::vector<double> expected{1, 0, 0, 0, -1, 0, 0, 0};
        // The second direction is the first one crossed with the normal (0, 0, 1).
        EXPECT_EQ(support::columns(c)[i], expected) << i;
    }
}

TEST(PrincipalCurvatures, ConvexBodyWithOutwardNormalsHasNegativeValues)
{
    // The tetrahedron on the axes, faces turned outwards. All dihedral angles between outward
    // normals are the same along edges of the same kind, and every edge counts at every node.
    support::mesh m{"tetrahedron",
                    {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                    {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}}};
    dense2D<double> c = curvatures_of(m, 10.0);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_LT(c(6, i), 0.0);
        EXPECT_LT(c(7, i), 0.0);
    }
    // The order of the triangles does not turn the sign.
    support::mesh other = m;
    other.connect = dense2D<unsigned>{{1, 2, 3}, {0, 3, 2}, {0, 1, 3}, {0, 2, 1}};
    c = curvatures_of(other, 10.0);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_LT(c(6, i), 0.0);
    // Turned inside out it does.
    for (std::size_t e = 0; e < 4; ++e) std::swap(m.connect(0, e), m.connect(2, e));
    c = curvatures_of(m, 10.0);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_GT(c(6, i), 0.0);
}

TEST(PrincipalCurvatures, TwoFacesAtARightAngleByHand)
{
    // One interior edge of length 2 along x between two triangles of area 1, turned by 90 degrees.
    // T = beta e1 e1' with |beta| = (pi / 2) * 2, S = 4, so the value is 2 / 4 * pi in magnitude.
    const support::mesh m{
        "roof", {{0, 0, 0}, {2, 0, 0}, {1, 0, 1}, {1, 1, 0}}, {{0, 1, 2}, {1, 0, 3}}};
    // Triangle 0 has the normal (0, -2, 0), triangle 1 the normal (0, 0, -2).
    const dense2D<double> c = curvatures_of(m, 10.0);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(std::fabs(c(0, i)), 1.0, 1e-15) << i;
        // Each face lies behind the other one, seen along the normals: a convex edge, negative.
        EXPECT_NEAR(c(6, i), -PI / 2, 1e-15) << i;
        EXPECT_NEAR(c(7, i), 0.0, 1e-15) << i;
        EXPECT_NEAR(dot(first_direction(c, i), second_direction(c, i)), 0.0, 1e-15) << i;
    }
}

TEST(PrincipalCurvatures, MatchThePlainEstimatorBitForBit)
{
    for (unsigned seed = 1; seed <= 80; ++seed)
        for (const bool contradictory : {false, true}) {
            const plain::surface s = plain::random_surface(seed, contradictory);
            dense2D<double> c;
            ASSERT_EQ(principal_curvatures(s.coords, s.connect, s.neighbors, s.radius, s.max_angle,
                                           s.max_triangles, s.ridges, c),
                      0);
            ASSERT_EQ(support::bits(c), support::bits(plain::curvatures(s)))
                << "seed " << seed << (contradictory ? " contradictory" : "");
        }
}

TEST(PrincipalCurvatures, ZeroRadiusGivesZeroValuesEverywhere)
{
    const support::mesh m =
        support::lifted(support::grid_T3(4, 4), [](double x, double y) { return x * x + y * x; });
    const dense2D<double> c = curvatures_of(m, 0.0);
    for (std::size_t i = 0; i < c.cols; ++i) {
        EXPECT_EQ(c(6, i), 0.0) << i;
        EXPECT_EQ(c(7, i), 0.0) << i;
        EXPECT_NEAR(length(first_direction(c, i)), 1.0, 1e-15) << i;
    }
}

TEST(PrincipalCurvatures, SeedWithoutAreaAddsNothingToTheFrame)
{
    // Node 0's seed is a triangle without area, and the patch has some elsewhere but no angle.
    const support::mesh m{"flat seed",
                          {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {1, 1, 0}},
                          {{0, 1, 2}, {2, 1, 3}, {1, 0, 3}}};
    const dense2D<double> c = curvatures_of(m, 10.0);
    // A = (1, 0, 0) and B = 0: the smallest entry of A is the second, so B = (0, 1, 0), C = A x B.
    EXPECT_EQ(support::columns(c)[0], (std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0}));
}

TEST(PrincipalCurvatures, NodesWithoutTrianglesOrAreaKeepAZeroColumn)
{
    const support::mesh m{
        "idle node and no area", {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {5, 5, 5}}, {{0, 1, 2}}};
    const dense2D<double> c = curvatures_of(m, 10.0);
    EXPECT_EQ(support::columns(c),
              std::vector<std::vector<double>>(4, std::vector<double>(8, 0.0)));
}

TEST(PrincipalCurvatures, DirectionsAreUnitVectorsAcrossEachOther)
{
    for (unsigned seed = 1; seed <= 5; ++seed) {
        support::mesh flat = support::grid_T3(8, 7);
        support::jitter(flat, 0.3, seed);
        support::shuffle(flat, seed);
        const support::mesh m = support::lifted(
            flat, [](double x, double y) { return std::sin(x) + 0.3 * std::cos(2 * y); });
        const dense2D<double> c = curvatures_of(m, 2.5);
        for (std::size_t i = 0; i < c.cols; ++i) {
            EXPECT_NEAR(length(first_direction(c, i)), 1.0, 1e-12) << "seed " << seed;
            EXPECT_NEAR(length(second_direction(c, i)), 1.0, 1e-12) << "seed " << seed;
            EXPECT_NEAR(dot(first_direction(c, i), second_direction(c, i)), 0.0, 1e-12)
                << "seed " << seed;
            EXPECT_GE(std::fabs(c(6, i)), std::fabs(c(7, i))) << "seed " << seed;
        }
    }
}

TEST(PrincipalCurvatures, ScaleWithTheInverseLength)
{
    support::mesh m = support::lifted(
        support::grid_T3(6, 6), [](double x, double y) { return 0.1 * x * x + 0.05 * y * y; });
    const dense2D<double> c = curvatures_of(m, 2.5);
    for (std::size_t i = 0; i < m.coords.cols; ++i)
        for (std::size_t k = 0; k < 3; ++k) m.coords(k, i) *= 4.0;
    const dense2D<double> scaled = curvatures_of(m, 10.0);
    for (std::size_t i = 0; i < c.cols; ++i) EXPECT_NEAR(scaled(6, i), c(6, i) / 4, 1e-13) << i;
}

TEST(PrincipalCurvatures, RidgesSplitASurfaceInTwo)
{
    // A roof whose ridge line is listed: both faces are flat on their own.
    const support::mesh m =
        support::lifted(support::grid_T3(4, 4), [](double x, double) { return -std::fabs(x - 2); });
    dense2D<unsigned> ridges;
    for (unsigned j = 0; j < 4; ++j) ASSERT_TRUE(append_column(ridges, {5 * j + 2, 5 * j + 7}));
    dense2D<double> c;
    const dense2D<unsigned> neighbors = support::neighbors_of(m.connect);
    ASSERT_EQ(principal_curvatures(m.coords, m.connect, neighbors, 3.0, PI, 1000, ridges, c), 0);
    for (std::size_t i = 0; i < c.cols; ++i) EXPECT_NEAR(c(6, i), 0.0, 1e-15) << i;
    ASSERT_EQ(
        principal_curvatures(m.coords, m.connect, neighbors, 3.0, PI, 1000, dense2D<unsigned>(), c),
        0);
    EXPECT_LT(c(6, 12), -0.1);
    ASSERT_EQ(principal_curvatures(m.coords, m.connect, neighbors, 3.0, 1.0, 1000,
                                   dense2D<unsigned>(), c),
              0)
        << "the angle limit does the same";
    EXPECT_NEAR(c(6, 12), 0.0, 1e-15);
}

TEST(PrincipalCurvatures, EmptyConnectivityChangesNothing)
{
    dense2D<double> c(2, 2, 5.0);
    EXPECT_EQ(principal_curvatures(dense2D<double>(1, 1, 0.0), dense2D<unsigned>(),
                                   dense2D<unsigned>(), 1, 1, 1, dense2D<unsigned>(), c),
              0);
    EXPECT_EQ(support::columns(c), (std::vector<std::vector<double>>{{5, 5}, {5, 5}}));
}

TEST(PrincipalCurvatures, ChecksInOrderAndLeavesTheResult)
{
    const support::mesh m = support::grid_T3(1, 1, 3);
    const dense2D<unsigned> neighbors = support::neighbors_of(m.connect);
    const dense2D<double> plane(2, 4, 0.0);
    const dense2D<unsigned> beyond{{0, 1, 4}, {0, 1, 2}};
    const dense2D<unsigned> mixed{{0, 1, 2, UNSET_ID}, {0, 1, 2, 3}};
    const dense2D<unsigned> one_column(3, 1, UNSET_ID);
    const dense2D<unsigned> no_ridges;
    const dense2D<unsigned> bad_ridge{{0, 4}};
    const dense2D<unsigned> three_rows{{0, 1, 2}};
    const dense2D<unsigned> unset_ridge{{0, UNSET_ID}};
    const struct {
        const char* name;
        const dense2D<double>& coords;
        const dense2D<unsigned>& connect;
        const dense2D<unsigned>& neighbors;
        const dense2D<unsigned>& ridges;
        int status;
    } rows[] = {
        {"plane coordinates, all else bad", plane, beyond, one_column, bad_ridge, -1},
        {"an ID that names no node, the rest bad", m.coords, beyond, one_column, bad_ridge, -2},
        {"mixed connectivity", m.coords, mixed, neighbors, no_ridges, -2},
        {"neighbours of one triangle, bad ridges", m.coords, m.connect, one_column, bad_ridge, -3},
        {"a ridge to no node", m.coords, m.connect, neighbors, bad_ridge, -7},
        {"an unset ridge node", m.coords, m.connect, neighbors, unset_ridge, -7},
        {"ridges of three rows", m.coords, m.connect, neighbors, three_rows, -7},
        {"all well", m.coords, m.connect, neighbors, no_ridges, 0},
    };
    for (const auto& row : rows) {
        dense2D<double> c(2, 2, 5.0);
        EXPECT_EQ(
            principal_curvatures(row.coords, row.connect, row.neighbors, 1, 1, 10, row.ridges, c),
            row.status)
            << row.name;
        EXPECT_EQ(c.rows, row.status == 0 ? 8u : 2u) << row.name;
    }
}

TEST(PrincipalCurvatures, RidgesWithColumnsButNoRowsPassAsNone)
{
    const support::mesh m = support::grid_T3(1, 1, 3);
    dense2D<unsigned> ridges;
    ridges.cols = 5;
    dense2D<double> c;
    EXPECT_EQ(principal_curvatures(m.coords, m.connect, support::neighbors_of(m.connect), 1, 1, 10,
                                   ridges, c),
              0);
}

TEST(PrincipalCurvatures, LayoutDoesNotMatter)
{
    support::mesh flat = support::grid_T3(4, 3);
    const support::mesh m =
        support::lifted(flat, [](double x, double y) { return 0.2 * x * x - 0.1 * x * y; });
    const dense2D<unsigned> ridge_line{{6, 7}};
    dense2D<double> expected;
    ASSERT_EQ(principal_curvatures(m.coords, m.connect, support::neighbors_of(m.connect), 2, 1, 100,
                                   ridge_line, expected),
              0);
    support::placed<double> coords(m.coords, 2, 3);
    support::placed<unsigned> connect(m.connect, 5, 1);
    support::placed<unsigned> neighbors(support::neighbors_of(m.connect), 1, 2);
    support::placed<unsigned> ridges(ridge_line, 7, 2);
    dense2D<double> c;
    ASSERT_EQ(
        principal_curvatures(coords.view, connect.view, neighbors.view, 2, 1, 100, ridges.view, c),
        0);
    EXPECT_EQ(support::bits(c), support::bits(expected));
    coords.expect_gaps_untouched();
    connect.expect_gaps_untouched();
    neighbors.expect_gaps_untouched();
    ridges.expect_gaps_untouched();
}

TEST(PrincipalCurvatures, RefusedStorageIsReportedOrDropsATriangle)
{
    // The lists of a patch grow as they need; a triangle that there is no room for is not in it.
    const support::mesh m =
        support::lifted(support::grid_T3(3, 3), [](double x, double y) { return 0.1 * x * y; });
    const dense2D<unsigned> neighbors = support::neighbors_of(m.connect);
    const dense2D<unsigned> ridges{{0, 1}, {1, 2}};
    std::size_t reported = 0;
    support::each_refused_allocation([&](auto armed, const auto& told) {
        dense2D<double> c;
        int status = 0;
        const bool refused = armed([&] {
            status = principal_curvatures(m.coords, m.connect, neighbors, 3, 2, 100, ridges, c);
        });
        if (status == -199) {
            ++reported;
            EXPECT_TRUE(refused) << told;
            EXPECT_TRUE(c.is_empty()) << told;
        } else {
            EXPECT_EQ(status, 0) << told;
            EXPECT_EQ(c.cols, m.coords.cols) << told;
        }
    });
    EXPECT_GE(reported, 6u);
}

TEST(PrincipalCurvatures, AwkwardMeshesAreSafe)
{
    const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
    for (const support::mesh& m : support::awkward_meshes(3)) {
        if (m.connect.rows != 3) continue;
        for (const double radius : {0.0, 1.0, 1e300, NOT_A_NUMBER})
            for (const double angle : {0.0, 1.0, 4.0, NOT_A_NUMBER}) {
                dense2D<double> c;
                EXPECT_EQ(principal_curvatures(m.coords, m.connect,
                                               support::neighbors_of(m.connect), radius, angle, 50,
                                               dense2D<unsigned>(), c),
                          0)
                    << m.name;
                EXPECT_EQ(c.cols, m.coords.cols) << m.name;
            }
    }
}
