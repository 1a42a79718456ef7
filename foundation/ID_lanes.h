// Two or four rows of a column in one register.
#pragma once

#include <cstring>

namespace vorel::tessalo2d {

using ID_pair = unsigned __attribute__((vector_size(2 * sizeof(unsigned))));

/// Comparisons of ID_lanes give all ones for true and 0 for false.
using ID_lanes = unsigned __attribute__((vector_size(4 * sizeof(unsigned))));

template <class IDs = ID_lanes>
inline IDs load_lanes(const unsigned* from)
{
    IDs loaded;
    std::memcpy(&loaded, from, sizeof loaded);
    return loaded;
}

template <class IDs>
inline void store_lanes(const IDs& stored, unsigned* to)
{
    std::memcpy(to, &stored, sizeof stored);
}

inline ID_pair swapped(const ID_pair& pair)
{
    return __builtin_shufflevector(pair, pair, 1, 0);
}

inline ID_lanes joined(const ID_pair& low, const ID_pair& high)
{
    return __builtin_shufflevector(low, high, 0, 1, 2, 3);
}

inline ID_lanes equal_lanes(const ID_lanes& a, const ID_lanes& b)
{
    return reinterpret_cast<ID_lanes>(a == b);
}

/// Lanes of `a` where the mask is all ones, of `b` where it is 0.
inline ID_lanes pick_lanes(const ID_lanes& chosen, const ID_lanes& a, const ID_lanes& b)
{
    return (a & chosen) | (b & ~chosen);
}

} // namespace vorel::tessalo2d
