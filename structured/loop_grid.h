// The logical grid inside a closed loop of boundary nodes. Nothing but a count says where the
// corners are: a position in the loop is a place on one of the four sides.
#pragma once

#include <cstddef>

namespace vorel::tessalo2d {

/// M cells along the first and the third side, N along the second and the fourth. A grid node has
/// the indices (i, j) with 0 <= i <= M and 0 <= j <= N.
struct loop_grid {
    /// M follows from the length of the loop, in unsigned arithmetic: it means something only when
    /// the grid `fits`.
    loop_grid(std::size_t loop_size, unsigned cells)
        : M((loop_size - static_cast<std::size_t>(2u * cells) - 1) / 2), N(cells)
    {
    }

    /// True if the four sides fill the loop.
    bool fits(std::size_t loop_size) const
    {
        return 2 * N <= loop_size && 2 * (N + M) == loop_size - 1;
    }

    // Positions in the loop. It runs along the first side with rising i, the second with rising j,
    // the third with falling i and the fourth with falling j.
    std::size_t first_side(std::size_t i) const { return i; }
    std::size_t second_side(std::size_t j) const { return M + j; }
    std::size_t third_side(std::size_t i) const { return 2 * M - i + N; }
    std::size_t fourth_side(std::size_t j) const { return 2 * (M + N) - j; }

    /// Rank of an interior node among the new ones; j runs fastest.
    std::size_t interior(std::size_t i, std::size_t j) const { return (i - 1) * (N - 1) + (j - 1); }

    /// Modulo 2^64 where M or N is 0.
    std::size_t interior_count() const { return (N - 1) * (M - 1); }

    std::size_t M;
    std::size_t N;
};

} // namespace vorel::tessalo2d
