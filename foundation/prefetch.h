// Asking for memory ahead of its use.
#pragma once

namespace vorel::tessalo2d {

/// Asks for the cache line at `p`, of which nothing is read. The empty statement is an effect:
/// without one g++ takes a function or a loop that only asks for memory to do nothing, and leaves
/// it out.
inline void prefetch(const void* p)
{
    __builtin_prefetch(p);
    asm volatile("");
}

/// As above for a line that will be written.
inline void prefetch_to_write(const void* p)
{
    __builtin_prefetch(p, 1);
    asm volatile("");
}

} // namespace vorel::tessalo2d
