// The elements around each node: which ones, in what order, and what is refused.
#include "structured/connected_fans.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <cmath>
#include <iterator>
#include <random>
#include <set>

using namespace vorel;
using namespace fan_tests;

TEST(GetConnectedElements, NoNodesGiveOneOffset)
{
    fans f = of_mesh(dense2D<unsigned>{{0, 1, 2}}, 0);
    EXPECT_EQ(f.run(), 0);
    EXPECT_EQ(support::elements(f.offsets), (list{0}));
    EXPECT_EQ(f.elements.size, 0u);
    // And no elements either, as long as the rows are right.
    fans none;
    none.connect = support::without_columns<unsigned>(3);
    none.neighbors = support::without_columns<unsigned>(3);
    EXPECT_EQ(none.run(), 0);
    EXPECT_EQ(support::elements(none.offsets), (list{0}));
    none.node_element = {U, U};
    EXPECT_EQ(none.run(), 0);
    EXPECT_EQ(support::elements(none.offsets), (list{0, 0, 0}));
}

TEST(GetConnectedElements, NodeWithoutElementsHasAnEmptyList)
{
    fans f = of_mesh(dense2D<unsigned>{{0, 2, 3}}, 5);
    EXPECT_EQ(f.run(), 0);
    EXPECT_EQ(support::elements(f.offsets), (list{0, 1, 1, 2, 3, 3}));
    EXPECT_EQ(support::elements(f.elements), (list{0, 0, 0}));
}

TEST(GetConnectedElements, InnerFanStartsWithItsEntry)
{
    for (unsigned start = 0; start < 6; ++start) {
        fans f = of_mesh(wheel(6, true), 7);
        f.node_element[0] = start;
        ASSERT_EQ(f.run(), 0);
        list expected;
        for (unsigned k = 0; k < 6; ++k) expected.push_back((start + k) % 6);
        EXPECT_EQ(f.of(0), expected);
        // The rim: node 1 + k has the elements k - 1, k, in the direction of the walk.
        for (unsigned k = 0; k < 6; ++k) EXPECT_EQ(f.of(1 + k), (list{k, (k + 5) % 6}));
    }
}

TEST(GetConnectedElements, BoundaryFanGoesFromEndToEndFromAnyEntry)
{
    for (unsigned start = 0; start < 5; ++start) {
        fans f = of_mesh(wheel(6, false), 7);
        f.node_element[0] = start;
        ASSERT_EQ(f.run(), 0);
        EXPECT_EQ(f.of(0), (list{0, 1, 2, 3, 4})) << start;
        EXPECT_EQ(f.of(1), (list{0}));
        EXPECT_EQ(f.of(6), (list{4}));
    }
}

TEST(GetConnectedElements, ClockwiseMeshIsWalkedClockwise)
{
    dense2D<unsigned> connect = wheel(5, true);
    ASSERT_EQ(tessalo2d::flip(connect), 0);
    fans f = of_mesh(connect, 6);
    ASSERT_EQ(f.run(), 0);
    EXPECT_EQ(f.of(0), (list{0, 4, 3, 2, 1}));
}

TEST(GetConnectedElements, MixedFanFollowsTheKindOfEachElement)
{
    // Around node 0: a quadrilateral, a triangle, a quadrilateral, a triangle; node 0 in any row.
    const dense2D<unsigned> connect{{0, 1, 2, 3}, {3, 4, 0, U}, {5, 6, 0, 4}, {1, 0, 6, U}};
    for (unsigned start = 0; start < 4; ++start) {
        fans f = of_mesh(connect, 7);
        f.node_element[0] = start;
        ASSERT_EQ(f.run(), 0);
        list expected;
        for (unsigned k = 0; k < 4; ++k) expected.push_back((start + k) % 4);
        EXPECT_EQ(f.of(0), expected);
        EXPECT_EQ(f.of(2), (list{0}));
    }
    // The same with a gap.
    const dense2D<unsigned> open{{0, 1, 2, 3}, {3, 4, 0, U}, {5, 6, 0, 4}};
    for (unsigned start = 0; start < 3; ++start) {
        fans f = of_mesh(open, 7);
        f.node_element[0] = start;
        ASSERT_EQ(f.run(), 0);
        EXPECT_EQ(f.of(0), (list{0, 1, 2}));
    }
}

TEST(GetConnectedElements, LongFansOutgrowEveryEstimate)
{
    for (const unsigned spokes : {3u, 15u, 16u, 17u, 18u, 40u, 1000u})
        for (const bool closed : {false, true}) {
            fans f = of_mesh(wheel(spokes, closed), spokes + 1);
            // No rim: the estimate is six elements, the wheel has more.
            ASSERT_TRUE(f.node_element.resize(1));
            ASSERT_EQ(f.run(), 0);
            list expected(f.connect.cols);
            for (unsigned k = 0; k < expected.size(); ++k) expected[k] = k;
            EXPECT_EQ(f.of(0), expected) << spokes << (closed ? " closed" : " open");
        }
}

TEST(GetConnectedElements, FansThatMeetInAPointAreNotJoined)
{
    const dense2D<unsigned> connect{{0, 1, 2}, {0, 3, 4}};
    fans f = of_mesh(connect, 5);
    ASSERT_EQ(f.run(), 0);
    EXPECT_EQ(f.of(0), (list{0}));
    f.node_element[0] = 1;
    ASSERT_EQ(f.run(), 0);
    EXPECT_EQ(f.of(0), (list{1}));
}

TEST(GetConnectedElements, PlaneMeshesHaveAllElementsOfANodeInAnticlockwiseOrder)
{
    for (unsigned seed = 0; seed < 12; ++seed)
        for (support::mesh m : {support::grid_T3(7, 6), support::grid_Q4(7, 6),
                                support::grid_mixed(7, 6, 2, seed), support::grid_T3(1, 1)}) {
            SCOPED_TRACE(m.name + ", seed " + std::to_string(seed));
            support::jitter(m, 0.1, seed);
            support::shuffle(m, seed);
            const std::size_t nodes = m.coords.cols;
            fans f = of_mesh(m.connect, nodes);
            std::mt19937 draw(seed);
            std::vector<std::set<unsigned>> incident(nodes);
            for (unsigned e = 0; e < m.connect.cols; ++e)
                for (std::size_t i = 0; i < m.connect.rows; ++i)
                    if (m.connect(i, e) != U) incident[m.connect(i, e)].insert(e);
            for (std::size_t n = 0; n < nodes; ++n)
                f.node_element[n] =
                    *std::next(incident[n].begin(), static_cast<int>(draw() % incident[n].size()));
            ASSERT_EQ(f.run(), 0);
            ASSERT_EQ(f.offsets.size, nodes + 1);
            EXPECT_EQ(f.offsets[nodes], f.elements.size);

            const auto direction = [&](std::size_t n, unsigned e) {
                double x = 0.0;
                double y = 0.0;
                const unsigned corners = m.connect.rows == 4 && m.connect(3, e) != U ? 4 : 3;
                for (unsigned i = 0; i < corners; ++i) {
                    x += m.coords(0, m.connect(i, e)) / corners;
                    y += m.coords(1, m.connect(i, e)) / corners;
                }
                return std::atan2(y - m.coords(1, n), x - m.coords(0, n));
            };
            for (std::size_t n = 0; n < nodes; ++n) {
                const list fan = f.of(n);
                EXPECT_EQ(std::set<unsigned>(fan.begin(), fan.end()), incident[n]) << "node " << n;
                EXPECT_EQ(fan.size(), incident[n].size()) << "node " << n;
                // From one to the next less than half a turn, all together less than a full one.
                double turned = 0.0;
                for (std::size_t k = 0; k + 1 < fan.size(); ++k) {
                    double step = direction(n, fan[k + 1]) - direction(n, fan[k]);
                    if (step < 0.0) step += 2.0 * std::acos(-1.0);
                    EXPECT_LT(step, std::acos(-1.0)) << "node " << n;
                    turned += step;
                }
                EXPECT_LT(turned, 2.0 * std::acos(-1.0)) << "node " << n;
            }
        }
}

TEST(GetConnectedElements, EachCheckHasItsCodeInOrderAndOutputsAreEmptiedFirst)
{
    fans f;
    f.node_element = {3, 0};
    const auto expect = [&](int status) {
        f.offsets = dense1D<unsigned, 8>{1, 2};
        f.elements = dense1D<unsigned, 8>{3};
        EXPECT_EQ(f.run(), status);
        EXPECT_EQ(f.offsets.size, status == 0 ? 3u : 0u);
        EXPECT_EQ(f.elements.size, status == 0 ? 1u : 0u);
    };
    for (const std::size_t rows : {0u, 1u, 2u, 5u}) {
        f.connect = dense2D<unsigned>(rows, 2, 0u);
        expect(-1);
    }
    f.connect = dense2D<unsigned>{{0, 1, 2}, {2, 1, 3}};
    f.neighbors = dense2D<unsigned>(4, 2, U);
    expect(-2);
    f.neighbors = dense2D<unsigned>(3, 3, U);
    expect(-2);
    f.neighbors = dense2D<unsigned>(3, 2, U);
    expect(-3);
    f.node_element = {2, 0};
    expect(-3);
    f.node_element = {0xFFFFFFFEu, 0};
    expect(-3);
    f.node_element = {U, 0};
    expect(0);
}

TEST(GetConnectedElements, ShapesAreComparedAlsoWithoutColumns)
{
    fans f;
    f.connect = support::without_columns<unsigned>(3);
    f.neighbors = support::without_columns<unsigned>(4);
    EXPECT_EQ(f.run(), -2);
    f.neighbors = dense2D<unsigned>();
    EXPECT_EQ(f.run(), -2);
}

TEST(GetConnectedElements, OneRunAsInputAndOutputDoesNoHarm)
{
    fans f = of_mesh(wheel(6, true), 7);
    dense1D<unsigned, 8> run{0, 1, 2};
    EXPECT_EQ(get_connected_elements(f.connect, f.neighbors, run, run, f.elements), 0);
    EXPECT_EQ(run.size, 1u);
    EXPECT_EQ(get_connected_elements(f.connect, f.neighbors, f.node_element, run, run), 0);
}

TEST(GetConnectedElements, RefusedStorageBeforeTheWalksIsReported)
{
    const support::mesh m = support::grid_T3(3, 3);
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            fans f = of_mesh(m.connect, m.coords.cols);
            f.offsets = dense1D<unsigned, 8>();
            f.elements = dense1D<unsigned, 8>();
            int status = 1;
            const bool refused = armed([&] { status = f.run(); });
            EXPECT_EQ(status, refused ? -199 : 0) << told;
            EXPECT_EQ(f.offsets.size, refused ? 0u : m.coords.cols + 1) << told;
        });
    EXPECT_EQ(refusals, 6u);
}

TEST(GetConnectedElements, RefusedGrowthEndsTheRunWithoutAStatus)
{
    // The reserve for two nodes is there already. The hub has 40 elements, the node of the rim two
    // more: after the marks each of them asks for storage.
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const auto& told) {
            fans f = of_mesh(wheel(40, true), 2);
            f.offsets = dense1D<unsigned, 8>(3);
            f.elements = dense1D<unsigned, 8>(12);
            int status = 1;
            const bool struck = armed([&] { status = f.run(); });
            const list offsets = support::elements(f.offsets);
            if (!struck) {
                EXPECT_EQ(offsets, (list{0, 40, 42})) << told;
            } else if (status != -199) {
                EXPECT_EQ(status, 0) << told;
                EXPECT_TRUE(offsets == (list{0, 0}) || offsets == (list{0, 40, 40})) << told;
                EXPECT_EQ(f.elements.size, offsets.back()) << told;
            }
        });
    EXPECT_EQ(refusals, 6u);
}
