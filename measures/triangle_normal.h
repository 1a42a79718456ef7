// Normals of single elements, not scaled: twice the area long for a triangle, twice the vector area
// for a quadrilateral, pointing to where the corners turn anticlockwise.
#pragma once

#include "foundation/vec.h"

namespace vorel::tessalo2d {

/// The normal of the triangle a, b, c. It multiplies the sides that meet at c unless the third side
/// is no longer than either: the longest side of a needle would cost its normal most digits.
/// Here, unlike in `cross3`, the third side is a difference of points and a tie goes to it.
inline vec3 triangle_normal(const vec3& a, const vec3& b, const vec3& c)
{
    const vec3 p = a - c;
    const vec3 q = b - c;
    const vec3 e = b - a;
    const double pp = squared_length(p);
    const double qq = squared_length(q);
    // min(qq, pp) as std::min(qq, pp) has it for NaN.
    const double shorter = pp < qq ? pp : qq;
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
