// How near a triangle is to an equilateral one.
#pragma once

#include "foundation/vec.h"

#include <algorithm>

namespace vorel::tessalo2d {

/// Twice the area of the triangle that a and b span, d = b - a, from its two shorter sides. The
/// comparison is on lengths; in the plane, where the result is signed, a tie goes to a and d, in
/// space to a and b. (`cross2` and `cross3` compare squares, which can round to another side.)
inline double double_area_by_lengths(const vec2& a, const vec2& b, const vec2& d, double a_length,
                                     double b_length, double d_length)
{
    return cross(a, select(d_length > std::min(a_length, b_length), b, d));
}
inline double double_area_by_lengths(const vec3& a, const vec3& b, const vec3& d, double a_length,
                                     double b_length, double d_length)
{
    return length(cross(a, select(d_length >= std::min(a_length, b_length), b, d)));
}

/// Twice an area over the product of the longest side and the sum of the sides, scaled and cut to
/// [-1, 1]. 0 where that product is not above 0.
inline double quality_of_sides(double double_area, double a_length, double b_length,
                               double d_length)
{
    constexpr double EQUILATERAL = 3.4641016151377544; // 2 sqrt(3)
    const double longest = std::max(std::max(a_length, b_length), d_length);
    const double product = longest * (a_length + b_length + d_length);
    const double q = product > 0.0 ? double_area / product * EQUILATERAL : 0.0;
    // Written for loops without branches: a NaN becomes -1.
    const double at_least = q >= -1.0 ? q : -1.0;
    return at_least < 1.0 ? at_least : 1.0;
}

/// 1 for an equilateral triangle, 0 for one without area; in the plane negative for a clockwise
/// one. Between -1 and 1, whatever the coordinates.
template <int D>
inline double triangle_quality(const vec<D>& p0, const vec<D>& p1, const vec<D>& p2)
{
    const vec<D> a = p0 - p2;
    const vec<D> b = p1 - p2;
    const vec<D> d = b - a;
    const double a_length = length(a);
    const double b_length = length(b);
    const double d_length = length(d);
    return quality_of_sides(double_area_by_lengths(a, b, d, a_length, b_length, d_length), a_length,
                            b_length, d_length);
}

/// As above for the nodes in rows 0 to 2 of a column. `points` is the first coordinate of node 0,
/// `ld` the distance between nodes.
template <int D>
inline double triangle_quality(const double* points, std::size_t ld, const unsigned* column)
{
    return triangle_quality(load<D>(points + column[0] * ld), load<D>(points + column[1] * ld),
                            load<D>(points + column[2] * ld));
}

} // namespace vorel::tessalo2d
