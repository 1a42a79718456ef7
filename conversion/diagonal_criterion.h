// The criteria by which the diagonal of a cut is chosen.
#pragma once

#include "conversion/diagonal.h"

namespace vorel::tessalo2d {

/// The scores of both cuts of a quadrilateral by one of the criteria of `split_Q4_into_T3`; by
/// another number, or by a fold in the plane, the first cut scores 1 and the second 0. `points` is
/// the first coordinate of node 0, `ld` the distance between nodes.
template <int D>
cut_scores score_cuts(int criterion, const double* points, std::size_t ld, const turned_quad& quad);

} // namespace vorel::tessalo2d
