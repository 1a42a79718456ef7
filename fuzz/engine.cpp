// Hands the inputs of the engine to the family.
#include "fuzz/trial.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    fuzz::run(fuzz::family(), bytes, count);
    return 0;
}
