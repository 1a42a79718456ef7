// The default raw allocator. It has a source file of its own so that a program that defines the
// pair itself replaces both, also when it links the static library.
#include <vorel/vector_num.h>

#include <cstdlib>

namespace vorel {

void* __vector_num_alloc(std::size_t bytes) noexcept
{
    return std::malloc(bytes);
}

void __vector_num_free(void* memory) noexcept
{
    std::free(memory);
}

} // namespace vorel
