#include "conversion/element_nodes.h"
#include "conversion/high_order_outcome.h"
#include "support/allocation.h"
#include "support/meshes.h"

#include <limits>

using namespace high_order_tests;
using support::without_columns;

// ---------------------------------------------------------------------------------------- statuses

TEST(ConvertIntoHighOrder, ChecksArgumentsInOrder)
{
    dense2D<double> flat(5, 4, 0.0);
    dense2D<double> coords = square();
    const dense2D<unsigned> bad_ID{{0, 1, 4}};
    const dense2D<unsigned> good{{0, 1, 2}};
    const dense2D<unsigned> bad_rows(7, 1, 0u);
    const dense2D<unsigned> bad_edge_ID{{0, 1, 4}};

    const auto status = [&](dense2D<double>& nodes, const dense2D<unsigned>& connect, unsigned quad,
                            unsigned triangle, const dense2D<unsigned>& edges) {
        dense2D<unsigned> result(3, 2, 7u);
        const int s = convert_into_high_order(nodes, connect, 1, quad, triangle, result, edges);
        // Only a wrong dimension leaves the result alone.
        EXPECT_EQ(result.cols, s == -1 ? 2u : 0u);
        return s;
    };
    EXPECT_EQ(status(flat, bad_ID, 2, 2, bad_rows), -1);
    EXPECT_EQ(status(coords, bad_ID, 2, 2, bad_rows), -2);
    EXPECT_EQ(status(coords, dense2D<unsigned>(5, 1, 0u), 2, 2, bad_rows), -2);
    EXPECT_EQ(status(coords, good, 2, 2, bad_rows), -4);
    EXPECT_EQ(status(coords, good, 1, 2, bad_rows), -5);
    EXPECT_EQ(status(coords, good, 1, 4, bad_rows), -5);
    EXPECT_EQ(status(coords, good, 1, 0, bad_rows), -6);
    EXPECT_EQ(status(coords, good, 1, 0, bad_edge_ID), -6);
}

TEST(ConvertIntoHighOrder, QuadNodesMustBeASquare)
{
    for (const unsigned quad : {2u, 3u, 5u, 8u, 10u, 15u, 4294836224u, 4294967295u})
        EXPECT_EQ(converted(square(), {{0, 1, 2}}, 1, quad, 0).status, -4) << quad;
    for (const unsigned quad : {0u, 1u, 4u, 9u, 16u, 4294836225u})
        EXPECT_EQ(converted(square(), {{0, 1, 2}}, 1, quad, 0).status, 0) << quad;
}

TEST(ConvertIntoHighOrder, TriangleNodesMustBeNoneOneOrThree)
{
    for (const unsigned triangle : {2u, 4u, 6u, 4294967295u})
        EXPECT_EQ(converted(square(), {{0, 1, 2}}, 1, 0, triangle).status, -5) << triangle;
    for (const unsigned triangle : {0u, 1u, 3u})
        EXPECT_EQ(converted(square(), {{0, 1, 2}}, 1, 0, triangle).status, 0) << triangle;
}

TEST(ConvertIntoHighOrder, EdgesRowsFollowTheEdgeNodes)
{
    for (const unsigned n : {1u, 2u, 3u})
        for (const std::size_t rows : {2u, 3u, 4u, 5u, 6u}) {
            dense2D<unsigned> edges(rows, 1, 0u);
            EXPECT_EQ(converted(square(), {{0, 1, 2}}, n, 0, 0, edges).status,
                      rows == n + 2 ? 0 : -6);
        }
    EXPECT_EQ(converted(square(), {{0, 1, 2}}, 1, 0, 0, without_columns<unsigned>(17)).status, 0);
}

TEST(ConvertIntoHighOrder, EmptinessComesBeforeEdgesAndAfterTheDimension)
{
    dense2D<double> coords = square();
    dense2D<double> flat(5, 4, 0.0);
    const dense2D<unsigned> bad_edges(9, 1, 77u);
    dense2D<unsigned> result(3, 2, 7u);
    EXPECT_EQ(convert_into_high_order(flat, NO_EDGES, 1, 2, 2, result, bad_edges), -1);
    EXPECT_EQ(result.cols, 2u);
    EXPECT_EQ(convert_into_high_order(coords, NO_EDGES, 1, 2, 2, result, bad_edges), 0);
    EXPECT_TRUE(result.is_empty());

    dense2D<unsigned> connect;
    EXPECT_EQ(convert_into_quadratic(flat, connect), -1);
    EXPECT_EQ(convert_into_quadratic(coords, connect, bad_edges), 0);
}

TEST(ConvertIntoHighOrder, NoNodesToAddEmptiesTheResult)
{
    dense2D<double> coords = square();
    dense2D<unsigned> connect{{0, 1, 99}};
    EXPECT_EQ(convert_into_high_order(coords, connect, 0, 0, 0, dense2D<unsigned>(9, 1, 77u)), 0);
    EXPECT_TRUE(connect.is_empty());
    EXPECT_EQ(connect.rows + connect.cols + connect.ld + connect.size, 0u);
    EXPECT_EQ(bits(coords), bits(square()));
}

TEST(ConvertIntoHighOrder, CountsAreAddedWithoutWrapAround)
{
    // The sum of these is 2^32.
    EXPECT_EQ(converted(square(), {{0, 1, 2}}, 4294967295u, 1, 0).status, -199);
    EXPECT_EQ(converted(square(), {{0, 1, 2}}, 4294967294u, 1, 1).status, -199);
}

TEST(ConvertIntoQuadratic, BadEdgesAreArgumentSixInEveryForm)
{
    const dense2D<unsigned> bad_edges(4, 1, 0u);
    dense2D<double> coords = square();
    dense2D<unsigned> connect = two_triangles();
    EXPECT_EQ(convert_into_quadratic(coords, connect, bad_edges), -6);
    EXPECT_TRUE(connect.is_empty());
    connect = two_triangles();
    EXPECT_EQ(convert_into_high_order(coords, connect, 1, 1, 0, bad_edges), -6);
    EXPECT_TRUE(connect.is_empty());
    EXPECT_EQ(converted(coords, two_triangles(), 1, 1, 0, bad_edges).status, -6);
    EXPECT_EQ(bits(coords), bits(square()));
}

TEST(ConvertIntoQuadratic, AWrongDimensionLeavesTheConnectivityAndOtherFailuresEmptyIt)
{
    dense2D<double> flat(1, 4, 0.0);
    dense2D<double> coords = square();
    dense2D<unsigned> connect = two_triangles();
    EXPECT_EQ(convert_into_quadratic(flat, connect), -1);
    EXPECT_EQ(columns(connect), columns(two_triangles()));
    connect(0, 0) = 4;
    EXPECT_EQ(convert_into_quadratic(coords, connect), -2);
    EXPECT_TRUE(connect.is_empty());
}

TEST(ConvertIntoHighOrder, ColumnsTooLongForTheStorageAreRefusedAndUndone)
{
    // The longest of these have about 51 GB, more than the tests' allocator ever serves.
    const dense2D<double> three{{0, 0}, {1, 0}, {0, 1}};
    for (const auto& [a, c] : {std::pair{2000000000u, 1u}, {3000000000u, 3u}, {4294967295u, 0u}}) {
        const outcome to = converted(three, {{0, 1, 2}}, a, 0, c);
        EXPECT_EQ(to.status, -199);
        EXPECT_TRUE(to.connect.is_empty());
        EXPECT_EQ(bits(to.coords), bits(three));
    }
}

TEST(ConvertIntoHighOrder, InteriorNodesBeyondTheLastIDAreRefusedBeforeStorageIsAskedFor)
{
    for (const unsigned edge_nodes : {0u, 1u, 4294967295u}) {
        const auto refusals = support::each_refused_allocation([&](auto armed, const auto&) {
            dense2D<double> coords = square();
            const dense2D<unsigned> two_quads{{0, 1, 2, 3}, {0, 1, 2, 3}};
            dense2D<unsigned> result;
            int status = 1;
            armed([&] {
                // One of these has IDs for its nodes, two have not.
                status = convert_into_high_order(coords, two_quads, edge_nodes, 4294836225u, 0,
                                                 result, NO_EDGES);
            });
            EXPECT_EQ(status, -199);
            EXPECT_TRUE(result.is_empty());
            EXPECT_EQ(bits(coords), bits(square()));
        });
        EXPECT_EQ(refusals, 0u) << edge_nodes;
    }
}

TEST(TakeIDs, GoesExactlyUpToTheLastID)
{
    const auto taken = [](std::size_t next, std::size_t elements, unsigned nodes) {
        const std::size_t before = next;
        const bool done = tessalo2d::take_ids(next, elements, nodes);
        EXPECT_EQ(next, done ? before + elements * nodes : before);
        return done;
    };
    EXPECT_TRUE(taken(U - 6, 2, 3));
    EXPECT_FALSE(taken(U - 5, 2, 3));
    EXPECT_TRUE(taken(0, 1, U));
    EXPECT_FALSE(taken(1, 1, U));
    EXPECT_TRUE(taken(0, U, 1));
    EXPECT_FALSE(taken(1, U, 1));
    EXPECT_TRUE(taken(U - 1, 1, 1));
    EXPECT_FALSE(taken(U, 1, 1));
}

TEST(TakeIDs, RefusesCountsWhoseProductLeavesTheirType)
{
    std::size_t next = 7;
    EXPECT_FALSE(tessalo2d::take_ids(next, U / 3 + 1, 3));
    EXPECT_FALSE(tessalo2d::take_ids(next, std::numeric_limits<std::size_t>::max(), 1));
    // 2^63 times 2, 2^62 times 4: both products wrap around to 0.
    EXPECT_FALSE(tessalo2d::take_ids(next, std::size_t(1) << 63, 2));
    EXPECT_FALSE(tessalo2d::take_ids(next, std::size_t(1) << 62, 4));
    EXPECT_EQ(next, 7u);
}

TEST(TakeIDs, NoneAreAlwaysThere)
{
    // A node count may lie beyond the last ID.
    for (std::size_t next : {std::size_t(0), std::size_t(U), std::size_t(U) + 5}) {
        const std::size_t before = next;
        EXPECT_TRUE(tessalo2d::take_ids(next, 0, 3));
        EXPECT_TRUE(tessalo2d::take_ids(next, 3, 0));
        EXPECT_TRUE(tessalo2d::take_ids(next, 0, 0));
        EXPECT_TRUE(tessalo2d::take_ids(next, std::numeric_limits<std::size_t>::max(), 0));
        EXPECT_EQ(next, before);
    }
}

// -------------------------------------------------------------------------------- aliases, layouts

TEST(ConvertIntoHighOrder, AResultThatIsTheInputIsEmptied)
{
    dense2D<double> coords = square();
    dense2D<unsigned> both = two_triangles();
    EXPECT_EQ(convert_into_high_order(coords, both, 1, 1, 0, both, NO_EDGES), 0);
    EXPECT_TRUE(both.is_empty());
    dense2D<unsigned> edges{{0, 2, 3}};
    EXPECT_EQ(convert_into_high_order(coords, two_triangles(), 1, 1, 0, edges, edges), 0);
    EXPECT_EQ(edges.rows, 6u);
}

TEST(ConvertIntoHighOrder, AResultOnTheBlockOfAnInputGetsOneOfItsOwn)
{
    const dense2D<unsigned> connect = two_triangles();
    const dense2D<unsigned> edges{{0, 2, 3}};
    const outcome apart = converted(square(), connect, 1, 1, 0, edges);
    for (const dense2D<unsigned>& shared : {connect, edges}) {
        dense2D<double> coords = square();
        dense2D<unsigned> result = shared;
        EXPECT_EQ(convert_into_high_order(coords, connect, 1, 1, 0, result, edges), 0);
        EXPECT_EQ(columns(result), columns(apart.connect));
        EXPECT_EQ(columns(connect), columns(two_triangles()));
    }
}

TEST(ConvertIntoHighOrder, LayoutsDoNotMatterAndInputsStay)
{
    for (const std::size_t dimension : {2u, 3u}) {
        support::mesh m = support::grid_mixed(4, 3, dimension, 5);
        support::jitter(m, 0.3, 6);
        const dense2D<unsigned> edges{{1, 0, 5, U}, {6, 5, 9, 9}};
        const outcome dense = converted(m.coords, m.connect, 2, 4, 3, edges);
        ASSERT_EQ(dense.status, 0);

        support::placed<double> coords(m.coords, 5, 3);
        const support::placed<unsigned> connect(m.connect, 1, 2);
        const support::placed<unsigned> far_edges(edges, 4, 1);
        support::placed<unsigned> result(dense2D<unsigned>(16, 2, 3u), 6, 5);
        ASSERT_EQ(convert_into_high_order(coords.view, connect.view, 2, 4, 3, result.view,
                                          far_edges.view),
                  0);
        EXPECT_EQ(bits(coords.view), bits(dense.coords));
        EXPECT_EQ(columns(result.view), columns(dense.connect));
        EXPECT_EQ(columns(connect.view), columns(m.connect));
        EXPECT_EQ(columns(far_edges.view), columns(edges));
        coords.expect_gaps_untouched();
        connect.expect_gaps_untouched();
    }
}

TEST(ConvertIntoHighOrder, TheInPlaceFormEqualsTheOther)
{
    const support::mesh m = support::grid_mixed(4, 3, 2, 5);
    const outcome apart = converted(m.coords, m.connect, 3, 4, 1);
    support::placed<unsigned> connect(m.connect, 3, 2);
    dense2D<double> coords = copy_of(m.coords);
    EXPECT_EQ(convert_into_high_order(coords, connect.view, 3, 4, 1, NO_EDGES), 0);
    EXPECT_EQ(columns(connect.view), columns(apart.connect));
    EXPECT_EQ(bits(coords), bits(apart.coords));
}

TEST(ConvertIntoHighOrder, SpareCapacityOfTheOutputsIsUsed)
{
    dense2D<double> coords = square();
    ASSERT_TRUE(coords.reserve(2, 9, 1));
    dense2D<unsigned> result(6, 2, 0u);
    const double* const nodes = coords.column(0);
    const unsigned* const entries = result.column(0);
    EXPECT_EQ(convert_into_high_order(coords, two_triangles(), 1, 1, 0, result, NO_EDGES), 0);
    EXPECT_EQ(coords.column(0), nodes);
    EXPECT_EQ(result.column(0), entries);
}
