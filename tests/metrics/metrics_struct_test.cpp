#include "metrics/dimensions.h"
#include "metrics/metric_pair.h"
#include "metrics/reference.h"
#include "metrics/sizes.h"
#include "support/allocation.h"
#include "support/matrices.h"

#include <algorithm>

#include <sys/mman.h>

using namespace vorel;
using reference::real;
using tessalo2d::metrics_struct;

namespace {

/// The list around a patch of n x m cells whose boundary nodes have the IDs 0, 1, 2 and so on,
/// shuffled by a seed.
struct loop {
    loop(std::size_t n_, std::size_t m_, unsigned seed) : n(n_), m(m_), nodes(2 * (n_ + m_))
    {
        std::vector<unsigned> order;
        for (unsigned k = 0; k < nodes; ++k) order.push_back(k);
        std::mt19937 draw(seed);
        std::shuffle(order.begin(), order.end(), draw);
        for (const unsigned id : order) ids.append(id);
        ids.append(order[0]);
    }

    /// The boundary node at grid indices (i, j), found by walking around.
    unsigned at(std::size_t i, std::size_t j) const
    {
        std::size_t position = 0;
        std::size_t x = 0;
        std::size_t y = 0;
        while (x != i || y != j) {
            if (y == 0 && x < n)
                ++x;
            else if (x == n && y < m)
                ++y;
            else if (y == m && x > 0)
                --x;
            else
                --y;
            ++position;
        }
        return ids[position];
    }

    std::size_t n;
    std::size_t m;
    std::size_t nodes;
    dense1D<unsigned, 8> ids;
};

template <std::size_t D>
dense2D<double> random_metrics(std::size_t columns, unsigned seed, double condition = 10.0)
{
    std::mt19937 draw(seed);
    dense2D<double> metrics(D * (D + 1) / 2, columns);
    for (std::size_t j = 0; j < columns; ++j)
        tessalo2d::store_metric(reference::random_metric<D>(draw, condition), metrics.column(j));
    return metrics;
}

dense1D<double, 8> random_sizes(std::size_t entries, unsigned seed)
{
    std::mt19937 draw(seed);
    std::uniform_real_distribution<double> size(0.5, 2.0);
    dense1D<double, 8> sizes(entries);
    for (double& h : sizes) h = size(draw);
    return sizes;
}

double mixed(double t, double first, double second)
{
    double size = 0.0;
    (void)tessalo2d::interpolate_size_pair(t, first, second, size);
    return size;
}

double ratio(std::size_t i, std::size_t n)
{
    return static_cast<double>(i) / static_cast<double>(n);
}

/// The node's metric by the three interpolations of its definition, none of them shared.
template <std::size_t D>
symmetric_fixed<double, D> metric_by_definition(const dense2D<double>& field, const loop& l,
                                                std::size_t i, std::size_t j)
{
    symmetric_fixed<double, D> a = {};
    symmetric_fixed<double, D> b = {};
    symmetric_fixed<double, D> m = {};
    (void)tessalo2d::interpolate_metric_columns(field, ratio(i, l.n), l.at(0, j), l.at(l.n, j), a);
    (void)tessalo2d::interpolate_metric_columns(field, ratio(j, l.m), l.at(i, 0), l.at(i, l.m), b);
    tessalo2d::metric_pair_reduction<D> both;
    if (tessalo2d::reduce_metric_pair(both, b, a))
        (void)tessalo2d::interpolate_reduced_metrics(both, 0.5, m);
    return m;
}

constexpr std::size_t cells[][2] = {{2, 2}, {3, 2}, {2, 3}, {4, 7}, {9, 2}, {2, 9}, {6, 6}};

} // namespace

TEST(MetricsStruct, AnEmptyListOrACountOfZeroIsNothingToDo)
{
    dense1D<double, 8> sizes;
    const dense1D<unsigned, 8> wrong{9, 8, 7, 6};
    EXPECT_EQ(metrics_struct({}, 3, sizes), 0);
    EXPECT_EQ(metrics_struct(wrong, 0, sizes), 0);
    EXPECT_EQ(sizes.size, 0u);
    for (const std::size_t rows : {3u, 6u}) {
        dense2D<double> metrics = support::without_columns<double>(rows);
        EXPECT_EQ(metrics_struct({}, 3, metrics), 0);
        EXPECT_EQ(metrics_struct(wrong, 0, metrics), 0);
        EXPECT_EQ(metrics.cols, 0u);
        EXPECT_EQ(metrics.rows, rows);
    }
}

TEST(MetricsStruct, TheRowsAreCheckedBeforeAnythingElse)
{
    for (const std::size_t rows : {0u, 1u, 2u, 4u, 5u, 7u}) {
        dense2D<double> metrics = support::without_columns<double>(rows);
        EXPECT_EQ(metrics_struct({}, 0, metrics), -3) << rows;
        EXPECT_EQ(metrics_struct({1, 2}, 5, metrics), -3) << rows;
        dense2D<double> filled(rows, 4, 1.0);
        EXPECT_EQ(metrics_struct({0, 1, 2, 3, 0}, 1, filled), -3) << rows;
    }
}

TEST(MetricsStruct, StatusesComeInTheOrderOfTheChecks)
{
    struct {
        dense1D<unsigned, 8> ids;
        unsigned count;
        int status;
        const char* why;
    } const rows[] = {
        {{0}, 1, -1, "too short"},
        {{0, 1}, 7, -1, "too short"},
        {{0, 1, 2, 0}, 1, -1, "four nodes"},
        {{0, 1, 2, 0}, 9, -1, "four nodes, before the count"},
        {{0, 1, 2, 3, 4}, 1, -1, "not closed"},
        {{0, 1, 2, 3, 4}, 9, -1, "not closed, before the count"},
        {{0, 1, 2, 8, 0}, 1, -1, "an ID that is the length of the field"},
        {{0, 1, UNSET_ID, 3, 0}, 1, -1, "an unset ID"},
        {{0, 1, 2, 8, 0}, 9, -1, "a wrong ID, before the count"},
        {{8, 1, 2, 3, 4, 5, 8}, 9, -1, "a wrong ID at the ends"},
        {{0, 1, 2, 3, 0}, 3, -2, "more cells than nodes"},
        {{0, 1, 2, 3, 0}, 4000000000u, -2, "far more cells than nodes"},
        {{0, 1, 2, 3, 4, 0}, 1, -2, "an even number of nodes"},
        {{0, 1, 2, 3, 4, 0}, 3, -2, "twice the count is the length"},
        {{0, 1, 2, 3, 0}, 1, 0, "one cell"},
    };
    for (const auto& row : rows) {
        dense1D<double, 8> sizes(8, 1.0);
        EXPECT_EQ(metrics_struct(row.ids, row.count, sizes), row.status) << row.why;
        EXPECT_EQ(support::elements(sizes), std::vector<double>(8, 1.0)) << row.why;
        for (const std::size_t entries : {3u, 6u}) {
            dense2D<double> metrics(entries, 8, 1.0);
            EXPECT_EQ(metrics_struct(row.ids, row.count, metrics), row.status) << row.why;
            EXPECT_EQ(metrics.cols, 8u) << row.why;
        }
    }
}

TEST(MetricsStruct, APatchOfOneCellAcrossHasNoInteriorNode)
{
    for (const auto& [n, m] : {std::pair{1, 1}, std::pair{1, 5}, std::pair{5, 1}}) {
        const loop l(static_cast<std::size_t>(n), static_cast<std::size_t>(m), 1);
        dense1D<double, 8> sizes(l.nodes, 2.0);
        EXPECT_EQ(metrics_struct(l.ids, static_cast<unsigned>(m), sizes), 0);
        EXPECT_EQ(sizes.size, l.nodes);
        dense2D<double> metrics(6, l.nodes, 2.0);
        EXPECT_EQ(metrics_struct(l.ids, static_cast<unsigned>(m), metrics), 0);
        EXPECT_EQ(metrics.cols, l.nodes);
    }
}

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

template <class Dimension>
class MetricsStructOf : public testing::Test {
};

TYPED_TEST_SUITE(MetricsStructOf, dimensions, dimension_name);

TYPED_TEST(MetricsStructOf, MetricsAreTheirDefinitionBitForBit)
{
    constexpr std::size_t D = TypeParam::D;
    for (const auto& [n, m] : cells)
        for (unsigned seed = 1; seed <= 5; ++seed) {
            const loop l(n, m, seed);
            const std::size_t columns = l.nodes + seed;
            const dense2D<double> before = random_metrics<D>(columns, seed);
            dense2D<double> metrics = support::copy_of(before);
            ASSERT_EQ(metrics_struct(l.ids, static_cast<unsigned>(m), metrics), 0);
            ASSERT_EQ(metrics.cols, columns + (n - 1) * (m - 1));
            ASSERT_EQ(metrics.rows, std::size_t(TypeParam::rows));
            for (std::size_t i = 1; i < n; ++i)
                for (std::size_t j = 1; j < m; ++j) {
                    const auto m_ij =
                        tessalo2d::metric_column<D>(metrics, columns + (i - 1) * (m - 1) + (j - 1));
                    ASSERT_TRUE(
                        reference::same_bits(m_ij, metric_by_definition<D>(before, l, i, j)))
                        << n << " x " << m << ", seed " << seed;
                }
            metrics.cols = columns;
            ASSERT_EQ(support::bits(metrics), support::bits(before));
        }
}

TYPED_TEST(MetricsStructOf, MetricsAgreeWithTheMatrixRootFormula)
{
    constexpr std::size_t D = TypeParam::D;
    const std::size_t n = 5;
    const std::size_t m = 4;
    const loop l(n, m, 8);
    const dense2D<double> before = random_metrics<D>(l.nodes, 8);
    dense2D<double> metrics = support::copy_of(before);
    ASSERT_EQ(metrics_struct(l.ids, m, metrics), 0);
    const auto node = [&](std::size_t i, std::size_t j) {
        return reference::full(tessalo2d::metric_column<D>(before, l.at(i, j)));
    };
    for (std::size_t i = 1; i < n; ++i)
        for (std::size_t j = 1; j < m; ++j) {
            const auto a = reference::interpolated(node(0, j), node(n, j), real(i) / real(n));
            const auto b = reference::interpolated(node(i, 0), node(i, m), real(j) / real(m));
            const auto expected = reference::interpolated(b, a, real(0.5L));
            const auto result =
                tessalo2d::metric_column<D>(metrics, l.nodes + (i - 1) * (m - 1) + (j - 1));
            EXPECT_LT(reference::difference(reference::full(result), expected), 1e-11);
        }
}

TYPED_TEST(MetricsStructOf, IsotropicMetricsFollowTheSizes)
{
    constexpr std::size_t D = TypeParam::D;
    const loop l(6, 5, 9);
    dense1D<double, 8> sizes = random_sizes(l.nodes, 9);
    dense2D<double> metrics(TypeParam::rows, l.nodes, 0.0);
    for (std::size_t k = 0; k < l.nodes; ++k)
        for (std::size_t d = 0; d < D; ++d)
            metrics(d * (d + 1) / 2 + d, k) = 1.0 / (sizes[k] * sizes[k]);
    ASSERT_EQ(metrics_struct(l.ids, 5, sizes), 0);
    ASSERT_EQ(metrics_struct(l.ids, 5, metrics), 0);
    ASSERT_EQ(metrics.cols, sizes.size);
    for (std::size_t k = 0; k < sizes.size; ++k)
        for (std::size_t d = 0; d < D; ++d)
            EXPECT_NEAR(metrics(d * (d + 1) / 2 + d, k) * (sizes[k] * sizes[k]), 1.0, 1e-13);
}

TYPED_TEST(MetricsStructOf, AMetricThatIsNotDefiniteGivesZeroColumnsWhereItIsRead)
{
    constexpr std::size_t D = TypeParam::D;
    const std::size_t n = 4;
    const std::size_t m = 5;
    const loop l(n, m, 4);
    for (const double bad : {0.0, -1.0, std::nan("")}) {
        dense2D<double> metrics = random_metrics<D>(l.nodes, 4);
        for (const unsigned node : {l.at(0, 2), l.at(3, m), l.at(1, 0)})
            for (std::size_t k = 0; k < metrics.rows; ++k) metrics(k, node) *= bad;
        ASSERT_EQ(metrics_struct(l.ids, m, metrics), 0);
        for (std::size_t i = 1; i < n; ++i)
            for (std::size_t j = 1; j < m; ++j) {
                const auto result =
                    tessalo2d::metric_column<D>(metrics, l.nodes + (i - 1) * (m - 1) + (j - 1));
                const bool zero = reference::same_bits(result, symmetric_fixed<double, D>{});
                EXPECT_EQ(zero, j == 2 || i == 3 || i == 1) << i << ", " << j;
            }
    }
}

TYPED_TEST(MetricsStructOf, AMatrixWithGapsGivesTheSame)
{
    constexpr std::size_t D = TypeParam::D;
    const loop l(4, 5, 6);
    const dense2D<double> before = random_metrics<D>(l.nodes, 6);
    dense2D<double> dense = support::copy_of(before);
    ASSERT_EQ(metrics_struct(l.ids, 5, dense), 0);
    support::placed<double> placed(before, 7, 3);
    dense1D<unsigned, 8> ids = support::placed_run(l.ids, 4);
    ASSERT_EQ(metrics_struct(ids, 5, placed.view), 0);
    EXPECT_EQ(support::bits(placed.view), support::bits(dense));
    EXPECT_EQ(placed.view.ld, before.rows + 3);
    placed.expect_gaps_untouched();
    EXPECT_EQ(support::elements(ids), support::elements(l.ids));
}

TYPED_TEST(MetricsStructOf, MetricsSurviveARefusedAllocationUnchanged)
{
    constexpr std::size_t D = TypeParam::D;
    const loop l(4, 5, 7);
    const dense2D<double> before = random_metrics<D>(l.nodes, 7);
    const std::size_t refusals =
        support::each_refused_allocation([&](const auto& armed, const auto& told) {
            dense2D<double> metrics = support::copy_of(before);
            int status = 1;
            const bool refused = armed([&] { status = metrics_struct(l.ids, 5, metrics); });
            EXPECT_EQ(status, refused ? -199 : 0) << told;
            if (refused) {
                EXPECT_EQ(support::bits(metrics), support::bits(before)) << told;
            }
        });
    EXPECT_GT(refusals, 0u);
}

TYPED_TEST(MetricsStructOf, APatchWithoutCellsAlongTheBottomShortensTheField)
{
    constexpr std::size_t D = TypeParam::D;
    // Seven nodes for three cells up the side leave none along the bottom.
    const dense1D<unsigned, 8> ids{0, 1, 2, 3, 4, 5, 0};
    const dense2D<double> before = random_metrics<D>(8, 3);
    dense2D<double> metrics = support::copy_of(before);
    EXPECT_EQ(metrics_struct(ids, 3, metrics), 0);
    EXPECT_EQ(metrics.cols, 6u);
    dense2D<double> kept = support::copy_of(before);
    kept.cols = 6;
    EXPECT_EQ(support::bits(metrics), support::bits(kept));
}

TYPED_TEST(MetricsStructOf, AFieldTooShortToBeShortenedIsOutOfMemory)
{
    // One node all around: three cells up the side would leave -1 columns.
    constexpr std::size_t D = TypeParam::D;
    dense2D<double> metrics = random_metrics<D>(1, 3);
    EXPECT_EQ(metrics_struct({0, 0, 0, 0, 0, 0, 0}, 3, metrics), -199);
    EXPECT_EQ(metrics.cols, 1u);
    metrics = random_metrics<D>(2, 3);
    EXPECT_EQ(metrics_struct({0, 0, 0, 0, 0, 0, 0}, 3, metrics), 0);
    EXPECT_EQ(metrics.cols, 0u);
    EXPECT_EQ(metrics.rows, std::size_t(TypeParam::rows));
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

TEST(MetricsStruct, MoreNodesThanIDsAreOutOfMemory)
{
    // 70000 x 70000 cells have more than 2^32 interior nodes. There is address space for all of
    // them, so that it is not the storage that is refused; nothing of it may be touched.
    const std::size_t n = 70000;
    const std::size_t room = n * n;
    void* const space = mmap(nullptr, room * sizeof(double), PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (space == MAP_FAILED) GTEST_SKIP() << "no address space";
    const dense1D<unsigned, 8> ids(4 * n + 1, 0u);
    auto sizes = dense1D<double, 8>::wrap(static_cast<double*>(space), room);
    sizes.size = 1;
    EXPECT_EQ(metrics_struct(ids, static_cast<unsigned>(n), sizes), -199);
    EXPECT_EQ(sizes.size, 1u);
    auto metrics = dense2D<double>::wrap(static_cast<double*>(space), 3, room / 3);
    metrics.cols = 1;
    EXPECT_EQ(metrics_struct(ids, static_cast<unsigned>(n), metrics), -199);
    EXPECT_EQ(metrics.cols, 1u);
    munmap(space, room * sizeof(double));
}
