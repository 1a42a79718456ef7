// Included ahead of every source of the library: results are the same bit for bit on every run and
// every machine, which no option that lets the compiler rewrite formulas can keep.
#pragma once

#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__) ||           \
    defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || defined(__NO_SIGNED_ZEROS__)
#error "results are reproducible bit for bit: build without -ffast-math and its parts"
#endif
