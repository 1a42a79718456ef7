// The intersection of two metrics, by the pencil of their difference and their sum.
//
// With S = A + B = U'U and E = inv(U)' (A - B) inv(U) the larger of the two in their common basis
// is (S + U'|E|U) / 2. Nothing in this is inverted but the factor, and whatever error E has is
// multiplied by U on both sides again: what the result lacks to cover A and B is small against
// x'Sx in every direction x, and so against the result, which is at least S / 2. Unit vectors of a
// common basis and their inverse have errors that grow with the condition; they are never formed.
#include "metrics/jacobi3.h"

#include <vorel/minimum_metric.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace vorel::tessalo {

namespace {

using tessalo2d::jacobi_eigen3;
using tessalo2d::matrix3;
using metric = symmetric_fixed<double, 3>;

constexpr double epsilon = std::numeric_limits<double>::epsilon();
/// How far an eigenvalue of a metric may be below 0, as a fraction of the largest one.
constexpr double negative_tolerance = 1e-12;
/// How far an operand may be below the other one and still cover it, as a fraction of S.
constexpr double cover_tolerance = 8.0 * epsilon;
/// How far an operand may be below 0 and still be a metric to rounding of its entries: of entry ij
/// as a fraction of sqrt(Mii Mjj).
constexpr double rounding_tolerance = 4.0 * epsilon;
/// A pivot of S that is not above this is made of rounding errors; the diagonal of S lies between 1
/// and 8. So is what D has beyond U'EU, up to this as a fraction of sqrt(Sii Sjj).
constexpr double rank_tolerance = 16.0 * epsilon;

bool is_zero(const metric& m)
{
    return std::all_of(m.data, m.data + 6, [](double x) { return x == 0.0; });
}

bool is_equal(const metric& a, const metric& b)
{
    return std::equal(a.data, a.data + 6, b.data);
}

bool is_diagonal(const metric& m)
{
    return m.data[1] == 0.0 && m.data[3] == 0.0 && m.data[4] == 0.0;
}

matrix3 full(const metric& m)
{
    return {{{m.data[0], m.data[1], m.data[3]},
             {m.data[1], m.data[2], m.data[4]},
             {m.data[3], m.data[4], m.data[5]}}};
}

/// Raises the diagonal by a fraction of itself.
matrix3 enlarged(matrix3 a, double fraction)
{
    for (int i = 0; i < 3; ++i) a[i][i] += fraction * a[i][i];
    return a;
}

/// Eliminates without exchange. True proves that no eigenvalue is below 0 by more than rounding;
/// false proves nothing.
bool is_surely_semidefinite(matrix3 a)
{
    for (int k = 0; k < 3; ++k) {
        const double pivot = a[k][k];
        if (!(pivot >= 0.0) || std::isinf(pivot)) return false;
        if (pivot == 0.0) {
            for (int j = k + 1; j < 3; ++j)
                if (a[k][j] != 0.0) return false;
            continue;
        }
        for (int i = k + 1; i < 3; ++i) {
            const double f = a[k][i] / pivot;
            for (int j = i; j < 3; ++j) a[i][j] -= f * a[k][j];
        }
    }
    return true;
}

enum class verdict {
    no_metric,
    by_tolerance, ///< has small negative eigenvalues, beyond rounding in the scales of the axes
    semidefinite
};

verdict judge(const metric& m)
{
    matrix3 a = full(m);
    if (is_surely_semidefinite(enlarged(a, rounding_tolerance))) return verdict::semidefinite;
    double largest_entry = 0.0;
    for (const double x : m.data) {
        if (!std::isfinite(x)) return verdict::no_metric;
        largest_entry = std::max(largest_entry, std::fabs(x));
    }
    const int exponent = std::ilogb(largest_entry);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) a[i][j] = std::scalbn(a[i][j], -exponent);
    matrix3 vectors;
    jacobi_eigen3(a, vectors);
    const double smallest = std::min({a[0][0], a[1][1], a[2][2]});
    const double largest = std::max({a[0][0], a[1][1], a[2][2]});
    if (!(smallest >= -negative_tolerance * largest)) return verdict::no_metric;
    return verdict::by_tolerance;
}

/// The metric with a diagonal raised until no eigenvalue is negative, to rounding of each axis by
/// itself, so that no scale of the axes blows up what is left. Taking the negative eigenvalues out
/// would leave errors of the largest entry in all axes.
///
/// If no eigenvalue is below -t, no entry is raised by more than 11 t: eliminating the largest
/// diagonal entry first, p, has multipliers of at most about 1, so the other two are raised by at
/// most 2 t and what is left has no eigenvalue below -3 t; that is raised by at most 9 t.
metric raised(metric m)
{
    std::size_t p = 0;
    for (std::size_t j = 1; j < 3; ++j)
        if (m(j, j) > m(p, p)) p = j;
    std::size_t q = p == 0 ? 1 : 0;
    std::size_t r = 3 - p - q;
    double left[3];
    for (const std::size_t j : {q, r}) {
        const double least = m(p, j) / m(p, p) * m(p, j);
        m(j, j) = std::max(m(j, j), least);
        left[j] = m(j, j) - least;
    }
    if (left[r] > left[q]) std::swap(q, r);
    const double off = std::fabs(m(q, r) - m(p, q) / m(p, p) * m(p, r));
    // left[q] left[r] has to be off^2 or more.
    if (off > left[q]) {
        m(q, q) += off - left[q];
        left[q] = off;
    }
    if (off > 0.0) m(r, r) += std::max(off / left[q] * off - left[r], 0.0);
    return m;
}

/// Powers of two for the axes that bring the larger of two diagonal entries to between 1 and 4.
struct axis_scaling {
    axis_scaling(const metric& a, const metric& b)
    {
        constexpr int none = std::numeric_limits<int>::min();
        int half[3];
        int most = none;
        for (std::size_t i = 0; i < 3; ++i) {
            const double larger = std::max(a(i, i), b(i, i));
            half[i] = none;
            if (larger > 0.0) {
                const int exponent = std::ilogb(larger);
                half[i] = (exponent - (exponent & 1)) / 2;
            }
            most = std::max(most, half[i]);
        }
        for (int i = 0; i < 3; ++i) {
            // An axis without constraint holds zeros, or rounding errors of the others.
            if (half[i] == none) half[i] = most;
            down[i] = std::ldexp(1.0, -half[i]);
            up[i] = std::ldexp(1.0, half[i]);
        }
    }

    matrix3 scaled(const metric& m) const
    {
        matrix3 a = full(m);
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) a[i][j] = a[i][j] * down[i] * down[j];
        return a;
    }

    metric restored(const matrix3& a) const
    {
        metric m;
        double* entry = m.data;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j <= i; ++j) *entry++ = a[i][j] * up[i] * up[j];
        return m;
    }

    double down[3];
    double up[3];
};

matrix3 sum(const matrix3& a, const matrix3& b)
{
    matrix3 s;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) s[i][j] = a[i][j] + b[i][j];
    return s;
}

matrix3 difference(const matrix3& a, const matrix3& b)
{
    matrix3 d;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) d[i][j] = a[i][j] - b[i][j];
    return d;
}

/// Whether the difference d of a and b is nowhere below 0 by more than rounding of their sum.
bool covers(matrix3 d, const matrix3& a, const matrix3& b)
{
    for (int i = 0; i < 3; ++i) d[i][i] += cover_tolerance * (a[i][i] + b[i][i]);
    return is_surely_semidefinite(d);
}

/// S = U'U by rows of U, with the largest pivot first. The pivot of row k stands in column
/// order[k]. Rows from `rank` on are zero: S has no more than rounding errors left there.
struct factor {
    explicit factor(matrix3 s)
    {
        bool done[3] = {false, false, false};
        for (; rank < 3; ++rank) {
            int p = -1;
            for (int j = 0; j < 3; ++j)
                if (!done[j] && (p < 0 || s[j][j] > s[p][p])) p = j;
            const double pivot = s[p][p];
            if (!(pivot > rank_tolerance)) break;
            order[rank] = p;
            done[p] = true;
            double* const row = u[rank];
            row[p] = std::sqrt(pivot);
            for (int j = 0; j < 3; ++j)
                if (!done[j]) row[j] = s[p][j] / row[p];
            for (int i = 0; i < 3; ++i)
                for (int j = 0; j < 3; ++j)
                    if (!done[i] && !done[j]) s[i][j] -= row[i] * row[j];
        }
    }

    /// inv(U)' D inv(U), in the rows and columns that U has.
    matrix3 reduced(const matrix3& d) const
    {
        matrix3 left = {};
        for (int k = 0; k < rank; ++k) {
            const int p = order[k];
            for (int j = 0; j < 3; ++j) {
                double sum = d[p][j];
                for (int i = 0; i < k; ++i) sum -= u[i][p] * left[i][j];
                left[k][j] = sum / u[k][p];
            }
        }
        matrix3 both = {};
        for (int k = 0; k < rank; ++k)
            for (int l = 0; l < rank; ++l) {
                const int p = order[l];
                double sum = left[k][p];
                for (int i = 0; i < l; ++i) sum -= both[k][i] * u[i][p];
                both[k][l] = sum / u[l][p];
            }
        matrix3 e;
        for (int k = 0; k < 3; ++k)
            for (int l = 0; l < 3; ++l) e[k][l] = (both[k][l] + both[l][k]) * 0.5;
        return e;
    }

    matrix3 u = {};
    int order[3] = {};
    int rank = 0;
};

/// Whether U'EU is D. Where S is below rounding, D may still have entries of up to the root of
/// that: of two needles that are close, S is quadratic in the angle between them and D is linear.
bool is_whole(const factor& f, const matrix3& e, const matrix3& s, const matrix3& d)
{
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j) {
            double rest = d[i][j];
            for (int k = 0; k < f.rank; ++k)
                for (int l = 0; l < f.rank; ++l) rest -= f.u[k][i] * e[k][l] * f.u[l][j];
            if (!(std::fabs(rest) <= rank_tolerance * std::sqrt(s[i][i] * s[j][j]))) return false;
        }
    return true;
}

/// (S + U'|E|U) / 2, written as S - U'(1 - |E|)U / 2: where U has no row it is S. S covers both
/// operands; it is also what is left to do when U has no rows for all of D.
matrix3 larger_of_both(matrix3 s, const matrix3& d)
{
    const factor f(s);
    matrix3 e = f.reduced(d);
    if (f.rank < 3 && !is_whole(f, e, s, d)) return s;
    matrix3 z;
    jacobi_eigen3(e, z);
    for (int k = 0; k < 3; ++k) {
        const double excess = (1.0 - std::fabs(e[k][k])) * 0.5;
        double w[3];
        for (int j = 0; j < 3; ++j)
            w[j] = f.u[0][j] * z[0][k] + f.u[1][j] * z[1][k] + f.u[2][j] * z[2][k];
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j <= i; ++j) s[i][j] -= excess * w[i] * w[j];
    }
    return s;
}

metric larger_of_diagonals(const metric& a, const metric& b)
{
    metric m = {};
    for (std::size_t i = 0; i < 3; ++i) m(i, i) = std::max({a(i, i), b(i, i), 0.0});
    return m;
}

/// Of two metrics neither of which is zero or diagonal with the other one.
metric intersection(const metric& a, verdict a_is, const metric& b, verdict b_is)
{
    axis_scaling axes(a, b);
    matrix3 first = axes.scaled(a);
    matrix3 second = axes.scaled(b);
    const matrix3 d = difference(first, second);
    const bool a_covers = covers(d, first, second);
    const bool b_covers = covers(difference(second, first), first, second);
    if (a_covers && b_covers) return d[0][0] + d[1][1] + d[2][2] > 0.0 ? a : b;
    if (a_covers) return a;
    if (b_covers) return b;
    if (a_is == verdict::by_tolerance || b_is == verdict::by_tolerance) {
        const metric p = a_is == verdict::by_tolerance ? raised(a) : a;
        const metric q = b_is == verdict::by_tolerance ? raised(b) : b;
        axes = axis_scaling(p, q);
        first = axes.scaled(p);
        second = axes.scaled(q);
    }
    return axes.restored(larger_of_both(sum(first, second), difference(first, second)));
}

} // namespace

bool minimum_metric(const metric& a, const metric& b, metric& result)
{
    const verdict a_is = judge(a);
    const verdict b_is = judge(b);
    if (a_is == verdict::no_metric || b_is == verdict::no_metric) {
        const bool usable = a_is != b_is;
        result = a_is == verdict::no_metric ? b : a;
        return usable;
    }
    if (is_zero(b))
        result = a;
    else if (is_zero(a) || is_equal(a, b))
        result = b;
    else if (is_diagonal(a) && is_diagonal(b))
        result = larger_of_diagonals(a, b);
    else
        result = intersection(a, a_is, b, b_is);
    return true;
}

} // namespace vorel::tessalo
