#include "metrics/generalized_eigen.h"

#include "metrics/reference.h"

#include <gtest/gtest.h>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

using metric2 = symmetric_fixed<double, 2>;
using metric3 = symmetric_fixed<double, 3>;
using reference::real;

/// |M2 v - l M1 v|, as a fraction of the two terms.
template <std::size_t D>
double residual(const symmetric_fixed<double, D>& m1, const symmetric_fixed<double, D>& m2,
                double l, const double* v)
{
    const auto first = reference::full(m1);
    const auto second = reference::full(m2);
    real error = 0;
    real size = 0;
    for (std::size_t i = 0; i < D; ++i) {
        real left = 0;
        real right = 0;
        for (std::size_t j = 0; j < D; ++j) {
            left += second[i][j] * v[j];
            right += l * first[i][j] * v[j];
        }
        error = std::fmax(error, std::fabs(left - right));
        size = std::fmax(size, std::fmax(std::fabs(left), std::fabs(right)));
    }
    return static_cast<double>(error / size);
}

template <std::size_t D>
void expect_solved(unsigned seed, const symmetric_fixed<double, D>& m1,
                   const symmetric_fixed<double, D>& m2, double tolerance)
{
    double l[D];
    double v[D * D];
    ASSERT_TRUE(generalized_eigen(m1, m2, l, v, true)) << "seed " << seed;
    for (std::size_t k = 0; k < D; ++k) {
        ASSERT_LE(l[k == 0 ? 0 : k - 1], l[k]) << "seed " << seed;
        real q = 0;
        for (std::size_t i = 0; i < D; ++i) q += real(v[k * D + i]) * v[k * D + i];
        ASSERT_NEAR(static_cast<double>(q), 1.0, 1e-15) << "seed " << seed;
        ASSERT_LT(residual(m1, m2, l[k], v + k * D), tolerance) << "seed " << seed;
    }
}

} // namespace

TEST(GeneralizedEigen2, OfDiagonalMatricesIsTheRatio)
{
    double l[2];
    double v[4];
    ASSERT_TRUE(generalized_eigen2({{4.0, 0.0, 1.0}}, {{8.0, 0.0, 16.0}}, l, v, true));
    EXPECT_EQ(l[0], 2.0);
    EXPECT_EQ(l[1], 16.0);
    EXPECT_EQ(std::fabs(v[0]), 1.0);
    EXPECT_EQ(v[1], 0.0);
    EXPECT_EQ(v[2], 0.0);
    EXPECT_EQ(std::fabs(v[3]), 1.0);
}

TEST(GeneralizedEigen2, SolvesTheRandomPencil)
{
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        std::mt19937 draw(seed);
        const metric2 m1 = reference::random_metric<2>(draw, 1e3);
        const metric2 m2 = reference::random_metric<2>(draw, 1e3);
        expect_solved(seed, m1, m2, 1e-9);
    }
}

TEST(GeneralizedEigen2, TheSecondMatrixNeedsOnlyToBeSymmetric)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        std::mt19937 draw(seed);
        const metric2 m1 = reference::random_metric<2>(draw, 10.0);
        expect_solved(seed, m1, reference::random_symmetric<2>(draw, {-3, 2}), 1e-12);
    }
}

TEST(GeneralizedEigen2, RefusesAFirstMatrixWithoutLeadingEntryOrPositiveDeterminant)
{
    double l[2];
    double v[4];
    const metric2 one = {{1.0, 0.0, 1.0}};
    EXPECT_FALSE(generalized_eigen2({{0.0, 0.0, 1.0}}, one, l, v, true));
    EXPECT_FALSE(generalized_eigen2({{0.0, 1.0, -1.0}}, one, l, v, true));
    EXPECT_FALSE(generalized_eigen2({{1.0, 1.0, 1.0}}, one, l, v, true));
    EXPECT_FALSE(generalized_eigen2({{1.0, 2.0, 1.0}}, one, l, v, true));
    EXPECT_FALSE(generalized_eigen2({{NAN, 0.0, 1.0}}, one, l, v, true));
    EXPECT_FALSE(generalized_eigen2({{1.0, 0.0, 1.0}}, {{NAN, 0.0, 1.0}}, l, v, true));
}

TEST(GeneralizedEigen2, PassesANegativeDefiniteFirstMatrix)
{
    const metric2 m1 = {{-4.0, 0.0, -1.0}};
    double l[2];
    double v[4];
    ASSERT_TRUE(generalized_eigen2(m1, {{8.0, 0.0, 16.0}}, l, v, true));
    for (int k = 0; k < 2; ++k)
        EXPECT_LT(residual<2>(m1, {{8.0, 0.0, 16.0}}, l[k], v + 2 * k), 1e-15);
}

TEST(GeneralizedEigen2, WithoutNormalisingVectorsKeepTheLengthOfTheirMap)
{
    // det = 4, s = 2, S = diag(4, 4) * 4 / 4: the vector (1, 0) becomes (s, 0), (0, 1) becomes
    // (-b, a).
    double l[2];
    double v[4];
    ASSERT_TRUE(generalized_eigen2({{4.0, 0.0, 1.0}}, {{4.0, 0.0, 1.0}}, l, v, false));
    EXPECT_EQ(v[0], 2.0);
    EXPECT_EQ(v[1], 0.0);
    EXPECT_EQ(v[2], 0.0);
    EXPECT_EQ(v[3], 4.0);
    ASSERT_TRUE(generalized_eigen2({{4.0, 0.0, 1.0}}, {{4.0, 0.0, 1.0}}, l, v, true));
    EXPECT_EQ(v[0], 1.0);
    EXPECT_EQ(v[3], 1.0);
}

TEST(GeneralizedEigen2, VectorsWhoseSquaredLengthUnderflowsStayAsTheyAre)
{
    // Entries of about 1e-180, whose squares are 0: nothing to divide by.
    const metric2 m1 = {{1e-60, 0.0, 1e-60}};
    const metric2 m2 = {{1.0, 0.5, 2.0}};
    double l[2];
    double scaled[4];
    double plain[4];
    ASSERT_TRUE(generalized_eigen2(m1, m2, l, scaled, true));
    ASSERT_TRUE(generalized_eigen2(m1, m2, l, plain, false));
    for (int k = 0; k < 4; ++k) {
        EXPECT_NE(plain[k], 0.0);
        EXPECT_EQ(scaled[k], plain[k]);
    }
}

TEST(GeneralizedEigen3, OfDiagonalMatricesIsTheRatio)
{
    double l[3];
    double v[9];
    ASSERT_TRUE(generalized_eigen3(reference::diagonal_metric<3>({4, 1, 16}),
                                   reference::diagonal_metric<3>({8, 16, 16}), l, v, true));
    EXPECT_NEAR(l[0], 1.0, 1e-14);
    EXPECT_NEAR(l[1], 2.0, 1e-14);
    EXPECT_NEAR(l[2], 16.0, 1e-14);
    EXPECT_NEAR(std::fabs(v[2]), 1.0, 1e-14);
    EXPECT_NEAR(std::fabs(v[3]), 1.0, 1e-14);
    EXPECT_NEAR(std::fabs(v[7]), 1.0, 1e-14);
}

TEST(GeneralizedEigen3, SolvesTheRandomPencil)
{
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        std::mt19937 draw(seed);
        const metric3 m1 = reference::random_metric<3>(draw, 100.0);
        const metric3 m2 = reference::random_metric<3>(draw, 100.0);
        expect_solved(seed, m1, m2, 1e-9);
    }
}

TEST(GeneralizedEigen3, TheSecondMatrixNeedsOnlyToBeSymmetric)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        std::mt19937 draw(seed);
        const metric3 m1 = reference::random_metric<3>(draw, 10.0);
        expect_solved(seed, m1, reference::random_symmetric<3>(draw, {-3, 2, 5}), 1e-12);
    }
}

TEST(GeneralizedEigen3, RefusesAFirstMatrixWithoutARegularFactor)
{
    double l[3];
    double v[9];
    const metric3 one = reference::diagonal_metric<3>({1, 1, 1});
    // Rows of zeros have a factor, a singular one.
    EXPECT_FALSE(generalized_eigen3(reference::diagonal_metric<3>({0, 1, 1}), one, l, v, true));
    EXPECT_FALSE(generalized_eigen3(reference::diagonal_metric<3>({1, 0, 1}), one, l, v, true));
    EXPECT_FALSE(generalized_eigen3(reference::diagonal_metric<3>({1, 1, 0}), one, l, v, true));
    EXPECT_FALSE(generalized_eigen3(reference::diagonal_metric<3>({0, 0, 0}), one, l, v, true));
    EXPECT_FALSE(generalized_eigen3(reference::diagonal_metric<3>({-1, -1, -1}), one, l, v, true));
    EXPECT_FALSE(generalized_eigen3({{1.0, 2.0, 1.0, 0.0, 0.0, 1.0}}, one, l, v, true));
    EXPECT_FALSE(generalized_eigen3({{1.0, 0.0, 1.0, 0.0, 0.0, NAN}}, one, l, v, true));
    EXPECT_FALSE(generalized_eigen3(one, {{NAN, NAN, NAN, NAN, NAN, NAN}}, l, v, true));
}

TEST(GeneralizedEigen3, WithoutNormalisingVectorsAreTheMappedEigenvectors)
{
    // M1 = diag(1, 4, 16): B = diag(8, 4, 2), and B applied to the unit vectors keeps those
    // lengths.
    double l[3];
    double v[9];
    ASSERT_TRUE(generalized_eigen3(reference::diagonal_metric<3>({1, 4, 16}),
                                   reference::diagonal_metric<3>({1, 8, 48}), l, v, false));
    EXPECT_NEAR(std::fabs(v[0]), 8.0, 1e-13);
    EXPECT_NEAR(std::fabs(v[4]), 4.0, 1e-13);
    EXPECT_NEAR(std::fabs(v[8]), 2.0, 1e-13);
}
