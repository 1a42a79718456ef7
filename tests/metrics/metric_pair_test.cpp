#include "metrics/metric_pair.h"

#include "metrics/dimensions.h"
#include "metrics/reference.h"

#include <gtest/gtest.h>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

using reference::real;

template <std::size_t D>
symmetric_fixed<double, D> marked()
{
    symmetric_fixed<double, D> m;
    for (double& x : m.data) x = -77.0;
    return m;
}

template <std::size_t D>
bool is_zero(const symmetric_fixed<double, D>& m)
{
    return reference::same_bits(m, symmetric_fixed<double, D>{});
}

template <std::size_t D>
symmetric_fixed<double, D> multiple_of_identity(double s)
{
    return reference::diagonal_metric<D>(std::vector<real>(D, s));
}

/// The tests that are the same in both dimensions.
template <class Dimension>
class MetricPair : public testing::Test {
};

TYPED_TEST_SUITE(MetricPair, dimensions, dimension_name);

} // namespace

TEST(ComposeMetric, SumsTheSquaresOfTheInverseRows)
{
    symmetric_fixed<double, 2> m;
    compose_metric<2>({2.0, 3.0}, {1.0, 4.0, 5.0, 6.0}, m);
    EXPECT_EQ(m[0], 2.0 * 1.0 + 3.0 * 25.0);
    EXPECT_EQ(m[1], 2.0 * 4.0 + 3.0 * 30.0);
    EXPECT_EQ(m[2], 2.0 * 16.0 + 3.0 * 36.0);

    symmetric_fixed<double, 3> n;
    compose_metric<3>({1.0, 2.0, 3.0}, {1.0, 2.0, 3.0, 0.0, 1.0, 4.0, 5.0, 6.0, 0.0}, n);
    EXPECT_EQ(n[0], 1.0 + 0.0 + 75.0);
    EXPECT_EQ(n[1], 2.0 + 0.0 + 90.0);
    EXPECT_EQ(n[2], 4.0 + 2.0 + 108.0);
    EXPECT_EQ(n[3], 3.0 + 0.0 + 0.0);
    EXPECT_EQ(n[4], 6.0 + 8.0 + 0.0);
    EXPECT_EQ(n[5], 9.0 + 32.0 + 0.0);
}

TEST(QuadraticForm, CountsTheOuterEntriesTwice)
{
    const double x[3] = {2.0, 3.0, 5.0};
    EXPECT_EQ(quadratic_form(symmetric_fixed<double, 2>{{1.0, 10.0, 100.0}}, x),
              4.0 + 120.0 + 900.0);
    EXPECT_EQ(quadratic_form(symmetric_fixed<double, 3>{{1.0, 10.0, 100.0, 7.0, 9.0, 11.0}}, x),
              4.0 + 120.0 + 900.0 + 140.0 + 270.0 + 275.0);
}

TYPED_TEST(MetricPair, ReductionIsDiagonalForBothMetrics)
{
    constexpr std::size_t D = TypeParam::D;
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 draw(seed);
        const auto m1 = reference::random_metric<D>(draw, 100.0);
        const auto m2 = reference::random_metric<D>(draw, 100.0);
        metric_pair_reduction<D> r;
        ASSERT_TRUE(reduce_metric_pair(r, m1, m2));
        reference::matrix<D> p;
        reference::matrix<D> q;
        for (std::size_t k = 0; k < D; ++k)
            for (std::size_t i = 0; i < D; ++i) {
                p[i][k] = r.basis[k * D + i];
                q[k][i] = r.inverse[k * D + i];
            }
        const auto one = reference::diagonal<D>(std::vector<real>(D, 1));
        ASSERT_LT(reference::difference(q * p, one), 1e-12);
        const auto first = reference::transpose(p) * reference::full(m1) * p;
        const auto second = reference::transpose(p) * reference::full(m2) * p;
        for (std::size_t i = 0; i < D; ++i) {
            ASSERT_NEAR(static_cast<double>(first[i][i]) / r.first_diagonal[i], 1.0, 1e-13);
            ASSERT_NEAR(static_cast<double>(second[i][i]) / r.second_diagonal[i], 1.0, 1e-9);
            for (std::size_t j = 0; j < i; ++j) {
                ASSERT_LT(std::fabs(first[i][j]), 1e-10L * std::sqrt(first[i][i] * first[j][j]));
                ASSERT_LT(std::fabs(second[i][j]), 1e-9L * std::sqrt(second[i][i] * second[j][j]));
            }
        }
    }
}

TYPED_TEST(MetricPair, AFailedReductionIsARecordOfZeros)
{
    constexpr std::size_t D = TypeParam::D;
    metric_pair_reduction<D> r;
    std::memset(&r, 0x5A, sizeof r);
    const symmetric_fixed<double, D> zero = {};
    EXPECT_FALSE(reduce_metric_pair(r, zero, multiple_of_identity<D>(1.0)));
    const metric_pair_reduction<D> empty = {};
    EXPECT_EQ(std::memcmp(&r, &empty, sizeof r), 0);

    // A failure that comes after vectors were written clears them too.
    std::memset(&r, 0x5A, sizeof r);
    auto none = marked<D>();
    for (double& x : none.data) x = NAN;
    EXPECT_FALSE(reduce_metric_pair(r, multiple_of_identity<D>(1.0), none));
    EXPECT_EQ(std::memcmp(&r, &empty, sizeof r), 0);
}

TYPED_TEST(MetricPair, EqualMetricsInterpolateToThemselves)
{
    constexpr std::size_t D = TypeParam::D;
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        const auto m = reference::random_metric<D>(draw, 1e4);
        auto result = marked<D>();
        ASSERT_TRUE(interpolate_metric_pair(0.3, m, m, result)) << "seed " << seed;
        ASSERT_LT(reference::difference(reference::full(result), reference::full(m)), 1e-11)
            << "seed " << seed;
    }
    auto result = marked<D>();
    ASSERT_TRUE(interpolate_metric_pair(0.7, multiple_of_identity<D>(4.0),
                                        multiple_of_identity<D>(4.0), result));
    EXPECT_LT(reference::difference(reference::full(result),
                                    reference::full(multiple_of_identity<D>(4.0))),
              1e-15);
}

TYPED_TEST(MetricPair, SizesOfIsotropicMetricsRunLinearly)
{
    constexpr std::size_t D = TypeParam::D;
    // Sizes 1 and 3, so 1.5 at a quarter.
    auto result = marked<D>();
    ASSERT_TRUE(interpolate_metric_pair(0.25, multiple_of_identity<D>(1.0),
                                        multiple_of_identity<D>(1.0 / 9.0), result));
    EXPECT_LT(reference::difference(reference::full(result),
                                    reference::full(multiple_of_identity<D>(1.0 / 2.25))),
              1e-15);
}

TYPED_TEST(MetricPair, InterpolationAgreesWithTheMatrixRootFormula)
{
    constexpr std::size_t D = TypeParam::D;
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 draw(seed);
        const auto m1 = reference::random_metric<D>(draw, 1e3, 1.0);
        const auto m2 = reference::random_metric<D>(draw, 1e3, 50.0);
        const double t = std::uniform_real_distribution<double>(0.01, 0.99)(draw);
        auto result = marked<D>();
        ASSERT_TRUE(interpolate_metric_pair(t, m1, m2, result));
        const auto expected =
            reference::interpolated(reference::full(m1), reference::full(m2), real(t));
        ASSERT_LT(reference::difference(reference::full(result), expected), 1e-10);
    }
}

TYPED_TEST(MetricPair, ExtrapolationAgreesWithTheMatrixRootFormula)
{
    constexpr std::size_t D = TypeParam::D;
    int extrapolated = 0;
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 draw(seed);
        const auto m1 = reference::random_metric<D>(draw, 2.0);
        const auto m2 = reference::random_metric<D>(draw, 2.0);
        const double t = std::uniform_real_distribution<double>(1.0, 3.0)(draw);
        auto result = marked<D>();
        if (!interpolate_metric_pair(t, m1, m2, result)) continue;
        ++extrapolated;
        const auto expected =
            reference::interpolated(reference::full(m1), reference::full(m2), real(t));
        ASSERT_LT(reference::difference(reference::full(result), expected), 1e-9);
    }
    EXPECT_GT(extrapolated, 100);
}

TYPED_TEST(MetricPair, AtAnEndTheMetricIsCopiedWhateverItHolds)
{
    constexpr std::size_t D = TypeParam::D;
    auto first = marked<D>();
    auto second = multiple_of_identity<D>(-0.0);
    second[1] = NAN;
    for (const double t : {0.0, -0.0, 9.9e-13, -9.9e-13}) {
        symmetric_fixed<double, D> result = {};
        EXPECT_TRUE(interpolate_metric_pair(t, first, second, result));
        EXPECT_TRUE(reference::same_bits(result, first)) << t;
    }
    for (const double t : {1.0, 1.0 - 9.9e-13, 1.0 + 9.9e-13}) {
        symmetric_fixed<double, D> result = {};
        EXPECT_TRUE(interpolate_metric_pair(t, first, second, result));
        EXPECT_TRUE(reference::same_bits(result, second)) << t;
    }
    symmetric_fixed<double, D> result = {};
    EXPECT_TRUE(interpolate_metric_pair(double(NAN), first, second, result));
    EXPECT_TRUE(reference::same_bits(result, first));
}

TYPED_TEST(MetricPair, JustOffAnEndTheMetricIsValidated)
{
    constexpr std::size_t D = TypeParam::D;
    auto result = marked<D>();
    EXPECT_FALSE(interpolate_metric_pair(1e-12, multiple_of_identity<D>(-1.0),
                                         multiple_of_identity<D>(1.0), result));
    EXPECT_TRUE(reference::same_bits(result, marked<D>()));
    EXPECT_TRUE(interpolate_metric_pair(1e-12, multiple_of_identity<D>(1.0),
                                        multiple_of_identity<D>(2.0), result));
}

TYPED_TEST(MetricPair, AMetricThatIsNotDefiniteLeavesTheOutputAsItWas)
{
    constexpr std::size_t D = TypeParam::D;
    const auto good = multiple_of_identity<D>(2.0);
    const auto negative = multiple_of_identity<D>(-2.0);
    auto indefinite = good;
    indefinite[2] = -1.0;
    auto singular = good;
    singular[2] = 0.0;
    for (const auto& bad : {negative, indefinite, singular}) {
        auto result = marked<D>();
        EXPECT_FALSE(interpolate_metric_pair(0.5, bad, good, result));
        EXPECT_TRUE(reference::same_bits(result, marked<D>()));
        EXPECT_FALSE(interpolate_metric_pair(0.5, good, bad, result));
        EXPECT_TRUE(reference::same_bits(result, marked<D>()));
    }
}

TYPED_TEST(MetricPair, OutsideASizeThatRunsOutOfRangeZeroesTheOutput)
{
    constexpr std::size_t D = TypeParam::D;
    // Sizes 1 and 0.5: 0 at t = 2, negative beyond.
    const auto coarse = multiple_of_identity<D>(1.0);
    const auto fine = multiple_of_identity<D>(4.0);
    for (const double t : {2.0, 5.0}) {
        auto result = marked<D>();
        EXPECT_FALSE(interpolate_metric_pair(t, coarse, fine, result)) << t;
        EXPECT_TRUE(is_zero(result)) << t;
    }
    auto result = marked<D>();
    EXPECT_FALSE(interpolate_metric_pair(-1.0, fine, coarse, result));
    EXPECT_TRUE(is_zero(result));
    EXPECT_TRUE(interpolate_metric_pair(1.5, coarse, fine, result));
    EXPECT_LT(reference::difference(reference::full(result),
                                    reference::full(multiple_of_identity<D>(16.0))),
              1e-14);
    metric_pair_reduction<D> r;
    ASSERT_TRUE(reduce_metric_pair(r, coarse, fine));
    result = marked<D>();
    EXPECT_FALSE(interpolate_reduced_metrics(r, double(NAN), result));
    EXPECT_TRUE(is_zero(result));
}

TYPED_TEST(MetricPair, TheOutputMayBeOneOfTheTwo)
{
    constexpr std::size_t D = TypeParam::D;
    std::mt19937 draw(5);
    const auto m1 = reference::random_metric<D>(draw, 10.0);
    const auto m2 = reference::random_metric<D>(draw, 10.0);
    symmetric_fixed<double, D> apart;
    ASSERT_TRUE(interpolate_metric_pair(0.4, m1, m2, apart));
    auto first = m1;
    ASSERT_TRUE(interpolate_metric_pair(0.4, first, m2, first));
    EXPECT_TRUE(reference::same_bits(first, apart));
    auto second = m2;
    ASSERT_TRUE(interpolate_metric_pair(0.4, m1, second, second));
    EXPECT_TRUE(reference::same_bits(second, apart));
}

TYPED_TEST(MetricPair, ColumnsOfAFieldAreRead)
{
    constexpr std::size_t D = TypeParam::D;
    constexpr std::size_t rows = D * (D + 1) / 2;
    std::mt19937 draw(6);
    const auto m1 = reference::random_metric<D>(draw, 10.0);
    const auto m2 = reference::random_metric<D>(draw, 10.0);
    double memory[4 * (rows + 2)] = {};
    const auto field = dense2D<double>::wrap(memory, rows, 4, rows + 2);
    for (std::size_t k = 0; k < rows; ++k) {
        memory[3 * (rows + 2) + k] = m1[k];
        memory[1 * (rows + 2) + k] = m2[k];
    }
    symmetric_fixed<double, D> expected;
    symmetric_fixed<double, D> result;
    ASSERT_TRUE(interpolate_metric_pair(0.4, m1, m2, expected));
    ASSERT_TRUE(interpolate_metric_columns(field, 0.4, 3, 1, result));
    EXPECT_TRUE(reference::same_bits(result, expected));
}

TEST(MetricPair2, ANegativeDefiniteFirstMetricIsReducedAndRefusedOnItsDiagonal)
{
    const symmetric_fixed<double, 2> negative = {{-4.0, 0.0, -1.0}};
    metric_pair_reduction<2> r;
    ASSERT_TRUE(reduce_metric_pair(r, negative, {{1.0, 0.0, 1.0}}));
    EXPECT_LT(r.first_diagonal[0], 0.0);
    symmetric_fixed<double, 2> result = marked<2>();
    EXPECT_FALSE(interpolate_reduced_metrics(r, 0.5, result));
    EXPECT_TRUE(reference::same_bits(result, marked<2>()));
}

TEST(MetricPair2, AFirstMetricWithoutLeadingEntryFails)
{
    metric_pair_reduction<2> r;
    EXPECT_FALSE(reduce_metric_pair(r, {{0.0, 0.0, 1.0}}, {{1.0, 0.0, 1.0}}));
}

TEST(MetricPair3, ANegativeDefiniteFirstMetricHasNoReduction)
{
    metric_pair_reduction<3> r;
    EXPECT_FALSE(
        reduce_metric_pair(r, multiple_of_identity<3>(-1.0), multiple_of_identity<3>(1.0)));
}

TEST(MetricPair3, ARowOfZerosHasAFactorButNoReduction)
{
    metric_pair_reduction<3> r;
    EXPECT_FALSE(reduce_metric_pair(r, reference::diagonal_metric<3>({0, 1, 1}),
                                    multiple_of_identity<3>(1.0)));
}
