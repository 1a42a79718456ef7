// Calls that list the elements around nodes, and the wheels that they are tried on.
#pragma once

#include "support/matrices.h"
#include "support/topology.h"

#include <vector>

namespace fan_tests {

using namespace vorel;
using tessalo2d::get_connected_elements;

inline constexpr unsigned U = UNSET_ID;
using list = std::vector<unsigned>;

/// The arguments of a call and what it made.
struct fans {
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors;
    dense1D<unsigned, 8> node_element;
    dense1D<unsigned, 8> offsets{9, 9};
    dense1D<unsigned, 8> elements{9, 9, 9};

    int run()
    {
        return get_connected_elements(connect, neighbors, node_element, offsets, elements);
    }

    list of(std::size_t node) const
    {
        return list(elements.begin() + offsets[node], elements.begin() + offsets[node + 1]);
    }
};

inline fans of_mesh(const dense2D<unsigned>& connect, std::size_t nodes)
{
    fans f;
    f.connect = connect;
    f.neighbors = support::neighbors_of(connect);
    f.node_element = support::node_element_of(connect, nodes);
    return f;
}

/// Triangles around node 0, anticlockwise from node 1 on; closed or with a gap at the end.
inline dense2D<unsigned> wheel(unsigned spokes, bool closed)
{
    dense2D<unsigned> connect(3, closed ? spokes : spokes - 1);
    for (unsigned k = 0; k < connect.cols; ++k) {
        connect(0, k) = 0;
        connect(1, k) = 1 + k;
        connect(2, k) = 1 + (k + 1) % spokes;
    }
    return connect;
}

} // namespace fan_tests
