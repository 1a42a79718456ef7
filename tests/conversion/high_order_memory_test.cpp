#include "conversion/die.h"
#include "conversion/high_order_outcome.h"
#include "support/allocation.h"
#include "support/meshes.h"

#include <algorithm>
#include <map>
#include <utility>

using namespace high_order_tests;

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

TEST(ConvertIntoHighOrder, WithoutEdgeNodesRefusedMemoryIsUndoneToo)
{
    const support::mesh m = support::grid_mixed(5, 4, 2, 5);
    const outcome full = converted(m.coords, m.connect, 0, 4, 3);
    const auto refusals = support::each_refused_allocation([&](auto armed, const auto& told) {
        outcome to;
        to.coords = copy_of(m.coords);
        const bool refused = armed([&] {
            to.status =
                convert_into_high_order(to.coords, m.connect, 0, 4, 3, to.connect, NO_EDGES);
        });
        EXPECT_EQ(to.status, refused ? -199 : 0) << told;
        expect_undone_or_done(to, full, m.coords, refused, told);
    });
    EXPECT_EQ(refusals, 4u);
}

namespace {

/// Five quadrilaterals among so many nodes that their edges are kept in the hash table. With most
/// seeds the 34 slots of a new table hold them; with some it must grow in the middle of the work.
support::mesh few_among_many(unsigned seed, bool twice)
{
    support::die draw(seed);
    support::mesh m{"few", dense2D<double>(2, 700, 0.0), dense2D<unsigned>(4, twice ? 10 : 5)};
    support::jitter(m, 1.0, seed);
    for (std::size_t e = 0; e < m.connect.cols; ++e)
        for (std::size_t i = 0; i < 4; ++i)
            m.connect(i, e) = e < 5 ? draw(40) : m.connect(3 - i, e - 5);
    return m;
}

} // namespace

TEST(ConvertIntoHighOrder, AnEdgeThatWasRefusedOnceIsNumberedAtItsNextMeeting)
{
    unsigned struck = 0;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        // Every edge is met at least twice.
        const support::mesh m = few_among_many(seed, true);
        outcome to;
        to.coords = copy_of(m.coords);
        ASSERT_TRUE(to.coords.reserve(2, 900, 1) && to.connect.reserve(12, 10, 1));
        bool refused = false;
        {
            support::failing_allocation refuse(1);
            to.status =
                convert_into_high_order(to.coords, m.connect, 2, 0, 0, to.connect, NO_EDGES);
            refused = refuse.fired();
        }
        ASSERT_EQ(to.status, 0);
        struck += refused;
        ASSERT_TRUE(tessalo::check_IDs(to.connect, unsigned(to.coords.cols)));
        std::map<unsigned, std::pair<unsigned, unsigned>> ends;
        for (std::size_t e = 0; e < to.connect.cols; ++e)
            for (unsigned k = 0; k < 4; ++k) {
                const unsigned from = to.connect(k, e);
                const unsigned to_end = to.connect((k + 1) % 4, e);
                const unsigned first = to.connect(4 + 2 * k, e);
                const unsigned second = to.connect(5 + 2 * k, e);
                ASSERT_LT(first, to.coords.cols) << "seed " << seed;
                ASSERT_EQ(first + second, 2 * std::min(first, second) + 1) << "seed " << seed;
                // The same run names the same edge, from the same end.
                const auto direction =
                    first < second ? std::pair(from, to_end) : std::pair(to_end, from);
                const auto at = ends.insert({std::min(first, second), direction}).first;
                ASSERT_EQ(at->second, direction) << "seed " << seed;
                for (std::size_t r = 0; r < 2; ++r) {
                    const double a = to.coords(r, direction.first);
                    const double b = to.coords(r, direction.second);
                    ASSERT_EQ(to.coords(r, std::min(first, second)), a + 1.0 / 3.0 * (b - a));
                }
            }
    }
    EXPECT_GT(struck, 0u);
}

TEST(SplitIntoQ4, AQuadrilateralWhoseLastEdgeFoundNoMemoryIsCutAsATriangle)
{
    // Few seeds let the refusal strike a last edge; one of these does.
    unsigned struck = 0;
    for (unsigned seed = 2401; seed <= 2600; ++seed) {
        const support::mesh m = few_among_many(seed, false);
        for (std::size_t k = 1; k < 4; ++k) {
            dense2D<double> coords = copy_of(m.coords);
            ASSERT_TRUE(coords.reserve(2, 900, 1));
            dense2D<unsigned> result;
            support::failing_allocation refuse(k);
            if (tessalo2d::split_into_Q4(coords, m.connect, result, NO_EDGES) != 0) continue;
            ASSERT_TRUE(result.cols == 20 || result.cols == 19) << "seed " << seed;
            EXPECT_TRUE(tessalo::check_IDs(result, unsigned(coords.cols))) << "seed " << seed;
            // The children of all elements begin at their corners, without a gap.
            std::size_t child = 0;
            for (std::size_t e = 0; e < 5; ++e)
                for (std::size_t corner = 0; corner < 4; ++corner) {
                    const bool missing = result.cols == 19 && corner == 3 &&
                                         (child == 19 || result(0, child) != m.connect(3, e));
                    if (missing) continue;
                    EXPECT_EQ(result(0, child), m.connect(corner, e)) << "seed " << seed;
                    ++child;
                }
            EXPECT_EQ(child, result.cols) << "seed " << seed;
            struck += result.cols == 19;
        }
    }
    EXPECT_GT(struck, 0u);
}
