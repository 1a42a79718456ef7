// Matrices in tests: as plain values to compare, and placed in memory in awkward ways.
#pragma once

#include <vorel/tessalo2d.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace support {

/// The columns of a matrix as plain values.
template <class T>
std::vector<std::vector<T>> columns(const vorel::dense2D<T>& m)
{
    std::vector<std::vector<T>> all(m.cols, std::vector<T>(m.rows));
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i) all[j][i] = m(i, j);
    return all;
}

/// The elements of a run as plain values.
template <class T>
std::vector<T> elements(const vorel::dense1D<T, 8>& v)
{
    return v.size ? std::vector<T>(v.begin(), v.end()) : std::vector<T>();
}

/// The columns as bit patterns, so that NaN equals itself and -0.0 differs from 0.0.
inline std::vector<std::vector<std::uint64_t>> bits(const vorel::dense2D<double>& m)
{
    std::vector<std::vector<std::uint64_t>> all(m.cols, std::vector<std::uint64_t>(m.rows));
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i) std::memcpy(&all[j][i], &m(i, j), 8);
    return all;
}

inline std::uint64_t bits(double x)
{
    std::uint64_t b;
    std::memcpy(&b, &x, 8);
    return b;
}

/// A matrix with the given columns, all of one length.
template <class T>
vorel::dense2D<T> matrix(const std::vector<std::vector<T>>& all)
{
    vorel::dense2D<T> m(all.empty() ? 0 : all[0].size(), all.size());
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i) m(i, j) = all[j][i];
    return m;
}

/// An empty matrix that has kept a row count.
template <class T>
vorel::dense2D<T> without_columns(std::size_t rows)
{
    vorel::dense2D<T> m;
    m.rows = rows;
    m.ld = rows;
    return m;
}

/// A deep copy whose columns stand `gap` entries further apart than they need and whose first entry
/// stands at `offset`. Everything around the entries holds a pattern.
template <class T>
class placed {
public:
    placed(const vorel::dense2D<T>& m, std::size_t offset, std::size_t gap) : placed_offset(offset)
    {
        const std::size_t ld = m.rows + gap;
        original = m;
        vorel::dense2D<T> filled(1, offset + m.cols * ld + gap + 1);
        for (std::size_t k = 0; k < filled.cols; ++k) filled(0, k) = pattern(k);
        view.block = filled.block;
        view.offset = offset;
        view.rows = m.rows;
        view.cols = m.cols;
        view.ld = ld;
        view.size = m.is_empty() ? 0 : (m.cols - 1) * ld + m.rows;
        for (std::size_t j = 0; j < m.cols; ++j)
            for (std::size_t i = 0; i < m.rows; ++i) view(i, j) = m(i, j);
        placed_ld = ld;
        placed_rows = m.rows;
        placed_cols = m.cols;
    }

    /// The matrix to hand to a function.
    vorel::dense2D<T> view;

    /// Expects the pattern before the first entry and between the original columns (not behind the
    /// last one, where columns are appended). For a view that was not spread; `rows_used` is what
    /// the call may have used of each column, where that is more than the original rows.
    void expect_gaps_untouched(std::size_t rows_used = 0) const
    {
        const T* const data = view.block->data;
        for (std::size_t k = 0; k < placed_offset; ++k) EXPECT_TRUE(is_pattern(data[k], k)) << k;
        for (std::size_t j = 0; j + 1 < placed_cols; ++j)
            for (std::size_t i = std::max(placed_rows, rows_used); i < placed_ld; ++i) {
                const std::size_t k = placed_offset + j * placed_ld + i;
                EXPECT_TRUE(is_pattern(data[k], k)) << "row " << i << " column " << j;
            }
    }

private:
    static T pattern(std::size_t k) { return static_cast<T>(0x5A5A5A00u + k % 251); }
    static bool is_pattern(T value, std::size_t k)
    {
        const T expected = pattern(k);
        return std::memcmp(&value, &expected, sizeof(T)) == 0;
    }

    vorel::dense2D<T> original;
    std::size_t placed_offset;
    std::size_t placed_ld = 0;
    std::size_t placed_rows = 0;
    std::size_t placed_cols = 0;
};

/// A deep copy of a run that starts at `offset` in its block.
template <class T>
vorel::dense1D<T, 8> placed_run(const vorel::dense1D<T, 8>& v, std::size_t offset)
{
    vorel::dense1D<T, 8> run(offset + v.size, static_cast<T>(0x5A5A5A5Au));
    for (std::size_t i = 0; i < v.size; ++i) run[offset + i] = v[i];
    run.offset = offset;
    run.size = v.size;
    return run;
}

/// A deep copy.
template <class T>
vorel::dense2D<T> copy_of(const vorel::dense2D<T>& m)
{
    vorel::dense2D<T> fresh;
    EXPECT_TRUE(fresh.copy(m));
    return fresh;
}

} // namespace support
