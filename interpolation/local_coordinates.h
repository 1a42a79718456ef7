// Local coordinates of a point in a plane triangle or quadrilateral.
#pragma once

#include "foundation/vec.h"

#include <cstddef>

namespace vorel::tessalo2d {

/// Signs of the shape function (a * xi + 0.5) * (b * eta + 0.5) of a quadrilateral's corner.
struct corner_signs {
    double a;
    double b;
};

/// Corners run around the square from (-1, -1).
inline constexpr corner_signs shape_table_Q4[4] = {
    {-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}};

/// Solves u * a + v * b = r by Cramer's rule and up to `passes` refinements by the residual. Stops
/// when a refinement changed neither unknown by more than 1e-12 of itself. Returns the passes left.
int solve2_refined(const vec2& a, const vec2& b, double inverse_determinant, const vec2& r,
                   double& u, double& v, int passes);

/// Weights `uv` of nodes 0 and 1 of a triangle; node 2 has the rest. `points` is the first
/// coordinate of node ID 0, `ld` the distance between nodes. A point on node 0 or 1 has exact
/// weights, a flat triangle weights 0. Returns the determinant that was divided by.
double local_coords_T3(const double* points, std::size_t ld, const unsigned* column,
                       const vec2& point, vec2& uv);

/// The image of (xi, eta) under the bilinear map of a quadrilateral.
vec2 map_Q4(const double* points, std::size_t ld, const unsigned* column, const vec2& xi_eta);

/// Derivatives of the map: J[0] along xi, J[1] along eta.
void jacobian_Q4(const double* points, std::size_t ld, const unsigned* column, const vec2& xi_eta,
                 vec2 (&J)[2]);

/// Inverts the bilinear map by Newton's method from the centre, in at most 10 passes, until a step
/// is not longer than the tolerance. True if fewer than 10 passes were needed; the last estimate
/// stands in any case. Where the Jacobian is singular the inverse of the pass before is used, none
/// at the centre.
bool local_coords_Q4(const double* points, std::size_t ld, const unsigned* column,
                     const vec2& point, vec2& xi_eta, double tolerance);

} // namespace vorel::tessalo2d
