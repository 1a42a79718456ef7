// The one place that knows how Fortran is called.
#include "metrics/lapack.h"

#include <cstddef>

// Fortran passes everything by address and appends the lengths of its character arguments.
extern "C" void dspev_(const char* jobz, const char* uplo, const int* n, double* ap, double* w,
                       double* z, const int* ldz, double* work, int* info, std::size_t jobz_length,
                       std::size_t uplo_length);

namespace vorel::lapack {

int dspev(char jobz, char uplo, int n, double* ap, double* w, double* z, int ldz, double* work)
{
    int info = 0;
    dspev_(&jobz, &uplo, &n, ap, w, z, &ldz, work, &info, 1, 1);
    return info;
}

} // namespace vorel::lapack
