// Where the nodes of a high-order element lie: formulas on points.
#pragma once

#include "foundation/vec.h"

namespace vorel::tessalo2d {

/// The point at the fraction `t` of the way from a to b; a itself at 0, whatever b holds.
template <int D>
inline vec<D> point_on_edge(const vec<D>& a, const vec<D>& b, double t)
{
    return t != 0.0 ? a + t * (b - a) : a;
}

/// The point at weight `w0` of p0 and `w1` of p1; a zero weight adds nothing, whatever its corner
/// holds.
template <int D>
inline vec<D> point_in_triangle(const vec<D>& p0, const vec<D>& p1, const vec<D>& p2, double w0,
                                double w1)
{
    vec<D> point = p2;
    if (w0 != 0.0) point = point + w0 * (p0 - p2);
    if (w1 != 0.0) point = point + w1 * (p1 - p2);
    return point;
}

/// The bilinear point at (s, t); a zero weight adds nothing, whatever its corner holds.
template <int D>
inline vec<D> point_in_quad(const vec<D> (&p)[4], double s, double t)
{
    const double w[4] = {(1.0 - s) * (1.0 - t), s * (1.0 - t), s * t, (1.0 - s) * t};
    vec<D> point{};
    bool begun = false;
    for (int k = 0; k < 4; ++k) {
        if (w[k] == 0.0) continue;
        point = begun ? point + w[k] * p[k] : w[k] * p[k];
        begun = true;
    }
    return point;
}

/// Parameters of a point in a quadrilateral.
struct quad_fractions {
    double s;
    double t;
};

/// The crossing of the two lines that join opposite sides, at the fraction `a` of side 0-1 to `d`
/// of side 3-2, and `b` of side 0-3 to `c` of side 1-2.
inline quad_fractions crossing(double a, double b, double c, double d)
{
    const double k = 1.0 / (1.0 - (a - d) * (b - c));
    return {(a - (a - d) * b) * k, (b - (b - c) * a) * k};
}

} // namespace vorel::tessalo2d
