// The nodes on the edges of a high-order mesh: their numbers in its columns and their coordinates.
#pragma once

#include "conversion/edge_numbering.h"
#include "conversion/element_nodes.h"

namespace vorel::tessalo2d {

/// Writes the columns of `result`, which has its shape, but for the interior rows: corners, edge
/// nodes, and `UNSET_ID` behind the end of a short column. False when the edge nodes would need an
/// ID beyond the last one; runs of several nodes of the element that shows it are then not written.
[[nodiscard]] bool number_edge_nodes(edge_numbering& numbering, const dense2D<unsigned>& connect,
                                     const element_nodes& added, dense2D<unsigned>& result);

/// Writes the coordinates of the edge nodes from ID `first` up to `end`. They are known by their
/// numbers: the first element that lists an edge's nodes lists the next ones in order, and its
/// direction is the edge's.
void place_edge_nodes(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const element_nodes& added, const dense2D<unsigned>& result,
                      std::size_t first, std::size_t end, const dense1D<double, 8>& sizes);

/// Looks again for the nodes of the edges that had none when they were met.
void fill_refused_edges(edge_numbering& numbering, const dense2D<unsigned>& connect,
                        const element_nodes& added, dense2D<unsigned>& result);

} // namespace vorel::tessalo2d
