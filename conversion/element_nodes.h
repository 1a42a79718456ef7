// How many nodes a conversion adds, and where a high-order column keeps them.
#pragma once

#include <vorel/dense2D.h>
#include <vorel/element_type.h>

namespace vorel::tessalo2d {

/// Nodes added on each edge and inside each element. A column holds its corners, the nodes of its
/// edges in local edge order, the interior nodes, and `UNSET_ID` up to the end.
struct element_nodes {
    unsigned on_edge;
    unsigned in_quad;
    unsigned in_triangle;

    unsigned inside(unsigned corners) const { return corners == 3 ? in_triangle : in_quad; }
    std::size_t interior_row(unsigned corners) const
    {
        return corners + std::size_t(corners) * on_edge;
    }
    std::size_t rows(unsigned corners) const { return interior_row(corners) + inside(corners); }
};

/// Moves `next_id` on by `nodes` for each of `elements`. False when there are no IDs for them;
/// `next_id` then stays.
inline bool take_ids(std::size_t& next_id, std::size_t elements, unsigned nodes)
{
    if (elements == 0 || nodes == 0) return true;
    if (elements > UNSET_ID / nodes || next_id + elements * nodes > UNSET_ID) return false;
    next_id += elements * nodes;
    return true;
}

/// The corners of a linear column; `MIXED` storage has 4 rows with triangles among them.
template <bool MIXED>
unsigned corner_count(const unsigned* column)
{
    return MIXED && column[3] < UNSET_ID ? 4 : 3;
}

/// Calls `visit(from, to)` with the ends of each local edge in order: edge k of a triangle lies
/// opposite corner k, edge k of a quadrilateral leaves corner k.
template <class Visit>
void for_each_edge(const unsigned* corner, unsigned corners, Visit visit)
{
    if (corners == 3) {
        visit(corner[1], corner[2]);
        visit(corner[2], corner[0]);
        visit(corner[0], corner[1]);
    } else {
        visit(corner[0], corner[1]);
        visit(corner[1], corner[2]);
        visit(corner[2], corner[3]);
        visit(corner[3], corner[0]);
    }
}

} // namespace vorel::tessalo2d
