// View of a run of elements in a shared storage block.
#pragma once

#include <vorel/vector_num.h>

#include <initializer_list>
#include <utility>

namespace vorel {

/// A run of `size` elements of a block, starting at index `offset`. Copies share the block: writing
/// through one view shows in the others, and a growth through one moves the storage of all of them
/// (they reach it through the block), keeping the elements up to the end of the growing view.
/// Element i stands at `block->data[offset + i]`.
template <class T, unsigned Family = 8>
class dense1D {
public:
    /// The storage that views share.
    using block_type = vector_num<T, Family>;
    /// What an entry is.
    using value_type = T;

    /// An empty view with an empty block of its own. Throws `std::bad_alloc` when that block can't
    /// be had, as do all constructors that make a block.
    dense1D() : block(new block_type) {}

    /// `n` elements with unspecified values; empty when the storage can't be had.
    explicit dense1D(std::size_t n) : dense1D() { (void)resize(n); }

    /// `n` elements with the value `v`; empty when the storage can't be had.
    dense1D(std::size_t n, const T& v) : dense1D() { (void)resize(n, v); }

    /// The listed elements; empty when the storage can't be had.
    dense1D(std::initializer_list<T> values) : dense1D()
    {
        if (resize(values.size())) std::copy(values.begin(), values.end(), begin());
    }

    /// Another view on the same block.
    dense1D(const dense1D&) = default;
    /// As above, in place of what this was.
    dense1D& operator=(const dense1D&) = default;
    ~dense1D() = default;

    /// The source is left as an empty view with a block of its own.
    dense1D(dense1D&& other) : dense1D() { swap(other); }
    /// The two change places.
    dense1D& operator=(dense1D&& other) noexcept
    {
        swap(other);
        return *this;
    }

    /// A view on memory that the caller owns and keeps alive; the first growth leaves it.
    static dense1D wrap(T* memory, std::size_t n)
    {
        dense1D view(block_type::wrap(memory, n));
        view.size = n;
        return view;
    }

    /// As above on memory that is only read: for arguments that a call takes by constant reference.
    static const dense1D wrap(const T* memory, std::size_t n)
    {
        return wrap(const_cast<T*>(memory), n);
    }

    /// The two change places.
    void swap(dense1D& other) noexcept
    {
        std::swap(block, other.block);
        std::swap(size, other.size);
        std::swap(offset, other.offset);
    }

    /// Sets the size; existing elements stay, new ones are unspecified. False when the storage
    /// can't be had; the view is then unchanged.
    [[nodiscard]] bool resize(std::size_t n)
    {
        if (!reserve(n, 1)) return false;
        size = n;
        return true;
    }

    /// As above; elements beyond the old size become `v`.
    [[nodiscard]] bool resize(std::size_t n, T v)
    {
        if (!reserve(n, 1)) return false;
        if (n > size) std::fill(begin() + size, begin() + n, v);
        size = n;
        return true;
    }

    /// Storage for `n` elements from the offset on; size and contents stay. `factor` multiplies the
    /// old capacity when the block has to grow. False when the storage can't be had.
    [[nodiscard]] bool reserve(std::size_t n, std::size_t factor)
    {
        if (n > std::numeric_limits<std::size_t>::max() - offset) return false;
        return offset + n <= block->capacity || n == 0 ||
               block->__grow(offset + n, offset + size, factor);
    }

    /// Appends one element, doubling the capacity when it is used up. An element that no storage
    /// can be had for is dropped, and the size shows it.
    void append(T value)
    {
        const std::size_t i = offset + size;
        if (i >= block->capacity && !block->__grow(i + 1, i, 2)) return;
        block->data[i] = value;
        ++size;
    }

    /// Deep copy: storage of its own with the source's elements. False on exhaustion; the view is
    /// then unchanged.
    [[nodiscard]] bool copy(const dense1D& source)
    {
        dense1D fresh;
        if (!fresh.resize(source.size)) return false;
        if (!source.is_empty()) std::copy(source.begin(), source.end(), fresh.begin());
        swap(fresh);
        return true;
    }

    /// No elements.
    bool is_empty() const noexcept { return size == 0; }

    /// Forgets the contents and keeps the storage.
    void clear() noexcept { size = 0; }

    /// Element i.
    T& operator[](std::size_t i) { return block->data[offset + i]; }
    /// Element i.
    const T& operator[](std::size_t i) const { return block->data[offset + i]; }

    /// The first element.
    T* begin() { return block->data + offset; }
    /// Behind the last element.
    T* end() { return begin() + size; }
    /// The first element.
    const T* begin() const { return block->data + offset; }
    /// Behind the last element.
    const T* end() const { return begin() + size; }

    /// The storage; never null.
    Ptr<block_type> block;
    /// Number of elements in the view.
    std::size_t size = 0;
    /// Index of the view's first element in the block.
    std::size_t offset = 0;

private:
    explicit dense1D(Ptr<block_type> held) : block(std::move(held)) {}

    template <class>
    friend class dense2D;
};

} // namespace vorel
