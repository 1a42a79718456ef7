// The angles at the corners of triangles and quadrilaterals, in radians. In the plane they carry
// the sign of the turn: negative at a reflex corner of an anticlockwise element. In space they lie
// between 0 and pi.
#pragma once

#include "foundation/vec.h"

#include <cmath>

namespace vorel::tessalo2d {

/// Factors that give the angles of an equilateral triangle and of a square the value 1.
inline constexpr double TRIANGLE_ANGLE_SCALE = 0.9549296585513721; // 3 / pi
inline constexpr double QUAD_ANGLE_SCALE = 0.6366197723675814;     // 2 / pi

/// Sine and cosine of an angle, both multiplied by the lengths of its legs.
struct scaled_direction {
    double sine;
    double cosine;
};

inline double angle_of(const scaled_direction& s)
{
    return std::atan2(s.sine, s.cosine);
}

/// The angle from u to w.
inline scaled_direction direction_between(const vec2& u, const vec2& w)
{
    return {cross(u, w), dot(u, w)};
}
inline scaled_direction direction_between(const vec3& u, const vec3& w)
{
    return {length(cross(u, w)), dot(u, w)};
}

/// The angle at corner k of the N nodes of a column, from the next corner to the one before.
/// `points` is the first coordinate of node 0, `ld` the distance between nodes.
template <int D, int N>
inline scaled_direction corner_direction(const double* points, std::size_t ld,
                                         const unsigned* column, int k)
{
    const vec<D> p = load<D>(points + column[k] * ld);
    const vec<D> next = load<D>(points + column[(k + 1) % N] * ld);
    const vec<D> previous = load<D>(points + column[(k + N - 1) % N] * ld);
    return direction_between(next - p, previous - p);
}

template <int D>
inline double triangle_corner_angle(const double* points, std::size_t ld, const unsigned* column,
                                    int k)
{
    return angle_of(corner_direction<D, 3>(points, ld, column, k));
}

template <int D>
inline double quad_corner_angle(const double* points, std::size_t ld, const unsigned* column, int k)
{
    return angle_of(corner_direction<D, 4>(points, ld, column, k));
}

/// The angles of all corners in order. Normalised, the angle of an equilateral triangle is 1.
template <int D>
inline void triangle_corner_angles(const double* points, std::size_t ld, const unsigned* column,
                                   bool normalise, double (&angles)[3])
{
    for (int k = 0; k < 3; ++k) {
        angles[k] = triangle_corner_angle<D>(points, ld, column, k);
        if (normalise) angles[k] *= TRIANGLE_ANGLE_SCALE;
    }
}

/// The angles of all corners in order. Normalised, a right angle is 1.
template <int D>
inline void quad_corner_angles(const double* points, std::size_t ld, const unsigned* column,
                               bool normalise, double (&angles)[4])
{
    for (int k = 0; k < 4; ++k) {
        angles[k] = quad_corner_angle<D>(points, ld, column, k);
        if (normalise) angles[k] *= QUAD_ANGLE_SCALE;
    }
}

} // namespace vorel::tessalo2d
