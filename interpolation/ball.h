// The elements around a node.
#pragma once

#include "foundation/chained_hash.h"
#include "interpolation/background_mesh.h"

namespace vorel::tessalo2d {

/// A set of element IDs.
using element_set = chained_hash<unsigned>;

/// Appends to `list` the elements around `node` that are reached from `element` through sides that
/// touch the node, depth first, without those in `visited`. `closed` tells that no such side was on
/// the boundary. 0, or -1 when an element on the way does not hold the node; the list built so far
/// stays usable. A neighbour that no storage can be had for is left out. Whatever the neighbours
/// say, each element is met at most once: it is pushed only when it comes new into `visited`. The
/// first one is pushed in any case, so it is met twice if `visited` refused it and takes it later.
template <mesh_form F>
int collect_ball(unsigned node, unsigned element, const background_mesh& mesh,
                 dense1D<unsigned, 8>& list, bool& closed, dense1D<unsigned, 8>& stack,
                 element_set& visited);

} // namespace vorel::tessalo2d
