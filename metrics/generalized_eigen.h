// The symmetric pencil M2 v = l M1 v of two metrics.
#pragma once

#include <vorel/fixed.h>

namespace vorel::tessalo2d {

/// The eigenvalues, ascending (descending for a negative definite M1), and the vectors of the
/// pencil, vector k in consecutive doubles. M2 needs only to be symmetric. With `normalise` vectors
/// get unit length, but for those of squared length exactly 0 or 1.
///
/// False when a of M1 = (a b; b c) is 0 or its determinant is not above 0 (a negative definite M1
/// passes), or when an eigenvalue of the reduced matrix is not finite.
[[nodiscard]] bool generalized_eigen2(const symmetric_fixed<double, 2>& m1,
                                      const symmetric_fixed<double, 2>& m2, double (&values)[2],
                                      double (&vectors)[4], bool normalise);

/// As above in space, by one call of `dspev`. False when M1 is not positive definite or when the
/// iteration did not converge. With `normalise` the eigenvectors that the vectors are mapped from
/// are right-handed.
[[nodiscard]] bool generalized_eigen3(const symmetric_fixed<double, 3>& m1,
                                      const symmetric_fixed<double, 3>& m2, double (&values)[3],
                                      double (&vectors)[9], bool normalise);

/// The same names for both dimensions, for code that is a template on it.
[[nodiscard]] inline bool generalized_eigen(const symmetric_fixed<double, 2>& m1,
                                            const symmetric_fixed<double, 2>& m2,
                                            double (&values)[2], double (&vectors)[4],
                                            bool normalise)
{
    return generalized_eigen2(m1, m2, values, vectors, normalise);
}
[[nodiscard]] inline bool generalized_eigen(const symmetric_fixed<double, 3>& m1,
                                            const symmetric_fixed<double, 3>& m2,
                                            double (&values)[3], double (&vectors)[9],
                                            bool normalise)
{
    return generalized_eigen3(m1, m2, values, vectors, normalise);
}

} // namespace vorel::tessalo2d
