// Loops over a mesh that contradicts itself: each keeps the bound that it states.
#include "interpolation/background.h"
#include "interpolation/background_locator.h"
#include "interpolation/ball.h"
#include "interpolation/node_quadtree.h"
#include "interpolation/walk.h"
#include "support/matrices.h"

#include <cmath>
#include <limits>
#include <set>

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;

namespace {

/// Random neighbours, half of the nodes everywhere and some nowhere; elements hold node 0 often, so
/// that a ball of it goes far.
background contradictory(unsigned seed)
{
    std::mt19937 draw(seed);
    const unsigned elements = 1 + static_cast<unsigned>(draw() % 60);
    background b = support::with_targets(support::grid_T3(6, 5), ELEMENT_T3, {});
    b.connect = dense2D<unsigned>(3, elements);
    b.neighbors = dense2D<unsigned>(3, elements);
    const double wild[] = {double(NAN), std::numeric_limits<double>::infinity(), 1e300, -1e-300};
    for (std::size_t j = 0; j < b.coords.cols; ++j)
        if (draw() % 12 == 0) b.coords(draw() % 2, j) = wild[draw() % 4];
    for (std::size_t e = 0; e < elements; ++e)
        for (std::size_t i = 0; i < 3; ++i) {
            b.connect(i, e) =
                i == 0 && seed % 2 ? 0 : static_cast<unsigned>(draw() % b.coords.cols);
            b.neighbors(i, e) = draw() % 40 ? static_cast<unsigned>(draw() % elements) : UNSET_ID;
        }
    return b;
}

} // namespace

TEST(Termination, WalkTakesOneStepMoreThanThereAreElementsAtMost)
{
    std::size_t overran = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        const background b = contradictory(seed);
        const background_mesh mesh(b.coords, b.connect, b.neighbors);
        std::mt19937 places(seed);
        const vec2 point{{static_cast<double>(places() % 9), seed % 7 ? 1.5 : double(NAN)}};
        side_draw draw;
        std::size_t steps = 0;
        unsigned element = static_cast<unsigned>(places() % b.connect.cols);
        (void)walk_to_element<mesh_form::T3>(mesh, point, element, 1e-6, steps, draw);
        ASSERT_LE(steps, b.connect.cols + 1) << "seed " << seed;
        overran += steps == b.connect.cols + 1;
    }
    EXPECT_GT(overran, 0u) << "some are stopped by the limit alone";
}

TEST(Termination, WalkRoundACircleOfProperElementsEndsAtItsLimit)
{
    // Each element of a grid says that the next one lies across all of its sides.
    background b = support::with_targets(support::grid_T3(10, 10), ELEMENT_T3, {});
    for (std::size_t e = 0; e < b.connect.cols; ++e)
        for (std::size_t i = 0; i < 3; ++i)
            b.neighbors(i, e) = static_cast<unsigned>((e + 1) % b.connect.cols);
    const background_mesh mesh(b.coords, b.connect, b.neighbors);
    side_draw draw;
    std::size_t steps = 0;
    unsigned element = 17;
    EXPECT_EQ(walk_to_element<mesh_form::T3>(mesh, {{-1, 99}}, element, 1e-6, steps, draw),
              WALK_LEFT);
    EXPECT_EQ(steps, 201u);
}

TEST(Termination, SearchTakesOneWalkAndOneForEachElementOfTheBallAtMost)
{
    std::size_t with_fallback = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        const background b = contradictory(seed);
        background_locator<mesh_form::T3> locator(b.coords, b.connect, b.neighbors, b.node_element);
        (void)locator.fill_tree();
        std::mt19937 places(seed);
        const vec2 point{
            {static_cast<double>(places() % 12) / 2, static_cast<double>(places() % 10) / 2}};
        side_draw draw;
        unsigned element = static_cast<unsigned>(places() % b.connect.cols);
        (void)locator.locate_element(point, element, 1e-6, true, draw);
        // A step takes a draw, but for the one that meets the limit.
        const std::size_t walk = b.connect.cols, most = (1 + b.connect.cols) * walk;
        side_draw repeated;
        std::size_t draws = 0;
        while (draws <= most &&
               !(repeated.draws_left == draw.draws_left && repeated.generator == draw.generator)) {
            (void)repeated.draw();
            ++draws;
        }
        ASSERT_LE(draws, most) << "seed " << seed;
        with_fallback += draws > walk;
    }
    EXPECT_GT(with_fallback, 0u) << "some walk more than once";
}

TEST(Termination, BallPushesAnElementOnce)
{
    std::size_t largest = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        const background b = contradictory(seed);
        const background_mesh mesh(b.coords, b.connect, b.neighbors);
        dense1D<unsigned, 8> list, stack;
        element_set visited;
        ASSERT_TRUE(visited.init(23, 23));
        bool closed;
        (void)collect_ball<mesh_form::T3>(0, 0, mesh, list, closed, stack, visited);
        const std::set<unsigned> different(list.begin(), list.end());
        ASSERT_EQ(different.size(), list.size) << "seed " << seed;
        ASSERT_LE(visited.count, b.connect.cols) << "seed " << seed;
        // What was pushed was taken, or waits still behind an element without the node.
        ASSERT_LE(list.size + stack.size, visited.count) << "seed " << seed;
        largest = std::max(largest, list.size);
    }
    EXPECT_GE(largest, 30u) << "some balls go through most of their mesh";
}

TEST(Termination, TreeOfTheGreatestDepthIsSearchedWithinItsStack)
{
    // In each corner of the square four nodes in neighbouring finest cells.
    const double near = 0x1.8p-32;
    dense2D<double> coords(2, 16);
    dense1D<unsigned, 8> all(16);
    for (unsigned k = 0; k < 16; ++k) {
        coords(0, k) = (k & 4u ? 1.0 - near : 0.0) + (k & 1u ? near : 0.0);
        coords(1, k) = (k & 8u ? 1.0 - near : 0.0) + (k & 2u ? near : 0.0);
        all[k] = k;
    }
    for (const bool at_once : {false, true}) {
        node_quadtree tree(coords);
        tree.set_box({{0, 0}}, {{1, 1}});
        for (unsigned k = 0; !at_once && k < 16; ++k) EXPECT_TRUE(tree.insert_node(k)) << k;
        if (at_once) {
            EXPECT_EQ(tree.insert_nodes(all), 16u);
        }
        EXPECT_EQ(tree.count, 16u);
        // Four columns with the root, and four for each divided cell: the root, 31 below it in the
        // corner at the origin and 30 in each of the others, where the finest cells that the nodes
        // fall into (numbers 2^32 - 3 and 2^32 - 2) do not have the same parent.
        EXPECT_EQ(tree.cells.cols, 4u + 4u * (1u + 31u + 3u * 30u));
        for (unsigned k = 0; k < 16; ++k) {
            // Only one node passes, and it is sought from the opposite corner.
            dense1D<unsigned, 8> one(16, UNSET_ID);
            one[k] = k;
            double distance2 = node_quadtree::LARGEST;
            EXPECT_EQ(tree.nearest_node({{k & 4u ? 0.0 : 1.0, k & 8u ? 0.0 : 1.0}}, distance2, one),
                      k);
        }
    }
}
