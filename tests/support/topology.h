// Adjacency of face meshes, built by comparing edges: the arguments that callers of the library
// compute themselves.
#pragma once

#include <vorel/tessalo2d.h>

#include <vector>

namespace support {

/// Entry (r, e) is the element across local edge r of element e, or `UNSET_ID`. 3 rows or 4
/// (mixed). An edge with more than two elements pairs the first two and leaves the others unset.
vorel::dense2D<unsigned> neighbors_of(const vorel::dense2D<unsigned>& connect);

/// For each of `nodes` nodes the first element that holds it, or `UNSET_ID`.
vorel::dense1D<unsigned, 8> node_element_of(const vorel::dense2D<unsigned>& connect,
                                            std::size_t nodes);

/// Number of different edges of a linear face mesh.
std::size_t edge_count(const vorel::dense2D<unsigned>& connect);

} // namespace support
