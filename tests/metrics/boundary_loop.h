// Loops around patches of cells, and sizes along them.
#pragma once

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <vector>

namespace patch_tests {

using namespace vorel;

/// The list around a patch of n x m cells whose boundary nodes have the IDs 0, 1, 2 and so on,
/// shuffled by a seed.
struct loop {
    loop(std::size_t n_, std::size_t m_, unsigned seed) : n(n_), m(m_), nodes(2 * (n_ + m_))
    {
        std::vector<unsigned> order;
        for (unsigned k = 0; k < nodes; ++k) order.push_back(k);
        std::mt19937 draw(seed);
        std::shuffle(order.begin(), order.end(), draw);
        for (const unsigned id : order) ids.append(id);
        ids.append(order[0]);
    }

    /// The boundary node at grid indices (i, j), found by walking around.
    unsigned at(std::size_t i, std::size_t j) const
    {
        std::size_t position = 0;
        std::size_t x = 0;
        std::size_t y = 0;
        while (x != i || y != j) {
            if (y == 0 && x < n)
                ++x;
            else if (x == n && y < m)
                ++y;
            else if (y == m && x > 0)
                --x;
            else
                --y;
            ++position;
        }
        return ids[position];
    }

    std::size_t n;
    std::size_t m;
    std::size_t nodes;
    dense1D<unsigned, 8> ids;
};

inline dense1D<double, 8> random_sizes(std::size_t entries, unsigned seed)
{
    std::mt19937 draw(seed);
    std::uniform_real_distribution<double> size(0.5, 2.0);
    dense1D<double, 8> sizes(entries);
    for (double& h : sizes) h = size(draw);
    return sizes;
}

inline double ratio(std::size_t i, std::size_t n)
{
    return static_cast<double>(i) / static_cast<double>(n);
}

inline constexpr std::size_t cells[][2] = {{2, 2}, {3, 2}, {2, 3}, {4, 7}, {9, 2}, {2, 9}, {6, 6}};

} // namespace patch_tests
