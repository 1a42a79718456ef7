// Four rows of a column in one register.
#pragma once

#include <cstdint>
#include <cstring>

namespace vorel::tessalo2d {

/// Comparisons of lanes give all ones for true and 0 for false.
using lanes = unsigned __attribute__((vector_size(4 * sizeof(unsigned))));

inline lanes load_lanes(const unsigned* from)
{
    lanes loaded;
    std::memcpy(&loaded, from, sizeof loaded);
    return loaded;
}

inline void store_lanes(const lanes& stored, unsigned* to)
{
    std::memcpy(to, &stored, sizeof stored);
}

inline lanes equal_lanes(const lanes& a, const lanes& b)
{
    return reinterpret_cast<lanes>(a == b);
}

/// Lanes of `a` where the mask is all ones, of `b` where it is 0.
inline lanes pick_lanes(const lanes& chosen, const lanes& a, const lanes& b)
{
    return (a & chosen) | (b & ~chosen);
}

inline bool any_lane(const lanes& l)
{
    std::uint64_t halves[2];
    std::memcpy(halves, &l, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

} // namespace vorel::tessalo2d
