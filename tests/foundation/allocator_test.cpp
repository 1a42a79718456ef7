// The allocator that the library comes with. A program of its own: the other tests replace it.
#include <vorel/dense1D.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

using namespace vorel;

TEST(DefaultAllocator, ServesSmallAndLargeBlocks)
{
    for (const std::size_t bytes :
         {1u, 8u, 100u, 4096u, 1u << 20, (1u << 22) - 1, 1u << 22, (1u << 22) + 1, 33u << 20}) {
        auto* const memory = static_cast<unsigned char*>(__vector_num_alloc(bytes));
        ASSERT_NE(memory, nullptr) << bytes;
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 16, 0u) << bytes;
        memory[0] = 1;
        memory[bytes - 1] = 2;
        EXPECT_EQ(memory[bytes - 1], 2);
        __vector_num_free(memory);
    }
}

TEST(DefaultAllocator, RefusesWhatDoesNotFit)
{
    constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();
    for (const std::size_t bytes : {LARGEST, LARGEST - 1, LARGEST - (1u << 21), LARGEST / 2})
        EXPECT_EQ(__vector_num_alloc(bytes), nullptr) << bytes;
}

TEST(DefaultAllocator, CarriesAGrowingRun)
{
    dense1D<unsigned> run;
    constexpr unsigned COUNT = 3000000;
    for (unsigned i = 0; i < COUNT; ++i) run.append(i);
    ASSERT_EQ(run.size, COUNT);
    for (unsigned i = 0; i < COUNT; ++i) ASSERT_EQ(run[i], i);
    EXPECT_FALSE(run.resize(std::size_t(1) << 58));
    EXPECT_EQ(run.size, COUNT);
}
