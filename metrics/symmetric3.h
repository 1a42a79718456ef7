// Symmetric 3x3 matrices: factor, congruence, eigenvectors. Full 3x3 matrices are 9 doubles by
// rows.
#pragma once

#include <vorel/fixed.h>

namespace vorel::tessalo2d {

/// `cofactors` gets the inverse transpose of `a`, and `det` the determinant. A matrix whose
/// determinant is exactly 0 leaves the plain cofactors. The two may be the same array.
void inverse_transpose3(const double (&a)[9], double (&cofactors)[9], double& det);

/// Overwrites a symmetric matrix M by the upper triangular U with M = U'U. Rows of M that are
/// exactly zero are accepted and leave U singular. False when M is not positive semi-definite; the
/// entries are then unspecified.
[[nodiscard]] bool cholesky_upper3(double& a00, double& a01, double& a11, double& a02, double& a12,
                                   double& a22);

/// Adds alpha C B' to the packed `d`, which is to be symmetric: entry (i, j) with i >= j gains
/// alpha times row j of B times row i of C. Nothing is done for an alpha of exactly 0.
void congruence_accumulate3(double alpha, const double (&b)[9], const double (&c)[9],
                            symmetric_fixed<double, 3>& d);

/// The eigenvalues, ascending, and their unit vectors as LAPACK gives them, vector k in entries 3k
/// to 3k + 2. With `right_handed` vector 2 becomes the cross product of vectors 0 and 1. False when
/// the iteration did not converge.
[[nodiscard]] bool eigen_sym3(const symmetric_fixed<double, 3>& m, double (&values)[3],
                              double (&vectors)[9], bool right_handed);

} // namespace vorel::tessalo2d
