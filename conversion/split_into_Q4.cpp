// All-quadrilateral meshes: raise the order, then cut each element at its new nodes.
#include "conversion/high_order.h"
#include "conversion/midnode_cuts.h"
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

/// Appends the children of all elements. A quadrilateral has a node in row 7, if there is such a
/// row.
template <bool MIXED>
unsigned* cut_columns(const dense2D<unsigned>& elements, unsigned* out, std::size_t out_ld)
{
    const unsigned* column = elements.block->data + elements.offset;
    for (std::size_t e = 0; e < elements.cols; ++e, column += elements.ld)
        if (MIXED && column[7] < UNSET_ID)
            out = write_children(Q9_INTO_Q4, column, out, out_ld);
        else
            out = write_children(T7_INTO_Q4, column, out, out_ld);
    return out;
}

} // namespace

int split_into_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                  dense2D<unsigned>& result, const dense2D<unsigned>& edges)
{
    if (connect.cols == 0) return success;
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    const unsigned bound = node_bound(coords);
    if (!tessalo::check_IDs(connect, ELEMENT_ANY_FACE, bound)) return bad_argument(2);
    if (!takes_rows(result, 4)) return bad_argument(3);
    if (!tessalo::check_IDs(edges, ELEMENT_E3, bound)) return bad_argument(4);

    dense2D<unsigned> cut;
    if (convert_worker(coords, connect, 1, 1, 1, cut, edges, dense1D<double, 8>()) < 0)
        return out_of_memory;
    const std::size_t triangles = is_empty(cut) ? 0 : count_triangles(connect);
    const std::size_t old_cols = is_empty(result) ? 0 : result.cols;
    const std::size_t children = 3 * triangles + 4 * (cut.cols - triangles);
    if (!result.resize(4, old_cols + children)) return out_of_memory;
    if (children == 0) return success;
    unsigned* const out = result.column(old_cols);
    unsigned* const end = cut.rows == 9 ? cut_columns<true>(cut, out, result.ld)
                                        : cut_columns<false>(cut, out, result.ld);
    // A quadrilateral whose edges found no memory gave fewer.
    const auto written = static_cast<std::size_t>(end - out) / result.ld;
    (void)result.resize(4, old_cols + written);
    return success;
}

} // namespace vorel::tessalo2d
