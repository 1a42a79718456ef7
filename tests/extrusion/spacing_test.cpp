#include "extrusion/spacing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using namespace vorel::tessalo2d;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();

} // namespace

TEST(GeometricFraction, EqualSizesGiveUniformSpacing)
{
    EXPECT_EQ(geometric_fraction(0.5, 1.0, 1.0), 0.5);
    for (const double h : {1e-300, 0.3, 1.0, 7.0, 1e300})
        for (const double t : {0.0, 0.1, 1.0 / 3.0, 0.5, 0.9, 1.0, 1.5, -2.0})
            EXPECT_EQ(geometric_fraction(t, h, h), t) << t << ", " << h;
}

TEST(GeometricFraction, EndsAreTheEnds)
{
    for (const double h1 :
         {0.01, 0.5, 0.9985, 0.999, 0.9995, 1.0, 1.0005, 1.001, 1.0015, 3.0, 1e4}) {
        EXPECT_EQ(geometric_fraction(0.0, 1.0, h1), 0.0) << h1;
        EXPECT_EQ(geometric_fraction(1.0, 1.0, h1), 1.0) << h1;
    }
}

TEST(GeometricFraction, IsTheShareOfAGeometricProgression)
{
    // Sizes 1, 2, 4, 8: after one of four steps 1/15, after three 7/15. The ratio of the sizes at
    // the ends is 16.
    EXPECT_NEAR(geometric_fraction(0.25, 1.0, 16.0), 1.0 / 15.0, 1e-15);
    EXPECT_NEAR(geometric_fraction(0.75, 1.0, 16.0), 7.0 / 15.0, 1e-15);
    EXPECT_NEAR(geometric_fraction(0.25, 16.0, 1.0), 8.0 / 15.0, 1e-15);
    EXPECT_EQ(geometric_fraction(0.5, 1.0, 4.0), 1.0 / 3.0);
}

TEST(GeometricFraction, BoundsThemselvesTakeTheSeries)
{
    // At the bounds the series is cut after the third power of e = 0.001; the closed form is not.
    // The two are apart by the next term, about 1e-12 / 120 * t (t-1) (t-2) (t-3) (t-4), so the
    // series is recognised by its own digits.
    for (const double r : {0.999, 1.001}) {
        const double t = 0.3;
        const double e = r - 1.0;
        const double series =
            t * (1.0 + 0.5 * e * (t - 1.0) + (1.0 / 6.0) * (e * e) * (t - 1.0) * (t - 2.0) +
                 (1.0 / 24.0) * (e * e * e) * (t - 1.0) * (t - 2.0) * (t - 3.0));
        EXPECT_EQ(geometric_fraction(t, 1.0, r), series) << r;
        const double beyond = r < 1.0 ? std::nextafter(r, 0.0) : std::nextafter(r, 2.0);
        const double closed = (std::pow(beyond, t) - 1.0) / (beyond - 1.0);
        EXPECT_EQ(geometric_fraction(t, 1.0, beyond), closed) << beyond;
        EXPECT_NE(series, closed);
    }
    // The test is on the ratio, not on its distance to 1: 1 - 0.999 is above 0.001 as computed.
    EXPECT_GT(1.0 - 0.999, 0.001);
}

TEST(GeometricFraction, SeriesAndClosedFormMeet)
{
    for (int i = -1000; i <= 1000; ++i) {
        const long double r = 1.0L + i * 1e-6L;
        for (const double t : {0.1, 0.5, 0.9, 1.7, -0.4}) {
            const double h1 = static_cast<double>(r);
            if (i == 0) continue;
            const long double closed =
                std::expm1(t * std::log(static_cast<long double>(h1))) / (h1 - 1.0L);
            EXPECT_NEAR(geometric_fraction(t, 1.0, h1), static_cast<double>(closed), 2e-13);
        }
    }
}

TEST(GeometricFraction, OutsideTheUnitIntervalItIsNotClamped)
{
    EXPECT_GT(geometric_fraction(1.5, 1.0, 2.0), 1.0);
    EXPECT_NEAR(geometric_fraction(1.5, 1.0, 2.0), std::pow(2.0, 1.5) - 1.0, 1e-15);
    EXPECT_LT(geometric_fraction(-0.5, 1.0, 2.0), 0.0);
    EXPECT_EQ(geometric_fraction(2.0, 1.0, 1.0), 2.0);
}

TEST(GeometricFraction, IsClampedAndMonotoneInside)
{
    for (const double r : {1e-200, 1e-5, 0.5, 0.9990001, 1.0009, 2.0, 1e5, 1e200}) {
        double before = 0.0;
        for (int i = 0; i <= 100; ++i) {
            const double f = geometric_fraction(i / 100.0, 1.0, r);
            EXPECT_GE(f, before) << r;
            EXPECT_LE(f, 1.0) << r;
            before = f;
        }
        EXPECT_EQ(before, 1.0) << r;
    }
}

TEST(GeometricFraction, NoNumberTakesTheClosedForm)
{
    EXPECT_TRUE(std::isnan(geometric_fraction(0.5, NOT_A_NUMBER, 1.0)));
    EXPECT_TRUE(std::isnan(geometric_fraction(0.5, 0.0, 0.0)));
    // pow(NaN, 0) is 1, so the closed form has a NaN by its divisor only; the series would give 0.
    EXPECT_TRUE(std::isnan(geometric_fraction(0.0, 0.0, 0.0)));
    EXPECT_EQ(geometric_fraction(0.5, INF, 1.0), 1.0) << "(0 - 1) / (0 - 1)";
}

TEST(LogarithmicMean, IsSymmetric)
{
    EXPECT_EQ(logarithmic_mean(2.0, 1.0), logarithmic_mean(1.0, 2.0));
    EXPECT_NEAR(logarithmic_mean(2.0, 1.0), 1.0 / std::log(2.0), 1e-15);
    std::mt19937 draw(1);
    for (int i = 0; i < 1000; ++i) {
        const double a = static_cast<double>(draw() + 1);
        const double b = static_cast<double>(draw() + 1);
        EXPECT_EQ(logarithmic_mean(a, b), logarithmic_mean(b, a));
    }
}

TEST(LogarithmicMean, OfEqualSizesIsTheSize)
{
    for (const double h : {1e-300, 0.1, 1.0, 3.7, 1e300}) EXPECT_EQ(logarithmic_mean(h, h), h);
}

TEST(LogarithmicMean, LiesBetweenTheGeometricAndTheArithmeticMean)
{
    for (const double r : {1.01, 1.05, 1.0999, 1.1, 1.11, 2.0, 10.0, 1e6}) {
        const double m = logarithmic_mean(3.0, 3.0 * r);
        EXPECT_GT(m, 3.0 * std::sqrt(r) * (1.0 - 1e-6)) << r;
        EXPECT_LT(m, 3.0 * (1.0 + r) / 2.0) << r;
    }
}

TEST(LogarithmicMean, SeriesTakesOverBelowATenth)
{
    // x / ln(1 + x) = 1 + x/2 - x^2/12 + x^3/24 - 19 x^4/720 + ..., whose next term 3 x^5 / 160 is
    // below 2e-7 up to x = 0.1. Here with y = x / 2.
    for (int i = 0; i < 1000; ++i) {
        const double x = i * 1e-4;
        const double h = 1.0 + x;
        const double y = (h - 1.0) / 2.0;
        const double c = std::nextafter(19.0 / 45.0, 0.0);
        EXPECT_EQ(logarithmic_mean(1.0, h),
                  1.0 + y * (1.0 - y * (1.0 / 3.0 - y * (1.0 / 3.0 - y * c))));
        if (i > 0) {
            const long double l = h - 1.0L;
            const long double exact = l / std::log1p(l);
            EXPECT_NEAR(logarithmic_mean(1.0, h), static_cast<double>(exact), 2e-7);
        }
    }
    EXPECT_EQ(logarithmic_mean(1.0, 1.125), 0.125 / std::log(1.125));
    EXPECT_EQ(logarithmic_mean(8.0, 9.0), 0.125 / std::log(1.125) * 8.0);
}

TEST(LogarithmicMean, LogarithmIsOfTheRoundedSum)
{
    // ln(1 + x) with 1 + x rounded, not log1p: the two differ in their bits here.
    const double x = (4.0 - 3.0) / 3.0;
    ASSERT_NE(x / std::log(1.0 + x) * 3.0, x / std::log1p(x) * 3.0);
    EXPECT_EQ(logarithmic_mean(3.0, 4.0), x / std::log(1.0 + x) * 3.0);
}

TEST(SubdivisionCount, RoundsInRatioAndTiesGoDown)
{
    EXPECT_EQ(subdivision_count(1.4, 1), 1u);
    EXPECT_EQ(subdivision_count(1.5, 1), 2u);
    EXPECT_EQ(subdivision_count(2.0, 1), 2u);
    EXPECT_EQ(subdivision_count(0.0, 1), 0u);
    EXPECT_EQ(subdivision_count(1e-300, 1), 0u) << "its square is 0";
    EXPECT_EQ(subdivision_count(1e-100, 1), 1u);
    // With steps of 5 the dividing line is the square root of 50, 7.0710678...
    EXPECT_EQ(subdivision_count(7.0710678118654746, 5), 5u);
    EXPECT_EQ(subdivision_count(7.08, 5), 10u);
}

TEST(SubdivisionCount, ExactTiesGoDown)
{
    std::size_t ties = 0;
    for (std::size_t a = 1; a < 5000; ++a) {
        const auto line = static_cast<double>(a * (a + 1));
        const double x = std::sqrt(line);
        if (x * x != line) continue;
        ++ties;
        EXPECT_EQ(subdivision_count(x, 1), a);
        EXPECT_EQ(subdivision_count(std::nextafter(x, 1e9), 1), a + 1);
    }
    EXPECT_GT(ties, 1000u);
}

TEST(SubdivisionCount, OfTwoIsEven)
{
    EXPECT_EQ(subdivision_count(0.0, 2), 0u);
    EXPECT_EQ(subdivision_count(0.1, 2), 2u);
    EXPECT_EQ(subdivision_count(2.9, 2), 4u);
    EXPECT_EQ(subdivision_count(2.8, 2), 2u) << "7.84 is not above 8";
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(subdivision_count(i * 0.137, 2) % 2, 0u);
}

TEST(SubdivisionCount, AgreesWithTheRuleForManyNumbers)
{
    for (int i = 0; i <= 20000; ++i)
        for (const std::size_t step : {1u, 2u, 3u}) {
            const double x = i / 64.0; // exact, and so are its square and the products
            std::size_t a = 0;
            while (static_cast<double>(a + step) <= x) a += step;
            const double line = static_cast<double>(a) * static_cast<double>(a + step);
            EXPECT_EQ(subdivision_count(x, step), x * x > line ? a + step : a) << x << " " << step;
        }
}

TEST(SubdivisionCount, NoNumberIsNothing)
{
    EXPECT_EQ(subdivision_count(NOT_A_NUMBER, 1), 0u);
    EXPECT_EQ(subdivision_count(NOT_A_NUMBER, 2), 0u);
}

TEST(SubdivisionCount, CountsBeyondSixtyFourBitsSaturate)
{
    EXPECT_EQ(subdivision_count(0x1p63, 1), (std::size_t(1) << 63) + 1)
        << "a * b wraps to 2^63, far below the square";
    // k is the largest value, a is k, and b = a + 1 wraps to 0: a * b is 0 and b comes back.
    EXPECT_EQ(subdivision_count(0x1p64, 1), 0u);
    EXPECT_EQ(subdivision_count(INF, 1), 0u);
    // With steps of 2: a = 2 k wraps to the largest even number, b to 0.
    EXPECT_EQ(subdivision_count(INF, 2), 0u);
    // The largest double below 2^64 is 2^64 - 2048; its product with the next number wraps to
    // 2048 * 2047, far below the square.
    EXPECT_EQ(subdivision_count(0x1p64 - 2048.0, 1), LARGEST - 2046);
}

TEST(SubdivisionCount, NegativeNumbersCountAsNoneBelow)
{
    EXPECT_EQ(subdivision_count(-0.0, 1), 0u);
    EXPECT_EQ(subdivision_count(-3.0, 2), 2u) << "9 is above 0 * 2";
    EXPECT_EQ(subdivision_count(-INF, 1), 1u);
}
