// How elements with nodes on their edges are cut into smaller ones at these nodes. A child is a
// list of rows of its parent.
#pragma once

#include <cstddef>

namespace vorel::tessalo2d {

/// Corner triangles, each from its corner, then the one in the middle.
inline constexpr unsigned T6_INTO_T3[4][3] = {{0, 5, 4}, {1, 3, 5}, {2, 4, 3}, {3, 4, 5}};

/// From a corner over the next midnode and the centre to the midnode before.
inline constexpr unsigned Q9_INTO_Q4[4][4] = {
    {0, 4, 8, 7}, {1, 5, 8, 4}, {2, 6, 8, 5}, {3, 7, 8, 6}};

/// The same for a triangle with its centroid in row 6. Edge k lies opposite corner k, so row 5
/// follows corner 0.
inline constexpr unsigned T7_INTO_Q4[3][4] = {{0, 5, 6, 4}, {1, 3, 6, 5}, {2, 4, 6, 3}};

/// Writes the children of one parent, `ld` entries apart, and returns where the next child goes.
template <std::size_t CHILDREN, std::size_t N>
unsigned* write_children(const unsigned (&cut)[CHILDREN][N], const unsigned* parent, unsigned* out,
                         std::size_t ld)
{
    for (std::size_t child = 0; child < CHILDREN; ++child, out += ld)
        for (std::size_t i = 0; i < N; ++i) out[i] = parent[cut[child][i]];
    return out;
}

} // namespace vorel::tessalo2d
