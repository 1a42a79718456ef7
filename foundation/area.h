// Twice the areas of triangles and quadrilaterals.
#pragma once

#include "foundation/vec.h"

#include <vorel/dense2D.h>

namespace vorel::tessalo2d {

/// Twice the signed area of the triangle that two plane vectors span, from its two shorter sides:
/// the product of the longest side would lose a needle's area to cancellation. The comparison is on
/// squared lengths and ties go to a and b.
inline double cross2(const vec2& a, const vec2& b)
{
    const vec2 d = b - a;
    const double aa = squared_length(a);
    const double bb = squared_length(b);
    // min(bb, aa) as std::min(bb, aa) has it for NaN.
    const double shorter = aa < bb ? aa : bb;
    return cross(a, select(squared_length(d) >= shorter, b, d));
}

/// As `cross2`, in space and without a sign.
inline double cross3(const vec3& a, const vec3& b)
{
    const vec3 d = b - a;
    const double aa = squared_length(a);
    const double bb = squared_length(b);
    const double shorter = aa < bb ? aa : bb;
    return length(cross(a, select(squared_length(d) >= shorter, b, d)));
}

inline double double_area(const vec2& a, const vec2& b)
{
    return cross2(a, b);
}
inline double double_area(const vec3& a, const vec3& b)
{
    return cross3(a, b);
}

/// Twice the area of the triangle of the nodes in rows 0 to 2 of a column; signed in the plane.
/// `points` is the first coordinate of node 0, `ld` the distance between nodes.
template <int D>
inline double triangle_double_area(const double* points, std::size_t ld, const unsigned* column)
{
    const vec<D> p0 = load<D>(points + column[0] * ld);
    const vec<D> p1 = load<D>(points + column[1] * ld);
    const vec<D> p2 = load<D>(points + column[2] * ld);
    return double_area(p0 - p2, p1 - p2);
}

/// Twice the unsigned area of a quadrilateral in space: of its two cuts into triangles the one with
/// more area, so a warped quadrilateral gets the roof, not the valley.
inline double quad_double_area3(const double* points, std::size_t ld, const unsigned* column)
{
    const vec3 p0 = load<3>(points + column[0] * ld);
    const vec3 p1 = load<3>(points + column[1] * ld);
    const vec3 p2 = load<3>(points + column[2] * ld);
    const vec3 p3 = load<3>(points + column[3] * ld);
    const double s1 = length(cross(p1 - p0, p2 - p0)) + length(cross(p3 - p0, p2 - p0));
    const double s2 = length(cross(p0 - p1, p3 - p1)) + length(cross(p2 - p1, p3 - p1));
    return s1 > s2 ? s1 : s2;
}

/// Twice the area of the quadrilateral of the nodes in rows 0 to 3 of a column. In the plane half
/// the cross product of the diagonals, signed.
template <int D>
inline double quad_double_area(const double* points, std::size_t ld, const unsigned* column)
{
    if constexpr (D == 3) {
        return quad_double_area3(points, ld, column);
    } else {
        const vec2 e = load<2>(points + column[2] * ld) - load<2>(points + column[0] * ld);
        const vec2 f = load<2>(points + column[3] * ld) - load<2>(points + column[1] * ld);
        return f[1] * e[0] - e[1] * f[0];
    }
}

} // namespace vorel::tessalo2d
