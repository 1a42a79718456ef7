#include "interpolation/side_draw.h"

#include <gtest/gtest.h>

using vorel::tessalo2d::side_draw;

TEST(SideDraw, TakesSixteenPairsOfBitsFromTheLowEndOfEachWord)
{
    // The first words of MT19937 with seed 1, as published with the generator.
    const std::uint32_t words[] = {1791095845u, 4282876139u, 3093770124u, 4005303368u, 491263u};
    side_draw draw;
    for (const std::uint32_t word : words)
        for (int k = 0; k < 16; ++k)
            EXPECT_EQ(draw.draw(), word >> (2 * k) & 3u) << word << " " << k;
}

TEST(SideDraw, BeginsWithoutAWord)
{
    const side_draw draw;
    EXPECT_EQ(draw.mask, 3u);
    EXPECT_EQ(draw.bits, 2u);
    EXPECT_EQ(draw.draws_per_word, 16u);
    EXPECT_EQ(draw.draws_left, 0u);
    EXPECT_EQ(draw.current_word, 0u);
}
