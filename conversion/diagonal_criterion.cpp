// The criteria by which the diagonal of a cut is chosen.
#include "conversion/diagonal_criterion.h"

#include "conversion/quad_quality.h"
#include "foundation/area.h"
#include "measures/triangle_normal.h"

#include <vorel/tessalo2d.h>

#include <cmath>

namespace vorel::tessalo2d {

namespace {

/// One cut: its triangles. Its diagonal runs from t1[0] to t1[2].
struct cut {
    unsigned t1[3];
    unsigned t2[3];
};

/// A pair that is flatter than this, in radians or radians times length, is judged by quality.
constexpr double LEAST_FOLD = -1e-6;

template <int D>
double worse_quality(const double* points, std::size_t ld, const cut& c)
{
    return std::min(triangle_quality<D>(points, ld, c.t1), triangle_quality<D>(points, ld, c.t2));
}

template <int D>
double worse_angle(const double* points, std::size_t ld, const cut& c)
{
    return std::min(triangle_angle_quality<D>(points, ld, c.t1),
                    triangle_angle_quality<D>(points, ld, c.t2));
}

template <int D>
double larger_area(const double* points, std::size_t ld, const cut& c)
{
    return std::min(-triangle_double_area<D>(points, ld, c.t1),
                    -triangle_double_area<D>(points, ld, c.t2));
}

template <int D>
double total_area(const double* points, std::size_t ld, const cut& c)
{
    return -(triangle_double_area<D>(points, ld, c.t1) + triangle_double_area<D>(points, ld, c.t2));
}

double fold(const double* points, std::size_t ld, const cut& c)
{
    const vec3 na = triangle_normal(points, ld, c.t1);
    const vec3 nb = triangle_normal(points, ld, c.t2);
    const double score = -std::abs(std::atan2(length(cross(na, nb)), dot(na, nb)));
    return score > LEAST_FOLD ? worse_quality<3>(points, ld, c) : score;
}

/// The fold about the diagonal, times its length.
double weighted_fold(const double* points, std::size_t ld, const cut& c)
{
    const vec3 na = triangle_normal(points, ld, c.t1);
    const vec3 nb = triangle_normal(points, ld, c.t2);
    vec3 axis = load<3>(points + c.t1[0] * ld) - load<3>(points + c.t1[2] * ld);
    double axis_length = squared_length(axis);
    if (axis_length != 0.0 && axis_length != 1.0) {
        axis_length = std::sqrt(axis_length);
        for (int i = 0; i < 3; ++i) axis[i] /= axis_length;
    }
    const double angle = std::atan2(dot(cross(na, nb), axis), dot(na, nb));
    const double score = -std::abs(angle * axis_length);
    return score > LEAST_FOLD ? worse_quality<3>(points, ld, c) : score;
}

} // namespace

template <int D>
cut_scores score_cuts(int criterion, const double* points, std::size_t ld, const turned_quad& quad)
{
    const unsigned* const m = quad.node;
    const cut first{{m[0], m[1], m[2]}, {m[2], m[3], m[0]}};
    const cut second{{m[1], m[2], m[3]}, {m[3], m[0], m[1]}};
    const auto both = [&](double (*score)(const double*, std::size_t, const cut&)) {
        return cut_scores{score(points, ld, first), score(points, ld, second)};
    };
    switch (criterion) {
    case DIAGONAL_BEST_QUALITY:
        return both(worse_quality<D>);
    case DIAGONAL_BEST_ANGLE:
        return both(worse_angle<D>);
    case DIAGONAL_LEAST_LARGER_AREA:
        return both(larger_area<D>);
    case DIAGONAL_LEAST_AREA:
        return both(total_area<D>);
    default:
        break;
    }
    if constexpr (D == 3) {
        if (criterion == DIAGONAL_LEAST_FOLD) return both(fold);
        if (criterion == DIAGONAL_LEAST_WEIGHTED_FOLD) return both(weighted_fold);
    }
    return {1.0, 0.0};
}

template cut_scores score_cuts<2>(int, const double*, std::size_t, const turned_quad&);
template cut_scores score_cuts<3>(int, const double*, std::size_t, const turned_quad&);

} // namespace vorel::tessalo2d
