// The storage block that all data lives in, and the replaceable raw allocator below it.
#pragma once

#include <vorel/export.h>
#include <vorel/ref_counted.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

namespace vorel {

/// Raw memory of at least `bytes` bytes, or null when there is none; never throws. All storage
/// comes from here. A program that defines this pair itself replaces it, as with `operator new`.
VOREL_API void* __vector_num_alloc(std::size_t bytes) noexcept;

/// Frees what `__vector_num_alloc` returned; never called with null by the library.
VOREL_API void __vector_num_free(void* memory) noexcept;

/// A growable run of `T` without an element count: the views on it hold the counts, so that several
/// views of different lengths share one block. The second argument distinguishes families of
/// blocks; the library uses 8 throughout.
template <class T, unsigned Family = 8>
class vector_num final : public numerel::ref_counted {
    static_assert(std::is_trivially_destructible_v<T>, "elements are dropped without a call");
    static_assert(std::is_trivially_copy_constructible_v<T>, "elements are moved as bytes");
    static_assert(sizeof(T) <= 256, "the alignment shift is kept in eight bits");

public:
    /// `shift` of a block whose storage belongs to somebody else.
    static constexpr std::uint16_t FOREIGN = 65535;

    vector_num() noexcept = default;
    ~vector_num() override { release(); }

    /// A block on memory that the caller owns and keeps alive. The first growth moves the contents
    /// to storage of the block's own and leaves the caller's memory as it is from then on.
    /// Throws `std::bad_alloc` when the block object itself can't be had.
    static Ptr<vector_num> wrap(T* memory, std::size_t capacity)
    {
        auto* const wrapped = new vector_num;
        wrapped->data = memory;
        wrapped->capacity = capacity;
        wrapped->shift = FOREIGN;
        return Ptr<vector_num>(wrapped);
    }

    /// Moves the contents to storage for max(capacity * factor, 2, min_capacity) elements, always
    /// to a new place. The first `keep` elements go along, the others are default-constructed.
    /// False on exhaustion or when the byte count does not fit a size_t; the block is then
    /// untouched. For the views and the hash tables, not for users.
    [[nodiscard]] bool __grow(std::size_t min_capacity, std::size_t keep, std::size_t factor)
    {
        constexpr std::size_t S = sizeof(T);
        constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();
        if (factor != 0 && capacity > LARGEST / factor) return false;
        std::size_t wanted = std::max<std::size_t>(capacity * factor, 2);
        wanted = std::max(wanted, min_capacity);
        if (wanted > (LARGEST - (S - 1)) / S) return false;

        const std::size_t bytes = wanted * S + (S - 1);
        void* const base = __vector_num_alloc(bytes);
        if (!base) return false;
        // Clears the bits of S - 1: an alignment to S when S is a power of two, and never an
        // address below base for any S.
        const std::size_t address = reinterpret_cast<std::uintptr_t>(base);
        const std::size_t distance = ((address + S - 1) & ~(S - 1)) - address;
        T* const moved = reinterpret_cast<T*>(static_cast<unsigned char*>(base) + distance);
        const std::size_t room = (bytes - distance) / S;

        std::size_t kept = 0;
        if (data) {
            kept = std::min({keep, capacity, room});
            if (kept) std::memcpy(static_cast<void*>(moved), data, kept * S);
        }
        // Elements without a default value stay untouched pages.
        if constexpr (!std::is_trivially_default_constructible_v<T>)
            for (std::size_t i = kept; i < room; ++i) new (moved + i) T;

        release();
        data = moved;
        capacity = room;
        shift = static_cast<std::uint16_t>(distance & 0xFF);
        return true;
    }

    /// First element; null while the block has no storage.
    T* data = nullptr;
    /// Number of elements usable from `data` on.
    std::size_t capacity = 0;
    /// Bytes from the allocator's address to `data`; `FOREIGN` when the storage is not the block's.
    std::uint16_t shift = 0;

private:
    void release() noexcept
    {
        if (data && shift < FOREIGN)
            __vector_num_free(reinterpret_cast<unsigned char*>(data) - shift);
        data = nullptr;
        capacity = 0;
        shift = 0;
    }
};

} // namespace vorel
