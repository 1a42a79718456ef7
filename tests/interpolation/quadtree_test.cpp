// The quadtree against sets of nodes: its cells.
#include "interpolation/clouds.h"
#include "interpolation/plain_locator.h"
#include "support/allocation.h"
#include "support/matrices.h"

#include <cmath>
#include <limits>

using namespace vorel;
using namespace vorel::tessalo2d;
using support::all_ids;
using support::bounds;
using support::cloud;
using support::clouds;
using support::shuffled_ids;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INF = std::numeric_limits<double>::infinity();

plain::tree plain_tree(const dense2D<double>& coords, const vec2& low, const vec2& high,
                       const dense1D<unsigned, 8>& ids, std::size_t& stored)
{
    plain::tree t(coords, {low[0], low[1]}, {high[0], high[1]});
    stored = t.insert(support::elements(ids));
    return t;
}

} // namespace

TEST(NodeQuadtree, ResetLeavesARootAndThreeIdleCells)
{
    const dense2D<double> coords{{0.0, 0.0}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    EXPECT_EQ(tree.count, 0u);
    EXPECT_EQ(support::columns(tree.cells),
              std::vector<std::vector<unsigned>>(4, std::vector<unsigned>(4, 0)));
    ASSERT_TRUE(tree.insert_node(0));
    tree.free_stack.append(9);
    tree.reset();
    EXPECT_EQ(tree.count, 0u);
    EXPECT_EQ(tree.cells.cols, 4u);
    EXPECT_EQ(tree.free_stack.size, 0u);
    EXPECT_EQ(tree.cells(0, 0), 0u);
}

TEST(NodeQuadtree, RootIsASquareOnTheCentreOfTheBox)
{
    const dense2D<double> coords;
    node_quadtree tree(coords);
    tree.set_box({{1, 10}}, {{5, 12}});
    const double size = 4 * 1.000000000001;
    EXPECT_EQ(tree.origin[0], 3.0 - size * 0.5);
    EXPECT_EQ(tree.origin[1], 11.0 - size * 0.5);
    EXPECT_EQ(tree.scale, 4294967295.0 / size);
    tree.set_box({{7, 7}}, {{7, 7}});
    EXPECT_EQ(tree.scale, 4294967295.0 / 1e-12);
}

TEST(NodeQuadtree, QuantisationTruncatesAndCutsToTheSquare)
{
    const dense2D<double> coords;
    node_quadtree tree(coords);
    tree.origin = {{0, -1}};
    tree.scale = 2.0;
    const auto at = [&](double x, double y) {
        const integer_point p = tree.quantize(x, y);
        return std::vector<std::uint32_t>{p.x, p.y};
    };
    using pair = std::vector<std::uint32_t>;
    EXPECT_EQ(at(1.4, -1), (pair{2, 0}));
    EXPECT_EQ(at(1.5, -0.5), (pair{3, 1}));
    EXPECT_EQ(at(-0.1, -1.1), (pair{0, 0}));
    EXPECT_EQ(at(NOT_A_NUMBER, INF), (pair{0, 0xFFFFFFFFu}));
    EXPECT_EQ(at(-INF, 2147483646.5), (pair{0, 0xFFFFFFFFu}));
    EXPECT_EQ(at(2147483647.25, 2147483646.0), (pair{4294967294u, 4294967294u}));
}

TEST(NodeQuadtree, BoxIsClosedAndItsUpperCornerStaysInRange)
{
    const dense2D<double> coords{{0.0, 0.0}, {1.0, 1.0}, {1.0, 1.0000000000000002}, {-1e-300, 0.5}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    EXPECT_TRUE(tree.insert_node(0));
    EXPECT_TRUE(tree.insert_node(1));
    EXPECT_FALSE(tree.insert_node(2));
    EXPECT_FALSE(tree.insert_node(3));
    EXPECT_EQ(tree.count, 2u);
    EXPECT_LT(tree.quantize(1.0, 1.0).x, 0xFFFFFFFFu);
}

TEST(NodeQuadtree, LeafKeepsUpToThreeNodesInAscendingOrder)
{
    const dense2D<double> coords{{0.1, 0.1}, {0.9, 0.1}, {0.1, 0.9}, {0.9, 0.9}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    ASSERT_TRUE(tree.insert_node(3));
    ASSERT_TRUE(tree.insert_node(0));
    ASSERT_TRUE(tree.insert_node(2));
    EXPECT_EQ(support::columns(tree.cells)[0], (std::vector<unsigned>{3, 0, 2, 3}));
    ASSERT_TRUE(tree.insert_node(1));
    const auto cells = support::columns(tree.cells);
    ASSERT_EQ(cells.size(), 8u);
    EXPECT_EQ(cells[0], (std::vector<unsigned>{4, 5, 6, 7}));
    // Children by 2 * (y bit) + (x bit).
    EXPECT_EQ(cells[4][1], 0u);
    EXPECT_EQ(cells[5][1], 1u);
    EXPECT_EQ(cells[6][1], 2u);
    EXPECT_EQ(cells[7][1], 3u);
}

TEST(NodeQuadtree, FourthNodeAtOnePlaceIsRefusedAtTheEndOfAChainOfCells)
{
    const dense2D<double> coords{{0.3, 0.3}, {0.3, 0.3}, {0.3, 0.3}, {0.3, 0.3}, {0.6, 0.6}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    EXPECT_TRUE(tree.insert_node(2));
    EXPECT_TRUE(tree.insert_node(3));
    EXPECT_TRUE(tree.insert_node(1));
    EXPECT_FALSE(tree.insert_node(0));
    EXPECT_EQ(tree.count, 3u);
    EXPECT_EQ(tree.cells.cols, 4u + 32 * 4);
    EXPECT_TRUE(tree.insert_node(4));
    EXPECT_EQ(tree.count, 4u);
    EXPECT_EQ(support::stored_ids(tree), (std::vector<unsigned>{1, 2, 3, 4}));
}

TEST(NodeQuadtree, FreeCellsAreUsedAgain)
{
    const dense2D<double> coords{{0.1, 0.1}, {0.9, 0.1}, {0.1, 0.9}, {0.9, 0.9}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    ASSERT_TRUE(tree.cells.resize(4, 6, 77u));
    ASSERT_TRUE(tree.free_flags.resize(1, 0x30u));
    tree.free_stack.append(5);
    tree.free_stack.append(4);
    tree.free_stack.append(6); // no cell: skipped
    for (unsigned id = 0; id < 4; ++id) ASSERT_TRUE(tree.insert_node(id));
    EXPECT_EQ(support::columns(tree.cells)[0], (std::vector<unsigned>{4, 5, 6, 7}));
    EXPECT_EQ(tree.free_flags[0], 0u);
    EXPECT_EQ(tree.free_stack.size, 0u);
    EXPECT_EQ(support::columns(tree.cells)[4], (std::vector<unsigned>{1, 0, 0, 0}));
}

TEST(NodeQuadtree, CellsAreThoseOfTheirNodes)
{
    for (const unsigned n : {1u, 3u, 4u, 5u, 40u, 150u})
        for (const cloud& c : clouds(n, n + 17)) {
            vec2 low, high;
            bounds(c.coords, low, high);
            const auto ids = shuffled_ids(n, 3);
            node_quadtree tree(c.coords);
            tree.set_box(low, high);
            std::size_t stored = 0;
            for (const unsigned id : ids) stored += tree.insert_node(id);
            std::size_t expected;
            const plain::tree reference = plain_tree(c.coords, low, high, ids, expected);
            EXPECT_EQ(stored, expected) << c.name;
            EXPECT_EQ(tree.count, expected) << c.name;
            EXPECT_EQ(support::stored_ids(tree), reference.traversal) << c.name;
        }
}

TEST(NodeQuadtree, WithoutStorageForCellsNothingIsStored)
{
    const dense2D<double> coords{{0.5, 0.5}};
    node_quadtree tree(coords);
    {
        const support::failing_allocation none(0, support::failure::for_good);
        tree.set_box({{0, 0}}, {{1, 1}});
    }
    EXPECT_FALSE(tree.insert_node(0));
    EXPECT_EQ(tree.insert_nodes(all_ids(1)), 0u);
    EXPECT_EQ(tree.approximate_node({{0.5, 0.5}}, all_ids(1)), UNSET_ID);
}
