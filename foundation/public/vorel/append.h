// Appending columns to a matrix of IDs.
#pragma once

#include <vorel/dense2D.h>

namespace vorel {

/// Appends one column of N entries, at least doubling the storage when it is used up. False and no
/// change when the target is not empty and has another row count, or when storage can't be had.
template <std::size_t N>
[[nodiscard]] bool append_column(dense2D<unsigned>& target, const unsigned (&entries)[N])
{
    if (!target.is_empty() && target.rows != N) return false;
    const std::size_t last = target.is_empty() ? 0 : target.cols;
    if (last == target.column_capacity())
        // Room ahead is a convenience: the resize decides.
        (void)target.reserve(N, std::max<std::size_t>(2 * last, 4), 1);
    if (!target.resize(N, last + 1)) return false;
    std::copy(entries, entries + N, target.column(last));
    return true;
}

/// Appends all columns of `source`. A target without columns takes the source's row count; an empty
/// source leaves a target that has columns as it is. False and no change to the target's shape when
/// storage can't be had, or when the source has fewer rows than a target with columns. A target
/// with fewer rows than the source is widened; its new entries are unspecified.
[[nodiscard]] inline bool append_columns(const dense2D<unsigned>& source, dense2D<unsigned>& target)
{
    const std::size_t n = source.cols;
    const std::size_t m = target.is_empty() ? 0 : target.cols;
    const std::size_t r = m == 0 ? source.rows : std::max(source.rows, target.rows);
    if (m != 0 && source.is_empty()) return true;
    if (source.rows < r) return false;
    if (n > std::numeric_limits<std::size_t>::max() - m) return false;
    if (n + m > target.column_capacity() && !target.reserve(r, std::max(n, m) + m, 1)) return false;
    if (!target.resize(r, n + m)) return false;
    if (target.is_empty()) return true;
    const unsigned* const from = source.column(0);
    unsigned* const to = target.column(m);
    if (source.ld == r && target.ld == r) {
        std::copy(from, from + r * n, to);
    } else {
        for (std::size_t j = 0; j < n; ++j)
            std::copy(from + j * source.ld, from + j * source.ld + r, to + j * target.ld);
    }
    return true;
}

/// Appends the columns of `source` that `ids` lists, in that order. Shapes and failures as with
/// `append_columns`; an empty list leaves a target that has columns as it is. Every listed number
/// must be below the column count of `source`. A list in the target's own block is copied first:
/// the new columns may lie over it. Throws `std::bad_alloc`, and changes nothing, when the block
/// object of that copy can't be had.
[[nodiscard]] inline bool append_selected_columns(const dense2D<unsigned>& source,
                                                  const dense1D<unsigned, 8>& ids,
                                                  dense2D<unsigned>& target)
{
    const std::size_t n = ids.size;
    const std::size_t m = target.is_empty() ? 0 : target.cols;
    const std::size_t r = m == 0 ? source.rows : std::max(source.rows, target.rows);
    if (m != 0 && n == 0) return true;
    if (source.rows < r) return false;
    if (n != 0 && ids.block == target.block) {
        dense1D<unsigned, 8> list;
        return list.copy(ids) && append_selected_columns(source, list, target);
    }
    if (n > std::numeric_limits<std::size_t>::max() - m) return false;
    if (n + m > target.column_capacity())
        // Room ahead is a convenience: the resize decides.
        (void)target.reserve(r, std::max(n, m) + m, 1);
    if (!target.resize(r, n + m)) return false;
    if (target.is_empty()) return true;
    const unsigned* const id = ids.begin();
    const unsigned* const from = source.column(0);
    unsigned* const to = target.column(m);
    for (std::size_t k = 0; k < n; ++k) {
        const unsigned* const column = from + std::size_t(id[k]) * source.ld;
        std::copy(column, column + r, to + k * target.ld);
    }
    return true;
}

} // namespace vorel
