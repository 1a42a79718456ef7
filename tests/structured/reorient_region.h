// Elements with their neighbors, as both kinds of tests of the reorientation take them.
#pragma once

#include "support/matrices.h"
#include "support/topology.h"

#include <random>
#include <utility>

namespace reorient_tests {

using namespace vorel;

inline constexpr unsigned U = UNSET_ID;

struct region {
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors;
};

inline region with_neighbors(const dense2D<unsigned>& connect)
{
    return {support::copy_of(connect), support::neighbors_of(connect)};
}

/// Flips each element with probability 1/2.
inline void turn_some(dense2D<unsigned>& connect, std::mt19937& draw)
{
    for (std::size_t e = 0; e < connect.cols; ++e)
        if (draw() % 2) std::swap(connect(0, e), connect(2, e));
}

} // namespace reorient_tests
