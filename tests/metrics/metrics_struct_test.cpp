// Metrics over structured patches, in the plane and in space.
#include "metrics/boundary_loop.h"
#include "metrics/dimensions.h"
#include "metrics/metric_pair.h"
#include "metrics/reference.h"
#include "support/allocation.h"
#include "support/matrices.h"

using namespace vorel;
using namespace patch_tests;
using reference::real;
using tessalo2d::metrics_struct;

namespace {

template <std::size_t D>
dense2D<double> random_metrics(std::size_t columns, unsigned seed, double condition = 10.0)
{
    std::mt19937 draw(seed);
    dense2D<double> metrics(D * (D + 1) / 2, columns);
    for (std::size_t j = 0; j < columns; ++j)
        tessalo2d::store_metric(reference::random_metric<D>(draw, condition), metrics.column(j));
    return metrics;
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

} // namespace

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
