// Quadrilaterals of which two adjacent corners are one node become triangles in the same storage.
//
// Few columns of a usual mesh are degenerated. So groups of columns are searched for equal corners
// with nothing else in mind, and only the columns that have some are looked at again, one by one:
// the rows that stay come from a table, without a branch on which corners are equal.
#include "foundation/ID_lanes.h"
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace vorel::tessalo2d {

namespace {

/// Columns that are searched together: one bit each.
constexpr std::size_t GROUP = 16;

/// Which columns of a group have their first equal corners where, one bit a column.
struct equal_corners {
    std::uint32_t at_01;
    std::uint32_t up_to_12;
    std::uint32_t up_to_23;
    std::uint32_t any;

    /// 0 to 3: the corner of column `k` that equals the next one, the first in the order of the
    /// corners. Asked for only where there is one.
    unsigned first_corner(unsigned k) const
    {
        return 3 - (at_01 >> k & 1) - (up_to_12 >> k & 1) - (up_to_23 >> k & 1);
    }
};

inline equal_corners find_equal_corners(const unsigned* column, std::size_t ld, std::size_t count)
{
    // One lane for each corner.
    ID_lanes found = {};
    ID_lanes bit = {1, 1, 1, 1};
    for (std::size_t k = 0; k < count; ++k, column += ld, bit += bit) {
        const ID_lanes corners = load_lanes(column);
        const ID_lanes next = __builtin_shufflevector(corners, corners, 1, 2, 3, 0);
        found |= equal_lanes(corners, next) & bit;
    }
    const std::uint32_t up_to_12 = found[0] | found[1];
    const std::uint32_t up_to_23 = up_to_12 | found[2];
    return {found[0], up_to_12, up_to_23, up_to_23 | found[3]};
}

/// The rows of a quadrilateral that become rows 0 to 5 of the triangle when corner k equals the
/// next one. The midside node of the collapsed edge is dropped and the others get the order of the
/// six-node triangle; a centre node has no place there.
constexpr unsigned char STAYING_ROWS[4][6] = {
    {0, 2, 3, 6, 7, 5}, {0, 1, 3, 6, 7, 4}, {0, 1, 2, 5, 7, 4}, {0, 1, 2, 5, 6, 4}};

/// Converts a column of which that corner equals the next one, and says so; a column with an unset
/// row is a triangle already.
template <std::size_t ROWS>
bool convert_column(unsigned* column, unsigned corner)
{
    constexpr std::size_t STAYING = ROWS == 4 ? 3 : 6;
    unsigned old[ROWS];
    std::memcpy(old, column, sizeof old);
    for (const unsigned id : old)
        if (id == UNSET_ID) return false;
    for (std::size_t i = 0; i < STAYING; ++i) column[i] = old[STAYING_ROWS[corner][i]];
    for (std::size_t i = STAYING; i < ROWS; ++i) column[i] = UNSET_ID;
    return true;
}

/// Converts all degenerated columns. `record(columns, count)` gets their indices, a few at a time.
template <std::size_t ROWS, class Record>
void convert_columns(dense2D<unsigned>& connect, const Record& record)
{
    const std::size_t cols = connect.cols;
    const std::size_t ld = connect.ld;
    for (std::size_t j = 0; j < cols; j += GROUP) {
        const std::size_t count = std::min(GROUP, cols - j);
        unsigned* const columns = connect.column(j);
        // A known count makes constants of the bits.
        const equal_corners equal = count == GROUP ? find_equal_corners(columns, ld, GROUP)
                                                   : find_equal_corners(columns, ld, count);
        unsigned converted[GROUP];
        std::size_t size = 0;
        for (std::uint32_t left = equal.any; left != 0; left &= left - 1) {
            const auto k = static_cast<unsigned>(__builtin_ctz(left));
            converted[size] = static_cast<unsigned>(j + k);
            size += convert_column<ROWS>(columns + k * ld, equal.first_corner(k));
        }
        if (size != 0) record(converted, size);
    }
}

} // namespace

int convert_degenerated_Q4(dense2D<unsigned>& connect)
{
    if (is_empty(connect)) return success;
    if (!has_rows(connect, 4)) return bad_argument(1);
    std::size_t count = 0;
    convert_columns<4>(connect, [&](const unsigned*, std::size_t size) { count += size; });
    return static_cast<int>(count);
}

int convert_degenerated_Q(dense2D<unsigned>& connect, dense1D<unsigned, 8>& converted_IDs)
{
    converted_IDs.size = 0;
    if (is_empty(connect)) return success;
    // Growing a block that the elements share would take them away.
    if (shares_block(converted_IDs, connect)) converted_IDs = dense1D<unsigned, 8>();
    // An append that finds no storage leaves its column unrecorded: kept, callers rely on it.
    const auto record = [&](const unsigned* converted, std::size_t size) {
        for (std::size_t k = 0; k < size; ++k) converted_IDs.append(converted[k]);
    };
    switch (connect.rows) {
    case 4:
        convert_columns<4>(connect, record);
        break;
    case 8:
        convert_columns<8>(connect, record);
        break;
    case 9:
        convert_columns<9>(connect, record);
        break;
    default:
        return bad_argument(1);
    }
    return static_cast<int>(converted_IDs.size);
}

} // namespace vorel::tessalo2d
