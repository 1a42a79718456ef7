// The pass over the interior nodes, in column order.
#include "conversion/interior_nodes.h"

#include "conversion/node_placement.h"
#include "conversion/node_sizes.h"
#include "extrusion/spacing.h"

#include <cmath>

namespace vorel::tessalo2d {

namespace {

struct triangle_weights {
    double w0;
    double w1;
};

constexpr triangle_weights ONE_NODE[] = {{1.0 / 3.0, 1.0 / 3.0}};

/// Kept: the three nodes crowd towards corner 2.
constexpr triangle_weights THREE_NODES[] = {
    {1.0 / 6.0, 1.0 / 6.0}, {1.0 / 3.0, 1.0 / 6.0}, {1.0 / 6.0, 1.0 / 3.0}};

/// Coordinates that are read at corners and written at new nodes, with the sizes at the corners.
template <int D>
struct node_store {
    vec<D> operator[](std::size_t node) const { return load<D>(points + node * ld); }
    void place(std::size_t node, const vec<D>& point) const { store(point, points + node * ld); }

    double* points;
    std::size_t ld;
    node_sizes sizes;
};

template <int D>
void place_in_triangle(const node_store<D>& nodes, const unsigned* corner, unsigned count,
                       std::size_t first)
{
    const node_sizes& h = nodes.sizes;
    const bool sized = h.has(corner[0]) && h.has(corner[1]) && h.has(corner[2]);
    const vec<D> p0 = nodes[corner[0]];
    const vec<D> p1 = nodes[corner[1]];
    const vec<D> p2 = nodes[corner[2]];
    const triangle_weights* const weights = count == 1 ? ONE_NODE : THREE_NODES;
    for (unsigned i = 0; i < count; ++i) {
        double w0 = weights[i].w0;
        double w1 = weights[i].w1;
        if (sized) {
            w0 = geometric_fraction(w0, h[corner[2]], h[corner[0]]);
            w1 = geometric_fraction(w1, h[corner[2]], h[corner[1]]);
        }
        nodes.place(first + i, point_in_triangle(p0, p1, p2, w0, w1));
    }
}

/// A grid of `side` x `side` nodes, the parameter along side 0-1 fastest.
template <int D>
void place_in_quad(const node_store<D>& nodes, const unsigned* corner, unsigned side,
                   std::size_t first)
{
    const node_sizes& h = nodes.sizes;
    const bool sized = h.has(corner[0]) && h.has(corner[1]) && h.has(corner[2]) && h.has(corner[3]);
    const vec<D> p[4] = {nodes[corner[0]], nodes[corner[1]], nodes[corner[2]], nodes[corner[3]]};
    const double step = 1.0 / (static_cast<double>(side) + 1.0);
    for (unsigned i = 0; i < side; ++i) {
        const double v = (static_cast<double>(i) + 1.0) * step;
        for (unsigned j = 0; j < side; ++j, ++first) {
            const double u = (static_cast<double>(j) + 1.0) * step;
            quad_fractions at{u, v};
            if (sized)
                at = crossing(geometric_fraction(u, h[corner[0]], h[corner[1]]),
                              geometric_fraction(v, h[corner[0]], h[corner[3]]),
                              geometric_fraction(v, h[corner[1]], h[corner[2]]),
                              geometric_fraction(u, h[corner[3]], h[corner[2]]));
            nodes.place(first, point_in_quad(p, at.s, at.t));
        }
    }
}

template <int D, bool MIXED>
void place_columns(dense2D<double>& coords, const dense2D<unsigned>& connect,
                   const element_nodes& added, dense2D<unsigned>& result, std::size_t first,
                   const node_sizes& sizes)
{
    const node_store<D> nodes{coords.block->data + coords.offset, coords.ld, sizes};
    const unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    unsigned* out = result.block->data + result.offset;
    const std::size_t out_ld = result.ld;
    const auto grid_side = static_cast<unsigned>(std::sqrt(static_cast<double>(added.in_quad)));
    const bool has_corners = added.on_edge != 0;
    std::size_t next = first;
    for (std::size_t e = 0; e < elements; ++e, column += ld, out += out_ld) {
        const unsigned corners = corner_count<MIXED>(column);
        const unsigned count = added.inside(corners);
        unsigned* const listed = out + added.interior_row(corners);
        for (unsigned i = 0; i < count; ++i) listed[i] = static_cast<unsigned>(next + i);
        if (has_corners && count != 0) {
            if (corners == 3)
                place_in_triangle(nodes, column, count, next);
            else
                place_in_quad(nodes, column, grid_side, next);
        }
        next += count;
    }
}

} // namespace

void place_interior_nodes(dense2D<double>& coords, const dense2D<unsigned>& connect,
                          const element_nodes& added, dense2D<unsigned>& result, std::size_t first,
                          const dense1D<double, 8>& sizes)
{
    const node_sizes known(sizes);
    const auto place = coords.rows == 2
                           ? (connect.rows == 4 ? place_columns<2, true> : place_columns<2, false>)
                           : (connect.rows == 4 ? place_columns<3, true> : place_columns<3, false>);
    place(coords, connect, added, result, first, known);
}

} // namespace vorel::tessalo2d
