#include "metrics/jacobi3.h"

#include "metrics/reference.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace vorel::tessalo2d;

namespace {

struct decomposition {
    double values[3];
    matrix3 vectors;
    double rest;
};

decomposition decompose(const vorel::symmetric_fixed<double, 3>& m)
{
    matrix3 a;
    decomposition d;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) a.entry[i][j] = m(i, j);
    jacobi_eigen3(a, d.vectors);
    for (int k = 0; k < 3; ++k) d.values[k] = a[k][k];
    d.rest = std::max({std::fabs(a[0][1]), std::fabs(a[0][2]), std::fabs(a[1][2])});
    return d;
}

vorel::symmetric_fixed<double, 3> random_matrix(unsigned seed)
{
    std::mt19937 draw(seed);
    std::normal_distribution<double> entry(0.0, 1.0);
    vorel::symmetric_fixed<double, 3> m;
    for (double& x : m.data) x = entry(draw);
    return m;
}

} // namespace

TEST(JacobiEigen3, PutsRandomMatricesTogetherAgain)
{
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        const auto m = random_matrix(seed);
        const decomposition d = decompose(m);
        reference::matrix<3> v;
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t k = 0; k < 3; ++k) v[i][k] = d.vectors.entry[i][k];
        const auto one = reference::diagonal<3>({1, 1, 1});
        ASSERT_LT(reference::difference(reference::transpose(v) * v, one), 4e-15) << seed;
        const auto again = v * reference::diagonal<3>({d.values[0], d.values[1], d.values[2]}) *
                           reference::transpose(v);
        ASSERT_LT(reference::difference(again, reference::full(m)), 4e-15) << seed;
        ASSERT_LT(d.rest, 1e-15) << seed;
    }
}

TEST(JacobiEigen3, OfADiagonalMatrixIsExact)
{
    const decomposition d = decompose({{3.0, 0.0, -1e-300, 0.0, 0.0, 1e300}});
    EXPECT_EQ(d.values[0], 3.0);
    EXPECT_EQ(d.values[1], -1e-300);
    EXPECT_EQ(d.values[2], 1e300);
    for (int i = 0; i < 3; ++i)
        for (int k = 0; k < 3; ++k) EXPECT_EQ(d.vectors[i][k], i == k ? 1.0 : 0.0);
}

TEST(JacobiEigen3, TurnsNothingForAnEntryBelowTheRoundingErrorOfTheLargest)
{
    // 2^-53 of an entry is what rounding it may cost; a quarter of that is left alone.
    const double largest = 4.0;
    const double below = largest * std::ldexp(1.0, -56);
    for (const double sign : {1.0, -1.0}) {
        const decomposition d = decompose({{1.0, sign * below, 2.0, below, 0.0, sign * largest}});
        EXPECT_EQ(d.values[0], 1.0);
        EXPECT_EQ(d.values[1], 2.0);
        EXPECT_EQ(d.values[2], sign * largest);
        for (int i = 0; i < 3; ++i)
            for (int k = 0; k < 3; ++k) EXPECT_EQ(d.vectors[i][k], i == k ? 1.0 : 0.0);
    }
}

TEST(JacobiEigen3, KeepsTheOrderOfTheTwoValuesThatARotationParts)
{
    // A rotation by at most an eighth turn leaves the larger value where the larger entry was; the
    // eigenvalues of {{1, b}, {b, d}} are the roots of a quadratic equation.
    for (const double d : {1.0, 1.5, 2.0, 3.0, 6.0})
        for (const double b : {1.0, -1.0, 3.0}) {
            const decomposition found = decompose({{1.0, b, d, 0.0, 0.0, 20.0}});
            const double root = std::sqrt((d - 1.0) * (d - 1.0) + 4.0 * b * b);
            const bool tie_falls = d == 1.0 && b < 0.0;
            const double low = (1.0 + d - root) / 2.0;
            const double high = (1.0 + d + root) / 2.0;
            EXPECT_NEAR(found.values[0], tie_falls ? high : low, 1e-14) << d << ' ' << b;
            EXPECT_NEAR(found.values[1], tie_falls ? low : high, 1e-14) << d << ' ' << b;
            EXPECT_EQ(found.values[2], 20.0);
            EXPECT_GE(found.vectors[0][0], std::sqrt(0.5) - 1e-15) << d << ' ' << b;
        }
}

TEST(JacobiEigen3, TurnsANegatedMatrixByTheSameRotations)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        const auto m = random_matrix(seed);
        auto negated = m;
        for (double& x : negated.data) x = -x;
        const decomposition d = decompose(m);
        const decomposition n = decompose(negated);
        for (int k = 0; k < 3; ++k) ASSERT_EQ(d.values[k], -n.values[k]) << seed;
        ASSERT_EQ(std::memcmp(&d.vectors, &n.vectors, sizeof d.vectors), 0) << seed;
    }
}

TEST(JacobiEigen3, LeavesARowOfZerosAlone)
{
    const decomposition d = decompose({{2.0, 1.0, 2.0, 0.0, 0.0, 0.0}});
    EXPECT_EQ(d.values[2], 0.0);
    EXPECT_EQ(d.vectors[2][2], 1.0);
    EXPECT_NEAR(std::min(d.values[0], d.values[1]), 1.0, 1e-15);
    EXPECT_NEAR(std::max(d.values[0], d.values[1]), 3.0, 1e-15);
    const decomposition zero = decompose({});
    for (const double x : zero.values) EXPECT_EQ(x, 0.0);
}

TEST(JacobiEigen3, FindsRepeatedEigenvalues)
{
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        const auto m = reference::random_symmetric<3>(draw, {5, 5, -2});
        decomposition d = decompose(m);
        std::sort(d.values, d.values + 3);
        ASSERT_NEAR(d.values[0], -2.0, 1e-14) << seed;
        ASSERT_NEAR(d.values[1], 5.0, 1e-14) << seed;
        ASSERT_NEAR(d.values[2], 5.0, 1e-14) << seed;
    }
}

TEST(JacobiEigen3, EndsForEntriesThatAreNoNumbers)
{
    constexpr double INF = std::numeric_limits<double>::infinity();
    for (const double bad : {double(NAN), INF, -INF})
        for (std::size_t k = 0; k < 6; ++k) {
            vorel::symmetric_fixed<double, 3> m = {{2.0, 1.0, 2.0, 0.5, 0.25, 3.0}};
            m[k] = bad;
            (void)decompose(m);
        }
}
