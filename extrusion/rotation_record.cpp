// The coefficients and matrices of a rotation vector.
#include "extrusion/rotation_record.h"

namespace vorel::tessalo2d {

namespace {

/// Horner's rule from the highest power down; `c` holds the coefficients from the lowest power up.
template <int N>
double polynomial(const double (&c)[N], double q)
{
    double sum = c[N - 1];
    for (int i = N - 2; i >= 0; --i) sum = sum * q + c[i];
    return sum;
}

constexpr double A0[] = {1.0,           -1.0 / 6.0,     1.0 / 120.0,
                         -1.0 / 5040.0, 1.0 / 362880.0, -1.0 / 39916800.0};
constexpr double A1[] = {1.0 / 2.0, -1.0 / 24.0, 1.0 / 720.0, -1.0 / 40320.0, 1.0 / 3628800.0};
constexpr double A5[] = {1.0 / 6.0, -1.0 / 120.0, 1.0 / 5040.0, -1.0 / 362880.0, 1.0 / 39916800.0};
constexpr double A2[] = {-1.0 / 3.0, 1.0 / 30.0, -1.0 / 840.0, 1.0 / 45360.0, -1.0 / 3991680.0};
constexpr double A3[] = {-1.0 / 12.0, 1.0 / 180.0, -1.0 / 6720.0, 1.0 / 453600.0,
                         -1.0 / 47900160.0};
constexpr double A6[] = {-1.0 / 60.0, 1.0 / 1260.0, -1.0 / 60480.0, 1.0 / 4989600.0};
constexpr double A4[] = {1.0 / 90.0, -1.0 / 1680.0, 1.0 / 75600.0, -1.0 / 5987520.0};
constexpr double A7[] = {1.0 / 630.0, -1.0 / 15120.0, 1.0 / 831600.0, -1.0 / 77837760.0};

void closed_coefficients(rotation_record& r, double theta)
{
    const double i = 1.0 / theta;
    const double j = i * i;
    r.a0 = std::sin(theta) * i;
    r.a1 = (1.0 - std::cos(theta)) * j;
    r.a5 = (1.0 - r.a0) * j;
    r.a2 = r.a5 - r.a1;
    r.a3 = (r.a0 - 2.0 * r.a1) * j;
    r.a6 = (r.a1 - 3.0 * r.a5) * j;
    r.a4 = (r.a2 - 4.0 * r.a3) * j;
    r.a7 = (r.a3 - 5.0 * r.a6) * j;
}

void series_coefficients(rotation_record& r, double q)
{
    r.a0 = polynomial(A0, q);
    r.a1 = polynomial(A1, q);
    r.a2 = polynomial(A2, q);
    r.a3 = polynomial(A3, q);
    r.a4 = polynomial(A4, q);
    r.a5 = polynomial(A5, q);
    r.a6 = polynomial(A6, q);
    r.a7 = polynomial(A7, q);
}

/// target = x * S + y * S2, without the second term for y = 0.
void combine(double x, const double S[9], double y, const double S2[9], double target[9])
{
    for (int i = 0; i < 9; ++i) target[i] = x * S[i];
    if (y != 0.0)
        for (int i = 0; i < 9; ++i) target[i] += y * S2[i];
}

void add_identity(double M[9])
{
    M[0] += 1.0;
    M[4] += 1.0;
    M[8] += 1.0;
}

} // namespace

void matrix_multiply_add(double alpha, const double A[9], const double B[9], double C[9])
{
    if (alpha == 0.0) return;
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 3; ++i) {
            double sum = C[3 * j + i];
            for (int k = 0; k < 3; ++k) sum += alpha * A[3 * k + i] * B[3 * j + k];
            C[3 * j + i] = sum;
        }
}

void rotation_from_vector(rotation_record& r, const double v[3])
{
    const vec3 u = load<3>(v);
    store(u, r.v);
    const double q = squared_length(u);
    const double theta = std::sqrt(q);
    if (theta > 0.1)
        closed_coefficients(r, theta);
    else
        series_coefficients(r, q);

    const double x = u[0];
    const double y = u[1];
    const double z = u[2];
    const double S[9] = {0.0, z, -y, -z, 0.0, x, y, -x, 0.0};
    for (int i = 0; i < 9; ++i) {
        r.S[i] = S[i];
        r.S2[i] = 0.0;
    }
    matrix_multiply_add(1.0, r.S, r.S, r.S2);

    combine(r.a0, r.S, r.a1, r.S2, r.M1);
    combine(r.a1, r.S, r.a5, r.S2, r.T);
    combine(r.a3, r.S, r.a6, r.S2, r.M3);
    combine(r.a4, r.S, r.a7, r.S2, r.M4);
    for (int i = 0; i < 9; ++i) r.R[i] = r.M1[i];
    add_identity(r.R);
    add_identity(r.T);
}

} // namespace vorel::tessalo2d
