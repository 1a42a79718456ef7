// The random source of the walk over a background mesh.
#pragma once

#include <cstdint>
#include <random>

namespace vorel::tessalo2d {

/// Draws of 0 to 3: two bits at a time, from the low end of the words of a Mersenne Twister. The
/// seed is always 1, so equal arguments give equal walks.
struct side_draw {
    unsigned draw()
    {
        if (draws_left == 0) {
            draws_left = draws_per_word;
            current_word = static_cast<std::uint32_t>(generator());
        }
        const unsigned drawn = current_word & mask;
        current_word >>= bits;
        --draws_left;
        return drawn;
    }

    std::uint32_t mask = 3;
    std::uint32_t bits = 2;
    std::uint32_t draws_per_word = 16;
    std::uint32_t draws_left = 0;
    std::uint32_t current_word = 0;
    std::mt19937 generator{1};
};

} // namespace vorel::tessalo2d
