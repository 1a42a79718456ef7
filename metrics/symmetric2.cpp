// Closed forms for a symmetric 2x2 matrix.
#include "metrics/symmetric2.h"

#include <algorithm>
#include <cmath>

namespace vorel::tessalo2d {

bool eigen_sym2_values(double a, double b, double c, double (&values)[2])
{
    // Below this ratio the smaller of two eigenvalues has lost its digits to the larger one.
    constexpr double small_eigenvalue_ratio = 1e-12;
    const double s = std::sqrt((a - c) * (a - c) + 4.0 * (b * b));
    const double det = a * c - b * b;
    double l1 = (a + c - s) * 0.5;
    double l2 = l1 + s;
    if (!(std::fabs(l1) >= small_eigenvalue_ratio * std::fabs(l2)))
        l1 = det / l2;
    else if (!(std::fabs(l2) >= small_eigenvalue_ratio * std::fabs(l1)))
        l2 = det / l1;
    values[0] = l1;
    values[1] = l2;
    return std::isfinite(l1) && std::isfinite(l2);
}

bool eigen_sym2(double a, double b, double c, double (&values)[2], double (&vectors)[4],
                bool normalise)
{
    constexpr double eigenvector_tolerance = 1e-24;
    if (!eigen_sym2_values(a, b, c, values)) return false;
    const double l1 = values[0];
    const double p = l1 - c;
    const double q = l1 - a;
    // Both are vectors of l1; the one with the larger difference has lost less to cancellation.
    const bool first = p * p > q * q;
    double x = first ? p : b;
    double y = first ? b : q;
    const double n = x * x + y * y;
    if (!(n > eigenvector_tolerance * std::max(a * a, c * c))) {
        x = 1.0;
        y = 0.0;
    } else if (normalise) {
        const double scale = 1.0 / std::sqrt(n);
        x *= scale;
        y *= scale;
    }
    vectors[0] = x;
    vectors[1] = y;
    vectors[2] = -y;
    vectors[3] = x;
    return true;
}

} // namespace vorel::tessalo2d
