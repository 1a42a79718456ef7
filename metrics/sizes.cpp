// Interpolation of sizes along an edge and in a triangle.
#include "metrics/sizes.h"

namespace vorel::tessalo2d {

namespace {

bool is_valid_size(double h)
{
    return h > 0.0 && h < largest_double;
}

} // namespace

bool interpolate_size_pair(double t, double first, double second, double& size)
{
    if (counts_as_zero(t))
        size = first;
    else if (counts_as_zero(1.0 - t))
        size = second;
    else
        size = size_between(t, first, second);
    return is_valid_size(size);
}

bool interpolate_size_triangle(const dense1D<double, 8>& sizes, double u, double v, unsigned a,
                               unsigned b, unsigned c, double& size)
{
    const double at_a = sizes[a];
    const double at_b = sizes[b];
    const double at_c = sizes[c];
    if (counts_as_zero(u)) return interpolate_size_pair(v, at_c, at_b, size);
    if (counts_as_zero(v)) return interpolate_size_pair(u, at_c, at_a, size);
    if (is_on_hypotenuse(u, v)) return interpolate_size_pair(v, at_a, at_b, size);
    size = 0.0;
    if (!(at_a > 0.0) || !(at_b > 0.0) || !(at_c > 0.0)) return false;
    size = (at_a - at_c) * u + (at_b - at_c) * v + at_c;
    return is_valid_size(size);
}

} // namespace vorel::tessalo2d
