#include "exports/operator_new.h"

#include <cstdlib>
#include <new>

namespace exports {

namespace {

// Ready before any object with a constructor asks for storage.
support::request_gate gate;

void* serve(std::size_t bytes, std::size_t alignment) noexcept
{
    if (gate.refuse()) return nullptr;
    // The sizes of aligned blocks are multiples of their alignment.
    void* const memory = alignment == 0
                             ? std::malloc(bytes)
                             : std::aligned_alloc(alignment, (bytes / alignment + 1) * alignment);
    if (memory) {
        ++gate.served;
        ++gate.live;
    }
    return memory;
}

void* serve_or_throw(std::size_t bytes, std::size_t alignment)
{
    if (void* const memory = serve(bytes ? bytes : 1, alignment)) return memory;
    throw std::bad_alloc();
}

void take_back(void* memory) noexcept
{
    if (!memory) return;
    --gate.live;
    std::free(memory);
}

} // namespace

support::request_gate& new_requests()
{
    return gate;
}

} // namespace exports

using exports::serve;
using exports::serve_or_throw;
using exports::take_back;

void* operator new(std::size_t n)
{
    return serve_or_throw(n, 0);
}
void* operator new[](std::size_t n)
{
    return serve_or_throw(n, 0);
}
void* operator new(std::size_t n, std::align_val_t a)
{
    return serve_or_throw(n, static_cast<std::size_t>(a));
}
void* operator new[](std::size_t n, std::align_val_t a)
{
    return serve_or_throw(n, static_cast<std::size_t>(a));
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept
{
    return serve(n ? n : 1, 0);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept
{
    return serve(n ? n : 1, 0);
}
void operator delete(void* p) noexcept
{
    take_back(p);
}
void operator delete[](void* p) noexcept
{
    take_back(p);
}
void operator delete(void* p, std::size_t) noexcept
{
    take_back(p);
}
void operator delete[](void* p, std::size_t) noexcept
{
    take_back(p);
}
void operator delete(void* p, std::align_val_t) noexcept
{
    take_back(p);
}
void operator delete[](void* p, std::align_val_t) noexcept
{
    take_back(p);
}
void operator delete(void* p, std::size_t, std::align_val_t) noexcept
{
    take_back(p);
}
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept
{
    take_back(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept
{
    take_back(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept
{
    take_back(p);
}
