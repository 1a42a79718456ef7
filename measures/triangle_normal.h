// Normals of single elements, not scaled: twice the area long for a triangle, twice the vector area
// for a quadrilateral, pointing to where the corners turn anticlockwise.
#pragma once

#include "foundation/vec.h"

namespace vorel::tessalo2d {

/// The normal of the triangle a, b, c. It multiplies the sides that meet at c unless the third side
/// is no longer than either: the longest side of a needle would cost its normal most digits.
/// Here, unlike in `cross3`, the third side is a difference of points and a tie goes to it.
template <class T>
inline vec<3, T> triangle_normal(const vec<3, T>& a, const vec<3, T>& b, const vec<3, T>& c)
{
    const vec<3, T> p = a - c;
    const vec<3, T> q = b - c;
    const vec<3, T> e = b - a;
    const T pp = squared_length(p);
    const T qq = squared_length(q);
    // min(qq, pp) as std::min(qq, pp) has it for NaN.
    const T shorter = pp < qq ? pp : qq;
    return cross(p, select(squared_length(e) > shorter, q, e));
}

/// As above for the nodes in rows 0 to 2 of a column. `points` is the first coordinate of node 0,
/// `ld` the distance between nodes.
inline vec3 triangle_normal(const double* points, std::size_t ld, const unsigned* column)
{
    return triangle_normal(load<3>(points + column[0] * ld), load<3>(points + column[1] * ld),
                           load<3>(points + column[2] * ld));
}

/// The normal of the quadrilateral of the nodes in rows 0 to 3 of a column, which needn't lie in
/// one plane: the product of its diagonals.
inline vec3 quad_normal(const double* points, std::size_t ld, const unsigned* column)
{
    return cross(load<3>(points + column[2] * ld) - load<3>(points + column[0] * ld),
                 load<3>(points + column[3] * ld) - load<3>(points + column[1] * ld));
}

} // namespace vorel::tessalo2d
