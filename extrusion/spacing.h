// Spacing laws: how many layers a path gets and where they lie when the element size varies
// linearly along it.
#pragma once

#include <cstddef>

namespace vorel::tessalo2d {

/// Position of the parameter `t` as a fraction of the length when sizes run from `h0` to `h1`: the
/// partial sum of a geometric progression, (r^t - 1) / (r - 1) with r = h1 / h0, and its expansion
/// near r = 1. Within [0, 1] for t in [0, 1]; not clamped for a t outside.
double geometric_fraction(double t, double h0, double h1);

/// The logarithmic mean (h1 - h0) / ln(h1 / h0) of two positive sizes; symmetric, and h for two
/// equal sizes h.
double logarithmic_mean(double h0, double h1);

/// `x` subdivisions rounded to a multiple of `step`, to the one that is nearer in ratio: the
/// dividing line is the geometric mean of the two neighbours, and a tie goes down. A NaN counts as
/// 0. A ratio beyond 64 bits is cut to the largest one and the products wrap: the result is then 0
/// for steps 1 and 2. A negative `x` gives `step`, unless its square is 0.
std::size_t subdivision_count(double x, std::size_t step);

} // namespace vorel::tessalo2d
