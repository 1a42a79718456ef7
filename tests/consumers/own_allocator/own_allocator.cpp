// A program that brings its own raw allocator: all storage comes from it, be it that the program
// grows a container or that the library does.
#include <vorel/tessalo2d.h>

#include <cstdio>
#include <cstdlib>

namespace {

std::size_t served = 0;
std::size_t freed = 0;
bool refuse = false;

bool failed = false;

void require(bool condition, const char* what)
{
    if (condition) return;
    std::printf("not so: %s\n", what);
    failed = true;
}

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
    {
        const vorel::dense2D<unsigned> connect{{0, 1, 2, 3}, {1, 4, 2, vorel::UNSET_ID}};
        require(served == 1, "the program's own matrix takes one block");

        vorel::dense2D<unsigned> triangles;
        require(vorel::tessalo2d::split_Q4_into_T3(connect, triangles) == 1, "one Q4 is split");
        require(triangles.cols == 3, "three triangles come out");
        require(served > 1, "the library grows its result by this program's allocator");

        refuse = true;
        const std::size_t before = served;
        vorel::dense2D<unsigned> none;
        require(vorel::tessalo2d::split_Q4_into_T3(connect, none) == -199,
                "the library is refused by this program's allocator");
        require(served == before && none.cols == 0, "a refused call leaves nothing");
        refuse = false;
    }
    require(served == freed, "every block is given back to this program's allocator");
    std::printf("tessalo2d %s: %zu blocks served, %zu freed\n", vorel::tessalo2d::version(), served,
                freed);
    return failed ? 1 : 0;
}
