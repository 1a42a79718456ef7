// The two ways to cut a quadrilateral into triangles, and how they are compared.
#pragma once

#include "conversion/triangle_quality.h"

#include <vorel/element_type.h>

namespace vorel::tessalo2d {

/// The nodes of a quadrilateral in their order, turned to begin with the smallest ID (the first of
/// equal ones), so that no decision depends on where its list starts. The first cut runs from node
/// 0 to node 2 into (0, 1, 2) and (2, 3, 0), the second from node 1 to node 3 into (1, 2, 3) and
/// (3, 0, 1).
struct turned_quad {
    turned_quad() = default;
    explicit turned_quad(const unsigned* column)
    {
        const unsigned low = column[1] < column[0];
        const unsigned high = 2 + (column[3] < column[2]);
        const unsigned first = column[high] < column[low] ? high : low;
        for (unsigned k = 0; k < 4; ++k) node[k] = column[(first + k) % 4];
        node[4] = node[0];
    }

    /// The first one once more at the end: the second cut is the first one of the nodes from 1 on.
    unsigned node[5];
};

/// What the worse triangle of each cut is worth; more is better.
struct cut_scores {
    double first;
    double second;
};

/// A tie up to this margin goes to the first cut, through the smallest ID.
inline bool prefers_first_cut(const cut_scores& score)
{
    return score.first > score.second - 1e-12;
}

/// Scores by `triangle_quality`, of which all four triangles share their sides and diagonals: the
/// lengths that are the same to the last bit are formed once.
template <int D>
inline cut_scores score_by_quality(const vec<D>& p0, const vec<D>& p1, const vec<D>& p2,
                                   const vec<D>& p3)
{
    const double diagonal02 = length(p0 - p2);
    const double diagonal13 = length(p1 - p3);
    const auto quality = [](const vec<D>& a, const vec<D>& b, double a_length) {
        const vec<D> d = b - a;
        const double b_length = length(b);
        const double d_length = length(d);
        return quality_of_sides(double_area_by_lengths(a, b, d, a_length, b_length, d_length),
                                a_length, b_length, d_length);
    };
    return {std::min(quality(p0 - p2, p1 - p2, diagonal02), quality(p2 - p0, p3 - p0, diagonal02)),
            std::min(quality(p1 - p3, p2 - p3, diagonal13), quality(p3 - p1, p0 - p1, diagonal13))};
}

} // namespace vorel::tessalo2d
