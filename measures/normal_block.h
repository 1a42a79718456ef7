// The normals of some elements of a surface at a time, with arithmetic that runs across them.
#pragma once

#include "foundation/prefetch.h"
#include "measures/triangle_normal.h"

#include <vorel/element_type.h>

#include <algorithm>

namespace vorel::tessalo2d {

/// Up to `CAPACITY` elements, two side by side in the lanes. `MIXED` storage has 4 rows with
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
        if (!all_have_corners(column, ld, count)) {
            normals[(count - 1) / 2] = {};
            for (std::size_t i = 0; i < count; ++i, column += ld) {
                vec<3, lanes> n = {};
                if (has_corners(column)) n = raw_normals(points, point_ld, column, column);
                for (int k = 0; k < 3; ++k) normals[i / 2][k][i % 2] = n[k][0];
            }
            return;
        }
        // All corners at once: one by one they would wait for each other.
        if (scattered(column, ld, count))
            for (std::size_t i = 0; i < count; ++i)
                prefetch_corners(points, point_ld, column + i * ld);
        std::size_t i = 0;
        for (; i < count / 2; ++i, column += 2 * ld)
            normals[i] = raw_normals(points, point_ld, column, column + ld);
        // The last of an odd number stands in both lanes.
        if (count % 2 == 1) normals[i] = raw_normals(points, point_ld, column, column);
    }

    /// Scales the normals to length 1, but those without length, and notes the lengths that they
    /// had.
    void scale(std::size_t count)
    {
        for (std::size_t i = 0; i < (count + 1) / 2; ++i) {
            const lanes q = squared_length(normals[i]);
            const lanes root = square_root(q);
            const auto stays = (q == 0.0) | (q == 1.0);
            lengths[i] = stays ? q : root;
            normals[i] = (stays ? lanes{1.0, 1.0} : 1.0 / root) * normals[i];
        }
    }

    vec3 normal(std::size_t i) const { return lane(normals[i / 2], i % 2); }
    double length(std::size_t i) const { return lengths[i / 2][i % 2]; }

    /// Writes `count` normals from `to` on, `ld` apart.
    void store_normals(std::size_t count, double* to, std::size_t ld) const
    {
        for (std::size_t i = 0; i + 1 < count; i += 2, to += 2 * ld)
            store_both(normals[i / 2], to, to + ld);
        if (count % 2 == 1) store(normal(count - 1), to);
    }

private:
    static bool all_have_corners(const unsigned* column, std::size_t ld, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i, column += ld)
            if (!has_corners(column)) return false;
        return true;
    }

    /// Whether elements that follow each other lie far apart, going by some of them.
    static bool scattered(const unsigned* column, std::size_t ld, std::size_t count)
    {
        constexpr unsigned NEAR = 64;
        const auto lowest = [](const unsigned* c) { return std::min({c[0], c[1], c[2]}); };
        int jumps = 0;
        for (std::size_t i = 1; i < count; i += CAPACITY / 4) {
            const unsigned step = lowest(column + i * ld) - lowest(column + (i - 1) * ld);
            jumps += step + NEAR > 2 * NEAR;
        }
        return jumps > 1;
    }

    static void prefetch_corners(const double* points, std::size_t ld, const unsigned* column)
    {
        const auto ask_for = [&](unsigned row) {
            const double* const point = points + column[row] * ld;
            prefetch(point);
            prefetch(point + 2);
        };
        for (unsigned row = 0; row < 3; ++row) ask_for(row);
        if (is_quad(column)) ask_for(3);
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

    vec<3, lanes> normals[CAPACITY / 2];
    lanes lengths[CAPACITY / 2];
};

} // namespace vorel::tessalo2d
