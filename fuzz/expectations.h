// What the contracts say about arguments, worked out a second time and plainly, without the
// library's own checks.
#pragma once

#include "fuzz/arguments.h"

#include <vector>

namespace fuzz {

/// Every entry is below `bound`; in row 3 of 4 rows `UNSET_ID` passes, too.
inline bool holds_faces(const ids& connect, std::size_t bound)
{
    if (connect.rows != 3 && connect.rows != 4) return false;
    for (std::size_t j = 0; j < connect.cols; ++j)
        for (std::size_t i = 0; i < connect.rows; ++i)
            if (connect(i, j) >= bound && !(i == 3 && connect(i, j) == UNSET_ID)) return false;
    return true;
}

/// Any number of rows; every entry is below `bound`, or unset where that is allowed.
inline bool holds_IDs(const ids& m, std::size_t bound, bool or_unset)
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

/// Nothing, or as many rows as elements of the type have, and in them nodes below `bound`.
inline bool holds_elements(const ids& connect, vorel::element_type type, std::size_t bound)
{
    if (connect.is_empty()) return true;
    if (type == vorel::ELEMENT_ANY_FACE) return holds_faces(connect, bound);
    return type >= vorel::ELEMENT_NONE && type <= vorel::ELEMENT_HEXA27 &&
           connect.rows == element_node_count(type) && holds_IDs(connect, bound, false);
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

/// The two checks that most functions begin with: of the coordinates and of the elements.
inline int faces_failure(const arguments& a)
{
    if (!is_plane_or_space(a.coords())) return -1;
    return holds_faces(a.connect(), a.coords().cols) ? 0 : -2;
}

/// Which of the nodes below `count` belong to elements.
inline std::vector<bool> used_nodes(const ids& connect, std::size_t count)
{
    std::vector<bool> used(count, false);
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (std::size_t i = 0; i < connect.rows; ++i)
            if (connect(i, e) < count) used[connect(i, e)] = true;
    return used;
}

inline bool is_quad(const ids& connect, std::size_t e)
{
    return connect.rows == 4 && connect(3, e) != UNSET_ID;
}

inline std::size_t quad_count(const ids& connect)
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
