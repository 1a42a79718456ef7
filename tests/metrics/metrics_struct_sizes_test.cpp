// Sizes over structured patches: their numbering and their values.
#include "metrics/boundary_loop.h"
#include "metrics/sizes.h"
#include "support/allocation.h"
#include "support/matrices.h"

#include <cmath>
#include <limits>

using namespace vorel;
using namespace patch_tests;
using tessalo2d::metrics_struct;

namespace {

double mixed(double t, double first, double second)
{
    double size = 0.0;
    (void)tessalo2d::interpolate_size_pair(t, first, second, size);
    return size;
}

} // namespace

TEST(MetricsStruct, SizesOfAPatchOfTwoByTwoAreTheMeanOfTheFourSides)
{
    // Left 1 and right 3 give 2; bottom 5 and top 11 give 8; their mean is 5.
    dense1D<double, 8> sizes{9.0, 5.0, 9.0, 3.0, 9.0, 11.0, 9.0, 1.0};
    EXPECT_EQ(metrics_struct({0, 1, 2, 3, 4, 5, 6, 7, 0}, 2, sizes), 0);
    ASSERT_EQ(sizes.size, 9u);
    EXPECT_EQ(sizes[8], 5.0);
}

TEST(MetricsStruct, SizesAreNumberedWithTheSecondIndexRunningFastest)
{
    // Three cells along the bottom and two up: the two interior nodes lie side by side. A size of
    // j / 2 interpolates between bottom 1 and top 3, and i / 3 between left 1 and right 4.
    dense1D<double, 8> sizes{9.0, 1.0, 1.0, 9.0, 4.0, 9.0, 3.0, 3.0, 9.0, 1.0};
    EXPECT_EQ(metrics_struct({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0}, 2, sizes), 0);
    ASSERT_EQ(sizes.size, 12u);
    EXPECT_NEAR(sizes[10], (2.0 + 2.0) / 2.0, 1e-15);
    EXPECT_NEAR(sizes[11], (2.0 + 3.0) / 2.0, 1e-15);
    // The same patch from another side: two along the bottom and three up.
    sizes = {9.0, 3.0, 9.0, 1.0, 2.0, 9.0, 5.0, 9.0, 4.0, 3.0};
    EXPECT_EQ(metrics_struct({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0}, 3, sizes), 0);
    ASSERT_EQ(sizes.size, 12u);
    // (1, 1): left(1) = 3 at position 9, right(1) = 1; (1, 2): left(2) = 4, right(2) = 2.
    EXPECT_NEAR(sizes[10], (2.0 + (3.0 + 2.0 / 3.0)) / 2.0, 1e-15);
    EXPECT_NEAR(sizes[11], (3.0 + (3.0 + 4.0 / 3.0)) / 2.0, 1e-15);
}

TEST(MetricsStruct, SizesAreTheirDefinitionBitForBit)
{
    for (const auto& [n, m] : cells)
        for (unsigned seed = 1; seed <= 5; ++seed) {
            const loop l(n, m, seed);
            // Entries behind the boundary show that the length of the field counts, not the list's.
            const std::size_t entries = l.nodes + seed;
            const dense1D<double, 8> before = random_sizes(entries, seed);
            const std::vector<double> values = support::elements(before);
            dense1D<double, 8> sizes = support::placed_run(before, 0);
            ASSERT_EQ(metrics_struct(l.ids, static_cast<unsigned>(m), sizes), 0);
            ASSERT_EQ(sizes.size, entries + (n - 1) * (m - 1));
            for (std::size_t k = 0; k < entries; ++k) ASSERT_EQ(sizes[k], values[k]);
            for (std::size_t i = 1; i < n; ++i)
                for (std::size_t j = 1; j < m; ++j) {
                    const double a = mixed(ratio(i, n), values[l.at(0, j)], values[l.at(n, j)]);
                    const double b = mixed(ratio(j, m), values[l.at(i, 0)], values[l.at(i, m)]);
                    ASSERT_EQ(sizes[entries + (i - 1) * (m - 1) + (j - 1)], mixed(0.5, b, a))
                        << n << " x " << m << ", seed " << seed;
                }
        }
}

TEST(MetricsStruct, ASizeThatIsNotPositiveGivesZeroWhereItIsRead)
{
    const std::size_t n = 4;
    const std::size_t m = 5;
    const loop l(n, m, 3);
    for (const double bad : {0.0, -1.0, std::nan("")}) {
        dense1D<double, 8> sizes(l.nodes, 1.0);
        sizes[l.at(0, 2)] = bad;
        sizes[l.at(3, m)] = bad;
        ASSERT_EQ(metrics_struct(l.ids, m, sizes), 0);
        for (std::size_t i = 1; i < n; ++i)
            for (std::size_t j = 1; j < m; ++j)
                EXPECT_EQ(sizes[l.nodes + (i - 1) * (m - 1) + (j - 1)],
                          j == 2 || i == 3 ? 0.0 : 1.0)
                    << i << ", " << j;
    }
}

TEST(MetricsStruct, ASizeOutOfRangeIsStoredWhereItIsRead)
{
    const double inf = std::numeric_limits<double>::infinity();
    dense1D<double, 8> sizes{9.0, 5.0, 9.0, 3.0, 9.0, 11.0, 9.0, inf};
    EXPECT_EQ(metrics_struct({0, 1, 2, 3, 4, 5, 6, 7, 0}, 2, sizes), 0);
    ASSERT_EQ(sizes.size, 9u);
    // Across it is (3 - inf) / 2 + inf, no number: not above 0, which then gives 0.
    EXPECT_EQ(sizes[8], 0.0);
    // Across it is (inf - 1) / 2 + 1, refused as out of range, and taken as it is.
    sizes = {9.0, 5.0, 9.0, inf, 9.0, 11.0, 9.0, 1.0};
    EXPECT_EQ(metrics_struct({0, 1, 2, 3, 4, 5, 6, 7, 0}, 2, sizes), 0);
    ASSERT_EQ(sizes.size, 9u);
    EXPECT_EQ(sizes[8], inf);
}

TEST(MetricsStruct, SizesOfAPatchWithoutCellsAlongTheBottomAreShortened)
{
    dense1D<double, 8> sizes{1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    EXPECT_EQ(metrics_struct({0, 1, 2, 3, 4, 5, 0}, 3, sizes), 0);
    EXPECT_EQ(support::elements(sizes), (std::vector<double>{1.0, 2.0, 3.0, 4.0}));
    dense1D<double, 8> one{1.0};
    EXPECT_EQ(metrics_struct({0, 0, 0, 0, 0, 0, 0}, 3, one), -199);
    EXPECT_EQ(one.size, 1u);
}

TEST(MetricsStruct, SizesAtAnOffsetGiveTheSame)
{
    const loop l(4, 5, 6);
    const dense1D<double, 8> before = random_sizes(l.nodes, 6);
    dense1D<double, 8> dense = support::placed_run(before, 0);
    dense1D<double, 8> placed = support::placed_run(before, 11);
    ASSERT_EQ(metrics_struct(l.ids, 5, dense), 0);
    ASSERT_EQ(metrics_struct(l.ids, 5, placed), 0);
    EXPECT_EQ(support::elements(placed), support::elements(dense));
    for (std::size_t k = 0; k < 11; ++k)
        EXPECT_EQ(placed.block->data[k], static_cast<double>(0x5A5A5A5Au));
}

TEST(MetricsStruct, SizesSurviveARefusedAllocationUnchanged)
{
    const loop l(4, 5, 7);
    const dense1D<double, 8> before = random_sizes(l.nodes, 7);
    const std::size_t refusals =
        support::each_refused_allocation([&](const auto& armed, const auto& told) {
            dense1D<double, 8> sizes = support::placed_run(before, 0);
            int status = 1;
            const bool refused = armed([&] { status = metrics_struct(l.ids, 5, sizes); });
            EXPECT_EQ(status, refused ? -199 : 0) << told;
            if (refused) {
                EXPECT_EQ(support::elements(sizes), support::elements(before)) << told;
            }
        });
    EXPECT_GT(refusals, 0u);
}
