// Eigenvectors of a symmetric 3x3 matrix by plane rotations.
#pragma once

namespace vorel::tessalo2d {

/// A full 3x3 matrix by rows.
struct matrix3 {
    double* operator[](int i) { return entry[i]; }
    const double* operator[](int i) const { return entry[i]; }

    double entry[3][3];
};

/// Overwrites the symmetric `a` by its eigenvalues on the diagonal, in no order, and sets column k
/// of `vectors` to the unit vector of a[k][k]. The negated matrix gets the same rotations, and a
/// row of zeros stays as it is. Errors are a few units in the last place of the largest entry. Ends
/// for any entries.
///
/// For results that have to be the same on every machine: those of LAPACK depend on the BLAS below
/// it. It also takes a fraction of the time.
void jacobi_eigen3(matrix3& a, matrix3& vectors);

} // namespace vorel::tessalo2d
