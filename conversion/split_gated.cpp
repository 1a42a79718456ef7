// Cuts the quadrilaterals that are not good enough and keeps the others.
#include "conversion/diagonal_criterion.h"
#include "conversion/quad_quality.h"
#include "conversion/split_frame.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

/// What a quadrilateral has to reach to stay. A measure that is not a number reaches nothing.
struct quality_gate {
    double shape;
    double angle;
    double warp;
};

/// The angles cost most and are looked at last.
template <int D>
bool passes(const quality_gate& least, const double* points, std::size_t ld, const unsigned* column)
{
    if constexpr (D == 2) {
        return 1.0 >= least.warp && quad_shape_quality(points, ld, column) >= least.shape &&
               quad_angle_quality<2>(points, ld, column) >= least.angle;
    } else {
        const auto [shape, warp] = quad_shape_and_warp(points, ld, column);
        return shape >= least.shape && warp >= least.warp &&
               warp * quad_angle_quality<3>(points, ld, column) >= least.angle;
    }
}

template <int D>
void judge(const quality_gate& least, const dense2D<double>& coords,
           const dense2D<unsigned>& connect, dense1D<unsigned, 8>& kept_IDs,
           dense1D<unsigned, 8>& split_IDs)
{
    const double* const points = coords.column(0);
    const unsigned elements = static_cast<unsigned>(connect.cols);
    for (unsigned e = 0; e < elements; ++e) {
        const unsigned* const column = connect.column(e);
        const bool stays = column[3] == UNSET_ID || passes<D>(least, points, coords.ld, column);
        (stays ? kept_IDs : split_IDs).append(e);
    }
}

/// Copies the listed columns to `to` and returns how many there were.
std::size_t copy_columns(const dense2D<unsigned>& connect, std::size_t elements,
                         const dense1D<unsigned, 8>& listed, unsigned* to, std::size_t to_ld)
{
    std::size_t copied = 0;
    for (std::size_t k = 0; k < listed.size; ++k) {
        if (listed[k] >= elements) continue;
        std::copy_n(connect.column(listed[k]), 4, to + copied * to_ld);
        ++copied;
    }
    return copied;
}

/// Writes the two triangles of each listed quadrilateral to `to` and returns how many there were.
template <int D>
std::size_t cut_columns(int criterion, const dense2D<double>& coords,
                        const dense2D<unsigned>& connect, std::size_t elements,
                        const dense1D<unsigned, 8>& listed, unsigned* to, std::size_t to_ld)
{
    const double* const points = coords.column(0);
    std::size_t quads = 0;
    for (std::size_t k = 0; k < listed.size; ++k) {
        if (listed[k] >= elements || connect(3, listed[k]) == UNSET_ID) continue;
        const turned_quad quad(connect.column(listed[k]));
        const unsigned* const m = quad.node;
        if (prefers_first_cut(score_cuts<D>(criterion, points, coords.ld, quad))) {
            write_triangle(to, m[0], m[1], m[2]);
            write_triangle(to + to_ld, m[2], m[3], m[0]);
        } else {
            write_triangle(to, m[1], m[2], m[3]);
            write_triangle(to + to_ld, m[3], m[0], m[1]);
        }
        to[3] = UNSET_ID;
        to[to_ld + 3] = UNSET_ID;
        to += 2 * to_ld;
        ++quads;
    }
    return quads;
}

} // namespace

int split_Q4_into_T3(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                     double min_shape_quality, double min_angle_quality, double min_warp,
                     int diagonal_criterion, dense1D<unsigned, 8>& kept_IDs,
                     dense1D<unsigned, 8>& split_IDs, dense2D<unsigned>& result)
{
    if (connect.cols == 0) return success;
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    if (!has_rows(connect, 4)) return bad_argument(2);
    if (!tessalo::check_IDs(connect, ELEMENT_ANY_FACE, node_bound(coords))) return bad_argument(2);
    // Kept: callers rely on 8, though the matrix is the ninth argument.
    if (!takes_rows(result, 4)) return bad_argument(8);
    const std::size_t elements = connect.cols;
    if (elements >= UNSET_ID) return out_of_memory;
    if (!part_from(connect, result) || !part_from(connect, kept_IDs) ||
        !part_from(connect, split_IDs))
        return out_of_memory;
    // Room behind what the lists hold, so that no append below is dropped.
    if (!kept_IDs.reserve(kept_IDs.size + elements, 1)) return out_of_memory;
    if (!split_IDs.reserve(split_IDs.size + elements, 1)) return out_of_memory;

    const bool plane = has_rows(coords, 2);
    const quality_gate least{min_shape_quality, min_angle_quality, min_warp};
    if (plane)
        judge<2>(least, coords, connect, kept_IDs, split_IDs);
    else
        judge<3>(least, coords, connect, kept_IDs, split_IDs);

    const std::size_t old_cols = result.is_empty() ? 0 : result.cols;
    const std::size_t most = kept_IDs.size + 2 * split_IDs.size + old_cols;
    if (!result.resize(4, most)) return out_of_memory;
    const std::size_t ld = result.ld;
    const std::size_t kept = copy_columns(connect, elements, kept_IDs, result.column(old_cols), ld);
    unsigned* const to = result.column(old_cols + kept);
    const std::size_t quads =
        plane ? cut_columns<2>(diagonal_criterion, coords, connect, elements, split_IDs, to, ld)
              : cut_columns<3>(diagonal_criterion, coords, connect, elements, split_IDs, to, ld);
    // A cut to fewer columns needs no storage.
    (void)result.resize(4, old_cols + kept + 2 * quads);
    return counted(quads);
}

} // namespace vorel::tessalo2d
