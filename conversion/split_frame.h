// What the functions that cut quadrilaterals into triangles share: growing the result once, and
// writing columns into it.
#pragma once

#include "foundation/status.h"

#include <vorel/dense2D.h>

#include <algorithm>
#include <limits>

namespace vorel::tessalo2d {

/// The status that reports a count.
inline int counted(std::size_t count)
{
    constexpr int LARGEST = std::numeric_limits<int>::max();
    return count < LARGEST ? static_cast<int>(count) : LARGEST;
}

inline void write_triangle(unsigned* column, unsigned a, unsigned b, unsigned c)
{
    column[0] = a;
    column[1] = b;
    column[2] = c;
}

/// Gives an output storage of its own where it shares that of `connect`, whose entries a growth
/// would take away after their check. False when storage can't be had.
template <class Output>
[[nodiscard]] bool part_from(const dense2D<unsigned>& connect, Output& output)
{
    return !shares_block(output, connect) || output.copy(output);
}

/// Appends triangles in place of the `elements` columns of a mixed mesh to a matrix that takes 3
/// rows. `cut(to, ld)` writes them from `to` on, a column or two for each element and never more,
/// and returns how many it cut in two.
template <class Cut>
int append_triangles(std::size_t elements, dense2D<unsigned>& result, const Cut& cut)
{
    const std::size_t old_cols = result.is_empty() ? 0 : result.cols;
    if (!result.resize(3, old_cols + 2 * elements)) return out_of_memory;
    const std::size_t quads = cut(result.column(old_cols), result.ld);
    // A cut to fewer columns needs no storage.
    (void)result.resize(3, old_cols + elements + quads);
    return counted(quads);
}

} // namespace vorel::tessalo2d
