// The steps that all extrusions share: the new elements, where along the path the layers lie, and
// the nodes of one layer.
#pragma once

#include "extrusion/node_map.h"
#include "foundation/vec.h"

#include <vorel/dense2D.h>

namespace vorel::tessalo2d {

/// The layers that a caller asks for: so many of equal height, or as many as sizes from `h0` at the
/// start of the path to `h1` at its end make of its length.
struct layer_request {
    static layer_request fixed(unsigned count) { return {false, count, 0.0, 0.0, false}; }
    static layer_request sized(double h0, double h1, bool force_even)
    {
        return {true, 0, h0, h1, force_even};
    }

    bool by_size;
    unsigned count;
    /// 0.0 selects uniform spacing.
    double h0;
    double h1;
    bool force_even;
};

/// Number of layers on a path of that length, even if the request says so. 0 where there is no
/// length or the sizes have no mean.
unsigned sized_layer_count(double length, const layer_request& request);

/// Position along the path of layer `l` of 1, 2, ..., with `step` the reciprocal of the count.
double layer_position(unsigned l, double step, double h0, double h1);

/// Whether IDs suffice for `count` times `each` columns more behind `used` ones: they stay below
/// `UNSET_ID`.
bool IDs_suffice(std::size_t used, std::size_t count, std::size_t each);

/// Number of elements that a layer makes of an edge.
inline constexpr std::size_t Q4_PER_LAYER = 1;
inline constexpr std::size_t T3_PER_LAYER = 2;

/// Appends the quadrilaterals of `N` layers, all layers of an edge in a row, for which IDs suffice.
/// An output of 3 rows gets a fourth, unset in the old columns. 0, or -199 and no change.
int extrude_elements_Q4(const dense2D<unsigned>& connect, const node_map& map, unsigned N,
                        dense2D<unsigned>& connectQ);

/// Appends the triangle pairs of `N` layers, for which IDs suffice. `pattern` 0 cuts every
/// quadrilateral from the far end of the edge to the copy of the near one, 2 does so in odd
/// positions of a checkerboard, and everything else cuts from the near end to the copy of the far
/// one. 0, or -199 and no change.
int extrude_elements_T3(const dense2D<unsigned>& connect, const node_map& map, unsigned N,
                        int pattern, dense2D<unsigned>& connectT);

/// The nodes that a layer is made from.
struct layer_source {
    /// First coordinate of node 0, and the distance between nodes, of old and new ones alike.
    const double* points;
    std::size_t ld;
    /// The source of each node of a layer, in the order of the new IDs.
    const unsigned* ids;
    std::size_t count;
};

/// Writes one layer from `target` on: what `move` makes of each source node, two nodes at a time.
template <int D, class Move>
inline void place_layer(const layer_source& source, double* target, Move move)
{
    const double* const points = source.points;
    const std::size_t ld = source.ld;
    const unsigned* const ids = source.ids;
    const std::size_t count = source.count;
    std::size_t k = 0;
    for (; k + 1 < count; k += 2, target += 2 * ld)
        store_both(move(load_both<D>(points + ids[k] * ld, points + ids[k + 1] * ld)), target,
                   target + ld);
    if (k < count) store(move(load<D>(points + ids[k] * ld)), target);
}

/// Gives a matrix `rows` rows and `more` columns behind its own, for which IDs suffice. Rows that
/// old columns lacked hold `fill`; the new columns are left to be written. False and no change when
/// storage can't be had.
template <class T>
[[nodiscard]] bool extend(dense2D<T>& m, std::size_t rows, std::size_t more, T fill)
{
    const std::size_t cols = m.cols;
    if (!m.reserve(rows, cols + more, 1)) return false;
    return m.resize(rows, cols, fill) && m.resize(rows, cols + more);
}

} // namespace vorel::tessalo2d
