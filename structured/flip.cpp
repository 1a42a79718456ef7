// Reversal of orientation: an exchange of rows in every column. Corners 0 and 2 change places, and
// the nodes on edges follow.
#include "foundation/ID_lanes.h"
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

#include <utility>

namespace vorel::tessalo2d {

namespace {

/// For each row the row that its new entry comes from. All of them are exchanges.
template <std::size_t... FROM>
struct row_exchange {
    static constexpr std::size_t ROWS = sizeof...(FROM);
    static constexpr std::size_t from[] = {FROM...};

    static void apply(unsigned* column)
    {
        for (std::size_t i = 0; i < ROWS; ++i)
            if (i < from[i]) std::swap(column[i], column[from[i]]);
    }
};

// In a six-node triangle row 3 + i lies opposite corner i; in a quadrilateral row 4 + i lies
// between the corners i and i + 1, and row 8 is the centre.
using T3_exchange = row_exchange<2, 1, 0>;
using Q4_exchange = row_exchange<2, 1, 0, 3>;
using T6_exchange = row_exchange<2, 1, 0, 5, 4, 3>;
using Q8_exchange = row_exchange<2, 1, 0, 3, 5, 4, 7, 6>;

/// Linear columns without gaps, in groups that fill whole registers.
template <class Exchange>
void exchange_packed(unsigned* column, std::size_t cols)
{
    constexpr std::size_t ROWS = Exchange::ROWS;
    constexpr std::size_t GROUP = ROWS == 4 ? 1 : 4;
    static_assert(ROWS == 3 || ROWS == 4, "longer columns are quicker one by one");
    const std::size_t whole = cols - cols % GROUP;
    for (std::size_t j = 0; j < whole; j += GROUP, column += GROUP * ROWS) {
        unsigned old[GROUP * ROWS];
        for (std::size_t k = 0; k < GROUP * ROWS; ++k) old[k] = column[k];
        for (std::size_t k = 0; k < GROUP * ROWS; ++k)
            column[k] = old[k - k % ROWS + Exchange::from[k % ROWS]];
    }
    for (std::size_t j = whole; j < cols; ++j, column += ROWS) Exchange::apply(column);
}

template <class Exchange>
void exchange_rows(dense2D<unsigned>& connect)
{
    unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t cols = connect.cols;
    if constexpr (Exchange::ROWS <= 4)
        if (ld == Exchange::ROWS) return exchange_packed<Exchange>(column, cols);
    for (std::size_t j = 0; j < cols; ++j, column += ld) Exchange::apply(column);
}

/// Quadrilaterals of 8 or 9 nodes with six-node triangles among them, which row 6 tells apart. The
/// kinds may change from column to column, so both exchanges are made and one is picked.
void exchange_mixed_quadratic(dense2D<unsigned>& connect)
{
    constexpr ID_lanes UNSET = {UNSET_ID, UNSET_ID, UNSET_ID, UNSET_ID};
    constexpr ID_lanes LANE_1 = {0, UNSET_ID, 0, 0};
    constexpr ID_lanes LANE_3 = {0, 0, 0, UNSET_ID};
    unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t cols = connect.cols;
    for (std::size_t j = 0; j < cols; ++j, column += ld) {
        const ID_lanes low = load_lanes(column);
        const ID_lanes high = load_lanes(column + 4);
        const ID_lanes unset = equal_lanes(high, UNSET);
        const ID_lanes triangle = __builtin_shufflevector(unset, unset, 2, 2, 2, 2);
        const ID_lanes row3 = __builtin_shufflevector(low, low, 3, 3, 3, 3);
        const ID_lanes row5 = __builtin_shufflevector(high, high, 1, 1, 1, 1);
        const ID_lanes quad_low = __builtin_shufflevector(low, low, 2, 1, 0, 3);
        const ID_lanes quad_high = __builtin_shufflevector(high, high, 1, 0, 3, 2);
        const ID_lanes triangle_high = pick_lanes(LANE_1, row3, high);
        store_lanes(pick_lanes(triangle & LANE_3, row5, quad_low), column);
        store_lanes(pick_lanes(triangle, triangle_high, quad_high), column + 4);
    }
}

/// Exchanges corners whatever else a column holds.
void exchange_corners(dense2D<unsigned>& connect)
{
    if (connect.rows == 4)
        exchange_rows<Q4_exchange>(connect);
    else
        exchange_rows<T3_exchange>(connect);
}

/// Mixed storage: the row count says what the columns are.
int flip_faces(dense2D<unsigned>& connect)
{
    switch (connect.rows) {
    case 3:
    case 4:
        exchange_corners(connect);
        return success;
    case 6:
        exchange_rows<T6_exchange>(connect);
        return success;
    case 8:
    case 9:
        exchange_mixed_quadratic(connect);
        return success;
    default:
        return bad_argument(2);
    }
}

} // namespace

int flip(dense2D<unsigned>& connect)
{
    if (connect.cols == 0) return success;
    if (connect.rows < 3) return bad_argument(1);
    exchange_corners(connect);
    return success;
}

int flip(dense2D<unsigned>& connect, element_type FE)
{
    if (connect.cols == 0) return success;
    if (FE == ELEMENT_ANY_FACE) return flip_faces(connect);
    if (FE < ELEMENT_NONE || FE > ELEMENT_HEXA27) return bad_argument(2);
    if (!has_rows(connect, element_node_count(FE))) return bad_argument(2);
    switch (FE) {
    case ELEMENT_T3:
    case ELEMENT_Q4:
        exchange_corners(connect);
        break;
    case ELEMENT_T6:
        exchange_rows<T6_exchange>(connect);
        break;
    case ELEMENT_Q8:
    case ELEMENT_Q9:
        exchange_rows<Q8_exchange>(connect);
        break;
    default:
        break;
    }
    return success;
}

} // namespace vorel::tessalo2d
