// The measures that a quadrilateral is judged by.
#include "conversion/quad_quality.h"

#include "measures/corner_angles.h"

#include <algorithm>
#include <cmath>

namespace vorel::tessalo2d {

namespace {

constexpr double SQUARE = 5.656854249492381; // 4 sqrt(2), scales the shape of a square to 1
constexpr double PER_PI = 0.3183098861837907;

/// Side k runs from corner k to corner k + 1.
template <int D>
struct quad_sides {
    quad_sides(const double* points, std::size_t ld, const unsigned* column)
    {
        vec<D> p[4];
        for (int k = 0; k < 4; ++k) p[k] = load<D>(points + column[k] * ld);
        double squares[4];
        for (int k = 0; k < 4; ++k) {
            side[k] = p[(k + 1) % 4] - p[k];
            squares[k] = squared_length(side[k]);
        }
        perimeter = std::sqrt(squares[0]) + std::sqrt(squares[1]) + std::sqrt(squares[2]) +
                    std::sqrt(squares[3]);
        longest_square = squares[0];
        for (int k = 1; k < 4; ++k) longest_square = std::max(longest_square, squares[k]);
        longest_square = std::max(longest_square, squared_length(p[2] - p[0]));
        longest_square = std::max(longest_square, squared_length(p[3] - p[1]));
    }

    /// The product of the sides that meet in corner k: twice the area of its triangle in the plane,
    /// its normal in space.
    auto corner(int k) const { return cross(side[(k + 3) % 4], side[k]); }

    vec<D> side[4];
    double perimeter;
    /// Of the sides and the diagonals.
    double longest_square;
};

/// Folds an angle in right angles about 1: nearness to a right angle.
double nearness_to_right(double right_angles)
{
    return right_angles > 1.0 ? 2.0 - right_angles : right_angles;
}

} // namespace

double quad_shape_quality(const double* points, std::size_t ld, const unsigned* column)
{
    const quad_sides<2> q(points, ld, column);
    const double least =
        std::min(std::min(std::min(q.corner(0), q.corner(1)), q.corner(2)), q.corner(3));
    const double product = std::sqrt(q.longest_square) * q.perimeter;
    const double shape = product > 0.0 ? least / product * SQUARE : 0.0;
    if (!(shape >= -1.0)) return -1.0;
    return std::min(shape, 1.0);
}

double fold_factor(const vec3& na, const vec3& nb, const vec3& nc, const vec3& nd)
{
    const double c1 = dot(na, nb);
    const double d1 = squared_length(na) * squared_length(nb);
    const double c2 = dot(nc, nd);
    const double d2 = squared_length(nc) * squared_length(nd);
    // Compares c1 / sqrt(d1) with c2 / sqrt(d2) without a root.
    const bool second = std::abs(c1) * c1 * d2 > std::abs(c2) * c2 * d1;
    double cosine = second ? c2 / std::sqrt(d2) : c1 / std::sqrt(d1);
    if (cosine < -1.0) cosine = -1.0;
    if (cosine > 1.0) cosine = 1.0;
    return std::acos(-cosine) * PER_PI;
}

shape_and_warp quad_shape_and_warp(const double* points, std::size_t ld, const unsigned* column)
{
    const quad_sides<3> q(points, ld, column);
    vec3 normal[4];
    double square[4];
    for (int k = 0; k < 4; ++k) {
        normal[k] = q.corner(k);
        square[k] = squared_length(normal[k]);
    }
    const double least = std::min(std::min(std::min(square[0], square[1]), square[2]), square[3]);
    const bool has_corners = least > 0.0;
    const bool has_folds = square[1] * square[3] > 0.0 && square[0] * square[2] > 0.0;
    const double fold =
        has_corners || has_folds ? fold_factor(normal[1], normal[3], normal[0], normal[2]) : 0.0;

    const double product = q.longest_square * q.perimeter * q.perimeter;
    const double base = product > 0.0 ? std::sqrt(least / product) * SQUARE : 0.0;
    const double shape = base * (has_corners ? fold : 0.0);
    const double warp = has_folds ? fold : 0.0;
    return {shape >= 0.0 ? std::min(shape, 1.0) : 0.0, warp >= 0.0 ? std::min(warp, 1.0) : 0.0};
}

double quad_shape_quality3(const double* points, std::size_t ld, const unsigned* column)
{
    return quad_shape_and_warp(points, ld, column).shape;
}

double quad_warp(const double* points, std::size_t ld, const unsigned* column)
{
    return quad_shape_and_warp(points, ld, column).warp;
}

template <int D>
double quad_angle_quality(const double* points, std::size_t ld, const unsigned* column)
{
    double angles[4];
    quad_corner_angles<D>(points, ld, column, true, angles);
    double least = 1.0;
    for (const double angle : angles) {
        const double nearness = nearness_to_right(angle);
        if (nearness < least) least = nearness;
    }
    return std::max(least, -1.0);
}

template <int D>
double triangle_angle_quality(const double* points, std::size_t ld, const unsigned* column)
{
    double largest = -HUGE_VAL;
    for (int k = 0; k < 3; ++k) {
        const double angle = triangle_corner_angle<D>(points, ld, column, k);
        if (angle > largest) largest = angle;
    }
    return std::max(nearness_to_right(largest * QUAD_ANGLE_SCALE), -1.0);
}

template double quad_angle_quality<2>(const double*, std::size_t, const unsigned*);
template double quad_angle_quality<3>(const double*, std::size_t, const unsigned*);
template double triangle_angle_quality<2>(const double*, std::size_t, const unsigned*);
template double triangle_angle_quality<3>(const double*, std::size_t, const unsigned*);

} // namespace vorel::tessalo2d
