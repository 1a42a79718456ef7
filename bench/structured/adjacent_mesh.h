// Large meshes with their adjacency, as the functions that walk from element to element take them.
#pragma once

#include "bench/support/meshes.h"

#include <algorithm>
#include <random>
#include <vector>

namespace bench_support {

struct adjacent_mesh {
    vorel::dense2D<unsigned> connect;
    vorel::dense2D<unsigned> neighbors;
    vorel::dense1D<unsigned, 8> node_element;
};

/// The mesh of `grid`. Elements begin with any of their corners, as a mesher leaves them.
inline adjacent_mesh adjacent_grid(form kind, std::size_t elements, numbering order)
{
    mesh m = grid(kind, elements, 2, order);
    std::mt19937 draw(7);
    for (std::size_t e = 0; e < m.connect.cols; ++e) {
        unsigned* const column = m.connect.column(e);
        const std::size_t corners = m.connect.rows == 4 && column[3] != vorel::UNSET_ID ? 4 : 3;
        std::rotate(column, column + draw() % corners, column + corners);
    }
    return {m.connect, neighbors_of(m.connect), node_element_of(m.connect, m.coords.cols)};
}

/// The elements in the order of their numbers, or in random order.
inline std::vector<unsigned> element_order(std::size_t elements, numbering order)
{
    std::vector<unsigned> listed(elements);
    std::iota(listed.begin(), listed.end(), 0u);
    std::mt19937 draw(5);
    if (order == numbering::shuffled) std::shuffle(listed.begin(), listed.end(), draw);
    return listed;
}

} // namespace bench_support
