// Back from quadratic to linear elements, with or without the midnodes.
#include "conversion/midnode_cuts.h"
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

#include <limits>

namespace vorel::tessalo2d {

namespace {

/// Rows of a T6: a column that is unset from this row on is a triangle.
constexpr std::size_t T6_ROWS = 6;

/// Writes the children of one T6 as triangles; `TARGET_ROWS` is 3, or 4 with row 3 unset.
template <std::size_t TARGET_ROWS>
unsigned* cut_triangle(const unsigned* parent, unsigned* out, std::size_t ld)
{
    if constexpr (TARGET_ROWS == 4)
        for (std::size_t child = 0; child < 4; ++child) out[child * ld + 3] = UNSET_ID;
    return write_children(T6_INTO_T3, parent, out, ld);
}

template <std::size_t TARGET_ROWS, bool MIXED>
void cut_columns(const dense2D<unsigned>& connect, unsigned* out, std::size_t out_ld)
{
    const unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    for (std::size_t e = 0; e < elements; ++e, column += ld)
        if (MIXED && column[T6_ROWS] != UNSET_ID)
            out = write_children(Q9_INTO_Q4, column, out, out_ld);
        else
            out = cut_triangle<TARGET_ROWS>(column, out, out_ld);
}

} // namespace

int convert_into_linear(dense2D<unsigned>& connect)
{
    if (is_empty(connect)) return success;
    if (has_rows(connect, T6_ROWS)) {
        // Cutting rows needs no memory.
        (void)connect.resize(3, connect.cols);
        return success;
    }
    if (!has_rows(connect, 8, 9)) return bad_argument(1);
    unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    for (std::size_t e = 0; e < elements; ++e, column += ld)
        if (column[T6_ROWS] == UNSET_ID) column[3] = UNSET_ID;
    (void)connect.resize(4, elements);
    return success;
}

int split_into_linear(const dense2D<unsigned>& connect, dense2D<unsigned>& result)
{
    if (is_empty(connect)) return success;
    if (!has_rows(connect, T6_ROWS, 9)) return bad_argument(1);
    if (!has_rows(result, 3, 4) && result.rows != 0) return bad_argument(2);

    const bool mixed = connect.rows == 9;
    const std::size_t rows = mixed || result.rows == 4 ? 4 : 3;
    const std::size_t old_cols = is_empty(result) ? 0 : result.cols;
    if (connect.cols > (std::numeric_limits<std::size_t>::max() - old_cols) / 4)
        return out_of_memory;
    const std::size_t cols = old_cols + 4 * connect.cols;
    // Room for all at once; then old triangles get their unset row, and the new columns follow.
    if (!result.reserve(rows, cols, 1) || !result.resize(rows, old_cols, UNSET_ID) ||
        !result.resize(rows, cols))
        return out_of_memory;

    unsigned* const out = result.column(old_cols);
    if (mixed)
        cut_columns<4, true>(connect, out, result.ld);
    else if (rows == 4)
        cut_columns<4, false>(connect, out, result.ld);
    else
        cut_columns<3, false>(connect, out, result.ld);
    return success;
}

} // namespace vorel::tessalo2d
