// Both searches of the quadtree against brute force.
#include "interpolation/clouds.h"
#include "interpolation/plain_locator.h"
#include "support/allocation.h"
#include "support/matrices.h"

using namespace vorel;
using namespace vorel::tessalo2d;
using support::all_ids;
using support::bounds;
using support::cloud;
using support::clouds;
using support::probes;
using support::shuffled_ids;

TEST(NodeQuadtree, BlocksOfPointsFindWhatSinglePointsFind)
{
    for (const unsigned n : {1u, 5u, 20u, 300u, 2000u})
        for (const cloud& c : clouds(n, n)) {
            vec2 low, high;
            bounds(c.coords, low, high);
            node_quadtree tree(c.coords);
            tree.set_box(low, high);
            (void)tree.insert_nodes(all_ids(n));
            dense1D<unsigned, 8> filter(n, 0u);
            for (const unsigned kept : {1u, 4u, 700u}) {
                for (unsigned id = 0; id < n; ++id)
                    filter[id] = id % kept == kept / 2 ? id : UNSET_ID;
                const auto points = probes(c.coords, low, high, 2);
                for (std::size_t first = 0; first < points.size();) {
                    const unsigned block = static_cast<unsigned>(std::min<std::size_t>(
                        node_quadtree::BLOCK - first % 3, points.size() - first));
                    unsigned found[node_quadtree::BLOCK];
                    tree.approximate_nodes(&points[first], block, filter, found);
                    for (unsigned i = 0; i < block; ++i)
                        ASSERT_EQ(found[i], tree.approximate_node(points[first + i], filter))
                            << c.name << ", " << n << " nodes, point " << first + i;
                    first += block;
                }
            }
        }
}

TEST(NodeQuadtree, EmptyTreeFindsNothing)
{
    const dense2D<double> coords{{0.5, 0.5}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    double distance2 = 9.0;
    EXPECT_EQ(tree.approximate_node({{0.5, 0.5}}, all_ids(1)), UNSET_ID);
    EXPECT_EQ(tree.nearest_node({{0.5, 0.5}}, distance2, all_ids(1)), UNSET_ID);
    EXPECT_EQ(distance2, 9.0);
}

TEST(NodeQuadtree, SearchesAgreeWithBruteForce)
{
    for (const unsigned n : {1u, 2u, 4u, 13u, 80u, 200u})
        for (const unsigned seed : {1u, 2u})
            for (const cloud& c : clouds(n, seed)) {
                vec2 low, high;
                bounds(c.coords, low, high);
                const auto ids = shuffled_ids(n, seed);
                node_quadtree tree(c.coords);
                tree.set_box(low, high);
                (void)tree.insert_nodes(ids);
                std::size_t stored;
                plain::tree reference(c.coords, {low[0], low[1]}, {high[0], high[1]});
                stored = reference.insert(support::elements(ids));
                EXPECT_EQ(tree.count, stored) << c.name;
                dense1D<unsigned, 8> filter(n, 0u);
                for (const unsigned kept : {1u, 3u, 20u, 1000u}) {
                    // Every `kept`-th node is a candidate.
                    for (unsigned id = 0; id < n; ++id)
                        filter[id] = id % kept == kept / 2 ? id : UNSET_ID;
                    for (const vec2& p : probes(c.coords, low, high, seed)) {
                        const plain::point q{p[0], p[1]};
                        ASSERT_EQ(tree.approximate_node(p, filter),
                                  reference.approximate(q, filter))
                            << c.name << ", " << n << " nodes, one in " << kept << ", at " << p[0]
                            << " " << p[1];
                        double distance2 = node_quadtree::LARGEST;
                        double expected = node_quadtree::LARGEST;
                        ASSERT_EQ(tree.nearest_node(p, distance2, filter),
                                  reference.nearest(q, expected, filter))
                            << c.name << ", " << n << " nodes, one in " << kept << ", at " << p[0]
                            << " " << p[1];
                        ASSERT_EQ(distance2, expected) << c.name;
                    }
                }
            }
}

TEST(NodeQuadtree, NearestNodeBeatsTheGivenDistanceOrReportsNone)
{
    const dense2D<double> coords{{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}, {0.5, 0.75}};
    node_quadtree tree(coords);
    tree.set_box({{0, 0}}, {{1, 1}});
    ASSERT_EQ(tree.insert_nodes(all_ids(5)), 5u);
    double distance2 = 0.0625;
    EXPECT_EQ(tree.nearest_node({{0.5, 0.5}}, distance2, all_ids(5)), UNSET_ID);
    EXPECT_EQ(distance2, 0.0625);
    distance2 = 0.0626;
    EXPECT_EQ(tree.nearest_node({{0.5, 0.5}}, distance2, all_ids(5)), 4u);
    EXPECT_EQ(distance2, 0.0625);
}

TEST(NodeQuadtree, OfNodesAtEqualDistanceTheFirstMetStays)
{
    // One leaf: the lower ID.
    const dense2D<double> pair{{1.0, 0.0}, {0.0, 0.0}};
    node_quadtree leaf(pair);
    leaf.set_box({{0, -1}}, {{1, 1}});
    ASSERT_EQ(leaf.insert_nodes(all_ids(2)), 2u);
    EXPECT_EQ(leaf.approximate_node({{0.5, 0.0}}, all_ids(2)), 0u);

    // Four leaves with one candidate each, and a point in an empty corner of none: the lower child
    // index of the whole traversal, unless the leaf of the point has one.
    const dense2D<double> square{{3.0, 3.0}, {1.0, 3.0}, {3.0, 1.0}, {1.0, 1.0}};
    node_quadtree cells(square);
    cells.set_box({{0, 0}}, {{4, 4}});
    ASSERT_EQ(cells.insert_nodes(all_ids(4)), 4u);
    double distance2 = 100.0;
    EXPECT_EQ(cells.nearest_node({{1.999, 2.001}}, distance2, all_ids(4)), 1u);
    dense1D<unsigned, 8> without_own{0, UNSET_ID, 0, UNSET_ID};
    distance2 = 100.0;
    EXPECT_EQ(cells.nearest_node({{1.0, 3.0}}, distance2, without_own), 0u);
    distance2 = 100.0;
    without_own = {0, UNSET_ID, 0, 0};
    // The root is a hair larger than the box: the middle truncates into the lower left cell.
    EXPECT_EQ(cells.nearest_node({{2.0, 2.0}}, distance2, without_own), 3u)
        << "the leaf of the point comes first";
    without_own = {UNSET_ID, 0, 0, UNSET_ID};
    distance2 = 100.0;
    EXPECT_EQ(cells.nearest_node({{2.0, 2.0}}, distance2, without_own), 2u)
        << "then the lower child";
}

TEST(NodeQuadtree, CellMeetsTheClosedBox)
{
    const auto meets = node_quadtree::cell_meets_box;
    EXPECT_TRUE(meets({4, 4}, 2, {8, 8}, {9, 9}));
    EXPECT_FALSE(meets({4, 4}, 2, {9, 8}, {9, 9}));
    EXPECT_TRUE(meets({4, 4}, 2, {0, 0}, {4, 4}));
    EXPECT_FALSE(meets({4, 4}, 2, {0, 0}, {4, 3}));
    EXPECT_TRUE(meets({0x80000000u, 0}, 31, {0xFFFFFFFFu, 7}, {0xFFFFFFFFu, 7}));
    EXPECT_TRUE(meets({0, 0}, 32, {0xFFFFFFFFu, 0xFFFFFFFFu}, {0xFFFFFFFFu, 0xFFFFFFFFu}));
    EXPECT_TRUE(meets({0xFFFFFFFFu, 5}, 0, {0xFFFFFFFFu, 6}, {0xFFFFFFFFu, 6}));
}

TEST(NodeQuadtree, SearchesAllocateNothing)
{
    const cloud c = clouds(3000, 4)[0];
    vec2 low, high;
    bounds(c.coords, low, high);
    node_quadtree tree(c.coords);
    tree.set_box(low, high);
    (void)tree.insert_nodes(all_ids(3000));
    const auto filter = all_ids(3000);
    const std::size_t before = support::allocations();
    for (const vec2& p : probes(c.coords, low, high, 4)) {
        double distance2 = node_quadtree::LARGEST;
        (void)tree.approximate_node(p, filter);
        (void)tree.nearest_node(p, distance2, filter);
    }
    EXPECT_EQ(support::allocations(), before);
}
