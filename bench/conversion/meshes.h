// Meshes for the conversion benchmarks.
#pragma once

#include "support/meshes.h"

#include <cmath>

namespace bench {

/// About that many triangles in a square, in natural or in random numbering.
inline support::mesh triangles(std::size_t elements, bool shuffled)
{
    const auto n = static_cast<unsigned>(std::lround(std::sqrt(static_cast<double>(elements) / 2)));
    support::mesh m = support::grid_T3(n, n);
    if (shuffled) support::shuffle(m, 1);
    return m;
}

/// About that many elements, half of the cells cut into triangles.
inline support::mesh mixed(std::size_t elements, bool shuffled)
{
    const auto n =
        static_cast<unsigned>(std::lround(std::sqrt(static_cast<double>(elements) / 1.5)));
    support::mesh m = support::grid_mixed(n, n);
    if (shuffled) support::shuffle(m, 1);
    return m;
}

} // namespace bench
