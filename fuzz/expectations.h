// What the contracts say about arguments, worked out a second time and plainly, without the
// library's own checks.
#pragma once

#include "fuzz/arguments.h"

namespace fuzz {

/// Every entry is below `bound`; in row 3 of 4 rows `UNSET_ID` passes, too.
inline bool holds_faces(const dense2D<unsigned>& connect, std::size_t bound)
{
    if (connect.rows != 3 && connect.rows != 4) return false;
    for (std::size_t j = 0; j < connect.cols; ++j)
        for (std::size_t i = 0; i < connect.rows; ++i)
            if (connect(i, j) >= bound && !(i == 3 && connect(i, j) == UNSET_ID)) return false;
    return true;
}

/// Any number of rows; every entry is below `bound`, or unset where that is allowed.
inline bool holds_IDs(const dense2D<unsigned>& m, std::size_t bound, bool or_unset)
{
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i)
            if (m(i, j) >= bound && !(or_unset && m(i, j) == UNSET_ID)) return false;
    return true;
}

inline bool holds_IDs(const dense1D<unsigned, 8>& v, std::size_t bound, bool or_unset = false)
{
    for (std::size_t k = 0; k < v.size; ++k)
        if (v[k] >= bound && !(or_unset && v[k] == UNSET_ID)) return false;
    return true;
}

template <class T>
bool takes(const dense2D<T>& output, std::size_t rows)
{
    return output.is_empty() || output.rows == rows;
}

template <class T>
bool is_plane_or_space(const dense2D<T>& coords)
{
    return coords.rows == 2 || coords.rows == 3;
}

inline bool is_quad(const dense2D<unsigned>& connect, std::size_t e)
{
    return connect.rows == 4 && connect(3, e) != UNSET_ID;
}

inline std::size_t quad_count(const dense2D<unsigned>& connect)
{
    std::size_t quads = 0;
    for (std::size_t e = 0; e < connect.cols; ++e) quads += is_quad(connect, e);
    return quads;
}

template <class T>
std::size_t columns_of(const dense2D<T>& m)
{
    return m.is_empty() ? 0 : m.cols;
}

} // namespace fuzz
