// Quadrilaterals of which two adjacent corners are one node become triangles in the same storage.
//
// Few columns of a usual mesh are degenerated. So groups of columns are searched for equal corners
// with nothing else in mind. Only in a group that has some the columns are told apart, and only
// those are converted, without a branch on which corners they are.
#include "foundation/status.h"
#include "structured/ID_lanes.h"

#include <vorel/tessalo2d.h>

#include <algorithm>

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

/// Converts the column if it is degenerated, and says so. The first equality in the order of the
/// corners decides; a column with an unset row is a triangle already. With midside nodes the one on
/// the collapsed edge is dropped and the others get the order of the six-node triangle; a centre
/// node has no place there.
template <std::size_t ROWS>
bool convert_column(unsigned* column)
{
    unsigned old[ROWS];
    unsigned unset = 0;
    for (std::size_t i = 0; i < ROWS; ++i) {
        old[i] = column[i];
        unset |= mask(old[i] == UNSET_ID);
    }
    // Which corners are one node, each mask including those before it.
    const unsigned by_01 = mask(old[0] == old[1]) & ~unset;
    const unsigned up_to_12 = (mask(old[1] == old[2]) & ~unset) | by_01;
    const unsigned up_to_23 = (mask(old[2] == old[3]) & ~unset) | up_to_12;
    const unsigned any = (mask(old[0] == old[3]) & ~unset) | up_to_23;

    column[1] = pick(by_01, old[2], old[1]);
    column[2] = pick(up_to_12, old[3], old[2]);
    if constexpr (ROWS == 4) {
        column[3] = old[3] | any;
    } else {
        column[3] = pick(any, pick(up_to_12, old[6], old[5]), old[3]);
        column[4] = pick(any, pick(up_to_23, old[7], old[6]), old[4]);
        column[5] = pick(any, pick(by_01, old[5], old[4]), old[5]);
        for (std::size_t i = 6; i < ROWS; ++i) column[i] = old[i] | any;
    }
    return any != 0;
}

/// One lane for each corner: all ones if it equals the next one.
ID_lanes equal_corners(const unsigned* column)
{
    const ID_lanes corners = load_lanes(column);
    return equal_lanes(corners, __builtin_shufflevector(corners, corners, 1, 2, 3, 0));
}

/// True if any of the columns has two equal adjacent corners.
bool have_equal_corners(const unsigned* column, std::size_t ld, std::size_t count)
{
    ID_lanes equal = {};
    for (std::size_t k = 0; k < count; ++k) equal |= equal_corners(column + k * ld);
    return any_lane(equal);
}

/// Converts the degenerated columns of a group and lists their numbers, counted from `first`.
template <std::size_t ROWS>
std::size_t convert_group(unsigned* columns, std::size_t ld, std::size_t count, std::size_t first,
                          unsigned* converted)
{
    unsigned suspects[GROUP];
    std::size_t suspected = 0;
    for (std::size_t k = 0; k < count; ++k) {
        suspects[suspected] = static_cast<unsigned>(k);
        suspected += any_lane(equal_corners(columns + k * ld));
    }
    std::size_t size = 0;
    for (std::size_t s = 0; s < suspected; ++s) {
        converted[size] = static_cast<unsigned>(first + suspects[s]);
        size += convert_column<ROWS>(columns + suspects[s] * ld);
    }
    return size;
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
        if (!have_equal_corners(columns, ld, count)) continue;
        unsigned converted[GROUP];
        const std::size_t size = convert_group<ROWS>(columns, ld, count, j, converted);
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
