#include "support/matrices.h"
#include "support/meshes.h"

using namespace vorel;
using support::columns;
using tessalo2d::area;
using tessalo2d::flip;

namespace {

constexpr unsigned U = UNSET_ID;

/// Entry (i, j) is 100 j + i.
dense2D<unsigned> numbered(std::size_t rows, std::size_t cols)
{
    dense2D<unsigned> m(rows, cols);
    for (std::size_t j = 0; j < cols; ++j)
        for (std::size_t i = 0; i < rows; ++i) m(i, j) = static_cast<unsigned>(100 * j + i);
    return m;
}

/// `numbered` with the rows of each column taken from `order`.
std::vector<std::vector<unsigned>> reordered(const std::vector<unsigned>& order, std::size_t cols)
{
    std::vector<std::vector<unsigned>> all(cols);
    for (std::size_t j = 0; j < cols; ++j)
        for (const unsigned row : order) all[j].push_back(static_cast<unsigned>(100 * j + row));
    return all;
}

const std::vector<unsigned> CORNERS_3{2, 1, 0};
const std::vector<unsigned> CORNERS_4{2, 1, 0, 3};
const std::vector<unsigned> SIX{2, 1, 0, 5, 4, 3};
const std::vector<unsigned> EIGHT{2, 1, 0, 3, 5, 4, 7, 6};
const std::vector<unsigned> NINE{2, 1, 0, 3, 5, 4, 7, 6, 8};

/// Row 3 + i of a triangle and row 4 + i of a quadrilateral stand halfway along their edges.
void expect_midnodes_on_edges(const support::mesh& m)
{
    for (std::size_t e = 0; e < m.connect.cols; ++e) {
        const bool triangle = m.connect.rows == 6 || m.connect(6, e) == U;
        const std::size_t n = triangle ? 3 : 4;
        for (std::size_t k = 0; k < n; ++k) {
            const unsigned a = m.connect(triangle ? (k + 1) % 3 : k, e);
            const unsigned b = m.connect(triangle ? (k + 2) % 3 : (k + 1) % 4, e);
            const unsigned mid = m.connect(n + k, e);
            for (std::size_t i = 0; i < 2; ++i)
                EXPECT_EQ(m.coords(i, mid), 0.5 * m.coords(i, a) + 0.5 * m.coords(i, b))
                    << "element " << e << " edge " << k;
        }
    }
}

} // namespace

TEST(Flip, WithoutATypeExchangesCornersOnly)
{
    // Any number of columns: groups and what is left of them.
    for (std::size_t cols = 1; cols < 10; ++cols)
        for (std::size_t rows = 3; rows < 12; ++rows) {
            dense2D<unsigned> connect = numbered(rows, cols);
            EXPECT_EQ(flip(connect), 0);
            std::vector<unsigned> order(rows);
            for (unsigned i = 0; i < rows; ++i) order[i] = i;
            std::swap(order[0], order[2]);
            EXPECT_EQ(columns(connect), reordered(order, cols)) << rows << " x " << cols;
        }
}

TEST(Flip, WithoutATypeTestsTheColumnCountFirst)
{
    dense2D<unsigned> none = support::without_columns<unsigned>(2);
    EXPECT_EQ(flip(none), 0);
    dense2D<unsigned> empty;
    EXPECT_EQ(flip(empty), 0);
    dense2D<unsigned> two = numbered(2, 5);
    EXPECT_EQ(flip(two), -1);
    EXPECT_EQ(columns(two), columns(numbered(2, 5)));
    dense2D<unsigned> no_rows;
    no_rows.cols = 5;
    EXPECT_EQ(flip(no_rows), -1);
}

TEST(Flip, EachKindHasItsExchange)
{
    const struct {
        element_type type;
        const std::vector<unsigned>& order;
    } table[] = {
        {ELEMENT_T3, CORNERS_3},       {ELEMENT_Q4, CORNERS_4}, {ELEMENT_T6, SIX},
        {ELEMENT_Q8, EIGHT},           {ELEMENT_Q9, NINE},      {ELEMENT_ANY_FACE, CORNERS_3},
        {ELEMENT_ANY_FACE, CORNERS_4}, {ELEMENT_ANY_FACE, SIX}, {ELEMENT_ANY_FACE, EIGHT},
        {ELEMENT_ANY_FACE, NINE}};
    for (std::size_t cols = 1; cols < 10; ++cols)
        for (const auto& row : table) {
            dense2D<unsigned> connect = numbered(row.order.size(), cols);
            EXPECT_EQ(flip(connect, row.type), 0);
            EXPECT_EQ(columns(connect), reordered(row.order, cols)) << row.type << ", " << cols;
        }
}

TEST(Flip, MixedQuadraticStorageIsToldApartByRowSix)
{
    for (const std::size_t rows : {8u, 9u}) {
        dense2D<unsigned> connect = numbered(rows, 3);
        for (std::size_t i = 6; i < rows; ++i) connect(i, 1) = U;
        auto expected = reordered(rows == 8 ? EIGHT : NINE, 3);
        expected[1] = {102, 101, 100, 105, 104, 103, U, U, U};
        expected[1].resize(rows);
        EXPECT_EQ(flip(connect, ELEMENT_ANY_FACE), 0);
        EXPECT_EQ(columns(connect), expected);
    }
    // The rows behind row 6 don't count, and of a triangle they stay.
    dense2D<unsigned> odd = numbered(9, 1);
    odd(6, 0) = U;
    EXPECT_EQ(flip(odd, ELEMENT_ANY_FACE), 0);
    EXPECT_EQ(columns(odd)[0], (std::vector<unsigned>{2, 1, 0, 5, 4, 3, U, 7, 8}));
    dense2D<unsigned> unset_7 = numbered(8, 1);
    unset_7(7, 0) = U;
    EXPECT_EQ(flip(unset_7, ELEMENT_ANY_FACE), 0);
    EXPECT_EQ(columns(unset_7)[0], (std::vector<unsigned>{2, 1, 0, 3, 5, 4, U, 6}));
    // With the kind stated, row 6 is a node like any other.
    dense2D<unsigned> stated = numbered(8, 1);
    stated(6, 0) = U;
    EXPECT_EQ(flip(stated, ELEMENT_Q8), 0);
    EXPECT_EQ(columns(stated)[0], (std::vector<unsigned>{2, 1, 0, 3, 5, 4, 7, U}));
}

TEST(Flip, TriangleInFourRowsKeepsItsUnsetRow)
{
    dense2D<unsigned> connect{{0, 1, 2, U}, {3, 4, 5, 6}};
    EXPECT_EQ(flip(connect, ELEMENT_ANY_FACE), 0);
    EXPECT_EQ(columns(connect), (std::vector<std::vector<unsigned>>{{2, 1, 0, U}, {5, 4, 3, 6}}));
}

TEST(Flip, OtherRowCountsOfMixedStorageAreRefused)
{
    for (const std::size_t rows : {1u, 2u, 5u, 7u, 10u}) {
        dense2D<unsigned> connect = numbered(rows, 2);
        EXPECT_EQ(flip(connect, ELEMENT_ANY_FACE), -2) << rows;
        EXPECT_EQ(columns(connect), columns(numbered(rows, 2)));
    }
    dense2D<unsigned> no_rows;
    no_rows.cols = 2;
    EXPECT_EQ(flip(no_rows, ELEMENT_ANY_FACE), -2);
}

TEST(Flip, KindsThatAreNoFacesAreLeftAlone)
{
    const struct {
        element_type type;
        std::size_t rows;
    } table[] = {{ELEMENT_NODE, 1},       {ELEMENT_ANY_EDGE, 2},  {ELEMENT_E2, 2},
                 {ELEMENT_E3, 3},         {ELEMENT_ANY_SOLID, 8}, {ELEMENT_TETRA4, 4},
                 {ELEMENT_TETRA10, 10},   {ELEMENT_PYRAMID5, 5},  {ELEMENT_PYRAMID13, 13},
                 {ELEMENT_PYRAMID14, 14}, {ELEMENT_WEDGE6, 6},    {ELEMENT_WEDGE15, 15},
                 {ELEMENT_WEDGE18, 18},   {ELEMENT_HEXA8, 8},     {ELEMENT_HEXA20, 20},
                 {ELEMENT_HEXA27, 27}};
    for (const auto& row : table) {
        dense2D<unsigned> connect = numbered(row.rows, 2);
        EXPECT_EQ(flip(connect, row.type), 0) << row.type;
        EXPECT_EQ(columns(connect), columns(numbered(row.rows, 2))) << row.type;
        dense2D<unsigned> longer = numbered(row.rows + 1, 2);
        EXPECT_EQ(flip(longer, row.type), -2) << row.type;
    }
    dense2D<unsigned> no_rows;
    no_rows.cols = 2;
    EXPECT_EQ(flip(no_rows, ELEMENT_NONE), 0);
    dense2D<unsigned> one = numbered(1, 2);
    EXPECT_EQ(flip(one, ELEMENT_NONE), -2);
}

TEST(Flip, RowsMustBeTheNodeCountOfTheKind)
{
    for (const element_type type : {ELEMENT_T3, ELEMENT_Q4, ELEMENT_T6, ELEMENT_Q8, ELEMENT_Q9})
        for (std::size_t rows = 1; rows < 12; ++rows) {
            if (rows == element_node_count(type)) continue;
            dense2D<unsigned> connect = numbered(rows, 1);
            EXPECT_EQ(flip(connect, type), -2) << type << " with " << rows << " rows";
            EXPECT_EQ(columns(connect), columns(numbered(rows, 1)));
        }
}

TEST(Flip, CodesOutsideTheTableAreRefused)
{
    for (const int code : {-1, 23, 24, 1000, -2147483647}) {
        dense2D<unsigned> connect = numbered(3, 1);
        EXPECT_EQ(flip(connect, static_cast<element_type>(code)), -2) << code;
        dense2D<unsigned> no_rows;
        no_rows.cols = 1;
        EXPECT_EQ(flip(no_rows, static_cast<element_type>(code)), -2) << code;
        dense2D<unsigned> none = support::without_columns<unsigned>(3);
        EXPECT_EQ(flip(none, static_cast<element_type>(code)), 0) << code;
    }
}

TEST(Flip, TwiceIsIdentityAndOnceReversesTheArea)
{
    for (support::mesh m :
         {support::grid_T3(5, 4), support::grid_Q4(5, 4), support::grid_mixed(5, 4, 2, 3)}) {
        const auto before = columns(m.connect);
        double positive = 0.0;
        ASSERT_EQ(area(m.coords, m.connect, positive), 0);
        ASSERT_EQ(flip(m.connect, ELEMENT_ANY_FACE), 0);
        double negative = 0.0;
        ASSERT_EQ(area(m.coords, m.connect, negative), 0);
        EXPECT_EQ(positive, 20.0);
        EXPECT_EQ(negative, -20.0);
        ASSERT_EQ(flip(m.connect), 0);
        EXPECT_EQ(columns(m.connect), before) << m.name;
    }
}

TEST(Flip, MidnodesStayOnTheirEdges)
{
    for (support::mesh m : {support::grid_T6(4, 3), support::grid_Q8(4, 3), support::grid_Q9(4, 3),
                            support::grid_Q8(4, 3, 2, true), support::grid_Q9(4, 3, 2, true)}) {
        SCOPED_TRACE(m.name);
        const auto before = columns(m.connect);
        ASSERT_EQ(flip(m.connect, ELEMENT_ANY_FACE), 0);
        EXPECT_NE(columns(m.connect), before);
        expect_midnodes_on_edges(m);
        ASSERT_EQ(flip(m.connect, ELEMENT_ANY_FACE), 0);
        EXPECT_EQ(columns(m.connect), before);
    }
}

TEST(Flip, WithoutATypeSixNodesGoWrong)
{
    dense2D<unsigned> connect = numbered(6, 1);
    EXPECT_EQ(flip(connect), 0);
    EXPECT_EQ(columns(connect)[0], (std::vector<unsigned>{2, 1, 0, 3, 4, 5}));
}

TEST(Flip, GapsBetweenColumnsStay)
{
    for (const std::size_t rows : {3u, 4u, 6u, 8u, 9u})
        for (const std::size_t gap : {1u, 2u}) {
            dense2D<unsigned> dense = numbered(rows, 7);
            support::placed<unsigned> placed(dense, 3, gap);
            EXPECT_EQ(flip(placed.view, ELEMENT_ANY_FACE), 0);
            EXPECT_EQ(flip(dense, ELEMENT_ANY_FACE), 0);
            EXPECT_EQ(columns(placed.view), columns(dense));
            placed.expect_gaps_untouched();
        }
}
