#include "metrics/symmetric3.h"

#include "metrics/lapack.h"
#include "metrics/reference.h"

#include <gtest/gtest.h>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

using metric3 = symmetric_fixed<double, 3>;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

reference::matrix<3> by_rows(const double (&a)[9])
{
    reference::matrix<3> m;
    for (std::size_t k = 0; k < 9; ++k) m[k / 3][k % 3] = a[k];
    return m;
}

/// Column k is vector k.
reference::matrix<3> by_columns(const double (&a)[9])
{
    return reference::transpose(by_rows(a));
}

struct factor {
    bool exists;
    reference::matrix<3> u;
};

factor factor_of(metric3 m)
{
    factor f;
    f.exists = cholesky_upper3(m[0], m[1], m[2], m[3], m[4], m[5]);
    f.u[0][0] = m[0];
    f.u[0][1] = m[1];
    f.u[1][1] = m[2];
    f.u[0][2] = m[3];
    f.u[1][2] = m[4];
    f.u[2][2] = m[5];
    return f;
}

void expect_factor(const metric3& m)
{
    const factor f = factor_of(m);
    ASSERT_TRUE(f.exists);
    const auto product = reference::transpose(f.u) * f.u;
    const auto target = reference::full(m);
    EXPECT_LE(reference::largest_entry(reference::combination<3>(1, product, -1, target)),
              1e-15L * reference::largest_entry(target));
}

} // namespace

TEST(InverseTranspose3, IsTheInverseTranspose)
{
    const double a[9] = {2.0, 0.0, 0.0, 1.0, 4.0, 0.0, 0.0, 3.0, 1.0};
    double b[9];
    double det = 0.0;
    inverse_transpose3(a, b, det);
    EXPECT_EQ(det, 8.0);
    const double expected[9] = {0.5, -0.125, 0.375, 0.0, 0.25, -0.75, 0.0, 0.0, 1.0};
    for (int k = 0; k < 9; ++k) EXPECT_EQ(b[k], expected[k]) << k;
}

TEST(InverseTranspose3, OfRandomMatricesTimesTheMatrixIsTheIdentity)
{
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        std::mt19937 draw(seed);
        std::normal_distribution<double> entry(0.0, 1.0);
        double a[9];
        for (double& x : a) x = entry(draw);
        double b[9];
        double det = 0.0;
        inverse_transpose3(a, b, det);
        const auto product = by_rows(a) * reference::transpose(by_rows(b));
        const auto one = reference::diagonal<3>({1, 1, 1});
        // The error grows with the condition of the matrix.
        ASSERT_LT(reference::difference(product, one), 1e-14 / std::fabs(det)) << "seed " << seed;
    }
}

TEST(InverseTranspose3, AMatrixWithoutVolumeLeavesThePlainCofactors)
{
    const double a[9] = {1.0, 2.0, 3.0, 2.0, 4.0, 6.0, 0.0, 1.0, 1.0};
    double b[9];
    double det = 7.0;
    inverse_transpose3(a, b, det);
    EXPECT_EQ(det, 0.0);
    const double expected[9] = {-2.0, -2.0, 2.0, 1.0, 1.0, -1.0, 0.0, 0.0, 0.0};
    for (int k = 0; k < 9; ++k) EXPECT_EQ(b[k], expected[k]) << k;
}

TEST(InverseTranspose3, MayOverwriteItsInput)
{
    double a[9] = {0.0, 2.0, 0.0, 0.0, 0.0, 4.0, 8.0, 0.0, 0.0};
    double det = 0.0;
    inverse_transpose3(a, a, det);
    EXPECT_EQ(det, 64.0);
    const double expected[9] = {0.0, 0.5, 0.0, 0.0, 0.0, 0.25, 0.125, 0.0, 0.0};
    for (int k = 0; k < 9; ++k) EXPECT_EQ(a[k], expected[k]) << k;
}

TEST(CholeskyUpper3, OfAnIntegerFactorIsThatFactor)
{
    // U = (2 1 3; 0 4 5; 0 0 6), M = U'U.
    const factor f = factor_of({{4.0, 2.0, 17.0, 6.0, 23.0, 70.0}});
    ASSERT_TRUE(f.exists);
    const double expected[3][3] = {{2.0, 1.0, 3.0}, {0.0, 4.0, 5.0}, {0.0, 0.0, 6.0}};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            EXPECT_NEAR(static_cast<double>(f.u[i][j]), expected[i][j], 4e-15) << i << j;
}

TEST(CholeskyUpper3, OfRandomMetricsMultipliesBack)
{
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        std::mt19937 draw(seed);
        SCOPED_TRACE(seed);
        expect_factor(reference::random_metric<3>(draw, 1e6));
    }
}

TEST(CholeskyUpper3, AcceptsRowsOfZeros)
{
    expect_factor({{0.0, 0.0, 4.0, 0.0, 2.0, 10.0}});
    expect_factor({{4.0, 0.0, 0.0, 2.0, 0.0, 10.0}});
    expect_factor({{4.0, 2.0, 10.0, 0.0, 0.0, 0.0}});
    expect_factor({{0.0, 0.0, 0.0, 0.0, 0.0, 9.0}});
    expect_factor({{0.0, 0.0, 9.0, 0.0, 0.0, 0.0}});
    expect_factor({{9.0, 0.0, 0.0, 0.0, 0.0, 0.0}});
    expect_factor({{0.0, 0.0, 0.0, 0.0, 0.0, 0.0}});
}

TEST(CholeskyUpper3, RefusesWhatIsNotSemiDefinite)
{
    const metric3 refused[] = {
        {{-1.0, 0.0, 1.0, 0.0, 0.0, 1.0}},  {{1.0, 0.0, -1.0, 0.0, 0.0, 1.0}},
        {{1.0, 0.0, 1.0, 0.0, 0.0, -1.0}},  {{1.0, 2.0, 1.0, 0.0, 0.0, 1.0}},
        {{1.0, 0.0, 1.0, 0.0, 2.0, 1.0}},   {{0.0, 0.0, -4.0, 0.0, 2.0, 10.0}},
        {{0.0, 0.0, 4.0, 0.0, 9.0, 10.0}},  {{-4.0, 0.0, 0.0, 2.0, 0.0, 10.0}},
        {{4.0, 0.0, 0.0, 9.0, 0.0, 10.0}},  {{0.0, 0.0, 0.0, 0.0, 0.0, -9.0}},
        {{0.0, 1.0, 1.0, 0.0, 0.0, 1.0}},   {{0.0, 0.0, 0.0, 0.0, 3.0, 1.0}},
        {{-1.0, 0.0, -1.0, 0.0, 0.0, -1.0}}};
    for (const metric3& m : refused) EXPECT_FALSE(factor_of(m).exists) << m[0] << " " << m[2];
}

TEST(CholeskyUpper3, RefusesWhatIsNotANumber)
{
    for (std::size_t k = 0; k < 6; ++k) {
        metric3 m = {{4.0, 1.0, 4.0, 1.0, 1.0, 4.0}};
        m[k] = NOT_A_NUMBER;
        EXPECT_FALSE(factor_of(m).exists) << k;
    }
    EXPECT_FALSE(factor_of({{0.0, 0.0, 4.0, 0.0, NOT_A_NUMBER, 10.0}}).exists);
    EXPECT_FALSE(factor_of({{0.0, 0.0, 0.0, 0.0, 0.0, NOT_A_NUMBER}}).exists);
}

TEST(CongruenceAccumulate3, AddsAlphaTimesTheRowsProducts)
{
    const double b[9] = {1.0, 0.0, 0.0, 2.0, 3.0, 0.0, 4.0, 5.0, 6.0};
    // C = B M with M = diag(1, 10, 100).
    const double c[9] = {1.0, 0.0, 0.0, 2.0, 30.0, 0.0, 4.0, 50.0, 600.0};
    metric3 d = {{1.0, 1.0, 1.0, 1.0, 1.0, 1.0}};
    congruence_accumulate3(2.0, b, c, d);
    const double expected[6] = {1.0 + 2.0 * 1.0, 1.0 + 2.0 * 2.0,   1.0 + 2.0 * 94.0,
                                1.0 + 2.0 * 4.0, 1.0 + 2.0 * 158.0, 1.0 + 2.0 * 3866.0};
    for (std::size_t k = 0; k < 6; ++k) EXPECT_EQ(d[k], expected[k]) << k;
}

TEST(CongruenceAccumulate3, TakesRowJOfTheFirstAndRowIOfTheSecondMatrix)
{
    // A product that is not symmetric shows which of the two triangles is formed.
    const double b[9] = {1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    const double c[9] = {0.0, 0.0, 0.0, 5.0, 0.0, 0.0, 7.0, 0.0, 0.0};
    metric3 d = {};
    congruence_accumulate3(1.0, b, c, d);
    const double expected[6] = {0.0, 5.0, 0.0, 7.0, 0.0, 0.0};
    for (std::size_t k = 0; k < 6; ++k) EXPECT_EQ(d[k], expected[k]) << k;
}

TEST(CongruenceAccumulate3, DoesNothingForAnAlphaOfZero)
{
    double b[9];
    for (double& x : b) x = NOT_A_NUMBER;
    metric3 d = {{1.0, 2.0, 3.0, 4.0, 5.0, 6.0}};
    congruence_accumulate3(0.0, b, b, d);
    for (std::size_t k = 0; k < 6; ++k) EXPECT_EQ(d[k], static_cast<double>(k + 1));
}

TEST(EigenSym3, PutsRandomMatricesTogetherAgain)
{
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        std::mt19937 draw(seed);
        std::normal_distribution<double> entry(0.0, 1.0);
        metric3 m;
        for (double& x : m.data) x = entry(draw);
        double l[3];
        double v[9];
        ASSERT_TRUE(eigen_sym3(m, l, v, false)) << "seed " << seed;
        ASSERT_TRUE(l[0] <= l[1] && l[1] <= l[2]) << "seed " << seed;
        const auto z = by_columns(v);
        const auto one = reference::diagonal<3>({1, 1, 1});
        ASSERT_LT(reference::difference(reference::transpose(z) * z, one), 1e-14);
        const auto again = z * reference::diagonal<3>({l[0], l[1], l[2]}) * reference::transpose(z);
        ASSERT_LT(reference::difference(again, reference::full(m)), 1e-14) << "seed " << seed;
    }
}

TEST(EigenSym3, RightHandedVectorsHaveThePositiveVolume)
{
    int turned = 0;
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        const metric3 m = reference::random_metric<3>(draw, 100.0);
        double l[3];
        double plain[9];
        double right[9];
        ASSERT_TRUE(eigen_sym3(m, l, plain, false));
        ASSERT_TRUE(eigen_sym3(m, l, right, true));
        double cofactors[9];
        double det = 0.0;
        inverse_transpose3(right, cofactors, det);
        ASSERT_NEAR(det, 1.0, 1e-14) << "seed " << seed;
        for (int k = 0; k < 6; ++k) ASSERT_EQ(right[k], plain[k]) << "seed " << seed;
        inverse_transpose3(plain, cofactors, det);
        if (det < 0.0) ++turned;
    }
    // The flag has something to do: some of the plain triples are left-handed.
    EXPECT_GT(turned, 0);
}

TEST(EigenSym3, DoesNotChangeTheMatrix)
{
    const metric3 m = {{4.0, 1.0, 3.0, 0.5, 0.25, 2.0}};
    const metric3 before = m;
    double l[3];
    double v[9];
    ASSERT_TRUE(eigen_sym3(m, l, v, true));
    EXPECT_TRUE(reference::same_bits(m, before));
}

TEST(EigenSym3, IsFalseWhenTheIterationDoesNotConverge)
{
    metric3 m;
    for (double& x : m.data) x = NOT_A_NUMBER;
    double l[3];
    double v[9];
    EXPECT_FALSE(eigen_sym3(m, l, v, true));
}

TEST(Dspev, GivesTheEigenvaluesAloneInAscendingOrder)
{
    double ap[6] = {2.0, 1.0, 2.0, 0.0, 0.0, -5.0};
    double w[3] = {};
    double z[1] = {7.0};
    double work[10] = {};
    EXPECT_EQ(lapack::dspev('N', 'U', 3, ap, w, z, 1, work), 0);
    EXPECT_NEAR(w[0], -5.0, 1e-14);
    EXPECT_NEAR(w[1], 1.0, 1e-14);
    EXPECT_NEAR(w[2], 3.0, 1e-14);
    EXPECT_EQ(z[0], 7.0);
}

TEST(Dspev, ReturnsInfoWhenEntriesAreNoNumbers)
{
    double ap[6];
    for (double& x : ap) x = NOT_A_NUMBER;
    double w[3] = {};
    double z[9];
    double work[10] = {};
    EXPECT_GT(lapack::dspev('V', 'U', 3, ap, w, z, 3, work), 0);
}
