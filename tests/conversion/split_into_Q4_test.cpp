#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

using namespace vorel;
using support::bits;
using support::columns;
using support::copy_of;
using support::without_columns;
using tessalo2d::split_into_Q4;

namespace {

constexpr unsigned U = UNSET_ID;

const dense2D<unsigned> NO_EDGES;

dense2D<double> square()
{
    return {{0, 0}, {2, 0}, {2, 2}, {0, 2}};
}

double area_of(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    double sum = 0.0;
    EXPECT_EQ(tessalo2d::area(coords, connect, sum), 0);
    return sum;
}

} // namespace

TEST(SplitIntoQ4, NoColumnsIsNothingToDoWhateverTheRest)
{
    dense2D<double> coords(5, 1, 0.0);
    dense2D<unsigned> result(3, 1, 0u);
    EXPECT_EQ(
        split_into_Q4(coords, without_columns<unsigned>(7), result, dense2D<unsigned>(9, 1, 5u)),
        0);
    EXPECT_EQ(result.cols, 1u);
}

TEST(SplitIntoQ4, ChecksArgumentsInOrder)
{
    dense2D<double> flat(1, 4, 0.0);
    dense2D<double> coords = square();
    const dense2D<unsigned> good{{0, 1, 2}};
    const dense2D<unsigned> bad_ID{{0, 1, 4}};
    const dense2D<unsigned> bad_rows(5, 1, 0u);
    const dense2D<unsigned> bad_edges(4, 1, 0u);
    const dense2D<unsigned> bad_edge_ID{{0, 1, 4}};
    const dense2D<unsigned> unset_edge{{0, 1, U}};
    dense2D<unsigned> triangles(3, 1, 0u);
    dense2D<unsigned> result;

    EXPECT_EQ(split_into_Q4(flat, bad_ID, triangles, bad_edges), -1);
    EXPECT_EQ(split_into_Q4(coords, bad_ID, triangles, bad_edges), -2);
    EXPECT_EQ(split_into_Q4(coords, bad_rows, triangles, bad_edges), -2);
    EXPECT_EQ(split_into_Q4(coords, good, triangles, bad_edges), -3);
    EXPECT_EQ(split_into_Q4(coords, good, result, bad_edges), -4);
    EXPECT_EQ(split_into_Q4(coords, good, result, bad_edge_ID), -4);
    EXPECT_EQ(split_into_Q4(coords, good, result, unset_edge), -4);
    EXPECT_EQ(bits(coords), bits(square()));
    EXPECT_EQ(columns(triangles), columns(dense2D<unsigned>(3, 1, 0u)));
    EXPECT_TRUE(result.is_empty());
}

TEST(SplitIntoQ4, OneTriangleMakesThreeAtItsMidpointsAndCentroid)
{
    dense2D<double> coords{{0, 0}, {3, 0}, {0, 3}};
    dense2D<unsigned> result;
    EXPECT_EQ(split_into_Q4(coords, {{0, 1, 2}}, result, NO_EDGES), 0);
    EXPECT_EQ(columns(coords),
              columns<double>({{0, 0}, {3, 0}, {0, 3}, {1.5, 1.5}, {0, 1.5}, {1.5, 0}, {1, 1}}));
    EXPECT_EQ(columns(result), columns<unsigned>({{0, 5, 6, 4}, {1, 3, 6, 5}, {2, 4, 6, 3}}));
}

TEST(SplitIntoQ4, TwoTrianglesShareTheirMidpoint)
{
    dense2D<double> coords = square();
    dense2D<unsigned> result;
    EXPECT_EQ(split_into_Q4(coords, {{0, 1, 2}, {2, 3, 0}}, result, NO_EDGES), 0);
    EXPECT_EQ(coords.cols, 4u + 5u + 2u);
    ASSERT_EQ(result.cols, 6u);
    // Edges are met in the order 1-2, 2-0, 0-1, 3-0, 2-3; then come the centroids.
    EXPECT_EQ(columns(result), columns<unsigned>({{0, 6, 9, 5},
                                                  {1, 4, 9, 6},
                                                  {2, 5, 9, 4},
                                                  {2, 8, 10, 5},
                                                  {3, 7, 10, 8},
                                                  {0, 5, 10, 7}}));
}

TEST(SplitIntoQ4, OneQuadrilateralMakesFourTurningTheSameWay)
{
    dense2D<double> coords = square();
    dense2D<unsigned> result;
    EXPECT_EQ(split_into_Q4(coords, {{0, 1, 2, 3}}, result, NO_EDGES), 0);
    EXPECT_EQ(coords.cols, 9u);
    EXPECT_EQ(columns(coords)[8], (std::vector<double>{1, 1}));
    EXPECT_EQ(columns(result),
              columns<unsigned>({{0, 4, 8, 7}, {1, 5, 8, 4}, {2, 6, 8, 5}, {3, 7, 8, 6}}));
    for (const auto& child : columns(result))
        EXPECT_EQ(area_of(coords, support::matrix<unsigned>({child})), 1.0);
}

TEST(SplitIntoQ4, MixedMeshKeepsElementOrder)
{
    dense2D<double> coords{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {4, 1}};
    dense2D<unsigned> result{{7, 7, 7, 7}};
    EXPECT_EQ(split_into_Q4(coords, {{1, 4, 2, U}, {0, 1, 2, 3}}, result, NO_EDGES), 0);
    // Edges 4-2, 2-1, 1-4 are 5, 6, 7; 0-1, 2-3, 3-0 are 8, 9, 10; the centres 11 and 12.
    EXPECT_EQ(columns(result), columns<unsigned>({{7, 7, 7, 7},
                                                  {1, 7, 11, 6},
                                                  {4, 5, 11, 7},
                                                  {2, 6, 11, 5},
                                                  {0, 8, 12, 10},
                                                  {1, 6, 12, 8},
                                                  {2, 9, 12, 6},
                                                  {3, 10, 12, 9}}));
}

TEST(SplitIntoQ4, PreparedEdgesKeepTheirNode)
{
    dense2D<double> coords = square();
    ASSERT_TRUE(coords.resize(2, 5));
    coords(0, 4) = -7.0;
    coords(1, 4) = 11.0;
    dense2D<unsigned> result;
    EXPECT_EQ(split_into_Q4(coords, {{0, 1, 2}, {2, 3, 0}}, result, {{0, 2, 4}}), 0);
    EXPECT_EQ(columns(coords)[4], (std::vector<double>{-7, 11}));
    EXPECT_EQ(coords.cols, 5u + 4u + 2u);
    EXPECT_EQ(columns(result)[0][3], 4u);
    EXPECT_EQ(columns(result)[3][3], 4u);
}

TEST(SplitIntoQ4, AnEmptyResultGetsFourRowsWhateverItKept)
{
    for (const std::size_t rows : {0u, 3u, 4u, 9u}) {
        dense2D<double> coords = square();
        dense2D<unsigned> result = without_columns<unsigned>(rows);
        EXPECT_EQ(split_into_Q4(coords, {{0, 1, 2}}, result, without_columns<unsigned>(4)), 0);
        EXPECT_EQ(result.rows, 4u);
        EXPECT_EQ(result.cols, 3u);
    }
}

TEST(SplitIntoQ4, AConnectivityWithoutRowsFixesTheRowsOfTheResult)
{
    dense2D<double> coords = square();
    dense2D<unsigned> result;
    EXPECT_EQ(split_into_Q4(coords, dense2D<unsigned>(0, 5), result, NO_EDGES), 0);
    EXPECT_EQ(result.rows, 4u);
    EXPECT_TRUE(result.is_empty());
    EXPECT_EQ(coords.cols, 4u);
}

TEST(SplitIntoQ4, CountsNodesAndKeepsAreaAndOrientation)
{
    for (unsigned seed = 1; seed <= 6; ++seed) {
        for (support::mesh m :
             {support::grid_T3(5, 4), support::grid_Q4(5, 4), support::grid_mixed(5, 4, 2, seed)}) {
            support::jitter(m, 0.2, seed);
            support::shuffle(m, seed);
            dense2D<double> coords = copy_of(m.coords);
            dense2D<unsigned> result;
            ASSERT_EQ(split_into_Q4(coords, m.connect, result, NO_EDGES), 0);
            const std::string told = m.name + " seed " + std::to_string(seed);
            EXPECT_EQ(coords.cols, m.coords.cols + support::edge_count(m.connect) + m.connect.cols)
                << told;
            EXPECT_NEAR(area_of(coords, result), area_of(m.coords, m.connect), 1e-12) << told;
            for (const auto& child : columns(result))
                EXPECT_GT(area_of(coords, support::matrix<unsigned>({child})), 0.0) << told;
            // Every edge of the parents became two, and every corner got one edge to each centre.
            const std::size_t sides = result.cols;
            EXPECT_EQ(support::edge_count(result), 2 * support::edge_count(m.connect) + sides)
                << told;
        }
    }
}

TEST(SplitIntoQ4, SpaceEqualsPlaneWithZeroHeight)
{
    support::mesh plane = support::grid_mixed(4, 4, 2, 3);
    support::jitter(plane, 0.2, 4);
    support::mesh space = support::lifted(plane, [](double, double) { return 0.0; });
    dense2D<unsigned> in_plane;
    dense2D<unsigned> in_space;
    ASSERT_EQ(split_into_Q4(plane.coords, plane.connect, in_plane, NO_EDGES), 0);
    ASSERT_EQ(split_into_Q4(space.coords, space.connect, in_space, NO_EDGES), 0);
    EXPECT_EQ(columns(in_plane), columns(in_space));
    for (std::size_t j = 0; j < plane.coords.cols; ++j) {
        EXPECT_EQ(plane.coords(0, j), space.coords(0, j));
        EXPECT_EQ(plane.coords(1, j), space.coords(1, j));
        EXPECT_EQ(space.coords(2, j), 0.0);
    }
}

TEST(SplitIntoQ4, LayoutsDoNotMatter)
{
    const support::mesh m = support::grid_mixed(4, 3, 3, 2);
    const dense2D<unsigned> before(4, 2, 1u);
    const dense2D<unsigned> edges{{0, 1, 2}, {6, 1, 3}};
    dense2D<double> coords = copy_of(m.coords);
    dense2D<unsigned> result = copy_of(before);
    ASSERT_EQ(split_into_Q4(coords, m.connect, result, edges), 0);

    support::placed<double> far_coords(m.coords, 3, 2);
    const support::placed<unsigned> far_connect(m.connect, 1, 1);
    support::placed<unsigned> far_result(before, 7, 4);
    const support::placed<unsigned> far_edges(edges, 2, 2);
    ASSERT_EQ(split_into_Q4(far_coords.view, far_connect.view, far_result.view, far_edges.view), 0);
    EXPECT_EQ(bits(far_coords.view), bits(coords));
    EXPECT_EQ(columns(far_result.view), columns(result));
    EXPECT_EQ(columns(far_connect.view), columns(m.connect));
    far_coords.expect_gaps_untouched();
    far_result.expect_gaps_untouched();
}

TEST(SplitIntoQ4, RefusedMemoryLeavesTheResultAndTheOldNodes)
{
    const support::mesh m = support::grid_mixed(4, 3, 2, 2);
    dense2D<double> full_coords = copy_of(m.coords);
    dense2D<unsigned> full_result{{9, 9, 9, 9}};
    ASSERT_EQ(split_into_Q4(full_coords, m.connect, full_result, NO_EDGES), 0);
    std::size_t with_nodes = 0;
    const auto refusals = support::each_refused_allocation([&](auto armed, const auto& told) {
        dense2D<double> coords = copy_of(m.coords);
        dense2D<unsigned> result{{9, 9, 9, 9}};
        int status = 1;
        const bool refused =
            armed([&] { status = split_into_Q4(coords, m.connect, result, NO_EDGES); });
        if (status == 0) {
            EXPECT_EQ(bits(coords), bits(full_coords)) << told;
            EXPECT_EQ(columns(result), columns(full_result)) << told;
            return;
        }
        EXPECT_TRUE(refused) << told;
        EXPECT_EQ(status, -199) << told;
        EXPECT_EQ(columns(result), columns<unsigned>({{9, 9, 9, 9}})) << told;
        EXPECT_TRUE(coords.cols == m.coords.cols || coords.cols == full_coords.cols) << told;
        with_nodes += coords.cols == full_coords.cols;
    });
    EXPECT_GT(refusals, 0u);
    EXPECT_GT(with_nodes, 0u);
}

TEST(SplitIntoQ4, AwkwardMeshesGoThrough)
{
    for (const std::size_t dimension : {2u, 3u})
        for (support::mesh& m : support::awkward_meshes(dimension)) {
            dense2D<double> coords = copy_of(m.coords);
            dense2D<unsigned> result;
            EXPECT_EQ(split_into_Q4(coords, m.connect, result, NO_EDGES), 0) << m.name;
            EXPECT_TRUE(tessalo::check_IDs(result, ELEMENT_Q4, static_cast<unsigned>(coords.cols)))
                << m.name;
        }
}
