// Two doubles that are worked on at once. Every operation gives in each lane the bits that it gives
// for a double, so kernels that take two elements at once change no result.
#pragma once

#include <cmath>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vorel::tessalo2d {

/// Arithmetic and comparisons work lane by lane, and `condition ? x : y` picks lane by lane.
using lanes = double __attribute__((vector_size(16)));

inline double square_root(double x)
{
    return std::sqrt(x);
}

inline lanes square_root(lanes x)
{
#if defined(__SSE2__)
    return _mm_sqrt_pd(x);
#else
    return lanes{std::sqrt(x[0]), std::sqrt(x[1])};
#endif
}

} // namespace vorel::tessalo2d
