// The default raw allocator. It has a source file of its own so that a program that defines the
// pair itself replaces both, also when it links the static library.
#include <vorel/vector_num.h>

#include <cstdlib>
#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace vorel {

namespace {

#if defined(__linux__)

/// Large blocks are aligned to large pages and the system is asked for such: to be given a small
/// page at the first touch costs more than most functions spend on what they write there.
constexpr std::size_t LARGE_PAGE = std::size_t(1) << 21;
constexpr std::size_t LARGE_BLOCK = 2 * LARGE_PAGE;

void* allocate_large(std::size_t bytes) noexcept
{
    void* memory = nullptr;
    // The alignment takes address space of its own: where that is short, any place will do.
    if (posix_memalign(&memory, LARGE_PAGE, bytes) != 0) return std::malloc(bytes);
    // An advice only. Not for the last part of a page, which would make the block larger.
    (void)madvise(memory, bytes / LARGE_PAGE * LARGE_PAGE, MADV_HUGEPAGE);
    return memory;
}

#endif

} // namespace

void* __vector_num_alloc(std::size_t bytes) noexcept
{
#if defined(__linux__)
    if (bytes >= LARGE_BLOCK) return allocate_large(bytes);
#endif
    return std::malloc(bytes);
}

void __vector_num_free(void* memory) noexcept
{
    std::free(memory);
}

} // namespace vorel
