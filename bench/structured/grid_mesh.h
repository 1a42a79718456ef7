// Large grids with their adjacency, by formula, numbered in rows or at random.
#pragma once

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

namespace bench {

struct adjacent_mesh {
    vorel::dense2D<unsigned> connect;
    vorel::dense2D<unsigned> neighbors;
    vorel::dense1D<unsigned, 8> node_element;
};

enum numbering : int { in_rows, at_random };

inline std::vector<unsigned> numbers(std::size_t count, int order, unsigned seed)
{
    std::vector<unsigned> number(count);
    std::iota(number.begin(), number.end(), 0u);
    std::mt19937 draw(seed);
    if (order == at_random) std::shuffle(number.begin(), number.end(), draw);
    return number;
}

/// About `elements` elements on a square grid: triangles in 3 rows, quadrilaterals in 4.
inline adjacent_mesh grid_mesh(std::size_t elements, std::size_t rows, int order)
{
    constexpr unsigned U = vorel::UNSET_ID;
    const unsigned per_cell = rows == 3 ? 2 : 1;
    const double cells = static_cast<double>(elements) / per_cell;
    const unsigned n = static_cast<unsigned>(std::lround(std::sqrt(cells)));
    const unsigned count = per_cell * n * n;
    const std::vector<unsigned> node = numbers(std::size_t(n + 1) * (n + 1), order, 1);
    const std::vector<unsigned> element = numbers(count, order, 2);

    adjacent_mesh m;
    m.connect = vorel::dense2D<unsigned>(rows, count);
    m.neighbors = vorel::dense2D<unsigned>(rows, count);
    m.node_element = vorel::dense1D<unsigned, 8>(node.size(), U);
    const auto across = [&](bool inside, unsigned cell, unsigned which) {
        return inside ? element[per_cell * cell + which] : U;
    };
    const auto write = [&](unsigned e, auto corners, auto sides) {
        for (std::size_t i = 0; i < rows; ++i) {
            m.connect(i, e) = node[corners[i]];
            m.neighbors(i, e) = sides[i];
            m.node_element[node[corners[i]]] = e;
        }
    };
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i < n; ++i) {
            const unsigned cell = j * n + i;
            const unsigned a = j * (n + 1) + i;
            const std::array<unsigned, 4> c{a, a + 1, a + n + 2, a + n + 1};
            const unsigned first = element[per_cell * cell];
            if (rows == 4) {
                write(first, c,
                      std::array<unsigned, 4>{
                          across(j > 0, cell - n, 0), across(i + 1 < n, cell + 1, 0),
                          across(j + 1 < n, cell + n, 0), across(i > 0, cell - 1, 0)});
                continue;
            }
            const unsigned second = element[per_cell * cell + 1];
            write(first, std::array<unsigned, 3>{c[0], c[1], c[2]},
                  std::array<unsigned, 3>{across(i + 1 < n, cell + 1, 1), second,
                                          across(j > 0, cell - n, 1)});
            write(second, std::array<unsigned, 3>{c[2], c[3], c[0]},
                  std::array<unsigned, 3>{across(i > 0, cell - 1, 0), first,
                                          across(j + 1 < n, cell + n, 0)});
        }
    return m;
}

/// Reads a column of each matrix for each listed element: what a visit can't do without.
inline unsigned gather_columns(const adjacent_mesh& m, const unsigned* list, std::size_t count)
{
    const std::size_t rows = m.connect.rows;
    const unsigned* const connect = m.connect.column(0);
    const unsigned* const neighbors = m.neighbors.column(0);
    unsigned sum = 0;
    for (std::size_t k = 0; k < count; ++k)
        sum += connect[rows * list[k]] + neighbors[rows * list[k]];
    return sum;
}

} // namespace bench
