// The adjacency that some functions read and none builds: your mesher may have it already.
#pragma once

#include <vorel/tessalo2d.h>

#include <map>
#include <utility>

/// 3 x E: entry (k, e) is the triangle across the edge of e opposite its corner k, or `UNSET_ID`.
inline vorel::dense2D<unsigned> neighbors_of(const vorel::dense2D<unsigned>& triangles)
{
    vorel::dense2D<unsigned> neighbors(3, triangles.cols, vorel::UNSET_ID);
    // Edges that were met once, with the place where.
    std::map<std::pair<unsigned, unsigned>, std::pair<unsigned, unsigned>> open;
    for (unsigned e = 0; e < triangles.cols; ++e)
        for (unsigned k = 0; k < 3; ++k) {
            const unsigned a = triangles((k + 1) % 3, e);
            const unsigned b = triangles((k + 2) % 3, e);
            const auto [place, is_first] = open.try_emplace(std::minmax(a, b), k, e);
            if (is_first) continue;
            const auto [other_k, other_e] = place->second;
            neighbors(k, e) = other_e;
            neighbors(other_k, other_e) = e;
        }
    return neighbors;
}
