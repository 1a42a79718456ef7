#include "metrics/symmetric2.h"

#include "metrics/reference.h"

#include <gtest/gtest.h>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(EigenSym2Values, AreAscending)
{
    double l[2];
    ASSERT_TRUE(eigen_sym2_values(2.0, 1.0, 2.0, l));
    EXPECT_EQ(l[0], 1.0);
    EXPECT_EQ(l[1], 3.0);
    ASSERT_TRUE(eigen_sym2_values(5.0, 0.0, -3.0, l));
    EXPECT_EQ(l[0], -3.0);
    EXPECT_EQ(l[1], 5.0);
    ASSERT_TRUE(eigen_sym2_values(0.0, 0.0, 0.0, l));
    EXPECT_EQ(l[0], 0.0);
    EXPECT_EQ(l[1], 0.0);
}

TEST(EigenSym2Values, TheSmallerOneComesFromTheDeterminantWhenCancellationWouldRuinIt)
{
    double l[2];
    // diag(1e20, 1): the sum has lost the 1.
    ASSERT_TRUE(eigen_sym2_values(1e20, 0.0, 1.0, l));
    EXPECT_EQ(l[0], 1.0);
    EXPECT_EQ(l[1], 1e20);
    // Negative definite: now the second one is small.
    ASSERT_TRUE(eigen_sym2_values(-1e20, 0.0, -1.0, l));
    EXPECT_EQ(l[0], -1e20);
    EXPECT_EQ(l[1], -1.0);
}

TEST(EigenSym2Values, AreFalseWhenNotFinite)
{
    double l[2];
    EXPECT_FALSE(eigen_sym2_values(NOT_A_NUMBER, 0.0, 1.0, l));
    EXPECT_FALSE(eigen_sym2_values(1.0, NOT_A_NUMBER, 1.0, l));
    EXPECT_FALSE(eigen_sym2_values(1.0, 0.0, INF, l));
    EXPECT_FALSE(eigen_sym2_values(1e200, 0.0, -1e200, l));
}

TEST(EigenSym2, AMultipleOfTheIdentityGetsTheAxes)
{
    for (const bool normalise : {false, true})
        for (const double a : {0.0, 3.0, -2.0, 1e-100}) {
            double l[2];
            double v[4];
            ASSERT_TRUE(eigen_sym2(a, 0.0, a, l, v, normalise));
            EXPECT_EQ(l[0], a);
            EXPECT_EQ(l[1], a);
            EXPECT_EQ(v[0], 1.0);
            EXPECT_EQ(v[1], 0.0);
            EXPECT_EQ(v[2], 0.0);
            EXPECT_EQ(v[3], 1.0);
        }
}

TEST(EigenSym2, TheCandidateWithTheLargerDifferenceIsTaken)
{
    double l[2];
    double v[4];
    // l = 1, 3. l1 - c = -1, l1 - a = -1: a tie goes to (b, l1 - a).
    ASSERT_TRUE(eigen_sym2(2.0, 1.0, 2.0, l, v, false));
    EXPECT_EQ(v[0], 1.0);
    EXPECT_EQ(v[1], -1.0);
    EXPECT_EQ(v[2], 1.0);
    EXPECT_EQ(v[3], 1.0);
    // (1 2; 2 4): l = 0, 5. l1 - c = -4 is larger than l1 - a = -1: (l1 - c, b).
    ASSERT_TRUE(eigen_sym2(1.0, 2.0, 4.0, l, v, false));
    EXPECT_EQ(l[0], 0.0);
    EXPECT_EQ(v[0], -4.0);
    EXPECT_EQ(v[1], 2.0);
    EXPECT_EQ(v[2], -2.0);
    EXPECT_EQ(v[3], -4.0);
}

TEST(EigenSym2, OnFalseTheVectorsAreNotWritten)
{
    double l[2];
    double v[4] = {7.0, 7.0, 7.0, 7.0};
    EXPECT_FALSE(eigen_sym2(NOT_A_NUMBER, 0.0, 1.0, l, v, true));
    for (const double x : v) EXPECT_EQ(x, 7.0);
}

TEST(EigenSym2, PutsRandomMatricesTogetherAgain)
{
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        std::mt19937 draw(seed);
        std::normal_distribution<double> entry(0.0, 1.0);
        const symmetric_fixed<double, 2> m = {{entry(draw), entry(draw), entry(draw)}};
        double l[2];
        double v[4];
        ASSERT_TRUE(eigen_sym2(m[0], m[1], m[2], l, v, true)) << "seed " << seed;
        ASSERT_LE(l[0], l[1]) << "seed " << seed;
        ASSERT_NEAR(v[0] * v[0] + v[1] * v[1], 1.0, 1e-15) << "seed " << seed;
        for (int k = 0; k < 2; ++k) {
            const double x = v[2 * k];
            const double y = v[2 * k + 1];
            ASSERT_NEAR(m[0] * x + m[1] * y, l[k] * x, 1e-14) << "seed " << seed;
            ASSERT_NEAR(m[1] * x + m[2] * y, l[k] * y, 1e-14) << "seed " << seed;
        }
    }
}

TEST(EigenSym2, KeepsASmallEigenvalueToFullPrecisionAlongTheAxes)
{
    // In any other direction the entries themselves have lost it.
    for (double ratio = 1e-13; ratio > 1e-290; ratio *= 1e-9) {
        double l[2];
        ASSERT_TRUE(eigen_sym2_values(ratio, 0.0, 1.0, l));
        EXPECT_NEAR(l[0] / ratio, 1.0, 4e-16) << ratio;
    }
}
