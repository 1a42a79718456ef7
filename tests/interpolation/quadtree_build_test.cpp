// Building the quadtree from many nodes at once, against inserting them one by one.
#include "interpolation/clouds.h"
#include "support/allocation.h"

#include <gtest/gtest.h>

using namespace vorel;
using namespace vorel::tessalo2d;
using support::bounds;
using support::cloud;
using support::clouds;
using support::probes;
using support::shape;
using support::shuffled_ids;

TEST(NodeQuadtree, InsertingManyAtOnceGivesTheSameTreeAsOneByOne)
{
    for (const unsigned n : {0u, 3u, 4u, 7u, 100u, 2500u, 9000u})
        for (const cloud& c : clouds(n, n + 5)) {
            if (n == 0) continue;
            vec2 low, high;
            bounds(c.coords, low, high);
            const auto ids = shuffled_ids(n, n);
            node_quadtree one_by_one(c.coords);
            one_by_one.set_box(low, high);
            for (const unsigned id : ids) (void)one_by_one.insert_node(id);
            node_quadtree at_once(c.coords);
            at_once.set_box(low, high);
            EXPECT_EQ(at_once.insert_nodes(ids), one_by_one.count) << c.name << " " << n;
            EXPECT_EQ(at_once.count, one_by_one.count);
            EXPECT_EQ(at_once.cells.cols, one_by_one.cells.cols) << c.name << " " << n;
            EXPECT_EQ(shape(at_once), shape(one_by_one)) << c.name << " " << n;
        }
}

TEST(NodeQuadtree, InsertingManyIntoATreeWithNodesAddsToThem)
{
    for (const cloud& c : clouds(600, 3)) {
        vec2 low, high;
        bounds(c.coords, low, high);
        const auto ids = shuffled_ids(600, 1);
        node_quadtree tree(c.coords);
        tree.set_box(low, high);
        dense1D<unsigned, 8> part = ids;
        part.size = 300;
        (void)tree.insert_nodes(part);
        part.offset += 300;
        (void)tree.insert_nodes(part);
        node_quadtree one_by_one(c.coords);
        one_by_one.set_box(low, high);
        for (const unsigned id : ids) (void)one_by_one.insert_node(id);
        EXPECT_EQ(tree.count, one_by_one.count) << c.name;
        EXPECT_EQ(shape(tree), shape(one_by_one)) << c.name;
        // Descents that begin below the root still end in the right leaves.
        for (const vec2& p : probes(c.coords, low, high, 1)) {
            unsigned found;
            tree.approximate_nodes(&p, 1, ids, &found);
            ASSERT_EQ(found, one_by_one.approximate_node(p, ids)) << c.name;
        }
    }
}

TEST(NodeQuadtree, InsertingManySurvivesEveryRefusedAllocation)
{
    // From 2048 nodes on the sort takes a second array.
    for (const unsigned n : {60u, 2500u}) {
        const cloud c = clouds(n, 2)[0];
        vec2 low, high;
        bounds(c.coords, low, high);
        const auto ids = shuffled_ids(n, 4);
        node_quadtree one_by_one(c.coords);
        one_by_one.set_box(low, high);
        for (const unsigned id : ids) ASSERT_TRUE(one_by_one.insert_node(id));
        unsigned struck_once = 0;
        (void)support::each_refused_allocation([&](auto armed, const auto& told) {
            node_quadtree tree(c.coords);
            tree.set_box(low, high);
            std::size_t stored = 0;
            const bool refused = armed([&] { stored = tree.insert_nodes(ids); });
            ASSERT_EQ(stored, tree.count) << told;
            ASSERT_LE(stored, n) << told;
            ASSERT_EQ(support::stored_ids(tree).size(), stored) << told;
            if (told.find("once") == std::string::npos) return;
            struck_once += refused;
            ASSERT_EQ(shape(tree), shape(one_by_one)) << told;
            for (const vec2& p : probes(c.coords, low, high, 1)) {
                unsigned found;
                tree.approximate_nodes(&p, 1, ids, &found);
                ASSERT_EQ(found, one_by_one.approximate_node(p, ids)) << told;
            }
        });
        // The array to sort, the cells, the shortcuts.
        EXPECT_EQ(struck_once, n == 60 ? 3u : 4u);
    }
}
