// The system's LAPACK, as far as this library calls it.
#pragma once

namespace vorel::lapack {

/// Eigenvalues, and with `jobz` 'V' eigenvectors, of a real symmetric matrix in packed storage. All
/// memory is the caller's: `ap` n(n+1)/2 entries, overwritten; `w` n eigenvalues, ascending; `z`
/// column k the unit vector of w[k], columns `ldz` apart (not touched with 'N'); `work` 3n entries.
/// Returns info: 0, or how many off-diagonal entries did not converge. Ends for any entries, also
/// NaN and infinite ones; info can then be 0 all the same. The bits of the results are those of the
/// BLAS that the program runs with.
int dspev(char jobz, char uplo, int n, double* ap, double* w, double* z, int ldz, double* work);

} // namespace vorel::lapack
