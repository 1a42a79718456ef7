// A program that brings its own raw allocator: all storage of the containers comes from it.
#include <vorel/tessalo2d.h>

#include <cstdio>
#include <cstdlib>

namespace {

std::size_t served = 0;
std::size_t freed = 0;
bool refuse = false;

} // namespace

namespace vorel {

void* __vector_num_alloc(std::size_t bytes) noexcept
{
    if (refuse) return nullptr;
    ++served;
    return std::malloc(bytes);
}

void __vector_num_free(void* memory) noexcept
{
    ++freed;
    std::free(memory);
}

} // namespace vorel

int main()
{
    bool right = true;
    {
        vorel::dense2D<unsigned> connect{{0, 1, 2}};
        right = served == 1 && connect.cols == 1;
        refuse = true;
        right = right && !connect.resize(3, 1000) && connect.cols == 1;
    }
    std::printf("tessalo2d %s: %zu blocks served, %zu freed\n", vorel::tessalo2d::version(), served,
                freed);
    return right && served == freed ? 0 : 1;
}
