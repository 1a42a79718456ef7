// Cyclic Jacobi rotations.
#include "metrics/jacobi3.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vorel::tessalo2d {

namespace {

/// Turns rows and columns p and q so that entry (p, q) vanishes. `r` is the third one.
void rotate(matrix3& a, matrix3& vectors, int p, int q, int r)
{
    const double off = a[p][q];
    // The smaller root of t^2 + 2 theta t = 1: the rotation by at most an eighth turn.
    const double theta = (a[q][q] - a[p][p]) / (2.0 * off);
    const double root = std::sqrt(theta * theta + 1.0);
    const double t = theta >= 0.0 ? 1.0 / (theta + root) : 1.0 / (theta - root);
    const double c = 1.0 / std::sqrt(t * t + 1.0);
    const double s = t * c;
    a[p][p] -= t * off;
    a[q][q] += t * off;
    a[p][q] = 0.0;
    a[q][p] = 0.0;
    const double rp = a[r][p];
    const double rq = a[r][q];
    a[r][p] = c * rp - s * rq;
    a[r][q] = s * rp + c * rq;
    a[p][r] = a[r][p];
    a[q][r] = a[r][q];
    for (int i = 0; i < 3; ++i) {
        const double vp = vectors[i][p];
        const double vq = vectors[i][q];
        vectors[i][p] = c * vp - s * vq;
        vectors[i][q] = s * vp + c * vq;
    }
}

} // namespace

void jacobi_eigen3(matrix3& a, matrix3& vectors)
{
    // Convergence is quadratic: five sweeps are many. The bound is for entries that are no numbers.
    constexpr int sweeps = 16;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) vectors[i][j] = i == j ? 1.0 : 0.0;
    double largest = 0.0;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j) largest = std::max(largest, std::fabs(a[i][j]));
    const double negligible = std::numeric_limits<double>::epsilon() / 8.0 * largest;
    for (int sweep = 0; sweep < sweeps; ++sweep) {
        bool turned = false;
        for (int r = 2; r >= 0; --r) {
            const int p = r == 0 ? 1 : 0;
            const int q = r == 2 ? 1 : 2;
            if (!(std::fabs(a[p][q]) > negligible)) continue;
            rotate(a, vectors, p, q, r);
            turned = true;
        }
        if (!turned) break;
    }
}

} // namespace vorel::tessalo2d
