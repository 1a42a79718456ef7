// The size inside a quadrilateral: pairs on three sides, doubly mapped elsewhere.
#include "interpolation/size_quad.h"

#include "metrics/sizes.h"

namespace vorel::tessalo2d {

bool interpolate_size_quad(double xi, double eta, double f0, double f1, double f2, double f3,
                           double& out)
{
    const double s = (xi + 1.0) * 0.5;
    const double t = (eta + 1.0) * 0.5;
    if (counts_as_zero(t)) return interpolate_size_pair(s, f0, f1, out);
    if (counts_as_zero(s)) return interpolate_size_pair(t, f0, f3, out);
    if (counts_as_zero(1.0 - t)) return interpolate_size_pair(s, f3, f2, out);
    out = 0.0;
    if (!(f0 > 0.0 && f1 > 0.0 && f2 > 0.0 && f3 > 0.0)) return false;
    const double s2 = (s + 1.0) * 0.5;
    const double t2 = (t + 1.0) * 0.5;
    const double a = (f1 - f0) * s2 + f0;
    const double b = (f2 - f3) * s2 + f3;
    out = (b - a) * t2 + a;
    return out > 0.0 && out < largest_double;
}

} // namespace vorel::tessalo2d
