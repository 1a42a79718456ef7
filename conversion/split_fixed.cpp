// Cuts quadrilaterals along the diagonal from their first node.
#include "conversion/split_frame.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

/// Writes both triangles of every column and steps over the second one only where there is one:
/// mixed meshes alternate without a pattern, and a branch would be mispredicted half of the time.
std::size_t cut_from_first_node(const dense2D<unsigned>& connect, unsigned* to, std::size_t to_ld)
{
    const unsigned* column = connect.column(0);
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    std::size_t quads = 0;
    for (std::size_t e = 0; e < elements; ++e, column += ld) {
        const unsigned a = column[0];
        const unsigned b = column[1];
        const unsigned c = column[2];
        const unsigned d = column[3];
        write_triangle(to, a, b, c);
        write_triangle(to + to_ld, c, d, a);
        const std::size_t quad = d < UNSET_ID;
        quads += quad;
        to += to_ld << quad;
    }
    return quads;
}

} // namespace

int split_Q4_into_T3(const dense2D<unsigned>& connect, dense2D<unsigned>& result)
{
    if (connect.cols == 0) return success;
    if (!has_rows(connect, 3, 4)) return bad_argument(1);
    if (!takes_rows(result, 3)) return bad_argument(2);
    if (has_rows(connect, 3)) return append_columns(connect, result) ? success : out_of_memory;
    return append_triangles(connect.cols, result, [&](unsigned* to, std::size_t ld) {
        return cut_from_first_node(connect, to, ld);
    });
}

} // namespace vorel::tessalo2d
