// Cuts quadrilaterals along the diagonal that gives the better worst triangle.
#include "conversion/cut_block.h"
#include "conversion/split_frame.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

/// Cuts block by block: gathers the quadrilaterals of a run of elements, scores them, and writes
/// the run's triangles. No step has a branch that depends on the mesh.
template <int D>
std::size_t cut_by_quality(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                           unsigned* to, std::size_t to_ld)
{
    const double* const points = coords.column(0);
    const std::size_t point_ld = coords.ld;
    const unsigned* const columns = connect.column(0);
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    constexpr std::size_t BLOCK = cut_block<D>::CAPACITY;
    cut_block<D> block;
    turned_quad quad[BLOCK];
    std::size_t all_quads = 0;
    for (std::size_t begin = 0; begin < elements; begin += BLOCK) {
        const std::size_t end = std::min(begin + BLOCK, elements);
        std::size_t quads = 0;
        for (std::size_t e = begin; e < end; ++e) {
            const unsigned* const c = columns + e * ld;
            const bool is_quad = c[3] < UNSET_ID;
            // A triangle takes a place that the next quadrilateral has again.
            const unsigned nodes[4] = {c[0], c[1], c[2], is_quad ? c[3] : c[0]};
            quad[quads] = turned_quad(nodes);
            for (int k = 0; k < 4; ++k)
                block.set_corner(quads, k, points + quad[quads].node[k] * point_ld);
            quads += is_quad;
        }
        block.score(quads);
        std::size_t i = 0;
        for (std::size_t e = begin; e < end; ++e) {
            const unsigned* const c = columns + e * ld;
            const std::size_t is_quad = c[3] < UNSET_ID;
            const bool first = prefers_first_cut(block.scores(i));
            const unsigned* const n = is_quad ? quad[i].node + !first : c;
            write_triangle(to, n[0], n[1], n[2]);
            write_triangle(to + to_ld, n[2], n[3], n[0]);
            to += to_ld << is_quad;
            i += is_quad;
        }
        all_quads += quads;
    }
    return all_quads;
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
    if (!part_from(connect, result)) return out_of_memory;
    return append_triangles(connect.cols, result, [&](unsigned* to, std::size_t ld) {
        return has_rows(coords, 2) ? cut_by_quality<2>(coords, connect, to, ld)
                                   : cut_by_quality<3>(coords, connect, to, ld);
    });
}

} // namespace vorel::tessalo2d
