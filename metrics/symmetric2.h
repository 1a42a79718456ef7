// Eigenvalues and eigenvectors of a symmetric 2x2 matrix (a b; b c) in closed form.
#pragma once

namespace vorel::tessalo2d {

/// The eigenvalues, the smaller one first. One that cancellation would have ruined is taken from
/// the determinant. False when they are not both finite.
[[nodiscard]] bool eigen_sym2_values(double a, double b, double c, double (&values)[2]);

/// The eigenvalues as above and their vectors, vector k in entries 2k and 2k + 1: perpendicular,
/// of one length, and of unit length when `normalise` is set. A matrix that is a multiple of the
/// identity to rounding gets the axes. On false the vectors are not written.
[[nodiscard]] bool eigen_sym2(double a, double b, double c, double (&values)[2],
                              double (&vectors)[4], bool normalise);

} // namespace vorel::tessalo2d
