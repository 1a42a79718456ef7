// The rotation record against its defining series and identities, on both sides of the switch
// between polynomials and closed forms.
#include "extrusion/rotation_record.h"

#include "support/matrices.h"

#include <array>
#include <limits>

using namespace vorel;
using tessalo2d::matrix_multiply_add;
using tessalo2d::rotation_from_vector;
using tessalo2d::rotation_record;

namespace {

using matrix = std::array<long double, 9>;

constexpr double DIRECTION[3] = {0.48, -0.6, 0.64};
constexpr double EPSILON = std::numeric_limits<double>::epsilon();

/// Angles on both sides of 0.1, tiny ones and several turns.
const double ANGLES[] = {1e-200, 1e-9, 1e-3, 0.05, 0.0999, 0.1001, 0.2, 0.7, 1.5, 3.1, 6.0, 9.0};

rotation_record record_of(double x, double y, double z)
{
    const double v[3] = {x, y, z};
    rotation_record r;
    rotation_from_vector(r, v);
    return r;
}

rotation_record record_of(double angle)
{
    return record_of(angle * DIRECTION[0], angle * DIRECTION[1], angle * DIRECTION[2]);
}

/// The term with number k of the sum over (-1)^k q^k / (2 k + n)!, with D = 2 d / dq applied
/// `times` times.
long double series_term(int n, int times, int k, long double q)
{
    long double term = k % 2 == 0 ? 1.0L : -1.0L;
    for (int i = 2; i <= 2 * k + n; ++i) term /= i;
    for (int j = 0; j < times; ++j) term *= 2.0L * (k - j);
    for (int j = 0; j < k - times; ++j) term *= q;
    return term;
}

/// A coefficient of the record: its series, the number of terms that serve up to an angle of 0.1,
/// and how often its closed form divides by the squared angle, each time losing digits.
struct coefficient {
    double rotation_record::*value;
    int n;
    int times;
    int terms;
    int divisions;

    long double exact(long double q) const
    {
        long double sum = 0.0L;
        for (int k = 40; k >= times; --k) sum += series_term(n, times, k, q);
        return sum;
    }

    /// What the series may be off by: rounding, and the first term that is left out.
    double series_tolerance(long double q) const
    {
        const long double omitted = series_term(n, times, times + terms, q);
        return static_cast<double>(1.5L * EPSILON * std::fabs(exact(q)) + std::fabs(omitted));
    }

    double closed_tolerance(long double q) const
    {
        const double lost = std::pow(static_cast<double>(q), -divisions);
        return EPSILON * (8.0 * std::max(1.0, lost) + std::fabs(static_cast<double>(exact(q))));
    }
};

const coefficient A0 = {&rotation_record::a0, 1, 0, 6, 0};
const coefficient A1 = {&rotation_record::a1, 2, 0, 5, 1};
const coefficient A2 = {&rotation_record::a2, 1, 1, 5, 2};
const coefficient A3 = {&rotation_record::a3, 2, 1, 5, 2};
const coefficient A4 = {&rotation_record::a4, 2, 2, 4, 3};
const coefficient A5 = {&rotation_record::a5, 3, 0, 5, 1};
const coefficient A6 = {&rotation_record::a6, 3, 1, 4, 2};
const coefficient A7 = {&rotation_record::a7, 3, 2, 4, 3};
const coefficient COEFFICIENTS[] = {A0, A1, A2, A3, A4, A5, A6, A7};

matrix product(const matrix& A, const matrix& B)
{
    matrix C{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            for (std::size_t k = 0; k < 3; ++k) C[3 * j + i] += A[3 * k + i] * B[3 * j + k];
    return C;
}

/// u -> v x u, column after column, from the definition.
matrix cross_matrix(const double v[3])
{
    matrix S{};
    for (std::size_t j = 0; j < 3; ++j) {
        long double u[3] = {0.0L, 0.0L, 0.0L};
        u[j] = 1.0L;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t a = (i + 1) % 3;
            const std::size_t b = (i + 2) % 3;
            S[3 * j + i] = v[a] * u[b] - v[b] * u[a];
        }
    }
    return S;
}

/// The sum over n of S^n / (n + shift)!, for shift 0 the exponential.
matrix exponential(const matrix& S, int shift)
{
    matrix power = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    matrix sum{};
    for (int n = 0; n < 90; ++n) {
        long double factor = 1.0L;
        for (int i = 2; i <= n + shift; ++i) factor /= i;
        for (std::size_t k = 0; k < 9; ++k) sum[k] += factor * power[k];
        power = product(S, power);
    }
    return sum;
}

void expect_near(const double (&M)[9], const matrix& expected, double tolerance)
{
    for (std::size_t k = 0; k < 9; ++k)
        EXPECT_NEAR(M[k], static_cast<double>(expected[k]), tolerance) << "entry " << k;
}

long double squared_length(const rotation_record& r)
{
    const long double x = r.v[0], y = r.v[1], z = r.v[2];
    return x * x + y * y + z * z;
}

} // namespace

TEST(RotationRecord, CoefficientsAreTheirSeries)
{
    for (const double angle : ANGLES) {
        SCOPED_TRACE(angle);
        const rotation_record r = record_of(angle);
        const long double q = squared_length(r);
        for (const coefficient& a : COEFFICIENTS)
            EXPECT_NEAR(r.*a.value, static_cast<double>(a.exact(q)),
                        angle > 0.1 ? a.closed_tolerance(q) : a.series_tolerance(q))
                << "series " << a.n << ", D " << a.times;
    }
}

TEST(RotationRecord, CoefficientsAreLinkedByD)
{
    // D f = (1 / theta) f', by central differences of the record itself at a wide step.
    for (const double angle : {0.5, 1.0, 2.5}) {
        const double step = 1e-4;
        const rotation_record low = record_of(angle - step);
        const rotation_record mid = record_of(angle);
        const rotation_record high = record_of(angle + step);
        const auto D = [&](double rotation_record::*a) {
            return (high.*a - low.*a) / (2.0 * step) / angle;
        };
        EXPECT_NEAR(mid.a2, D(&rotation_record::a0), 1e-7);
        EXPECT_NEAR(mid.a3, D(&rotation_record::a1), 1e-7);
        EXPECT_NEAR(mid.a6, D(&rotation_record::a5), 1e-7);
        EXPECT_NEAR(mid.a4, D(&rotation_record::a3), 1e-7);
        EXPECT_NEAR(mid.a7, D(&rotation_record::a6), 1e-7);
    }
}

TEST(RotationRecord, AnAngleOfATenthTakesThePolynomials)
{
    // Of the two, only the polynomials get a7 right to its last digits here.
    const double tenth = 0.1;
    ASSERT_FALSE(std::sqrt(tenth * tenth) > 0.1);
    const rotation_record at = record_of(tenth, 0.0, 0.0);
    const long double q = squared_length(at);
    for (const coefficient& a : COEFFICIENTS)
        EXPECT_NEAR(at.*a.value, static_cast<double>(a.exact(q)), a.series_tolerance(q))
            << "series " << a.n << ", D " << a.times;
}

TEST(RotationRecord, ALongerAngleTakesTheClosedForms)
{
    const double longer = std::nextafter(std::nextafter(0.1, 1.0), 1.0);
    const double theta = std::sqrt(longer * longer);
    ASSERT_GT(theta, 0.1);
    const rotation_record r = record_of(0.0, longer, 0.0);
    const double i = 1.0 / theta;
    const double j = i * i;
    EXPECT_EQ(r.a0, std::sin(theta) * i);
    EXPECT_EQ(r.a1, (1.0 - std::cos(theta)) * j);
    EXPECT_EQ(r.a5, (1.0 - r.a0) * j);
    EXPECT_EQ(r.a2, r.a5 - r.a1);
    EXPECT_EQ(r.a3, (r.a0 - 2.0 * r.a1) * j);
    EXPECT_EQ(r.a6, (r.a1 - 3.0 * r.a5) * j);
    EXPECT_EQ(r.a4, (r.a2 - 4.0 * r.a3) * j);
    EXPECT_EQ(r.a7, (r.a3 - 5.0 * r.a6) * j);
    // They are not what the polynomials give.
    EXPECT_NE(r.a7, record_of(0.1, 0.0, 0.0).a7);
    EXPECT_GT(std::fabs(r.a7 - record_of(0.1, 0.0, 0.0).a7), 1e-16);
}

TEST(RotationRecord, ANullVectorIsTheIdentity)
{
    const rotation_record r = record_of(0.0, 0.0, 0.0);
    EXPECT_EQ(r.a0, 1.0);
    EXPECT_EQ(r.a1, 0.5);
    EXPECT_EQ(r.a5, 1.0 / 6.0);
    for (int k = 0; k < 9; ++k) {
        const double identity = k % 4 == 0 ? 1.0 : 0.0;
        EXPECT_EQ(r.R[k], identity);
        EXPECT_EQ(r.T[k], identity);
        EXPECT_EQ(r.M1[k], 0.0);
        EXPECT_EQ(r.M3[k], 0.0);
        EXPECT_EQ(r.M4[k], 0.0);
        EXPECT_EQ(r.S2[k], 0.0);
    }
}

TEST(RotationRecord, ANotANumberEnds)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const rotation_record r = record_of(0.0, nan, 0.0);
    EXPECT_TRUE(std::isnan(r.a0));
    EXPECT_TRUE(std::isnan(r.R[0]));
}

TEST(RotationRecord, SIsTheCrossProductAndS2ItsSquare)
{
    const rotation_record r = record_of(2.0, -3.0, 5.0);
    const double S[9] = {0.0, 5.0, 3.0, -5.0, 0.0, 2.0, -3.0, -2.0, 0.0};
    const double S2[9] = {-34.0, -6.0, 10.0, -6.0, -29.0, -15.0, 10.0, -15.0, -13.0};
    for (int k = 0; k < 9; ++k) {
        EXPECT_EQ(r.S[k], S[k]);
        EXPECT_EQ(r.S2[k], S2[k]);
    }
    EXPECT_EQ(r.v[0], 2.0);
    EXPECT_EQ(r.v[1], -3.0);
    EXPECT_EQ(r.v[2], 5.0);
}

TEST(RotationRecord, RIsTheExponentialOfS)
{
    for (const double angle : ANGLES) {
        SCOPED_TRACE(angle);
        const rotation_record r = record_of(angle);
        expect_near(r.R, exponential(cross_matrix(r.v), 0), 1e-14);
    }
}

TEST(RotationRecord, TIsTheLeftJacobianOfTheExponential)
{
    for (const double angle : ANGLES) {
        SCOPED_TRACE(angle);
        const rotation_record r = record_of(angle);
        expect_near(r.T, exponential(cross_matrix(r.v), 1), 1e-14);
    }
}

TEST(RotationRecord, MatricesAreTheirCombinationsOfSAndS2)
{
    for (const double angle : ANGLES) {
        SCOPED_TRACE(angle);
        const rotation_record r = record_of(angle);
        const long double q = squared_length(r);
        const matrix S = cross_matrix(r.v);
        const matrix S2 = product(S, S);
        matrix M1, M3, M4;
        for (std::size_t k = 0; k < 9; ++k) {
            M1[k] = A0.exact(q) * S[k] + A1.exact(q) * S2[k];
            M3[k] = A3.exact(q) * S[k] + A6.exact(q) * S2[k];
            M4[k] = A4.exact(q) * S[k] + A7.exact(q) * S2[k];
        }
        expect_near(r.M1, M1, 1e-14);
        expect_near(r.M3, M3, angle > 0.1 ? 1e-11 : 1e-16);
        expect_near(r.M4, M4, angle > 0.1 ? 1e-9 : 1e-16);
        for (int k = 0; k < 9; ++k)
            EXPECT_EQ(r.R[k], k % 4 == 0 ? r.M1[k] + 1.0 : r.M1[k]) << "entry " << k;
    }
}

TEST(RotationRecord, RAndTKeepTheAxisAndRKeepsLengths)
{
    for (const double angle : ANGLES) {
        SCOPED_TRACE(angle);
        const rotation_record r = record_of(angle);
        matrix R, transposed;
        for (std::size_t i = 0; i < 3; ++i) {
            double Rv = 0.0;
            double Tv = 0.0;
            for (std::size_t j = 0; j < 3; ++j) {
                Rv += r.R[3 * j + i] * r.v[j];
                Tv += r.T[3 * j + i] * r.v[j];
                R[3 * j + i] = r.R[3 * j + i];
                transposed[3 * i + j] = r.R[3 * j + i];
            }
            EXPECT_NEAR(Rv, r.v[i], 1e-14 * angle);
            EXPECT_NEAR(Tv, r.v[i], 1e-14 * angle);
        }
        const matrix gram = product(transposed, R);
        for (std::size_t k = 0; k < 9; ++k)
            EXPECT_NEAR(static_cast<double>(gram[k]), k % 4 == 0 ? 1.0 : 0.0, 1e-14);
    }
}

TEST(RotationRecord, AQuarterTurnAboutEachAxisFollowsTheRightHand)
{
    const double quarter = 1.5707963267948966;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double v[3] = {0.0, 0.0, 0.0};
        v[axis] = quarter;
        rotation_record r;
        rotation_from_vector(r, v);
        const std::size_t from = (axis + 1) % 3;
        const std::size_t to = (axis + 2) % 3;
        EXPECT_NEAR(r.R[3 * from + to], 1.0, 1e-15);
        EXPECT_NEAR(r.R[3 * to + from], -1.0, 1e-15);
        EXPECT_EQ(r.R[3 * axis + axis], 1.0);
    }
}

TEST(MatrixMultiplyAdd, AddsAMultipleOfTheProduct)
{
    const double A[9] = {1, 2, 3, 4, 5, 6, 7, 8, 10};
    const double B[9] = {2, 0, 1, -1, 3, 0, 0, 5, -2};
    // A * B, column after column, by hand.
    const double AB[9] = {9, 12, 16, 11, 13, 15, 6, 9, 10};
    double C[9] = {1, 1, 1, 2, 2, 2, 3, 3, 3};
    matrix_multiply_add(-2.0, A, B, C);
    for (int k = 0; k < 9; ++k) EXPECT_EQ(C[k], 1 + k / 3 - 2.0 * AB[k]) << k;
}

TEST(MatrixMultiplyAdd, AFactorOfZeroLeavesTheTargetAlone)
{
    const double infinite[9] = {std::numeric_limits<double>::infinity()};
    double C[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    matrix_multiply_add(0.0, infinite, infinite, C);
    for (int k = 0; k < 9; ++k) EXPECT_EQ(C[k], k + 1);
}
