// Circumscribed circles of triangles, with care for thin ones. The kernels take no branch, so that
// a loop over triangles can be vectorised.
#pragma once

#include "foundation/vec.h"

#include <vorel/dense2D.h>

#include <limits>

namespace vorel::tessalo2d {

template <int D>
struct circumcircle {
    vec<D> center;
    /// The largest double for a triangle that has no circumscribed circle, or nearly none.
    double radius2;
};

/// Solves the system with the symmetric matrix of rows (a, b) and (b, c) and right side (r1, r2),
/// given the reciprocal of its determinant, and improves the solution `passes` times unless it is
/// good to 1e-12 before.
[[gnu::always_inline]] inline void solve_2x2_refined(double a, double b, double c, double inv_det,
                                                     double r1, double r2, double& x, double& y,
                                                     unsigned passes)
{
    constexpr double TOLERANCE = 1e-12;
    x = (c * r1 - b * r2) * inv_det;
    y = (a * r2 - b * r1) * inv_det;
    bool refining = true;
    for (unsigned pass = 0; pass < passes; ++pass) {
        const double f = r1 - (y * b + x * a);
        const double g = r2 - (y * c + x * b);
        const double dx = (f * c - g * b) * inv_det;
        const double dy = (g * a - f * b) * inv_det;
        const double better_x = x + dx;
        const double better_y = y + dy;
        x = refining ? better_x : x;
        y = refining ? better_y : y;
        refining = refining & ((std::fabs(dx) > std::fabs(x) * TOLERANCE) |
                               (std::fabs(dy) > std::fabs(y) * TOLERANCE));
    }
}

/// In the plane the centre is an offset from the midpoint of the longest side, along its normal. A
/// triangle without area keeps the midpoint; one with two corners at one place has the circle over
/// its side.
[[gnu::always_inline]] inline circumcircle<2> circumcircle_of(const vec2& p0, const vec2& p1,
                                                              const vec2& p2)
{
    // The longest side e with the corner `apex` opposite, the first one of equals.
    vec2 e = p2 - p1;
    vec2 ends = p1 + p2;
    vec2 apex = p0;
    double l2 = squared_length(e);
    const vec2 e1 = p0 - p2;
    const double l2_1 = squared_length(e1);
    const bool second = l2_1 > l2;
    e = select(second, e1, e);
    ends = select(second, p2 + p0, ends);
    apex = select(second, p1, apex);
    l2 = second ? l2_1 : l2;
    const vec2 e2 = p1 - p0;
    const double l2_2 = squared_length(e2);
    const bool third = l2_2 > l2;
    e = select(third, e2, e);
    ends = select(third, p0 + p1, ends);
    apex = select(third, p2, apex);
    l2 = third ? l2_2 : l2;

    const vec2 m = 0.5 * ends;
    const vec2 d = apex - m;
    const double c = e[0] * d[1] - e[1] * d[0];
    const double h = l2 * 0.25;
    const double dd = squared_length(d);
    const double g = dd - h;
    const bool regular = c * c > dd * 1e-24 * h;
    const double s = g / c;
    const vec2 moved = m + (s * 0.5) * vec2{{-e[1], e[0]}};
    const double flat = std::fabs(g) > h * 1e-12 ? std::numeric_limits<double>::max() : h;
    // A centre that does not move keeps the midpoint's bits.
    return {select(regular & (s != 0.0), moved, m), regular ? (1.0 + s * s) * h : flat};
}

/// In space the centre comes from the two sides at the third corner, or at the first corner when
/// the side opposite the third is the shortest: the longer sides, whose directions are known best.
/// A triangle without area gets its third corner.
[[gnu::always_inline]] inline circumcircle<3> circumcircle_of(const vec3& A, const vec3& B,
                                                              const vec3& C)
{
    const vec3 e = B - A;
    const double ee = squared_length(e);
    const double uu = squared_length(A - C);
    const double ww_at_C = squared_length(B - C);
    const bool from_A = (ee < uu) & (ee < ww_at_C);
    const vec3 O = select(from_A, A, C);
    const vec3 u = select(from_A, C, A) - O;
    const vec3 w = B - O;
    const double ww = from_A ? ee : ww_at_C;
    const double b = dot(u, w);
    const double det = uu * ww - b * b;
    const bool regular = det > uu * 1e-12 * ww;

    double x;
    double y;
    solve_2x2_refined(uu, b, ww, 1.0 / det, uu, ww, x, y, 2);
    const double y_half = y * 0.5;
    const vec3 along_u = (x * 0.5) * u;
    const vec3 r = select(y_half != 0.0, along_u + y_half * w, along_u);
    return {select(regular, O + r, C),
            regular ? squared_length(r) : std::numeric_limits<double>::max()};
}

/// Centre and squared radius for the nodes in rows 0 to 2 of a column; `coords` has 2 rows.
void circumcenter_2d(const dense2D<double>& coords, const unsigned* nodes, double& radius2,
                     double center[2]);

/// As above; `coords` has 3 rows.
void circumcenter_3d(const dense2D<double>& coords, const unsigned* nodes, double& radius2,
                     double center[3]);

} // namespace vorel::tessalo2d
