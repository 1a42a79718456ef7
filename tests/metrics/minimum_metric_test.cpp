#include "metrics/metric_pairs.h"

#include <vorel/tessalo2d.h>

#include <algorithm>

using namespace pairs_of_metrics;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();

/// (S + |D|) / 2 with the absolute value of the pencil D v = l S v, by the root of S: an
/// independent way, in extended precision. The axes are scaled first.
matrix expected_minimum(const metric& a, const metric& b)
{
    matrix s = reference::combination<3>(1, reference::full(a), 1, reference::full(b));
    matrix d = reference::combination<3>(1, reference::full(a), -1, reference::full(b));
    real unit[3];
    for (std::size_t i = 0; i < 3; ++i) unit[i] = std::sqrt(s[i][i]);
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) {
            s[i][j] /= unit[i] * unit[j];
            d[i][j] /= unit[i] * unit[j];
        }
    const matrix root = reference::spectral(s, [](real l) { return std::sqrt(l); });
    const matrix inverse = reference::spectral(s, [](real l) { return 1 / std::sqrt(l); });
    const matrix e =
        reference::spectral(inverse * d * inverse, [](real l) { return (1 + std::fabs(l)) / 2; });
    matrix m = root * e * root;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) m[i][j] *= unit[i] * unit[j];
    return m;
}

void expect_both(const metric& m, const metric& a, const metric& b)
{
    expect_covers(m, a, b);
    expect_touches(m, a, b);
}

} // namespace

TEST(MinimumMetric, AZeroMetricIsNoConstraint)
{
    std::mt19937 draw(1);
    const metric zero = {};
    const metric negative_zero = {{-0.0, -0.0, -0.0, -0.0, -0.0, -0.0}};
    const metric others[] = {
        reference::random_metric<3>(draw, 1e3), reference::random_metric<3>(draw, 1e3, 1e-310),
        reference::random_symmetric<3>(draw, {0, 0, 1}),
        reference::random_symmetric<3>(draw, {-1e-13L, 0, 1}), diagonal(1, 2, 3)};
    for (const metric& other : others)
        for (const metric& none : {zero, negative_zero}) {
            EXPECT_TRUE(same_bits(minimum(none, other), other));
            EXPECT_TRUE(same_bits(minimum(other, none), other));
        }
    EXPECT_TRUE(same_bits(minimum(zero, zero), zero));
}

TEST(MinimumMetric, AnEqualPairComesBackAsItIs)
{
    for (unsigned seed = 1; seed <= 100; ++seed) {
        std::mt19937 draw(seed);
        for (const pair_maker& maker : all_pairs) {
            const metric m = maker.make(draw).first;
            ASSERT_TRUE(same_bits(minimum(m, m), m)) << maker << ", seed " << seed;
        }
    }
}

TEST(MinimumMetric, WhatIsNoMetricIsNoConstraint)
{
    const metric good = {{4.0, 1.0, 3.0, 0.5, 0.25, 2.0}};
    std::vector<metric> bad = {diagonal(-1, -1, -1),
                               diagonal(1, -1, 1),
                               diagonal(0, -1, 0),
                               {{1.0, 2.0, 1.0, 0.0, 0.0, 1.0}},
                               {{0.0, 1.0, 0.0, 0.0, 0.0, 0.0}},
                               {{1e-300, 1e300, 1e-300, 0.0, 0.0, 1.0}},
                               {{1e300, 0.0, 1e300, 0.0, 1.5e300, 1e300}}};
    for (std::size_t k = 0; k < 6; ++k)
        for (const double x : {double(NAN), INF, -INF}) {
            metric m = good;
            m[k] = x;
            bad.push_back(m);
        }
    for (const metric& m : bad) {
        EXPECT_TRUE(same_bits(minimum(m, good), good));
        EXPECT_TRUE(same_bits(minimum(good, m), good));
        EXPECT_TRUE(same_bits(minimum(m, metric{}), metric{})) << "zero is a metric";
        EXPECT_TRUE(same_bits(minimum(metric{}, m), metric{}));
        for (const metric& n : bad) {
            metric result = good;
            EXPECT_FALSE(tessalo::minimum_metric(m, n, result));
            EXPECT_TRUE(same_bits(result, n)) << "the second one";
        }
    }
}

TEST(MinimumMetric, AnEigenvalueMayBeNegativeByABillionthOfAThousandth)
{
    const metric other = diagonal(2, 2, 2);
    const metric within = diagonal(1, 4, -3.9e-12L);
    const metric beyond = diagonal(1, 4, -4.1e-12L);
    EXPECT_TRUE(same_bits(minimum(within, other), diagonal(2, 4, 2)));
    EXPECT_TRUE(same_bits(minimum(beyond, other), other));
    for (unsigned seed = 1; seed <= 100; ++seed) {
        std::mt19937 draw(seed);
        const metric tilted = reference::random_symmetric<3>(draw, {-0.9e-12L, 0.5L, 1});
        const metric more = reference::random_symmetric<3>(draw, {-1.1e-12L, 0.5L, 1});
        const metric small = diagonal(1e-3L, 1e-3L, 1e-3L);
        EXPECT_FALSE(same_bits(minimum(tilted, small), small)) << "seed " << seed;
        EXPECT_TRUE(same_bits(minimum(more, small), small)) << "seed " << seed;
    }
}

TEST(MinimumMetric, WhatTheToleranceLetsPassIsNotBlownUpByAThinAxis)
{
    // The determinant of the first two axes is -2.5e-13; 2.5e-13 on the diagonal make it a needle,
    // and of two needles in different directions the intersection is the sum.
    const metric a = {{1.0, 5e-7, 0.0, 0.0, 0.0, 1.0}};
    for (const real thin : {1e-20L, 1e-100L, 1e-300L}) {
        const metric m = minimum(a, diagonal(1, thin, 1));
        EXPECT_NEAR(m[0], 2.0, 1e-6);
        EXPECT_NEAR(m[1], 5e-7, 1e-12);
        EXPECT_NEAR(m[2], 2.5e-13, 1e-18);
        EXPECT_EQ(m[3], 0.0);
        EXPECT_EQ(m[4], 0.0);
        EXPECT_NEAR(m[5], 1.0, 1e-15);
    }
}

TEST(MinimumMetric, CoversWhatIsAMetricByToleranceAndAddsNoMoreThanTheTolerance)
{
    const metric thin[] = {diagonal(1, 1e-12L, 1),       diagonal(1e-3L, 1e-16L, 1),
                           diagonal(1, 1e-20L, 1),       diagonal(1, 1e-300L, 1),
                           diagonal(1e-30L, 1e-300L, 1), diagonal(0, 1e-300L, 0)};
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 draw(seed);
        std::uniform_real_distribution<double> small(-3e-7, 3e-7);
        std::uniform_real_distribution<double> tiny(-3e-13, 3e-13);
        std::uniform_real_distribution<double> any(-0.5, 0.5);
        const metric operands[] = {{{1.0, small(draw), 0.0, any(draw), small(draw), 1.0}},
                                   {{1.0, small(draw), tiny(draw), any(draw), small(draw), 1.0}},
                                   {{1.0, tiny(draw), tiny(draw), small(draw), tiny(draw), 0.0}},
                                   reference::random_symmetric<3>(draw, {-9e-13L, 0.5L, 1}),
                                   reference::random_symmetric<3>(draw, {-9e-13L, -9e-13L, 1})};
        for (const metric& a : operands)
            for (const metric& b : thin) {
                SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << a[2] << ", " << b[2]);
                const metric m = minimum(a, b);
                ASSERT_TRUE(same_bits(minimum(b, a), m));
                // The operand may have nothing on its diagonal, or less.
                matrix unit = reference::full(m);
                for (std::size_t i = 0; i < 3; ++i)
                    unit[i][i] = std::max({m(i, i), b(i, i), std::fabs(a(i, i))});
                ASSERT_GE(slack(m, a, unit)[0], -ROUNDING);
                ASSERT_GE(slack(m, b, unit)[0], -ROUNDING);
                // The sum of the two, with a diagonal raised by 11 times the tolerance of an
                // eigenvalue of 1.6 at most. E has errors of up to a sixteenth, where S is about to
                // be singular.
                for (std::size_t i = 0; i < 3; ++i)
                    ASSERT_LE(m(i, i), 1.1 * (a(i, i) + b(i, i) + 11 * 1.6e-12));
                ASSERT_TRUE(same_bits(minimum(m, a), m));
                ASSERT_TRUE(same_bits(minimum(b, m), m));
            }
    }
}

TEST(MinimumMetric, OfDiagonalMetricsIsTheLargerEntryExactly)
{
    EXPECT_TRUE(same_bits(minimum(diagonal(4, 1, 7), diagonal(1, 9, 7)), diagonal(4, 9, 7)));
    EXPECT_TRUE(same_bits(minimum(diagonal(0, 1, 0), diagonal(3, 0, 0)), diagonal(3, 1, 0)));
    EXPECT_TRUE(same_bits(minimum(diagonal(1e-300L, 1e300L, 1), diagonal(1e-301L, 1e301L, 1.5L)),
                          diagonal(1e-300L, 1e301L, 1.5L)));
    const double largest = std::numeric_limits<double>::max();
    EXPECT_TRUE(same_bits(minimum(diagonal(largest, 1, 1), diagonal(largest, 2, 0)),
                          diagonal(largest, 2, 1)));
}

TEST(MinimumMetric, AgreesWithTheRootOfTheSumInExtendedPrecision)
{
    for (const double condition : {10.0, 1e4, 1e8})
        for (unsigned seed = 1; seed <= 300; ++seed) {
            std::mt19937 draw(seed);
            const auto [a, b] = with_conditions(draw, condition);
            // Entries as they stand are exact here, so only the method's own error is seen.
            ASSERT_LT(scaled_difference(minimum(a, b), expected_minimum(a, b)),
                      ROUNDING * std::sqrt(condition))
                << "condition " << condition << ", seed " << seed;
        }
}

TEST(MinimumMetric, IsTheLargerOfTheTwoInTheCommonBasis)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        std::mt19937 draw(seed);
        std::uniform_real_distribution<double> entry(-0.3, 0.3);
        std::uniform_real_distribution<double> value(0.1, 10.0);
        // Rows of x are the dual basis: x' diag(values) x.
        matrix x;
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t j = 0; j < 3; ++j) x[i][j] = entry(draw) + (i == j ? 1.0 : 0.0);
        std::vector<real> first;
        std::vector<real> second;
        std::vector<real> larger;
        for (int k = 0; k < 3; ++k) {
            first.push_back(value(draw));
            second.push_back(value(draw));
            larger.push_back(std::max(first.back(), second.back()));
        }
        const auto with = [&x](const std::vector<real>& values) {
            return reference::transpose(x) * reference::diagonal<3>(values) * x;
        };
        const metric m = minimum(reference::packed(with(first)), reference::packed(with(second)));
        ASSERT_LT(scaled_difference(m, with(larger)), 1e-13) << "seed " << seed;
    }
}

TEST(MinimumMetric, HasTheLeastDeterminantOfAllThatCoverBoth)
{
    const auto determinant = [](const matrix& m) {
        return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    };
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        std::normal_distribution<double> entry(0.0, 1.0);
        const auto [a, b] = with_conditions(draw, 100.0);
        const real least = determinant(reference::full(minimum(a, b)));
        const matrix first = reference::full(a);
        const matrix d = reference::combination<3>(1, reference::full(b), -1, first);
        for (int trial = 0; trial < 20; ++trial) {
            // A plus the positive part of B - A under a random congruence covers both.
            matrix t;
            for (std::size_t i = 0; i < 3; ++i)
                for (std::size_t j = 0; j < 3; ++j) t[i][j] = entry(draw) + (i == j ? 2.0 : 0.0);
            const matrix back = reference::inverse(t);
            const matrix part = reference::spectral(reference::transpose(t) * d * t,
                                                    [](real l) { return std::fmax(l, real(0)); });
            const matrix cover =
                reference::combination<3>(1, first, 1, reference::transpose(back) * part * back);
            ASSERT_GE(determinant(cover), least * (1 - 1e-12L)) << "seed " << seed;
        }
    }
}

TEST(MinimumMetric, AnOperandThatCoversTheOtherComesBackBitForBit)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        std::mt19937 draw(seed);
        const metric a = reference::random_metric<3>(draw, 1e3);
        const metric more = reference::random_symmetric<3>(draw, {0.01L, 2, 500});
        metric b = a;
        for (std::size_t k = 0; k < 6; ++k) b[k] += more[k];
        ASSERT_TRUE(same_bits(minimum(a, b), b)) << "seed " << seed;
        ASSERT_TRUE(same_bits(minimum(b, a), b)) << "seed " << seed;
    }
}

TEST(MinimumMetric, OfProportionalOperandsIsTheLargerOneBitForBit)
{
    for (const double condition : {10.0, 1e12})
        for (const double factor : {1.5, 3.0, 1e10, 1e-3, 1e-100}) {
            for (unsigned seed = 1; seed <= 100; ++seed) {
                std::mt19937 draw(seed);
                const metric a = reference::random_metric<3>(draw, condition);
                metric b = a;
                for (double& x : b.data) x *= factor;
                const metric larger = factor > 1.0 ? b : a;
                ASSERT_TRUE(same_bits(minimum(a, b), larger)) << factor << ", seed " << seed;
                ASSERT_TRUE(same_bits(minimum(b, a), larger)) << factor << ", seed " << seed;
            }
        }
}

TEST(MinimumMetric, OfConstraintsInSeparateDirectionsIsTheirSum)
{
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        const auto [a, b] = with_eigenvalues(draw, {0, 0, 2}, {0, 0, 5});
        const matrix sum = reference::combination<3>(1, reference::full(a), 1, reference::full(b));
        // Directions close to each other share what the entries' own rounding leaves open.
        ASSERT_LT(scaled_difference(minimum(a, b), sum), 1e-13) << "seed " << seed;
    }
}

TEST(MinimumMetric, OfConstraintsInOnePlaneIsAsTightAsInSpace)
{
    // The sum of the two covers both as well, but is more than is needed.
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        const matrix r = reference::random_rotation<3>(draw);
        const auto turned = [&r](const std::vector<real>& values) {
            return r * reference::diagonal<3>(values) * reference::transpose(r);
        };
        const metric a = reference::packed(turned({0, 1, 4}));
        const metric b = reference::packed(turned({0, 4, 1}));
        ASSERT_LT(scaled_difference(minimum(a, b), turned({0, 4, 4})), 1e-13) << "seed " << seed;
    }
}

TEST(MinimumMetric, OfThinConstraintsInOnePlaneIsAsTightAsInSpace)
{
    for (const real thin : {1e3L, 1e6L, 1e9L, 1e12L})
        for (unsigned seed = 1; seed <= 200; ++seed) {
            std::mt19937 draw(seed);
            const matrix r = reference::random_rotation<3>(draw);
            const auto turned = [&r](const std::vector<real>& values) {
                return r * reference::diagonal<3>(values) * reference::transpose(r);
            };
            const metric a = reference::packed(turned({0, 1, 2 * thin}));
            const metric b = reference::packed(turned({0, 4, thin}));
            ASSERT_LT(scaled_difference(minimum(a, b), turned({0, 4, 2 * thin})), 1e-13)
                << "thin " << static_cast<double>(thin) << ", seed " << seed;
        }
}

TEST(MinimumMetric, CoversCloseNeedlesAndIsHardlyMoreThanTheirSum)
{
    for (const double tilt : {1e-6, 1e-7, 3e-8, 1.5e-8, 1e-8, 3e-9, 1e-9, 1e-10})
        for (const double third : {0.0, 1.0}) {
            SCOPED_TRACE(testing::Message() << "tilt " << tilt << ", third " << third);
            const double u = 1.0 + tilt;
            const double v = 1.0 - tilt;
            const metric a = {{u * u, u * v, v * v, 0.0, 0.0, third}};
            const metric b = {{v * v, u * v, u * u, 0.0, 0.0, 2 * third}};
            const metric m = minimum(a, b);
            expect_both(m, a, b);
            for (std::size_t k = 0; k < 3; ++k) EXPECT_LE(m[k], 1.01 * (a[k] + b[k]));
        }
}

TEST(MinimumMetric, KeepsAnAxisThatNeitherConstrainsFree)
{
    const metric a = {{4.0, 1.0, 2.0, 0.0, 0.0, 0.0}};
    const metric b = {{1.0, 0.5, 8.0, 0.0, 0.0, 0.0}};
    const metric m = minimum(a, b);
    EXPECT_EQ(m[3], 0.0);
    EXPECT_EQ(m[4], 0.0);
    EXPECT_EQ(m[5], 0.0);
    expect_both(m, a, b);
}

TEST(MinimumMetric, OfManyCoversThemAll)
{
    for (unsigned seed = 1; seed <= 50; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 draw(seed);
        std::vector<metric> all;
        metric m = {};
        for (int k = 0; k < 20; ++k) {
            all.push_back(reference::random_metric<3>(draw, 1e6));
            ASSERT_TRUE(tessalo::minimum_metric(all.back(), m, m));
        }
        for (const metric& a : all) ASSERT_GE(slack(m, a, m)[0], -20 * ROUNDING);
    }
}

TEST(MinimumMetric, AnswersForAnyBits)
{
    std::mt19937_64 draw(3);
    int both = 0;
    for (int trial = 0; trial < 200000; ++trial) {
        metric a;
        metric b;
        for (metric* m : {&a, &b})
            for (double& x : m->data) {
                // Random bits, or one of the values that break things.
                const std::uint64_t bits = draw();
                std::memcpy(&x, &bits, sizeof x);
                const double special[] = {0.0, -0.0,   1.0,   -1.0,   INF,
                                          NAN, 5e-324, 1e308, 1e-308, 1e-160};
                if (bits % 3 == 0) x = special[(bits >> 8) % 10];
                if (bits % 5 == 0) x = std::fabs(x);
            }
        metric result;
        const bool status = tessalo::minimum_metric(a, b, result);
        if (status && !same_bits(result, a) && !same_bits(result, b)) ++both;
        ASSERT_TRUE(status || same_bits(result, b));
    }
    EXPECT_GT(both, 0);
}

TEST(MinimumMetric, WorksUpToTheEndsOfTheRange)
{
    // An entry is at most the sum of the operands' entries, so 0.8e308 each still fits.
    const metric a = {{0.8e308, 0.1e308, 0.2e308, 0.0, 0.0, 0.5e308}};
    const metric b = {{0.2e308, -0.1e308, 0.8e308, 0.0, 0.0, 0.7e308}};
    expect_both(minimum(a, b), a, b);
    metric c = a;
    metric d = b;
    for (double& x : c.data) x = x * 1e-308 * 1e-305;
    for (double& x : d.data) x = x * 1e-308 * 1e-305;
    const metric m = minimum(c, d);
    const metric whole = minimum(a, b);
    for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(m[k] * 1e305, whole[k] * 1e-308, 1e-13) << k;
}
