// The nodes inside the elements of a high-order mesh.
#pragma once

#include "conversion/element_nodes.h"

#include <vorel/dense1D.h>

namespace vorel::tessalo2d {

/// Numbers the interior nodes from ID `first` on, element by element, writes the numbers into the
/// interior rows of `result` and the coordinates into the columns of `coords`. Without edge nodes
/// the columns hold no corners: the nodes are numbered only.
void place_interior_nodes(dense2D<double>& coords, const dense2D<unsigned>& connect,
                          const element_nodes& added, dense2D<unsigned>& result, std::size_t first,
                          const dense1D<double, 8>& sizes);

} // namespace vorel::tessalo2d
