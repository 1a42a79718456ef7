// Factor, congruence and eigenvectors of symmetric 3x3 matrices.
#include "metrics/symmetric3.h"

#include "foundation/vec.h"
#include "metrics/lapack.h"

#include <cmath>

namespace vorel::tessalo2d {

namespace {

/// `cholesky_upper3` of the 2x2 block (p q; q s).
bool cholesky_upper2(double& p, double& q, double& s)
{
    if (p == 0.0 && q == 0.0) {
        if (!(s >= 0.0)) return false;
        s = std::sqrt(s);
        return true;
    }
    if (!(p > 0.0)) return false;
    s = p * s - q * q;
    if (!(s >= 0.0)) return false;
    p = std::sqrt(p);
    s = std::sqrt(s);
    const double r = 1.0 / p;
    q = q * r;
    s = s * r;
    return true;
}

} // namespace

void inverse_transpose3(const double (&a)[9], double (&cofactors)[9], double& det)
{
    const double c[9] = {
        a[4] * a[8] - a[5] * a[7], a[5] * a[6] - a[3] * a[8], a[3] * a[7] - a[4] * a[6],
        a[2] * a[7] - a[1] * a[8], a[0] * a[8] - a[2] * a[6], a[1] * a[6] - a[0] * a[7],
        a[1] * a[5] - a[2] * a[4], a[2] * a[3] - a[0] * a[5], a[0] * a[4] - a[1] * a[3]};
    const double d = a[0] * c[0] + a[1] * c[1] + a[2] * c[2];
    det = d;
    if (d == 0.0) {
        for (int k = 0; k < 9; ++k) cofactors[k] = c[k];
        return;
    }
    const double r = 1.0 / d;
    for (int k = 0; k < 9; ++k) cofactors[k] = c[k] * r;
}

bool cholesky_upper3(double& a00, double& a01, double& a11, double& a02, double& a12, double& a22)
{
    if (a00 == 0.0 && a01 == 0.0 && a02 == 0.0) return cholesky_upper2(a11, a12, a22);
    if (a01 == 0.0 && a11 == 0.0 && a12 == 0.0) return cholesky_upper2(a00, a02, a22);
    if (!(a00 > 0.0)) return false;
    a11 = a00 * a11 - a01 * a01;
    a12 = a00 * a12 - a01 * a02;
    if (!(a11 > 0.0)) return false;
    a00 = std::sqrt(a00);
    a11 = std::sqrt(a11);
    a12 = a12 / a11;
    const double r = 1.0 / a00;
    a01 *= r;
    a11 *= r;
    a02 *= r;
    a12 *= r;
    a22 = a22 - (a12 * a12 + a02 * a02);
    if (!(a22 >= 0.0)) return false;
    a22 = std::sqrt(a22);
    return true;
}

void congruence_accumulate3(double alpha, const double (&b)[9], const double (&c)[9],
                            symmetric_fixed<double, 3>& d)
{
    if (alpha == 0.0) return;
    int k = 0;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j, ++k)
            d.data[k] += alpha * dot(load<3>(b + 3 * j), load<3>(c + 3 * i));
}

bool eigen_sym3(const symmetric_fixed<double, 3>& m, double (&values)[3], double (&vectors)[9],
                bool right_handed)
{
    symmetric_fixed<double, 3> overwritten = m;
    double work[10] = {};
    if (lapack::dspev('V', 'U', 3, overwritten.data, values, vectors, 3, work) != 0) return false;
    if (right_handed) store(cross(load<3>(vectors), load<3>(vectors + 3)), vectors + 6);
    return true;
}

} // namespace vorel::tessalo2d
