// Cuts quadrilaterals along the diagonal that gives the better worst triangle.
#include "conversion/diagonal.h"
#include "conversion/split_frame.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

template <int D>
std::size_t cut_by_quality(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                           unsigned* to, std::size_t to_ld)
{
    const double* const points = coords.column(0);
    const std::size_t point_ld = coords.ld;
    const unsigned* column = connect.column(0);
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    std::size_t quads = 0;
    for (std::size_t e = 0; e < elements; ++e, column += ld) {
        if (column[3] == UNSET_ID) {
            write_triangle(to, column[0], column[1], column[2]);
            to += to_ld;
            continue;
        }
        const turned_quad quad(column);
        const unsigned* const m = quad.node;
        const bool first = prefers_first_cut(
            score_by_quality(load<D>(points + m[0] * point_ld), load<D>(points + m[1] * point_ld),
                             load<D>(points + m[2] * point_ld), load<D>(points + m[3] * point_ld)));
        // The second cut is the first one of the nodes from 1 on.
        write_triangle(to, first ? m[0] : m[1], first ? m[1] : m[2], first ? m[2] : m[3]);
        write_triangle(to + to_ld, first ? m[2] : m[3], first ? m[3] : m[0], first ? m[0] : m[1]);
        to += 2 * to_ld;
        ++quads;
    }
    return quads;
}

} // namespace

int split_Q4_into_T3(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                     dense2D<unsigned>& result)
{
    if (connect.cols == 0) return success;
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    if (!tessalo::check_IDs(connect, ELEMENT_ANY_FACE, node_bound(coords))) return bad_argument(2);
    if (!takes_rows(result, 3)) return bad_argument(3);
    // Columns without rows are no elements.
    if (is_empty(connect)) return success;
    if (has_rows(connect, 3)) return append_columns(connect, result) ? success : out_of_memory;
    return append_triangles(connect.cols, result, [&](unsigned* to, std::size_t ld) {
        return has_rows(coords, 2) ? cut_by_quality<2>(coords, connect, to, ld)
                                   : cut_by_quality<3>(coords, connect, to, ld);
    });
}

} // namespace vorel::tessalo2d
