// The pencil of two metrics, reduced to a symmetric eigenproblem by the factor of the first one.
// Both dimensions multiply the factor's inverse by the determinant, so that no entry is divided.
#include "metrics/generalized_eigen.h"

#include "foundation/vec.h"
#include "metrics/symmetric2.h"
#include "metrics/symmetric3.h"

#include <cmath>

namespace vorel::tessalo2d {

namespace {

template <int D>
void scale_to_unit_length(double* v)
{
    const vec<D> x = load<D>(v);
    const double q = squared_length(x);
    if (q == 0.0 || q == 1.0) return;
    store((1.0 / std::sqrt(q)) * x, v);
}

/// Row `i` of B times the symmetric matrix m.
vec3 row_times(const double* row, const symmetric_fixed<double, 3>& m)
{
    const vec3 b = load<3>(row);
    return {{b[0] * m.data[0] + b[1] * m.data[1] + b[2] * m.data[3],
             b[0] * m.data[1] + b[1] * m.data[2] + b[2] * m.data[4],
             b[0] * m.data[3] + b[1] * m.data[4] + b[2] * m.data[5]}};
}

} // namespace

bool generalized_eigen2(const symmetric_fixed<double, 2>& m1, const symmetric_fixed<double, 2>& m2,
                        double (&values)[2], double (&vectors)[4], bool normalise)
{
    const double a = m1.data[0];
    const double b = m1.data[1];
    const double c = m1.data[2];
    const double d = m2.data[0];
    const double e = m2.data[1];
    const double f = m2.data[2];
    const double det = a * c - b * b;
    if (a == 0.0 || !(det > 0.0)) return false;
    const double s = std::sqrt(det);
    const double s00 = d * det;
    const double s01 = (a * e - d * b) * s;
    const double s11 = (a * a) * f - (2.0 * a * e - d * b) * b;
    if (!eigen_sym2(s00, s01, s11, values, vectors, false)) return false;
    const double scale = 1.0 / (det * a);
    for (int k = 0; k < 2; ++k) {
        values[k] *= scale;
        const double x = vectors[2 * k];
        const double y = vectors[2 * k + 1];
        vectors[2 * k] = s * x - b * y;
        vectors[2 * k + 1] = a * y;
        if (normalise) scale_to_unit_length<2>(vectors + 2 * k);
    }
    return true;
}

bool generalized_eigen3(const symmetric_fixed<double, 3>& m1, const symmetric_fixed<double, 3>& m2,
                        double (&values)[3], double (&vectors)[9], bool normalise)
{
    double u00 = m1.data[0];
    double u01 = m1.data[1];
    double u11 = m1.data[2];
    double u02 = m1.data[3];
    double u12 = m1.data[4];
    double u22 = m1.data[5];
    if (!cholesky_upper3(u00, u01, u11, u02, u12, u22)) return false;
    const double d = u00 * u11 * u22;
    if (d == 0.0 || std::isnan(d)) return false;
    const double b[9] = {
        u11 * u22,  0.0,      0.0, -u01 * u22, u00 * u22, 0.0, u01 * u12 - u02 * u11,
        -u00 * u12, u00 * u11};
    double c[9];
    for (int i = 0; i < 3; ++i) store(row_times(b + 3 * i, m2), c + 3 * i);
    symmetric_fixed<double, 3> reduced = {};
    congruence_accumulate3(1.0, b, c, reduced);
    double z[9];
    if (!eigen_sym3(reduced, values, z, normalise)) return false;
    const double scale = 1.0 / (d * d);
    for (int k = 0; k < 3; ++k) {
        values[k] *= scale;
        const double* const y = z + 3 * k;
        for (int i = 0; i < 3; ++i)
            vectors[3 * k + i] = b[i] * y[0] + b[3 + i] * y[1] + b[6 + i] * y[2];
        if (normalise) scale_to_unit_length<3>(vectors + 3 * k);
    }
    return true;
}

} // namespace vorel::tessalo2d
