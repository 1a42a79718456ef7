// The numbering of the nodes that an extrusion makes.
#pragma once

#include <vorel/dense2D.h>

namespace vorel::tessalo2d {

/// The distinct nodes of a line mesh, ranked by their first appearance, row 0 before row 1 in each
/// column. The copy of rank k in the first new layer has the ID `first_id` + k.
struct node_map {
    /// Number of distinct nodes.
    std::size_t size() const { return sources.size; }

    /// Node ID of each rank.
    dense1D<unsigned, 8> sources;
    /// IDs of the copies of each edge's nodes in the first new layer, in the shape of the line
    /// mesh.
    dense2D<unsigned> copies;
};

/// Fills the map from a line mesh whose IDs are below `nodes`. False when the storage can't be had.
[[nodiscard]] bool extrusion_node_map(const dense2D<unsigned>& connect, unsigned first_id,
                                      std::size_t nodes, node_map& map);

} // namespace vorel::tessalo2d
