#include "conversion/high_order_outcome.h"

using namespace high_order_tests;

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
