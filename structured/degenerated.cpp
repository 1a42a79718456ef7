// Quadrilaterals of which two adjacent corners are one node become triangles in the same storage.
//
// Few columns of a usual mesh are degenerated. So groups of columns are searched for equal corners
// with nothing else in mind, and only a group that has some is converted, without a branch on what
// a column holds.
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cstring>

namespace vorel::tessalo2d {

namespace {

/// Columns that are searched together.
constexpr std::size_t GROUP = 16;

/// All ones for true, 0 for false.
unsigned mask(bool condition)
{
    return 0u - static_cast<unsigned>(condition);
}

/// `a` where the mask is all ones, `b` where it is 0.
unsigned pick(unsigned chosen, unsigned a, unsigned b)
{
    return b ^ ((a ^ b) & chosen);
}

/// Which pair of adjacent corners is one node: masks, each of which includes those above it. The
/// first equality in the order of the corners decides. A column with an unset row is a triangle
/// already and none of them.
struct collapse {
    unsigned by_01;
    unsigned up_to_12;
    unsigned up_to_23;
    unsigned any;
};

template <std::size_t ROWS>
collapse find_collapse(const unsigned* column)
{
    bool unset = false;
    for (std::size_t i = 0; i < ROWS; ++i) unset |= column[i] == UNSET_ID;
    const unsigned whole = ~mask(unset);
    collapse found;
    found.by_01 = mask(column[0] == column[1]) & whole;
    found.up_to_12 = (mask(column[1] == column[2]) & whole) | found.by_01;
    found.up_to_23 = (mask(column[2] == column[3]) & whole) | found.up_to_12;
    found.any = (mask(column[0] == column[3]) & whole) | found.up_to_23;
    return found;
}

/// Converts the column if it is degenerated, and says so. With midside nodes the one on the
/// collapsed edge is dropped and the others get the order of the six-node triangle; a centre node
/// has no place there.
template <std::size_t ROWS>
bool convert_column(unsigned* column)
{
    const collapse found = find_collapse<ROWS>(column);
    const unsigned corner3 = column[3];
    column[1] = pick(found.by_01, column[2], column[1]);
    column[2] = pick(found.up_to_12, corner3, column[2]);
    if constexpr (ROWS == 4) {
        column[3] = corner3 | found.any;
    } else {
        const unsigned mid4 = column[4];
        const unsigned mid5 = column[5];
        const unsigned mid6 = column[6];
        const unsigned mid7 = column[7];
        column[3] = pick(found.any, pick(found.up_to_12, mid6, mid5), corner3);
        column[4] = pick(found.any, pick(found.up_to_23, mid7, mid6), mid4);
        column[5] = pick(found.any, pick(found.by_01, mid5, mid4), mid5);
        for (std::size_t i = 6; i < ROWS; ++i) column[i] |= found.any;
    }
    return found.any != 0;
}

/// True if any of the columns has two equal adjacent corners.
bool have_equal_corners(const unsigned* column, std::size_t ld, std::size_t count)
{
    using corners = unsigned __attribute__((vector_size(4 * sizeof(unsigned))));
    corners equal = {};
    for (std::size_t k = 0; k < count; ++k, column += ld) {
        corners here;
        std::memcpy(&here, column, sizeof here);
        const corners next = __builtin_shufflevector(here, here, 1, 2, 3, 0);
        equal |= reinterpret_cast<corners>(here == next);
    }
    return (equal[0] | equal[1] | equal[2] | equal[3]) != 0;
}

/// Converts all degenerated columns. `record(columns, count)` gets their indices, a few at a time.
template <std::size_t ROWS, class Record>
void convert_columns(dense2D<unsigned>& connect, const Record& record)
{
    const std::size_t cols = connect.cols;
    const std::size_t ld = connect.ld;
    for (std::size_t j = 0; j < cols; j += GROUP) {
        const std::size_t count = std::min(GROUP, cols - j);
        unsigned* column = connect.column(j);
        if (!have_equal_corners(column, ld, count)) continue;
        unsigned converted[GROUP];
        std::size_t size = 0;
        for (std::size_t k = 0; k < count; ++k, column += ld) {
            converted[size] = static_cast<unsigned>(j + k);
            size += convert_column<ROWS>(column);
        }
        record(converted, size);
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
