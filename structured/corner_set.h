// Which corners of an element are a node: as bits, since a branch on it can't be foreseen.
#pragma once

namespace vorel::tessalo2d {

/// Bit k is set if corner k is the node.
template <unsigned CORNERS>
unsigned corner_set(const unsigned* column, unsigned node)
{
    unsigned set = 0;
    for (unsigned k = 0; k < CORNERS; ++k) set |= unsigned(column[k] == node) << k;
    return set;
}

/// No corner.
inline constexpr unsigned NO_CORNER = 0xFFFFFFFFu;

/// The first corner in the set.
constexpr unsigned first_corner(unsigned set)
{
    for (unsigned k = 0; k < 4; ++k)
        if ((set >> k & 1u) != 0) return k;
    return NO_CORNER;
}

} // namespace vorel::tessalo2d
