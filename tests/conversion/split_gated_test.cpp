#include "conversion/diagonal_criterion.h"
#include "conversion/quad_quality.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <algorithm>
#include <limits>

using namespace vorel;
using support::columns;
using support::copy_of;
using support::elements;
using tessalo2d::split_Q4_into_T3;

namespace {

constexpr unsigned U = UNSET_ID;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
using column = std::vector<unsigned>;
using ids = std::vector<column>;

struct thresholds {
    double shape;
    double angle;
    double warp;
};

struct outcome {
    int status;
    column kept;
    column split;
    ids result;
};

outcome gate(const dense2D<double>& coords, const dense2D<unsigned>& connect, thresholds least,
             int criterion = tessalo2d::DIAGONAL_BEST_QUALITY,
             const dense1D<unsigned, 8>& held_kept = {},
             const dense1D<unsigned, 8>& held_split = {}, const dense2D<unsigned>& held = {})
{
    dense1D<unsigned, 8> kept(held_kept.size);
    dense1D<unsigned, 8> split(held_split.size);
    std::copy(held_kept.begin(), held_kept.end(), kept.begin());
    std::copy(held_split.begin(), held_split.end(), split.begin());
    dense2D<unsigned> result = copy_of(held);
    const int status = split_Q4_into_T3(coords, connect, least.shape, least.angle, least.warp,
                                        criterion, kept, split, result);
    return {status, elements(kept), elements(split), columns(result)};
}

const dense2D<double> SQUARE{{0, 0}, {1, 0}, {1, 1}, {0, 1}};
// Reflex corner at node 1.
const dense2D<double> DART{{4, 0}, {1, 1}, {0, 4}, {-4, -4}};
const dense2D<unsigned> QUAD{{0, 1, 2, 3}};
const thresholds NONE_STAYS{2, 2, 2};
const thresholds ANY_STAYS{-2, -2, -2};

} // namespace

TEST(SplitGated, WithoutColumnsThereIsNothingToDo)
{
    const outcome o = gate(dense2D<double>(5, 1, 0.0), support::without_columns<unsigned>(7),
                           ANY_STAYS, 1, {4}, {5}, {{1, 2}});
    EXPECT_EQ(o.status, 0);
    EXPECT_EQ(o.kept, column{4});
    EXPECT_EQ(o.split, column{5});
    EXPECT_EQ(o.result, (ids{{1, 2}}));
}

TEST(SplitGated, ChecksItsArgumentsInOrder)
{
    const dense2D<double> bad(4, 4, 0.0);
    const dense2D<unsigned> wide{{1, 2, 3}};
    const auto status = [&](const dense2D<double>& coords, const dense2D<unsigned>& connect) {
        const outcome o = gate(coords, connect, ANY_STAYS, 1, {4}, {5}, wide);
        EXPECT_EQ(o.kept, column{4});
        EXPECT_EQ(o.split, column{5});
        EXPECT_EQ(o.result, (ids{{1, 2, 3}}));
        return o.status;
    };
    EXPECT_EQ(status(bad, {{0, 1, 9}}), -1);
    EXPECT_EQ(status(SQUARE, {{0, 1, 2}}), -2);
    EXPECT_EQ(status(SQUARE, {{0, 1, 2, 3, 3}}), -2);
    EXPECT_EQ(status(SQUARE, {{0, 1, 2, 4}}), -2);
    EXPECT_EQ(status(SQUARE, {{0, U, 2, 3}}), -2);
    EXPECT_EQ(status(SQUARE, QUAD), -8);
    dense2D<unsigned> no_rows;
    no_rows.cols = 2;
    EXPECT_EQ(status(SQUARE, no_rows), -2);
    dense2D<unsigned> kept_rows = support::without_columns<unsigned>(3);
    dense1D<unsigned, 8> kept, split;
    EXPECT_EQ(split_Q4_into_T3(SQUARE, QUAD, 0, 0, 0, 1, kept, split, kept_rows), 0);
    EXPECT_EQ(columns(kept_rows), (ids{{0, 1, 2, 3}}));
}

TEST(SplitGated, AUnitSquareReachesEveryThresholdUpToOne)
{
    EXPECT_EQ(gate(SQUARE, QUAD, {1 - 1e-15, 1 - 1e-15, 1}).kept, column{0});
    EXPECT_EQ(gate(SQUARE, QUAD, {1.01, 0, 0}).split, column{0});
    EXPECT_EQ(gate(SQUARE, QUAD, {0, 1.01, 0}).split, column{0});
    EXPECT_EQ(gate(SQUARE, QUAD, {0, 0, 1.01}).split, column{0});
}

TEST(SplitGated, KeepsMeshesOfTriangles)
{
    const outcome o = gate(SQUARE, {{0, 1, 2, U}, {2, 3, 0, U}}, NONE_STAYS);
    EXPECT_EQ(o.status, 0);
    EXPECT_EQ(o.kept, (column{0, 1}));
    EXPECT_EQ(o.split, column{});
    EXPECT_EQ(o.result, (ids{{0, 1, 2, U}, {2, 3, 0, U}}));
}

TEST(SplitGated, WithThresholdsOfZeroConvexOnesStayAndConcaveOnesAreCutThroughTheReflexCorner)
{
    EXPECT_EQ(gate(SQUARE, QUAD, {0, 0, 0}).kept, column{0});
    const outcome o = gate(DART, QUAD, {0, 0, 0});
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.split, column{0});
    EXPECT_EQ(o.result, (ids{{1, 2, 3, U}, {3, 0, 1, U}}));
}

TEST(SplitGated, AnotherCriterionCutsFromTheSmallestID)
{
    for (const int criterion : {0, 7, -5}) {
        const outcome o = gate(DART, {{2, 3, 0, 1}}, NONE_STAYS, criterion);
        EXPECT_EQ(o.result, (ids{{0, 1, 2, U}, {2, 3, 0, U}})) << criterion;
    }
}

TEST(SplitGated, FoldsOfAFlatSurfaceAreComparedByQuality)
{
    dense2D<double> flat(3, 4, 0.0);
    for (std::size_t j = 0; j < 4; ++j) std::copy_n(DART.column(j), 2, flat.column(j));
    for (const int criterion : {5, 6})
        EXPECT_EQ(gate(flat, QUAD, NONE_STAYS, criterion).result,
                  (ids{{1, 2, 3, U}, {3, 0, 1, U}}));
    // In a rectangle both pairs are flat and tie.
    const dense2D<double> rectangle{{0, 0, 1}, {2, 0, 1}, {2, 1, 1}, {0, 1, 1}};
    EXPECT_EQ(gate(rectangle, QUAD, NONE_STAYS, 5).result, (ids{{0, 1, 2, U}, {2, 3, 0, U}}));
}

TEST(SplitGated, TheWarpScalesTheAngleThreshold)
{
    // Right angles at nodes 1 and 3, folded by a right angle: the warp is 1/2.
    const dense2D<double> roof{{0, 0, 0}, {1, -1, 0}, {2, 0, 0}, {1, 0, 1}};
    const double angle = tessalo2d::quad_angle_quality<3>(roof.column(0), 3, QUAD.column(0));
    ASSERT_NEAR(tessalo2d::quad_warp(roof.column(0), 3, QUAD.column(0)), 0.5, 1e-14);
    EXPECT_EQ(gate(roof, QUAD, {0, 0.5 * angle - 1e-9, 0}).kept, column{0});
    EXPECT_EQ(gate(roof, QUAD, {0, 0.5 * angle + 1e-9, 0}).split, column{0});
    EXPECT_EQ(gate(roof, QUAD, {0, 0, 0.5 - 1e-9}).kept, column{0});
    EXPECT_EQ(gate(roof, QUAD, {0, 0, 0.5 + 1e-9}).split, column{0});
}

TEST(SplitGated, NothingReachesAThresholdThatIsNotANumber)
{
    EXPECT_EQ(gate(SQUARE, QUAD, {NOT_A_NUMBER, 0, 0}).split, column{0});
    EXPECT_EQ(gate(SQUARE, QUAD, {0, NOT_A_NUMBER, 0}).split, column{0});
    EXPECT_EQ(gate(SQUARE, QUAD, {0, 0, NOT_A_NUMBER}).split, column{0});
}

TEST(SplitGated, PutsKeptColumnsBeforeTheTriangles)
{
    const dense2D<double> coords{{4, 0}, {1, 1}, {0, 4}, {-4, -4}, {6, 0}, {6, 2}, {4, 2}};
    const outcome o = gate(coords, {{0, 1, 2, 3}, {0, 4, 5, U}, {4, 5, 6, 0}}, {0, 0, 0}, 1, {}, {},
                           {{9, 9, 9, 9}});
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.kept, (column{1, 2}));
    EXPECT_EQ(o.split, column{0});
    EXPECT_EQ(o.result,
              (ids{{9, 9, 9, 9}, {0, 4, 5, U}, {4, 5, 6, 0}, {1, 2, 3, U}, {3, 0, 1, U}}));
}

TEST(SplitGated, EntriesThatTheListsHeldAreProcessedOnceMore)
{
    const dense2D<unsigned> connect{{0, 1, 2, 3}, {0, 1, 2, U}};
    const outcome o = gate(DART, connect, {0, 0, 0}, 1, {0, 1}, {0});
    EXPECT_EQ(o.status, 2);
    EXPECT_EQ(o.kept, (column{0, 1, 1}));
    EXPECT_EQ(o.split, (column{0, 0}));
    EXPECT_EQ(o.result, (ids{{0, 1, 2, 3},
                             {0, 1, 2, U},
                             {0, 1, 2, U},
                             {1, 2, 3, U},
                             {3, 0, 1, U},
                             {1, 2, 3, U},
                             {3, 0, 1, U}}));
}

TEST(SplitGated, EntriesThatNameNoColumnOrNoQuadrilateralArePassedOver)
{
    const dense2D<unsigned> connect{{0, 1, 2, 3}, {0, 1, 2, U}};
    const outcome o = gate(DART, connect, {0, 0, 0}, 1, {2, U, 1}, {1, 2, U, 0});
    EXPECT_EQ(o.status, 2);
    EXPECT_EQ(o.kept, (column{2, U, 1, 1}));
    EXPECT_EQ(o.split, (column{1, 2, U, 0, 0}));
    EXPECT_EQ(
        o.result,
        (ids{{0, 1, 2, U}, {0, 1, 2, U}, {1, 2, 3, U}, {3, 0, 1, U}, {1, 2, 3, U}, {3, 0, 1, U}}));
}

TEST(SplitGated, JudgesAndCutsAsTheMeasuresSay)
{
    for (unsigned seed = 1; seed <= 24; ++seed) {
        const bool plane = seed % 2;
        support::mesh m = support::grid_mixed(7, 6, 2, seed);
        if (!plane) m = support::lifted(m, [](double x, double y) { return 0.3 * x * y; });
        support::shuffle(m, seed);
        support::jitter(m, 0.3, seed);
        const int criterion = static_cast<int>(seed % 8);
        const thresholds least{plane ? 0.6 : 0.3, plane ? 0.6 : 0.3, 0.8};

        column kept, split;
        ids cut;
        for (std::size_t e = 0; e < m.connect.cols; ++e) {
            const unsigned* const c = m.connect.column(e);
            const double* const p = m.coords.column(0);
            using namespace tessalo2d;
            double shape = 0;
            double angle = 0;
            double warp = 1;
            if (c[3] != U) {
                shape = plane ? quad_shape_quality(p, 2, c) : quad_shape_quality3(p, 3, c);
                angle = plane ? quad_angle_quality<2>(p, 2, c) : quad_angle_quality<3>(p, 3, c);
                if (!plane) warp = quad_warp(p, 3, c);
            }
            const bool stays = c[3] == U || (shape >= least.shape && warp * angle >= least.angle &&
                                             warp >= least.warp);
            (stays ? kept : split).push_back(static_cast<unsigned>(e));
            if (stays) continue;
            const turned_quad quad(c);
            const unsigned* const n = quad.node;
            const cut_scores s =
                plane ? score_cuts<2>(criterion, p, 2, quad) : score_cuts<3>(criterion, p, 3, quad);
            if (s.first > s.second - 1e-12) {
                cut.push_back({n[0], n[1], n[2], U});
                cut.push_back({n[2], n[3], n[0], U});
            } else {
                cut.push_back({n[1], n[2], n[3], U});
                cut.push_back({n[3], n[0], n[1], U});
            }
        }
        ids expected;
        for (const unsigned e : kept) expected.push_back(columns(m.connect)[e]);
        expected.insert(expected.end(), cut.begin(), cut.end());

        const outcome o = gate(m.coords, m.connect, least, criterion);
        EXPECT_EQ(o.status, static_cast<int>(split.size())) << "seed " << seed;
        EXPECT_EQ(o.kept, kept) << "seed " << seed;
        EXPECT_EQ(o.split, split) << "seed " << seed;
        EXPECT_EQ(o.result, expected) << "seed " << seed;
        EXPECT_FALSE(split.empty() || kept.empty()) << "seed " << seed;
    }
}

TEST(SplitGated, CutsDoNotDependOnWhereTheNodeListStarts)
{
    for (const int criterion : {1, 2, 3, 4, 5, 6, 7}) {
        support::mesh m = support::grid_Q4(6, 5, 3);
        support::shuffle(m, 9);
        support::jitter(m, 0.4, 9);
        const ids expected = gate(m.coords, m.connect, NONE_STAYS, criterion).result;
        for (std::size_t e = 0; e < m.connect.cols; ++e) {
            unsigned* const c = m.connect.column(e);
            std::rotate(c, c + 1 + e % 3, c + 4);
        }
        EXPECT_EQ(gate(m.coords, m.connect, NONE_STAYS, criterion).result, expected) << criterion;
    }
}

TEST(SplitGated, KeepsTheArea)
{
    for (int criterion = 0; criterion <= 7; ++criterion) {
        support::mesh m = support::grid_mixed(8, 7, 2, 4);
        support::jitter(m, 0.2, static_cast<unsigned>(criterion));
        const outcome o = gate(m.coords, m.connect, {0.7, 0.7, 0}, criterion);
        double before = 0;
        double after = 0;
        ASSERT_EQ(tessalo2d::area(m.coords, m.connect, before), 0);
        ASSERT_EQ(tessalo2d::area(m.coords, support::matrix(o.result), after), 0);
        EXPECT_NEAR(after, before, 1e-12 * before) << criterion;
    }
}

TEST(SplitGated, TakesAnyMeshByAnyCriterion)
{
    for (const std::size_t dimension : {2u, 3u})
        for (const support::mesh& m : support::awkward_meshes(dimension)) {
            if (m.connect.rows != 4) continue;
            for (int criterion = 0; criterion <= 7; ++criterion) {
                const outcome o = gate(m.coords, m.connect, NONE_STAYS, criterion);
                EXPECT_EQ(o.status, static_cast<int>(o.split.size())) << m.name;
                EXPECT_EQ(o.result.size(), o.kept.size() + 2 * o.split.size()) << m.name;
            }
        }
}

TEST(SplitGated, IsTheSameInAnyLayoutAndLeavesGapsAndInputsAlone)
{
    for (const std::size_t dimension : {2u, 3u}) {
        support::mesh m = support::grid_mixed(6, 5, dimension, 3);
        support::jitter(m, 0.3, 5);
        const dense2D<unsigned> held{{1, 2, 3, 4}, {4, 5, 6, 7}};
        const outcome dense = gate(m.coords, m.connect, {0.6, 0.5, 0.9}, 4, {0}, {1}, held);
        for (const std::size_t gap : {0u, 1u, 5u}) {
            const support::placed<double> coords(m.coords, 4, gap);
            const support::placed<unsigned> connect(m.connect, 3, gap);
            support::placed<unsigned> result(held, 2, gap);
            dense1D<unsigned, 8> kept = support::placed_run<unsigned>({0}, gap);
            dense1D<unsigned, 8> split = support::placed_run<unsigned>({1}, 2 * gap);
            EXPECT_EQ(split_Q4_into_T3(coords.view, connect.view, 0.6, 0.5, 0.9, 4, kept, split,
                                       result.view),
                      dense.status);
            EXPECT_EQ(elements(kept), dense.kept);
            EXPECT_EQ(elements(split), dense.split);
            EXPECT_EQ(columns(result.view), dense.result);
            EXPECT_EQ(columns(connect.view), columns(m.connect));
            EXPECT_EQ(support::bits(coords.view), support::bits(m.coords));
            coords.expect_gaps_untouched();
            connect.expect_gaps_untouched();
            result.expect_gaps_untouched();
        }
    }
}

TEST(SplitGated, IntoItsOwnInputAppendsOnce)
{
    dense2D<unsigned> m{{0, 1, 2, 3}, {0, 1, 2, U}};
    dense1D<unsigned, 8> kept, split;
    EXPECT_EQ(split_Q4_into_T3(DART, m, 0, 0, 0, 1, kept, split, m), 1);
    EXPECT_EQ(columns(m),
              (ids{{0, 1, 2, 3}, {0, 1, 2, U}, {0, 1, 2, U}, {1, 2, 3, U}, {3, 0, 1, U}}));
}

TEST(SplitGated, RefusedStorageIsReportedAndLeavesTheResultAsItWas)
{
    const dense2D<unsigned> connect{{0, 1, 2, 3}, {0, 1, 2, U}};
    bool lists_filled = false;
    const std::size_t refusals =
        support::each_refused_allocation([&](auto armed, const std::string& told) {
            dense2D<unsigned> result{{9, 9, 9, 9}};
            dense1D<unsigned, 8> kept{1};
            dense1D<unsigned, 8> split;
            int status = 0;
            const bool refused = armed(
                [&] { status = split_Q4_into_T3(DART, connect, 0, 0, 0, 1, kept, split, result); });
            EXPECT_EQ(status, refused ? -199 : 1) << told;
            const ids held{{9, 9, 9, 9}};
            if (refused) {
                EXPECT_EQ(columns(result), held) << told;
                // Both lists are as they were, or have all their entries.
                const bool untouched = kept.size == 1 && split.size == 0;
                const bool filled = elements(kept) == column{1, 1} && elements(split) == column{0};
                EXPECT_TRUE(untouched || filled) << told;
                lists_filled = lists_filled || filled;
            }
        });
    EXPECT_GE(refusals, 3u);
    EXPECT_TRUE(lists_filled);
}

TEST(SplitGated, RefusedStorageForAnOutputInTheBlockOfTheInputIsReported)
{
    const ids held{{0, 1, 2, 3}, {0, 1, 2, U}};
    for (int shared = 0; shared < 3; ++shared) {
        const std::size_t refusals =
            support::each_refused_allocation([&](auto armed, const std::string& told) {
                dense2D<unsigned> m{{0, 1, 2, 3}, {0, 1, 2, U}};
                dense2D<unsigned> result{{9, 9, 9, 9}};
                if (shared == 0) result = m;
                dense1D<unsigned, 8> kept, split;
                if (shared == 1) kept = m.as_vector();
                if (shared == 2) split = m.as_vector();
                kept.clear();
                split.clear();
                const ids before = columns(result);
                int status = 0;
                const bool refused = armed(
                    [&] { status = split_Q4_into_T3(DART, m, 0, 0, 0, 1, kept, split, result); });
                EXPECT_EQ(status, refused ? -199 : 1) << told;
                EXPECT_EQ(columns(m), held) << told;
                if (refused) {
                    EXPECT_EQ(columns(result), before) << told;
                }
            });
        // The storage of the three outputs, and the copy of the one that shares.
        EXPECT_GE(refusals, 4u) << "output " << shared;
    }
}
