// The normals of some elements of a surface at a time, with arithmetic that runs across them.
#pragma once

#include "measures/triangle_normal.h"

#include <vorel/element_type.h>

namespace vorel::tessalo2d {

/// Up to `CAPACITY` elements, one array a coordinate. `MIXED` storage has 4 rows with triangles
/// among them.
template <bool MIXED>
class normal_block {
public:
    static constexpr std::size_t CAPACITY = 64;

    static bool is_quad(const unsigned* column) { return MIXED && column[3] < UNSET_ID; }

    /// False for an element that misses a corner which it needs.
    static bool has_corners(const unsigned* column)
    {
        return ((column[0] == UNSET_ID) | (column[1] == UNSET_ID) | (column[2] == UNSET_ID)) == 0;
    }

    /// Gathers the corners of `count` elements from `column` on and forms their raw normals. The
    /// normal of an element without its corners is unspecified.
    void load(const double* points, std::size_t point_ld, const unsigned* column, std::size_t ld,
              std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i, column += ld) {
            // A quadrilateral's a - c and b - d are its diagonals.
            const unsigned turn = is_quad(column) ? 2 : 0;
            const bool whole = has_corners(column);
            const auto node = [&](unsigned row) { return whole ? column[row] : 0u; };
            set(a, i, points + node(turn) * point_ld);
            set(b, i, points + node(1 + turn) * point_ld);
            set(c, i, points + node(2 - turn) * point_ld);
            if (MIXED) {
                set(d, i, points + node(1) * point_ld);
                quad[i] = turn != 0;
            }
        }
        for (std::size_t i = 0; i < count; ++i) {
            const vec3 pa = get(a, i);
            const vec3 pb = get(b, i);
            const vec3 pc = get(c, i);
            vec3 n = triangle_normal(pa, pb, pc);
            if (MIXED) n = select(quad[i] != 0.0, cross(pa - pc, pb - get(d, i)), n);
            for (int k = 0; k < 3; ++k) normals[k][i] = n[k];
        }
    }

    /// Scales the normals to length 1, but those without length, and notes the lengths that they
    /// had.
    void scale(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            const vec3 n = get(normals, i);
            const double q = squared_length(n);
            const double root = std::sqrt(q);
            const bool stays = (q == 0.0) | (q == 1.0);
            const double factor = stays ? 1.0 : 1.0 / root;
            lengths[i] = stays ? q : root;
            for (int k = 0; k < 3; ++k) normals[k][i] = factor * n[k];
        }
    }

    vec3 normal(std::size_t i) const { return get(normals, i); }
    double length(std::size_t i) const { return lengths[i]; }

private:
    using array = double[3][CAPACITY];

    static void set(array& to, std::size_t i, const double* point)
    {
        for (int k = 0; k < 3; ++k) to[k][i] = point[k];
    }
    static vec3 get(const array& from, std::size_t i)
    {
        return {{from[0][i], from[1][i], from[2][i]}};
    }

    array a;
    array b;
    array c;
    array d;
    double quad[CAPACITY];
    array normals;
    double lengths[CAPACITY];
};

} // namespace vorel::tessalo2d
