// The smallest and the largest corner angle of each element.
#include "foundation/status.h"
#include "measures/corner_angles.h"

#include <vorel/tessalo2d.h>

#include <algorithm>

namespace vorel::tessalo2d {

namespace {

/// Smallest and largest of N angles times `scale`. A NaN replaces what was found before it and is
/// replaced by what comes after it.
template <int N>
void extremes(const double* angle, double scale, double& smallest, double& largest)
{
    double low = angle[0] * scale;
    double high = low;
    for (int k = 1; k < N; ++k) {
        const double next = angle[k] * scale;
        low = next >= low ? low : next;
        high = high >= next ? high : next;
    }
    smallest = low;
    largest = high;
}

template <int D, int N>
void corner_directions(const double* points, std::size_t ld, const unsigned* column,
                       scaled_direction* direction)
{
    for (int k = 0; k < N; ++k) direction[k] = corner_direction<D, N>(points, ld, column, k);
}

/// Works in blocks: first all sines and cosines, then all arc tangents, then the extremes. The
/// arc tangent is a call, and beside it the rest of the work would not overlap.
template <int D, bool MIXED>
void element_angles(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                    bool normalized, double* smallest, double* largest)
{
    constexpr std::size_t BLOCK = 64;
    constexpr int MOST = MIXED ? 4 : 3;
    scaled_direction direction[BLOCK * MOST];
    double angle[BLOCK * MOST];

    const double* const points = coords.column(0);
    const std::size_t point_ld = coords.ld;
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    const double triangle_scale = normalized ? TRIANGLE_ANGLE_SCALE : 1.0;
    const double quad_scale = normalized ? QUAD_ANGLE_SCALE : 1.0;
    const auto is_quad = [](const unsigned* column) { return MIXED && column[3] < UNSET_ID; };

    for (std::size_t first = 0; first < elements; first += BLOCK) {
        const std::size_t last = std::min(first + BLOCK, elements);
        const unsigned* const begin = connect.column(first);
        const unsigned* column = begin;
        std::size_t corners = 0;
        for (std::size_t e = first; e < last; ++e, column += ld) {
            if (is_quad(column)) {
                corner_directions<D, 4>(points, point_ld, column, direction + corners);
                corners += 4;
            } else {
                corner_directions<D, 3>(points, point_ld, column, direction + corners);
                corners += 3;
            }
        }
        for (std::size_t i = 0; i < corners; ++i) angle[i] = angle_of(direction[i]);
        column = begin;
        corners = 0;
        for (std::size_t e = first; e < last; ++e, column += ld) {
            if (is_quad(column)) {
                extremes<4>(angle + corners, quad_scale, smallest[e], largest[e]);
                corners += 4;
            } else {
                extremes<3>(angle + corners, triangle_scale, smallest[e], largest[e]);
                corners += 3;
            }
        }
    }
}

template <int D>
void element_angles(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                    bool normalized, double* smallest, double* largest)
{
    if (has_rows(connect, 4))
        element_angles<D, true>(coords, connect, normalized, smallest, largest);
    else
        element_angles<D, false>(coords, connect, normalized, smallest, largest);
}

} // namespace

int angles(const dense2D<double>& coords, const dense2D<unsigned>& connect, bool normalized,
           dense1D<double, 8>& angle_min, dense1D<double, 8>& angle_max)
{
    angle_min.size = 0;
    angle_max.size = 0;
    if (is_empty(connect)) return success;
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    if (!has_rows(connect, 3, 4)) return bad_argument(2);
    const std::size_t elements = connect.cols;
    if (!angle_min.resize(elements) || !angle_max.resize(elements)) {
        angle_min.size = 0;
        angle_max.size = 0;
        return out_of_memory;
    }
    const element_type form = has_rows(connect, 4) ? ELEMENT_ANY_FACE : ELEMENT_T3;
    if (!tessalo::check_IDs(connect, form, node_bound(coords))) {
        // Kept: callers rely on outputs of full size here.
        std::fill_n(angle_min.begin(), elements, 0.0);
        std::fill_n(angle_max.begin(), elements, 0.0);
        return bad_argument(2);
    }
    double* const smallest = angle_min.begin();
    double* const largest = angle_max.begin();
    if (has_rows(coords, 2))
        element_angles<2>(coords, connect, normalized, smallest, largest);
    else
        element_angles<3>(coords, connect, normalized, smallest, largest);
    return success;
}

} // namespace vorel::tessalo2d
