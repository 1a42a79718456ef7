// The measures that a quadrilateral is judged by: its shape, its corner angles and, in space, its
// warp. `points` is the first coordinate of node 0, `ld` the distance between nodes, `column` holds
// the IDs of the nodes.
#pragma once

#include "foundation/vec.h"

namespace vorel::tessalo2d {

/// 1 for a square, 0 for a quadrilateral with a corner of no area; negative where a corner turns
/// clockwise. Between -1 and 1: the least corner area over longest side or diagonal times
/// perimeter.
double quad_shape_quality(const double* points, std::size_t ld, const unsigned* column);

/// As above in space, where corners have no sign, times the fold of opposite corner normals.
/// Between 0 and 1.
double quad_shape_quality3(const double* points, std::size_t ld, const unsigned* column);

/// 1 for a flat quadrilateral, 1/2 for one folded to a right angle, 0 for one folded over or with a
/// corner of no area. Between 0 and 1.
double quad_warp(const double* points, std::size_t ld, const unsigned* column);

struct shape_and_warp {
    double shape;
    double warp;
};

/// `quad_shape_quality3` and `quad_warp` for little more than the price of one.
shape_and_warp quad_shape_and_warp(const double* points, std::size_t ld, const unsigned* column);

/// How far the normals of two pairs of opposite corners agree: 1 for equal directions, 1/2 for a
/// right angle, 0 for opposed ones, of the pair that agrees less. NaN where that pair has a normal
/// of length 0.
double fold_factor(const vec3& na, const vec3& nb, const vec3& nc, const vec3& nd);

/// 1 for four right angles, 0 where a corner is flat or closed; negative where, in the plane, one
/// turns clockwise. Between -1 and 1. A corner without an angle does not count.
template <int D>
double quad_angle_quality(const double* points, std::size_t ld, const unsigned* column);

/// How near the largest angle of a triangle is to a right one: 1 for a right triangle, 2/3 for an
/// equilateral one, 0 for a flat one; negative for one that turns clockwise in the plane. Between
/// -1 and 1. A corner without an angle does not count.
template <int D>
double triangle_angle_quality(const double* points, std::size_t ld, const unsigned* column);

} // namespace vorel::tessalo2d
