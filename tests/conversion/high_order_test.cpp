#include "conversion/high_order.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

using namespace vorel;
using support::bits;
using support::columns;
using support::copy_of;
using support::without_columns;
using tessalo2d::convert_into_high_order;
using tessalo2d::convert_into_quadratic;
using tessalo2d::convert_worker;

namespace {

constexpr unsigned U = UNSET_ID;

const dense2D<unsigned> NO_EDGES;
const dense1D<double, 8> NO_SIZES;

dense2D<double> square()
{
    return {{0, 0}, {2, 0}, {2, 2}, {0, 2}};
}

/// Two triangles over the square, with the common edge 0-2.
dense2D<unsigned> two_triangles()
{
    return {{0, 1, 2}, {2, 3, 0}};
}

struct outcome {
    int status = 1;
    dense2D<double> coords;
    dense2D<unsigned> connect;
};

outcome converted(const dense2D<double>& coords, const dense2D<unsigned>& connect, unsigned a,
                  unsigned b, unsigned c, const dense2D<unsigned>& edges = NO_EDGES)
{
    outcome to;
    to.coords = copy_of(coords);
    to.status = convert_into_high_order(to.coords, connect, a, b, c, to.connect, edges);
    return to;
}

} // namespace

// ------------------------------------------------------------------------------ numbers and places

TEST(ConvertIntoQuadratic, OneTriangleGetsItsMidpoints)
{
    dense2D<double> coords{{0, 0}, {2, 0}, {0, 4}};
    dense2D<unsigned> connect{{0, 1, 2}};
    EXPECT_EQ(convert_into_quadratic(coords, connect), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{0, 1, 2, 3, 4, 5}}));
    EXPECT_EQ(columns(coords), columns<double>({{0, 0}, {2, 0}, {0, 4}, {1, 2}, {0, 2}, {1, 0}}));
}

TEST(ConvertIntoQuadratic, NeighboursShareTheMidpoint)
{
    dense2D<double> coords = square();
    dense2D<unsigned> connect = two_triangles();
    EXPECT_EQ(convert_into_quadratic(coords, connect), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{0, 1, 2, 4, 5, 6}, {2, 3, 0, 7, 5, 8}}));
    EXPECT_EQ(columns(coords)[5], (std::vector<double>{1, 1}));
}

TEST(ConvertIntoQuadratic, QuadrilateralsGetNineRows)
{
    dense2D<double> coords = square();
    dense2D<unsigned> connect{{0, 1, 2, 3}};
    EXPECT_EQ(convert_into_quadratic(coords, connect), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{0, 1, 2, 3, 4, 5, 6, 7, 8}}));
    EXPECT_EQ(
        columns(coords),
        columns<double>({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 0}, {2, 1}, {1, 2}, {0, 1}, {1, 1}}));
}

TEST(ConvertIntoQuadratic, FourRowsOfTrianglesAloneGetSixRows)
{
    dense2D<double> coords = square();
    dense2D<unsigned> connect{{0, 1, 2, U}, {2, 3, 0, U}};
    EXPECT_EQ(convert_into_quadratic(coords, connect), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{0, 1, 2, 4, 5, 6}, {2, 3, 0, 7, 5, 8}}));
}

TEST(ConvertIntoQuadratic, TrianglesInAMixedResultEndInThreeUnset)
{
    dense2D<double> coords{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {4, 1}};
    dense2D<unsigned> connect{{1, 4, 2, U}, {0, 1, 2, 3}};
    EXPECT_EQ(convert_into_quadratic(coords, connect), 0);
    EXPECT_EQ(columns(connect),
              columns<unsigned>({{1, 4, 2, 5, 6, 7, U, U, U}, {0, 1, 2, 3, 8, 6, 9, 10, 11}}));
}

TEST(ConvertIntoQuadratic, MidpointsInSpaceAreExact)
{
    dense2D<double> coords{{0, 0, 1}, {1, 0, 3}, {0, 1, 7}};
    dense2D<unsigned> connect{{0, 1, 2}};
    EXPECT_EQ(convert_into_quadratic(coords, connect), 0);
    EXPECT_EQ(columns(coords)[3], (std::vector<double>{0.5, 0.5, 5}));
    EXPECT_EQ(columns(coords)[4], (std::vector<double>{0, 0.5, 4}));
    EXPECT_EQ(columns(coords)[5], (std::vector<double>{0.5, 0, 2}));
}

TEST(ConvertIntoHighOrder, NeighboursListTwoNodesInOppositeOrder)
{
    const outcome to = converted(square(), two_triangles(), 2, 0, 0);
    EXPECT_EQ(to.status, 0);
    EXPECT_EQ(columns(to.connect),
              columns<unsigned>({{0, 1, 2, 4, 5, 6, 7, 8, 9}, {2, 3, 0, 10, 11, 7, 6, 12, 13}}));
    // The common edge runs from 2 to 0, as the first triangle has it.
    const double third = 1.0 / 3.0;
    EXPECT_EQ(columns(to.coords)[6], (std::vector<double>{2 - third * 2, 2 - third * 2}));
    EXPECT_EQ(columns(to.coords)[7], (std::vector<double>{2 + 2 * third * -2, 2 + 2 * third * -2}));
}

TEST(ConvertIntoHighOrder, ThreeNodesAreReversedAroundTheMiddleOne)
{
    const outcome to = converted(square(), two_triangles(), 3, 0, 0);
    const std::vector<unsigned> first(to.connect.column(0) + 6, to.connect.column(0) + 9);
    const std::vector<unsigned> second(to.connect.column(1) + 6, to.connect.column(1) + 9);
    EXPECT_EQ(first, (std::vector<unsigned>{7, 8, 9}));
    EXPECT_EQ(second, (std::vector<unsigned>{9, 8, 7}));
}

TEST(ConvertIntoHighOrder, InteriorNodesFollowAllEdgeNodesElementByElement)
{
    const dense2D<double> coords{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {4, 1}};
    const outcome to = converted(coords, {{1, 4, 2, U}, {0, 1, 2, 3}}, 1, 4, 3);
    EXPECT_EQ(to.status, 0);
    EXPECT_EQ(columns(to.connect), columns<unsigned>({{1, 4, 2, 5, 6, 7, 11, 12, 13, U, U, U},
                                                      {0, 1, 2, 3, 8, 6, 9, 10, 14, 15, 16, 17}}));
    EXPECT_EQ(to.coords.cols, 18u);
    // In the quadrilateral the parameter along side 0-1 runs fastest.
    const double third = 1.0 / 3.0;
    EXPECT_NEAR(to.coords(0, 14), 2 * third, 1e-15);
    EXPECT_NEAR(to.coords(0, 15), 4 * third, 1e-15);
    EXPECT_NEAR(to.coords(1, 15), 2 * third, 1e-15);
    EXPECT_NEAR(to.coords(0, 16), 2 * third, 1e-15);
    EXPECT_NEAR(to.coords(1, 16), 4 * third, 1e-15);
}

TEST(ConvertIntoHighOrder, AnEdgeWithTwoEqualEndsIsNeverReversed)
{
    const outcome to = converted(square(), {{1, 0, 0}, {0, 0, 1}}, 2, 0, 0);
    EXPECT_EQ(to.status, 0);
    // Edges of the first: 0-0, 0-1, 1-0; the last is the second one backwards. Of the second
    // triangle: 0-1, 1-0, 0-0.
    EXPECT_EQ(columns(to.connect),
              columns<unsigned>({{1, 0, 0, 4, 5, 6, 7, 7, 6}, {0, 0, 1, 6, 7, 7, 6, 4, 5}}));
    EXPECT_EQ(columns(to.coords)[4], (std::vector<double>{0, 0}));
}

TEST(ConvertIntoHighOrder, AnEdgeOfThreeElementsHasOneSetOfNodes)
{
    const dense2D<double> coords{{0, 0}, {1, 0}, {0, 1}, {0, -1}, {2, 2}};
    const outcome to = converted(coords, {{0, 1, 2}, {0, 1, 3}, {1, 0, 4}}, 2, 0, 0);
    const auto c = columns(to.connect);
    EXPECT_EQ(std::vector<unsigned>(c[0].begin() + 7, c[0].end()),
              std::vector<unsigned>(c[1].begin() + 7, c[1].end()));
    EXPECT_EQ(c[2][7], c[0][8]);
    EXPECT_EQ(c[2][8], c[0][7]);
}

TEST(ConvertIntoHighOrder, WithoutEdgeNodesOnlyInteriorNodesAreNumberedAndStayAtZero)
{
    const dense2D<double> coords{{1, 1}, {2, 1}, {2, 2}, {1, 2}, {4, 3}};
    const outcome to = converted(coords, {{1, 4, 2, U}, {0, 1, 2, 3}}, 0, 4, 1);
    EXPECT_EQ(to.status, 0);
    EXPECT_EQ(columns(to.connect),
              columns<unsigned>({{U, U, U, 5, U, U, U, U}, {U, U, U, U, 6, 7, 8, 9}}));
    ASSERT_EQ(to.coords.cols, 10u);
    for (std::size_t j = 5; j < 10; ++j)
        EXPECT_EQ(columns(to.coords)[j], (std::vector<double>{0, 0}));
    EXPECT_EQ(columns(to.coords)[4], (std::vector<double>{4, 3}));
}

TEST(ConvertIntoHighOrder, WithoutEdgeNodesPreparedEdgesHaveTwoRowsAndNoEffect)
{
    const outcome to = converted(square(), {{0, 1, 2}}, 0, 0, 1, {{0, 1}});
    EXPECT_EQ(to.status, 0);
    EXPECT_EQ(columns(to.connect), columns<unsigned>({{U, U, U, 4}}));
    EXPECT_EQ(converted(square(), {{0, 1, 2}}, 0, 0, 1, {{0, 1, 2}}).status, -6);
}

TEST(ConvertIntoHighOrder, AnUnusedKindMayHaveCountsOfItsOwn)
{
    EXPECT_EQ(converted(square(), {{0, 1, 2}}, 1, 9, 0).connect.rows, 6u);
    EXPECT_EQ(converted(square(), {{0, 1, 2, 3}}, 1, 0, 3).connect.rows, 8u);
    // Nothing is added at all, but the corners are copied only along with edge nodes.
    const outcome none = converted(square(), {{0, 1, 2}}, 0, 1, 0);
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(columns(none.connect), columns<unsigned>({{U, U, U}}));
    EXPECT_EQ(none.coords.cols, 4u);
}

// ---------------------------------------------------------------------------------- prepared edges

TEST(ConvertIntoQuadratic, PreparedNodeServesBothSidesAndStaysWhereItIs)
{
    dense2D<double> coords{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {50, -3}};
    dense2D<unsigned> connect = two_triangles();
    EXPECT_EQ(convert_into_quadratic(coords, connect, {{0, 2, 4}}), 0);
    EXPECT_EQ(columns(connect), columns<unsigned>({{0, 1, 2, 5, 4, 6}, {2, 3, 0, 7, 4, 8}}));
    EXPECT_EQ(columns(coords)[4], (std::vector<double>{50, -3}));
    EXPECT_EQ(coords.cols, 9u);
}

TEST(ConvertIntoHighOrder, PreparedRunsAreConsecutiveFromRowTwoInTheDirectionOfTheEnds)
{
    dense2D<double> coords = square();
    ASSERT_TRUE(coords.resize(2, 8, 9.0));
    // Row 3 is not read: the second node is 6.
    const outcome to = converted(coords, two_triangles(), 2, 0, 0, {{0, 2, 5, 0}});
    EXPECT_EQ(columns(to.connect),
              columns<unsigned>({{0, 1, 2, 8, 9, 6, 5, 10, 11}, {2, 3, 0, 12, 13, 5, 6, 14, 15}}));
    EXPECT_EQ(columns(to.coords)[5], (std::vector<double>{9, 9}));
}

TEST(ConvertIntoHighOrder, OfTwoColumnsForAnEdgeTheFirstGivesDirectionAndTheLastTheNodes)
{
    dense2D<double> coords = square();
    ASSERT_TRUE(coords.resize(2, 8, 9.0));
    const outcome to = converted(coords, two_triangles(), 2, 0, 0, {{0, 2, 4, 5}, {2, 0, 6, 7}});
    const auto c = columns(to.connect);
    // The first triangle has the edge from 2 to 0, against the first column.
    EXPECT_EQ(c[0][5], 7u);
    EXPECT_EQ(c[0][6], 6u);
    EXPECT_EQ(c[1][5], 6u);
    EXPECT_EQ(c[1][6], 7u);
}

TEST(ConvertIntoHighOrder, APreparedColumnWithUnsetEndsOrNodeIsNoEdge)
{
    dense2D<double> coords = square();
    ASSERT_TRUE(coords.resize(2, 6, 9.0));
    const outcome plain = converted(coords, two_triangles(), 2, 0, 0);
    for (const std::size_t row : {0u, 1u, 2u}) {
        dense2D<unsigned> edges{{0, 2, 4, 5}};
        edges(row, 0) = U;
        const outcome to = converted(coords, two_triangles(), 2, 0, 0, edges);
        EXPECT_EQ(to.status, 0);
        EXPECT_EQ(columns(to.connect), columns(plain.connect)) << row;
    }
    const outcome to = converted(coords, two_triangles(), 2, 0, 0, {{0, 2, 4, U}});
    EXPECT_EQ(columns(to.connect)[0][5], 5u);
}

TEST(ConvertIntoHighOrder, APreparedRunThatReachesNewNodesMovesNoneOfThem)
{
    // Node 4 is the first new one; a prepared run from 3 on names it too, and backwards first.
    const outcome plain = converted(square(), {{0, 1, 2}}, 2, 0, 0);
    const outcome to = converted(square(), {{0, 1, 2}}, 2, 0, 0, {{2, 1, 3, 0}});
    EXPECT_EQ(columns(to.connect), columns<unsigned>({{0, 1, 2, 4, 3, 4, 5, 6, 7}}));
    EXPECT_EQ(to.coords.cols, 8u);
    for (std::size_t j = 4; j < 8; ++j)
        EXPECT_EQ(columns(to.coords)[j], columns(plain.coords)[j + 2]);
}

TEST(ConvertIntoHighOrder, PreparedEdgesOffTheMeshHaveNoEffect)
{
    dense2D<double> coords = square();
    const outcome plain = converted(coords, {{0, 1, 2}}, 1, 0, 0);
    const outcome to = converted(coords, {{0, 1, 2}}, 1, 0, 0, {{0, 3, 1}, {3, 3, 0}});
    EXPECT_EQ(columns(to.connect), columns(plain.connect));
    EXPECT_EQ(bits(to.coords), bits(plain.coords));
}

TEST(ConvertIntoHighOrder, WithAllEdgesPreparedNoNodeIsAdded)
{
    dense2D<double> coords = square();
    const outcome to = converted(coords, {{0, 1, 2}}, 1, 0, 0, {{0, 1, 3}, {1, 2, 3}, {2, 0, 3}});
    EXPECT_EQ(columns(to.connect), columns<unsigned>({{0, 1, 2, 3, 3, 3}}));
    EXPECT_EQ(bits(to.coords), bits(coords));
}

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

TEST(ConvertIntoHighOrder, IDsBeyondTheLastOneAreRefusedAndUndone)
{
    // 1431655764 nodes on each of three edges and one inside, or more, pass the last ID.
    const dense2D<double> three{{0, 0}, {1, 0}, {0, 1}};
    for (const auto& [a, c] : {std::pair{1431655764u, 1u}, {1431655765u, 0u}, {4294967295u, 0u}}) {
        const outcome to = converted(three, {{0, 1, 2}}, a, 0, c);
        EXPECT_EQ(to.status, -199);
        EXPECT_TRUE(to.connect.is_empty());
        EXPECT_EQ(bits(to.coords), bits(three));
    }
    const outcome quad = converted(square(), {{0, 1, 2, 3}}, 1, 4294836225u, 0);
    EXPECT_EQ(quad.status, -199);
    EXPECT_EQ(bits(quad.coords), bits(square()));
    const outcome interior = converted(square(), {{0, 1, 2, 3}}, 0, 4294836225u, 0);
    EXPECT_EQ(interior.status, -199);
    EXPECT_TRUE(interior.connect.is_empty());
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

// ------------------------------------------------------------------------------------------ memory

namespace {

/// A refused call has undone its growth. A call that succeeds although something was refused has
/// the same result as ever, except for edges without nodes.
void expect_undone_or_done(const outcome& to, const outcome& full, const dense2D<double>& before,
                           bool refused, const std::string& told)
{
    if (to.status == -199) {
        EXPECT_TRUE(refused) << told;
        EXPECT_TRUE(to.connect.is_empty()) << told;
        EXPECT_EQ(bits(to.coords), bits(before)) << told;
        return;
    }
    EXPECT_EQ(to.status, 0) << told;
    const bool complete = to.connect.rows != 0 && columns(to.connect) == columns(full.connect);
    EXPECT_TRUE(complete || refused) << told;
    EXPECT_TRUE(!complete || bits(to.coords) == bits(full.coords)) << told;
    EXPECT_EQ(to.connect.cols, full.connect.cols) << told;
    EXPECT_TRUE(tessalo::check_IDs(to.connect, static_cast<unsigned>(to.coords.cols))) << told;
}

} // namespace

TEST(ConvertIntoHighOrder, RefusedMemoryIsUndone)
{
    const support::mesh m = support::grid_mixed(5, 4, 2, 5);
    const dense2D<unsigned> edges{{1, 0, 5, U}, {6, 5, 9, 9}};
    const outcome full = converted(m.coords, m.connect, 2, 4, 3, edges);
    std::size_t out_of_memory = 0;
    const auto refusals = support::each_refused_allocation([&](auto armed, const auto& told) {
        outcome to;
        to.coords = copy_of(m.coords);
        to.connect = dense2D<unsigned>(2, 1, 3u);
        const bool refused = armed([&] {
            to.status = convert_into_high_order(to.coords, m.connect, 2, 4, 3, to.connect, edges);
        });
        expect_undone_or_done(to, full, m.coords, refused, told);
        out_of_memory += to.status == -199;
    });
    EXPECT_GT(refusals, out_of_memory);
    EXPECT_GE(out_of_memory, 4u);
}

TEST(ConvertIntoHighOrder, WithOutputsReservedOneRefusalChangesNothing)
{
    const support::mesh m = support::grid_mixed(5, 4, 2, 5);
    const outcome full = converted(m.coords, m.connect, 2, 4, 3);
    std::size_t struck = 0;
    for (std::size_t k = 0; k < 100; ++k) {
        outcome to;
        to.coords = copy_of(m.coords);
        ASSERT_TRUE(to.coords.reserve(2, full.coords.cols, 1));
        ASSERT_TRUE(to.connect.reserve(full.connect.rows, full.connect.cols, 1));
        support::failing_allocation refuse(k);
        to.status = convert_into_high_order(to.coords, m.connect, 2, 4, 3, to.connect, NO_EDGES);
        EXPECT_EQ(to.status, 0);
        EXPECT_EQ(columns(to.connect), columns(full.connect)) << k;
        EXPECT_EQ(bits(to.coords), bits(full.coords)) << k;
        if (!refuse.fired()) break;
        ++struck;
    }
    EXPECT_GT(struck, 0u);
}

TEST(ConvertIntoHighOrder, WithoutAnyWorkingStorageEdgesHaveNoNodes)
{
    const dense2D<double> before = square();
    outcome to;
    to.coords = copy_of(before);
    ASSERT_TRUE(to.coords.reserve(2, 20, 1));
    ASSERT_TRUE(to.connect.reserve(8, 2, 1));
    const dense2D<unsigned> connect = two_triangles();
    const dense2D<unsigned> edges{{0, 1, 3}};
    {
        support::failing_allocation refuse(0, support::failure::for_good);
        to.status = convert_into_high_order(to.coords, connect, 1, 1, 1, to.connect, edges);
    }
    EXPECT_EQ(to.status, 0);
    EXPECT_EQ(columns(to.connect),
              columns<unsigned>({{0, 1, 2, U, U, U, 4}, {2, 3, 0, U, U, U, 5}}));
    EXPECT_EQ(to.coords.cols, 6u);
    EXPECT_NEAR(to.coords(0, 4), 4.0 / 3.0, 1e-15);
}

TEST(ConvertIntoQuadratic, ARefusedCopyOfTheConnectivityLeavesEverything)
{
    dense2D<double> coords = square();
    dense2D<unsigned> connect = two_triangles();
    {
        support::failing_allocation refuse(0);
        EXPECT_EQ(convert_into_quadratic(coords, connect), -199);
        EXPECT_TRUE(refuse.fired());
    }
    EXPECT_EQ(columns(connect), columns(two_triangles()));
    EXPECT_EQ(bits(coords), bits(square()));
}

TEST(ConvertIntoQuadratic, LaterRefusalsLoseTheConnectivityAndKeepTheNodes)
{
    for (const bool with_edges : {false, true}) {
        const dense2D<unsigned> edges =
            with_edges ? dense2D<unsigned>{{0, 2, 3}} : dense2D<unsigned>();
        std::size_t lost = 0;
        std::size_t kept = 0;
        support::each_refused_allocation([&](auto armed, const auto& told) {
            dense2D<double> coords = square();
            dense2D<unsigned> connect = two_triangles();
            int status = 1;
            armed([&] {
                status = with_edges ? convert_into_quadratic(coords, connect, edges)
                                    : convert_into_quadratic(coords, connect);
            });
            if (status == 0) return;
            EXPECT_EQ(status, -199) << told;
            EXPECT_EQ(bits(coords), bits(square())) << told;
            lost += connect.is_empty();
            kept += !connect.is_empty();
        });
        EXPECT_GE(lost, 2u);
        EXPECT_GE(kept, 2u);
    }
}
