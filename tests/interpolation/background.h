// Background meshes with targets between their nodes.
#pragma once

#include "interpolation/plain_locator.h"
#include "support/meshes.h"

namespace support {

/// The arguments that all interpolations share, owned.
struct background {
    std::string name;
    vorel::element_type type;
    vorel::dense2D<double> coords;
    vorel::dense2D<unsigned> connect;
    vorel::dense2D<unsigned> neighbors;
    vorel::dense1D<unsigned, 8> node_element;
    /// The target nodes, behind the nodes of the mesh.
    vorel::dense1D<unsigned, 8> targets;

    plain::mesh plain() const { return {coords, connect, neighbors, node_element}; }
};

/// Adjacency for a mesh and `points` behind its nodes as targets.
background with_targets(const mesh& m, vorel::element_type type,
                        const std::vector<plain::point>& points);

/// Targets over the box of the mesh and a tenth beyond it: random ones, and some on nodes and on
/// the middles of sides.
background with_random_targets(const mesh& m, vorel::element_type type, unsigned count,
                               unsigned seed);

/// Each target `times` times, as the whole list again and again.
background with_list_repeated(background b, std::size_t times);

/// Grids of the three forms, moved, renumbered and with holes; awkward ones among them.
std::vector<background> backgrounds(unsigned seed);

std::vector<std::uint64_t> bits(const vorel::dense1D<double, 8>& values);

} // namespace support
