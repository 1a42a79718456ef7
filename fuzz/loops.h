// Closed loops of boundary nodes, as structured grids and fields over them take them.
#pragma once

#include "fuzz/arguments.h"
#include "fuzz/expectations.h"
#include "fuzz/input.h"

namespace fuzz {

/// The sides of a loop of `L` entries with `N` cells along two of them: L = 2 (M + N) + 1.
struct loop {
    std::size_t N;
    std::size_t M = 0;
    bool fits;
    bool is_nothing;
    /// The quotient is 0 though the loop may have one entry too many.
    bool has_no_cells;

    loop(std::size_t L, unsigned count) : N(count)
    {
        const std::size_t used = 2 * N + 1;
        fits = L >= used && (L - used) % 2 == 0;
        if (fits) M = (L - used) / 2;
        is_nothing = L == 0 || N == 0;
        // The double of the count is taken in 32 bits (kept: callers rely on it).
        has_no_cells = (L - std::size_t(2 * count) - 1) / 2 == 0;
    }
};

inline bool is_closed_loop(const dense1D<unsigned, 8>& nodes, std::size_t bound)
{
    return nodes.size >= 5 && nodes[0] == nodes[nodes.size - 1] && holds_IDs(nodes, bound);
}

/// A loop in `nodes`, mostly closed and mostly of the length that fits `count[0]`.
inline void read_loop(input& in, arguments& a, std::size_t bound)
{
    const unsigned M = in.below(6);
    const unsigned N = in.below(6);
    const std::size_t L = in.chance(90) ? 2 * (M + N) + 1 : in.below(20);
    a.count[0] = in.chance(92) ? N : in.count(8);
    a.nodes() = dense1D<unsigned, 8>(L);
    for (std::size_t k = 0; k < L; ++k) a.nodes()[k] = in.id(bound);
    if (L > 0 && in.chance(94)) a.nodes()[L - 1] = a.nodes()[0];
}

} // namespace fuzz
