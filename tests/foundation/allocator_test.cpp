// The allocator that the library comes with. A program of its own: the other tests replace it.
#include <vorel/dense1D.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <limits>
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

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

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)

TEST(DefaultAllocator, ServesALargeBlockWhereAddressSpaceIsTooShortForItsAlignment)
{
#ifdef M_ARENA_MAX
    // Where LAPACK brings threads along, a refused request would take room for a heap of its own.
    ASSERT_EQ(mallopt(M_ARENA_MAX, 1), 1);
#endif
    std::size_t pages = 0;
    ASSERT_TRUE(std::ifstream("/proc/self/statm") >> pages);
    const std::size_t used = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    // Enough for the block, but not for the part of a large page that aligning it may take.
    constexpr std::size_t BLOCK = 512u << 20;
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
    rlimit tight = before;
    tight.rlim_cur = used + BLOCK + (1u << 20);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    void* const memory = __vector_num_alloc(BLOCK);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &before), 0);
    ASSERT_NE(memory, nullptr);
    static_cast<char*>(memory)[BLOCK - 1] = 1;
    __vector_num_free(memory);
}

#endif

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
