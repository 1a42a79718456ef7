// Spacing laws, written so that the limits of equal sizes are smooth.
#include "extrusion/spacing.h"

#include <cmath>
#include <limits>

namespace vorel::tessalo2d {

double geometric_fraction(double t, double h0, double h1)
{
    const double r = h1 / h0;
    double f;
    if (0.999 <= r && r <= 1.001) {
        // Expansion of the closed form in e, to the third power.
        const double e = r - 1.0;
        const double second = ((1.0 / 2.0) * e) * (t - 1.0);
        const double third = (((1.0 / 6.0) * (e * e)) * (t - 1.0)) * (t - 2.0);
        const double fourth =
            ((((1.0 / 24.0) * ((e * e) * e)) * (t - 1.0)) * (t - 2.0)) * (t - 3.0);
        f = t * (((1.0 + second) + third) + fourth);
    } else {
        f = (std::pow(r, t) - 1.0) / (r - 1.0);
    }
    if (0.0 <= t && t <= 1.0) {
        if (f < 0.0) f = 0.0;
        if (f > 1.0) f = 1.0;
    }
    return f;
}

double logarithmic_mean(double h0, double h1)
{
    const bool falling = h0 > h1;
    const double lo = falling ? h1 : h0;
    const double hi = falling ? h0 : h1;
    const double x = (hi - lo) / lo;
    double m;
    if (x >= 0.1) {
        m = x / std::log(1.0 + x);
    } else {
        // 19/45 one unit lower in the last place: results depend on the bit.
        constexpr double C = 0.42222222222222217;
        const double y = x / 2.0;
        m = 1.0 + y * (1.0 - y * (1.0 / 3.0 - y * (1.0 / 3.0 - y * C)));
    }
    return m * lo;
}

std::size_t subdivision_count(double x, std::size_t step)
{
    const double ratio = x / static_cast<double>(step);
    std::size_t k;
    if (!(ratio > 0.0))
        k = 0;
    else if (ratio >= 18446744073709551616.0)
        k = std::numeric_limits<std::size_t>::max();
    else
        k = static_cast<std::size_t>(ratio);
    const std::size_t a = k * step;
    const std::size_t b = a + step;
    return x * x > static_cast<double>(a * b) ? b : a;
}

} // namespace vorel::tessalo2d
