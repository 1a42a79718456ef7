// The normals of some elements of a surface at a time, with arithmetic that runs across them.
#pragma once

#include "measures/triangle_normal.h"

#include <vorel/element_type.h>

namespace vorel::tessalo2d {

/// Up to `CAPACITY` elements, an array for each component. `MIXED` storage has 4 rows with
/// triangles among them.
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

    /// Forms the raw normals of `count` elements from `column` on. That of an element without its
    /// corners is zero.
    void load(const double* points, std::size_t point_ld, const unsigned* column, std::size_t ld,
              std::size_t count)
    {
        if (!prefetch(points, point_ld, column, ld, count)) {
            for (std::size_t i = 0; i < count; ++i, column += ld) {
                const bool whole = has_corners(column);
                set(i, whole ? raw_normals(points, point_ld, column, column) : vec<3, lanes>{});
            }
            return;
        }
        for (std::size_t i = 0; i < count; i += 2, column += 2 * ld) {
            // The last of an odd number stands in both lanes.
            const unsigned* const other = i + 1 < count ? column + ld : column;
            set(i, raw_normals(points, point_ld, column, other));
        }
    }

    /// Scales the normals to length 1, but those without length, and notes the lengths that they
    /// had.
    void scale(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            const vec3 n = normal(i);
            const double q = squared_length(n);
            const double root = std::sqrt(q);
            const bool stays = (q == 0.0) | (q == 1.0);
            const double factor = stays ? 1.0 : 1.0 / root;
            lengths[i] = stays ? q : root;
            for (int k = 0; k < 3; ++k) normals[k][i] = factor * n[k];
        }
    }

    vec3 normal(std::size_t i) const { return {{normals[0][i], normals[1][i], normals[2][i]}}; }
    double length(std::size_t i) const { return lengths[i]; }

private:
    /// Asks for all corners at once: one by one they would wait for each other where the nodes lie
    /// far apart. False if an element misses a corner.
    static bool prefetch(const double* points, std::size_t point_ld, const unsigned* column,
                         std::size_t ld, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i, column += ld) {
            if (!has_corners(column)) return false;
            const auto ask_for = [&](unsigned row) {
                const double* const point = points + column[row] * point_ld;
                __builtin_prefetch(point);
                __builtin_prefetch(point + 2);
            };
            for (unsigned row = 0; row < 3; ++row) ask_for(row);
            if (MIXED) ask_for(is_quad(column) ? 3 : 0);
        }
        return true;
    }

    /// The normals of two elements that have their corners.
    static vec<3, lanes> raw_normals(const double* points, std::size_t ld, const unsigned* one,
                                     const unsigned* other)
    {
        const auto corners = [&](unsigned row, unsigned other_row) {
            return load_both<3>(points + one[row] * ld, points + other[other_row] * ld);
        };
        // A quadrilateral's a - c and b - d are its diagonals.
        const unsigned turn[] = {is_quad(one) ? 2u : 0u, is_quad(other) ? 2u : 0u};
        const vec<3, lanes> a = corners(turn[0], turn[1]);
        const vec<3, lanes> b = corners(1 + turn[0], 1 + turn[1]);
        const vec<3, lanes> c = corners(2 - turn[0], 2 - turn[1]);
        const vec<3, lanes> n = triangle_normal(a, b, c);
        if (!MIXED) return n;
        const lanes turned = {static_cast<double>(turn[0]), static_cast<double>(turn[1])};
        return select(turned > 0.0, cross(a - c, b - corners(1, 1)), n);
    }

    void set(std::size_t i, const vec<3, lanes>& n)
    {
        for (int k = 0; k < 3; ++k) {
            normals[k][i] = n[k][0];
            normals[k][i + 1] = n[k][1];
        }
    }

    /// One more than the elements: `set` also writes behind the element, which may be the last one.
    double normals[3][CAPACITY + 1];
    double lengths[CAPACITY];
};

} // namespace vorel::tessalo2d
