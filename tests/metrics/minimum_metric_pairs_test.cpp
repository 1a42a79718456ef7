#include "metrics/metric_pairs.h"

#include <cctype>
#include <string>

using namespace pairs_of_metrics;

namespace {

class MinimumMetricOf : public testing::TestWithParam<pair_maker> {};

} // namespace

TEST_P(MinimumMetricOf, CoversBothOperandsAndTouchesThem)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 draw(seed);
        const auto [a, b] = GetParam().make(draw);
        const metric m = minimum(a, b);
        expect_covers(m, a, b);
        // Below 0 there is nothing to touch.
        if (GetParam().what != kind::slightly_negative) expect_touches(m, a, b);
        if (HasFatalFailure()) return;
    }
}

TEST_P(MinimumMetricOf, DoesNotDependOnTheOrderOfTheOperands)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        std::mt19937 draw(seed);
        const auto [a, b] = GetParam().make(draw);
        const metric m = minimum(a, b);
        const metric n = minimum(b, a);
        // Operands that cover each other to rounding: either may come back.
        const bool one_came_back = same_bits(m, a) || same_bits(m, b);
        ASSERT_TRUE(same_bits(m, n) ||
                    (one_came_back && scaled_difference(m, reference::full(n)) < ROUNDING))
            << "seed " << seed;
    }
}

TEST_P(MinimumMetricOf, WithAnOperandOnceMoreIsTheSameBitForBit)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        std::mt19937 draw(seed);
        const auto [a, b] = GetParam().make(draw);
        const metric m = minimum(a, b);
        ASSERT_TRUE(same_bits(minimum(m, a), m)) << "seed " << seed;
        ASSERT_TRUE(same_bits(minimum(b, m), m)) << "seed " << seed;
    }
}

TEST_P(MinimumMetricOf, MayOverwriteEitherOperand)
{
    for (unsigned seed = 1; seed <= 50; ++seed) {
        std::mt19937 draw(seed);
        const auto [a, b] = GetParam().make(draw);
        const metric apart = minimum(a, b);
        metric first = a;
        EXPECT_TRUE(tessalo::minimum_metric(first, b, first));
        EXPECT_TRUE(same_bits(first, apart)) << "seed " << seed;
        metric second = b;
        EXPECT_TRUE(tessalo::minimum_metric(a, second, second));
        EXPECT_TRUE(same_bits(second, apart)) << "seed " << seed;
    }
}

TEST_P(MinimumMetricOf, FollowsPowersOfTwoOfTheAxesBitForBit)
{
    if (GetParam().what != kind::ordinary) return;
    const double f[3] = {std::ldexp(1.0, -30), std::ldexp(1.0, 7), std::ldexp(1.0, 20)};
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        const auto [a, b] = GetParam().make(draw);
        const metric m = minimum(a, b);
        ASSERT_TRUE(same_bits(minimum(scaled(a, f), scaled(b, f)), scaled(m, f)))
            << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Pairs, MinimumMetricOf, testing::ValuesIn(all_pairs),
                         [](const testing::TestParamInfo<pair_maker>& test) {
                             std::string name = test.param.name;
                             for (char& c : name)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return name;
                         });
