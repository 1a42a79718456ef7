// Loops around images of the unit square, and the grids that fill them worked out plainly.
#pragma once

#include "support/matrices.h"

#include <utility>
#include <vector>

namespace grid_tests {

using namespace vorel;

constexpr unsigned U = UNSET_ID;

/// A closed loop and its nodes, and the place of each grid node on it.
struct loop {
    dense2D<double> coords;
    dense1D<unsigned, 8> boundary;
    std::size_t M;
    unsigned N;
};

using place = double (*)(double, double);

/// The loop around the image of the unit square; `idle` nodes that it does not use come first. The
/// IDs fall along the loop, so that no ID is its position.
inline loop loop_around(std::size_t M, unsigned N, place x, place y, place z = nullptr,
                        std::size_t idle = 1)
{
    const std::size_t perimeter = 2 * (M + N);
    loop made{dense2D<double>(z ? 3 : 2, perimeter + idle, -7.0), {}, M, N};
    std::vector<std::pair<double, double>> uv;
    const double m = static_cast<double>(M);
    const double n = static_cast<double>(N);
    for (std::size_t i = 0; i < M; ++i) uv.push_back({static_cast<double>(i) / m, 0.0});
    for (std::size_t j = 0; j < N; ++j) uv.push_back({1.0, static_cast<double>(j) / n});
    for (std::size_t i = M; i > 0; --i) uv.push_back({static_cast<double>(i) / m, 1.0});
    for (std::size_t j = N; j > 0; --j) uv.push_back({0.0, static_cast<double>(j) / n});
    for (std::size_t k = 0; k < perimeter; ++k) {
        const unsigned id = static_cast<unsigned>(idle + perimeter - 1 - k);
        made.boundary.append(id);
        made.coords(0, id) = x(uv[k].first, uv[k].second);
        made.coords(1, id) = y(uv[k].first, uv[k].second);
        if (z) made.coords(2, id) = z(uv[k].first, uv[k].second);
    }
    made.boundary.append(made.boundary[0]);
    return made;
}

inline double same_u(double u, double)
{
    return u;
}
inline double same_v(double, double v)
{
    return v;
}

inline loop square(std::size_t M, unsigned N)
{
    return loop_around(M, N, same_u, same_v);
}

/// Node of the grid, written as the table of the five places.
inline unsigned grid_node(const loop& l, std::size_t nods0, std::size_t i, std::size_t j)
{
    if (j == 0) return l.boundary[i];
    if (i == l.M) return l.boundary[l.M + j];
    if (j == l.N) return l.boundary[2 * l.M - i + l.N];
    if (i != 0) return static_cast<unsigned>(nods0 + (i - 1) * (l.N - 1) + (j - 1));
    return l.boundary[2 * (l.M + l.N) - j];
}

/// The blend of one coordinate, by the names of its nodes.
inline double blend(const loop& l, std::size_t i, std::size_t j, std::size_t row)
{
    const auto X = [&](std::size_t at_i, std::size_t at_j) {
        return l.coords(row, grid_node(l, l.coords.cols, at_i, at_j));
    };
    const double u = static_cast<double>(i) / static_cast<double>(l.M);
    const double v = static_cast<double>(j) / static_cast<double>(l.N);
    return (1 - v) * X(i, 0) + u * X(l.M, j) + v * X(i, l.N) + (1 - u) * X(0, j) +
           (v - 1) * (1 - u) * X(0, 0) + (v - 1) * u * X(l.M, 0) + -(v * u) * X(l.M, l.N) +
           -((1 - u) * v) * X(0, l.N);
}

inline std::vector<std::vector<unsigned>> expected_T3(const loop& l, std::size_t nods0, int pattern)
{
    std::vector<std::vector<unsigned>> all;
    for (std::size_t i = 0; i < l.M; ++i)
        for (std::size_t j = 0; j < l.N; ++j) {
            const unsigned g00 = grid_node(l, nods0, i, j);
            const unsigned g10 = grid_node(l, nods0, i + 1, j);
            const unsigned g11 = grid_node(l, nods0, i + 1, j + 1);
            const unsigned g01 = grid_node(l, nods0, i, j + 1);
            if (pattern == 0 || (pattern == 2 && (i + j) % 2 == 1)) {
                all.push_back({g00, g10, g01});
                all.push_back({g10, g11, g01});
            } else {
                all.push_back({g00, g10, g11});
                all.push_back({g00, g11, g01});
            }
        }
    return all;
}

inline std::vector<std::vector<unsigned>> expected_Q4(const loop& l, std::size_t nods0)
{
    std::vector<std::vector<unsigned>> all;
    for (std::size_t i = 0; i < l.M; ++i)
        for (std::size_t j = 0; j < l.N; ++j)
            all.push_back({grid_node(l, nods0, i, j), grid_node(l, nods0, i + 1, j),
                           grid_node(l, nods0, i + 1, j + 1), grid_node(l, nods0, i, j + 1)});
    return all;
}

inline dense1D<unsigned, 8> loop_of(std::size_t size)
{
    return dense1D<unsigned, 8>(size, 0u);
}

} // namespace grid_tests
