// The size inside a quadrilateral.
#pragma once

namespace vorel::tessalo2d {

/// The size at (xi, eta) of the square [-1, 1] x [-1, 1] with sizes f0 to f3 around it from
/// (-1, -1). On the sides eta = -1, xi = -1 and eta = 1 that of the pair of ends; everywhere else,
/// the side xi = 1 included, bilinear in coordinates that are mapped from [-1, 1] to [0, 1] twice
/// and so run from 0.5 to 1. Kept: callers rely on these values, which do not join those of the
/// sides. False when a size is not above 0 or the result is not above 0 and below the largest
/// double; `out` is then 0 or that result.
[[nodiscard]] bool interpolate_size_quad(double xi, double eta, double f0, double f1, double f2,
                                         double f3, double& out);

} // namespace vorel::tessalo2d
