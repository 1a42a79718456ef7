// Metrics inside a triangle and a quadrilateral, nested from interpolations of two.
#pragma once

#include "metrics/metric_pair.h"

namespace vorel::tessalo2d {

/// The metric at the weights u of column `a`, v of column `b` and 1 - u - v of column `c` of a
/// field. A node's metric is copied, whatever it holds; an edge is the pair of its ends; inside,
/// the metric on edge a-b is interpolated with that of c. False when an interpolation fails; `m` is
/// then unspecified.
template <std::size_t D>
[[nodiscard]] bool interpolate_metric_triangle(const dense2D<double>& metrics, double u, double v,
                                               std::size_t a, std::size_t b, std::size_t c,
                                               symmetric_fixed<double, D>& m);

/// The metric at (xi, eta) of the reference square [-1, 1] x [-1, 1] with the nodes 0 to 3 around
/// it from (-1, -1): an edge is the pair of its ends; inside, first along xi on the edges 0-1 and
/// 3-2 and then along eta. False when an interpolation fails; `m` is then unspecified.
template <std::size_t D>
[[nodiscard]] bool
interpolate_metric_quad(double xi, double eta, const symmetric_fixed<double, D>& m0,
                        const symmetric_fixed<double, D>& m1, const symmetric_fixed<double, D>& m2,
                        const symmetric_fixed<double, D>& m3, symmetric_fixed<double, D>& m);

/// As above from four columns of a field.
template <std::size_t D>
[[nodiscard]] bool interpolate_metric_quad_columns(const dense2D<double>& metrics, double xi,
                                                   double eta, std::size_t c0, std::size_t c1,
                                                   std::size_t c2, std::size_t c3,
                                                   symmetric_fixed<double, D>& m);

} // namespace vorel::tessalo2d
