// Sizes: wanted edge lengths, their eigenvalues 1/h^2 in a metric, and their interpolation.
#pragma once

#include <vorel/dense1D.h>

#include <cmath>
#include <limits>

namespace vorel::tessalo2d {

inline constexpr double largest_double = std::numeric_limits<double>::max();
/// Coordinates this close to an end or an edge are on it, and the value there is copied.
inline constexpr double end_tolerance = 1e-12;

/// The end tolerance across the long edge of the reference triangle: times the square root of 2.
inline constexpr double hypotenuse_tolerance = 1.4142135623730952e-12;

/// True also for a NaN.
inline bool counts_as_zero(double x)
{
    return !(std::fabs(x) >= end_tolerance);
}

/// True when the weights u, v of the first two nodes of a triangle leave nothing for the third one.
inline bool is_on_hypotenuse(double u, double v)
{
    return std::fabs(1.0 - (u + v)) < hypotenuse_tolerance;
}

/// The eigenvalue 1/h^2 of a size; the largest double for a size whose square is below the normal
/// range (so for 0 and for negative ones), 0 for one whose square is above the range.
inline double size_to_eigenvalue(double h)
{
    constexpr double size_floor = 1.4916681462400413e-154;
    const double size_ceiling = std::sqrt(largest_double);
    if (h < size_floor) return largest_double;
    if (h > size_ceiling) return 0.0;
    return 1.0 / (h * h);
}

/// The size 1/sqrt(l) of an eigenvalue; 0 and the largest double answer to each other. A negative
/// eigenvalue gives NaN: callers ask `spectrum_is_valid` first.
inline double eigenvalue_to_size(double l)
{
    if (l == 0.0) return largest_double;
    if (l == largest_double) return 0.0;
    return 1.0 / std::sqrt(l);
}

template <std::size_t D>
inline void sizes_to_eigenvalues(const double (&sizes)[D], double (&eigenvalues)[D])
{
    for (std::size_t k = 0; k < D; ++k) eigenvalues[k] = size_to_eigenvalue(sizes[k]);
}

template <std::size_t D>
inline void eigenvalues_to_sizes(const double (&eigenvalues)[D], double (&sizes)[D])
{
    for (std::size_t k = 0; k < D; ++k) sizes[k] = eigenvalue_to_size(eigenvalues[k]);
}

/// True when every value is above 0 and below the largest double; a NaN fails.
template <std::size_t D>
[[nodiscard]] inline bool spectrum_is_valid(const double (&values)[D])
{
    bool valid = true;
    for (std::size_t k = 0; k < D; ++k)
        valid = valid && values[k] > 0.0 && values[k] < largest_double;
    return valid;
}

/// The size at a `t` off the ends between `first` (t = 0) and `second` (t = 1), linear; 0 when one
/// of the two is not above 0. Without a branch.
inline double size_between(double t, double first, double second)
{
    const double size = (second - first) * t + first;
    const bool positive = (first > 0.0) & (second > 0.0);
    return positive ? size : 0.0;
}

/// As above for any `t`, also outside. Within the end tolerance of an end the size there is stored
/// as it is. False when the result is not above 0 and below the largest double.
[[nodiscard]] bool interpolate_size_pair(double t, double first, double second, double& size);

/// The size at the weights u of entry `a`, v of entry `b` and 1 - u - v of entry `c`. On an edge it
/// is that of the pair of its ends, inside it is affine. Results and failures as for a pair.
[[nodiscard]] bool interpolate_size_triangle(const dense1D<double, 8>& sizes, double u, double v,
                                             unsigned a, unsigned b, unsigned c, double& size);

} // namespace vorel::tessalo2d
