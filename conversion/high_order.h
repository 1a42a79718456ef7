// Order conversion: the worker below all exports that raise the order of a face mesh.
#pragma once

#include <vorel/dense1D.h>
#include <vorel/dense2D.h>

namespace vorel::tessalo2d {

/// Number of triangles in a linear face mesh: all columns of a 3-row matrix, and those of a 4-row
/// matrix whose row 3 is unset.
std::size_t count_triangles(const dense2D<unsigned>& connect);

/// Adds nodes on all edges and in all elements of a linear face mesh, and replaces `result` by the
/// high-order connectivity, as told at `convert_into_high_order`.
///
/// sizes    element sizes at the nodes of `connect`, as many as are known, or empty. Where an edge
///          or element has positive sizes at all its corners, its nodes stand at the fractions of a
///          geometric progression between them and not at equal ones.
/// returns  0; -1 rows of `coords` (`result` is then left alone); -2 rows or IDs of `connect`;
///          -4 `quad_nodes` is no square; -5 `triangle_nodes` is not 0, 1 or 3; -6 rows or IDs of
///          `edges`; -199 out of memory or of node IDs, `coords` is then as before
///
/// Every outcome but 0 leaves `result` empty, other than -1.
int convert_worker(dense2D<double>& coords, const dense2D<unsigned>& connect, unsigned edge_nodes,
                   unsigned quad_nodes, unsigned triangle_nodes, dense2D<unsigned>& result,
                   const dense2D<unsigned>& edges, const dense1D<double, 8>& sizes);

} // namespace vorel::tessalo2d
