// Small dense algebra in extended precision, independent of the library: what the tests compare
// with. Eigenvectors come from plane rotations, inverses from elimination.
#pragma once

#include <vorel/fixed.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

namespace reference {

using real = long double;

template <std::size_t D>
struct matrix {
    real entry[D][D] = {};

    real* operator[](std::size_t i) { return entry[i]; }
    const real* operator[](std::size_t i) const { return entry[i]; }
};

template <std::size_t D>
matrix<D> operator*(const matrix<D>& a, const matrix<D>& b)
{
    matrix<D> c;
    for (std::size_t i = 0; i < D; ++i)
        for (std::size_t j = 0; j < D; ++j)
            for (std::size_t k = 0; k < D; ++k) c[i][j] += a[i][k] * b[k][j];
    return c;
}

template <std::size_t D>
matrix<D> combination(real s, const matrix<D>& a, real t, const matrix<D>& b)
{
    matrix<D> c;
    for (std::size_t i = 0; i < D; ++i)
        for (std::size_t j = 0; j < D; ++j) c[i][j] = s * a[i][j] + t * b[i][j];
    return c;
}

template <std::size_t D>
matrix<D> transpose(const matrix<D>& a)
{
    matrix<D> c;
    for (std::size_t i = 0; i < D; ++i)
        for (std::size_t j = 0; j < D; ++j) c[i][j] = a[j][i];
    return c;
}

template <std::size_t D>
matrix<D> diagonal(const std::vector<real>& values)
{
    matrix<D> c;
    for (std::size_t i = 0; i < D; ++i) c[i][i] = values[i];
    return c;
}

/// The full matrix of packed entries.
template <std::size_t D>
matrix<D> full(const vorel::symmetric_fixed<double, D>& m)
{
    matrix<D> c;
    for (std::size_t i = 0; i < D; ++i)
        for (std::size_t j = 0; j < D; ++j) {
            const std::size_t low = i < j ? i : j;
            const std::size_t high = i < j ? j : i;
            c[i][j] = m.data[high * (high + 1) / 2 + low];
        }
    return c;
}

/// The packed upper triangle, rounded to double.
template <std::size_t D>
vorel::symmetric_fixed<double, D> packed(const matrix<D>& a)
{
    vorel::symmetric_fixed<double, D> m;
    std::size_t k = 0;
    for (std::size_t j = 0; j < D; ++j)
        for (std::size_t i = 0; i <= j; ++i) m.data[k++] = static_cast<double>(a[i][j]);
    return m;
}

template <std::size_t D>
real largest_entry(const matrix<D>& a)
{
    real most = 0;
    for (std::size_t i = 0; i < D; ++i)
        for (std::size_t j = 0; j < D; ++j) most = std::fmax(most, std::fabs(a[i][j]));
    return most;
}

template <std::size_t D>
struct eigen {
    /// Ascending.
    std::vector<real> values;
    /// Column k is the unit vector of values[k].
    matrix<D> vectors;
};

/// Eigenvalues and vectors of a symmetric matrix by cyclic plane rotations.
template <std::size_t D>
eigen<D> eigen_of(matrix<D> a)
{
    matrix<D> v = diagonal<D>(std::vector<real>(D, 1));
    for (int sweep = 0; sweep < 60; ++sweep)
        for (std::size_t p = 0; p < D; ++p)
            for (std::size_t q = p + 1; q < D; ++q) {
                if (a[p][q] == 0) continue;
                const real angle = std::atan2(2 * a[p][q], a[p][p] - a[q][q]) / 2;
                matrix<D> turn = diagonal<D>(std::vector<real>(D, 1));
                turn[p][p] = turn[q][q] = std::cos(angle);
                turn[p][q] = -std::sin(angle);
                turn[q][p] = std::sin(angle);
                a = transpose(turn) * a * turn;
                v = v * turn;
                if (std::fabs(a[p][q]) <= 1e-25L * largest_entry(a)) a[p][q] = a[q][p] = 0;
            }
    std::vector<std::size_t> order;
    for (std::size_t k = 0; k < D; ++k) order.push_back(k);
    for (std::size_t k = 0; k < D; ++k)
        for (std::size_t l = k + 1; l < D; ++l)
            if (a[order[l]][order[l]] < a[order[k]][order[k]]) std::swap(order[k], order[l]);
    eigen<D> result;
    for (std::size_t k = 0; k < D; ++k) {
        result.values.push_back(a[order[k]][order[k]]);
        for (std::size_t i = 0; i < D; ++i) result.vectors[i][k] = v[i][order[k]];
    }
    return result;
}

/// V f(values) V' of a symmetric matrix.
template <std::size_t D, class F>
matrix<D> spectral(const matrix<D>& a, F f)
{
    const eigen<D> e = eigen_of(a);
    std::vector<real> values;
    for (const real l : e.values) values.push_back(f(l));
    return e.vectors * diagonal<D>(values) * transpose(e.vectors);
}

/// The inverse by elimination with row exchange.
template <std::size_t D>
matrix<D> inverse(matrix<D> a)
{
    matrix<D> b = diagonal<D>(std::vector<real>(D, 1));
    for (std::size_t k = 0; k < D; ++k) {
        std::size_t best = k;
        for (std::size_t i = k; i < D; ++i)
            if (std::fabs(a[i][k]) > std::fabs(a[best][k])) best = i;
        std::swap(a.entry[k], a.entry[best]);
        std::swap(b.entry[k], b.entry[best]);
        for (std::size_t i = 0; i < D; ++i) {
            if (i == k) continue;
            const real f = a[i][k] / a[k][k];
            for (std::size_t j = 0; j < D; ++j) {
                a[i][j] -= f * a[k][j];
                b[i][j] -= f * b[k][j];
            }
        }
    }
    for (std::size_t k = 0; k < D; ++k)
        for (std::size_t j = 0; j < D; ++j) b[k][j] /= a[k][k];
    return b;
}

/// The metric at t between two definite ones, without a common basis: the root A of the first one
/// takes it to the identity, and there the sizes of the second one are the inverse root of
/// C = inv(A) M2 inv(A). The metric is A ((1 - t) I + t C^(-1/2))^(-2) A.
template <std::size_t D>
matrix<D> interpolated(const matrix<D>& m1, const matrix<D>& m2, real t)
{
    const matrix<D> a = spectral(m1, [](real l) { return std::sqrt(l); });
    const matrix<D> b = spectral(m1, [](real l) { return 1 / std::sqrt(l); });
    const matrix<D> c = b * m2 * b;
    const matrix<D> g = spectral(c, [t](real l) {
        const real h = (1 - t) + t / std::sqrt(l);
        return 1 / (h * h);
    });
    return a * g * a;
}

/// A rotation with an axis and an angle drawn from `draw`.
template <std::size_t D>
matrix<D> random_rotation(std::mt19937& draw)
{
    std::uniform_real_distribution<double> angle(-3.2, 3.2);
    matrix<D> r = diagonal<D>(std::vector<real>(D, 1));
    for (std::size_t p = 0; p < D; ++p)
        for (std::size_t q = p + 1; q < D; ++q) {
            const real phi = angle(draw);
            matrix<D> turn = diagonal<D>(std::vector<real>(D, 1));
            turn[p][p] = turn[q][q] = std::cos(phi);
            turn[p][q] = -std::sin(phi);
            turn[q][p] = std::sin(phi);
            r = r * turn;
        }
    return r;
}

/// The symmetric matrix with these eigenvalues along random directions.
template <std::size_t D>
vorel::symmetric_fixed<double, D> random_symmetric(std::mt19937& draw,
                                                   const std::vector<real>& eigenvalues)
{
    const matrix<D> r = random_rotation<D>(draw);
    return packed(r * diagonal<D>(eigenvalues) * transpose(r));
}

/// A metric with sizes between 1 and 1/sqrt(condition), scaled, along random directions.
template <std::size_t D>
vorel::symmetric_fixed<double, D> random_metric(std::mt19937& draw, double condition,
                                                double scale = 1.0)
{
    std::uniform_real_distribution<double> exponent(0.0, std::log(condition));
    std::vector<real> eigenvalues;
    for (std::size_t k = 0; k < D; ++k) eigenvalues.push_back(scale * std::exp(exponent(draw)));
    return random_symmetric<D>(draw, eigenvalues);
}

template <std::size_t D>
vorel::symmetric_fixed<double, D> diagonal_metric(const std::vector<real>& values)
{
    return packed(diagonal<D>(values));
}

/// Largest difference of two matrices, as a fraction of the largest entry of the second one.
template <std::size_t D>
double difference(const matrix<D>& a, const matrix<D>& b)
{
    return static_cast<double>(largest_entry(combination<D>(1, a, -1, b)) / largest_entry(b));
}

template <std::size_t D>
bool same_bits(const vorel::symmetric_fixed<double, D>& a,
               const vorel::symmetric_fixed<double, D>& b)
{
    return std::memcmp(a.data, b.data, sizeof a.data) == 0;
}

} // namespace reference
