// Order conversion the plain way, to compare with: all edges in one hash table that is asked again
// for each side, nothing kept from pass to pass.
#pragma once

#include <vorel/tessalo2d.h>

namespace reference {

/// As `convert_worker` on arguments that pass its checks, with at least one node on each edge and
/// with memory to spare.
void convert_into_high_order(vorel::dense2D<double>& coords,
                             const vorel::dense2D<unsigned>& connect, unsigned edge_nodes,
                             unsigned quad_nodes, unsigned triangle_nodes,
                             vorel::dense2D<unsigned>& result,
                             const vorel::dense2D<unsigned>& edges,
                             const vorel::dense1D<double, 8>& sizes);

} // namespace reference
