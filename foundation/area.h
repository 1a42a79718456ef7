// Twice the areas of triangles and quadrilaterals.
#pragma once

#include "foundation/vec.h"

#include <cstddef>

namespace vorel::tessalo2d {

/// Twice the signed area of the triangle that two plane vectors span, from its two shorter sides:
/// the product of the longest side would lose a needle's area to cancellation. The comparison is on
/// squared lengths and ties go to a and b.
template <class T>
inline T cross2(const vec<2, T>& a, const vec<2, T>& b)
{
    const vec<2, T> d = b - a;
    const T aa = squared_length(a);
    const T bb = squared_length(b);
    // min(bb, aa) as std::min(bb, aa) has it for NaN.
    const T shorter = aa < bb ? aa : bb;
    return cross(a, select(squared_length(d) >= shorter, b, d));
}

/// As `cross2`, in space and without a sign.
template <class T>
inline T cross3(const vec<3, T>& a, const vec<3, T>& b)
{
    const vec<3, T> d = b - a;
    const T aa = squared_length(a);
    const T bb = squared_length(b);
    const T shorter = aa < bb ? aa : bb;
    return length(cross(a, select(squared_length(d) >= shorter, b, d)));
}

/// Twice the area of a triangle by its corners; signed in the plane.
template <class T>
inline T triangle_double_area(const vec<2, T>& p0, const vec<2, T>& p1, const vec<2, T>& p2)
{
    return cross2(p0 - p2, p1 - p2);
}
template <class T>
inline T triangle_double_area(const vec<3, T>& p0, const vec<3, T>& p1, const vec<3, T>& p2)
{
    return cross3(p0 - p2, p1 - p2);
}

/// Twice the unsigned area of a quadrilateral in space: of its two cuts into triangles the one with
/// more area, so a warped quadrilateral gets the roof, not the valley.
template <class T>
inline T quad_double_area3(const vec<3, T>& p0, const vec<3, T>& p1, const vec<3, T>& p2,
                           const vec<3, T>& p3)
{
    const T s1 = length(cross(p1 - p0, p2 - p0)) + length(cross(p3 - p0, p2 - p0));
    const T s2 = length(cross(p0 - p1, p3 - p1)) + length(cross(p2 - p1, p3 - p1));
    return s1 > s2 ? s1 : s2;
}

/// Twice the area of a quadrilateral by its corners. In the plane the cross product of the
/// diagonals, signed.
template <class T>
inline T quad_double_area(const vec<2, T>& p0, const vec<2, T>& p1, const vec<2, T>& p2,
                          const vec<2, T>& p3)
{
    const vec<2, T> e = p2 - p0;
    const vec<2, T> f = p3 - p1;
    return f[1] * e[0] - e[1] * f[0];
}
template <class T>
inline T quad_double_area(const vec<3, T>& p0, const vec<3, T>& p1, const vec<3, T>& p2,
                          const vec<3, T>& p3)
{
    return quad_double_area3(p0, p1, p2, p3);
}

/// Twice the area of the triangle of the nodes in rows 0 to 2 of a column. `points` is the first
/// coordinate of node 0, `ld` the distance between nodes.
template <int D>
inline double triangle_double_area(const double* points, std::size_t ld, const unsigned* column)
{
    return triangle_double_area(load<D>(points + column[0] * ld), load<D>(points + column[1] * ld),
                                load<D>(points + column[2] * ld));
}

/// Twice the area of the quadrilateral of the nodes in rows 0 to 3 of a column.
template <int D>
inline double quad_double_area(const double* points, std::size_t ld, const unsigned* column)
{
    return quad_double_area(load<D>(points + column[0] * ld), load<D>(points + column[1] * ld),
                            load<D>(points + column[2] * ld), load<D>(points + column[3] * ld));
}

} // namespace vorel::tessalo2d
