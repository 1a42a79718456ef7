// Column-major matrix view in a shared storage block.
#pragma once

#include <vorel/dense1D.h>

namespace vorel {

/// A matrix of `rows` x `cols` entries, entry (i, j) at `block->data[offset + j * ld + i]`. Columns
/// start `ld` elements apart; the library treats ld > rows as an ordinary case. Copies share the
/// block, as with `dense1D`. A matrix is empty when rows * cols is 0.
template <class T>
class dense2D {
public:
    /// The storage that views share.
    using block_type = vector_num<T, 8>;
    /// What an entry is.
    using value_type = T;

    /// An empty matrix with an empty block of its own. Throws `std::bad_alloc` when that block
    /// can't be had, as do all constructors that make a block.
    dense2D() : block(new block_type) {}

    /// Unspecified entries; empty when the storage can't be had.
    dense2D(std::size_t rows_, std::size_t cols_) : dense2D() { (void)resize(rows_, cols_); }

    /// All entries `v`; empty when the storage can't be had.
    dense2D(std::size_t rows_, std::size_t cols_, T v) : dense2D()
    {
        (void)resize(rows_, cols_, v);
    }

    /// One inner list a column. Columns shorter than the longest are filled up with `T()`. Empty
    /// when the storage can't be had.
    dense2D(std::initializer_list<std::initializer_list<T>> columns) : dense2D()
    {
        std::size_t longest = 0;
        for (const auto& entries : columns) longest = std::max(longest, entries.size());
        if (!resize(longest, columns.size(), T())) return;
        T* target = block->data;
        for (const auto& entries : columns) {
            std::copy(entries.begin(), entries.end(), target);
            target += longest;
        }
    }

    /// Another view on the same block.
    dense2D(const dense2D&) = default;
    /// As above, in place of what this was.
    dense2D& operator=(const dense2D&) = default;
    ~dense2D() = default;

    /// The source is left as an empty matrix with a block of its own.
    dense2D(dense2D&& other) : dense2D() { swap(other); }
    /// The two change places.
    dense2D& operator=(dense2D&& other) noexcept
    {
        swap(other);
        return *this;
    }

    /// A view on memory that the caller owns and keeps alive, with columns `ld_` elements apart
    /// (at least `rows_`); the memory holds `cols_` * `ld_` elements, of which the last column
    /// needs only its rows. The first growth leaves it.
    static dense2D wrap(T* memory, std::size_t rows_, std::size_t cols_, std::size_t ld_)
    {
        const std::size_t extent = span(rows_, cols_, ld_);
        dense2D view(block_type::wrap(memory, extent));
        view.size = extent;
        view.rows = rows_;
        view.cols = cols_;
        view.ld = ld_;
        return view;
    }
    /// As above with columns one after the other.
    static dense2D wrap(T* memory, std::size_t rows_, std::size_t cols_)
    {
        return wrap(memory, rows_, cols_, rows_);
    }

    /// As above on memory that is only read: for arguments that a call takes by constant reference.
    static const dense2D wrap(const T* memory, std::size_t rows_, std::size_t cols_,
                              std::size_t ld_)
    {
        return wrap(const_cast<T*>(memory), rows_, cols_, ld_);
    }
    /// As above with columns one after the other.
    static const dense2D wrap(const T* memory, std::size_t rows_, std::size_t cols_)
    {
        return wrap(memory, rows_, cols_, rows_);
    }

    /// The two change places.
    void swap(dense2D& other) noexcept
    {
        std::swap(block, other.block);
        std::swap(size, other.size);
        std::swap(offset, other.offset);
        std::swap(rows, other.rows);
        std::swap(cols, other.cols);
        std::swap(ld, other.ld);
    }

    /// Sets the shape. Every old entry (i, j) that still exists keeps its value, new entries are
    /// unspecified. A matrix that is not empty keeps its ld as long as the new rows fit it;
    /// otherwise ld becomes the row count. False when the storage can't be had or its size does not
    /// fit a size_t; the matrix is then unchanged.
    [[nodiscard]] bool resize(std::size_t new_rows, std::size_t new_cols)
    {
        if (!reserve(new_rows, new_cols, 1)) return false;
        const std::size_t new_ld = ld_for(new_rows);
        if (new_ld != ld && !is_empty() && new_cols != 0)
            spread_columns(std::min(cols, new_cols), new_ld);
        rows = new_rows;
        cols = new_cols;
        ld = is_empty() ? new_rows : new_ld;
        size = extent();
        return true;
    }

    /// As above; entries that did not exist before become `v`.
    [[nodiscard]] bool resize(std::size_t new_rows, std::size_t new_cols, T v)
    {
        const std::size_t old_rows = rows;
        const std::size_t old_cols = is_empty() ? 0 : cols;
        if (!resize(new_rows, new_cols)) return false;
        if (is_empty()) return true;
        T* column = block->data + offset;
        if (new_rows > old_rows)
            for (std::size_t j = 0; j < std::min(old_cols, cols); ++j)
                std::fill(column + j * ld + old_rows, column + j * ld + rows, v);
        if (old_cols < cols && ld == rows)
            std::fill(column + old_cols * ld, column + cols * ld, v);
        else
            for (std::size_t j = old_cols; j < cols; ++j)
                std::fill(column + j * ld, column + j * ld + rows, v);
        return true;
    }

    /// Storage for a matrix of that shape, in the layout that `resize` would give it; the view and
    /// its contents stay. `factor` multiplies the old capacity when the block has to grow. False
    /// when the storage can't be had or its size does not fit a size_t.
    [[nodiscard]] bool reserve(std::size_t new_rows, std::size_t new_cols, std::size_t factor)
    {
        const std::size_t new_ld = ld_for(new_rows);
        if (new_rows == 0 || new_cols == 0) return true;
        const std::size_t room = std::numeric_limits<std::size_t>::max() - offset;
        if (new_cols > room / new_ld) return false;
        if (offset + (new_cols - 1) * new_ld + new_rows <= block->capacity) return true;
        return block->__grow(offset + new_cols * new_ld, offset + extent(), factor);
    }

    /// Deep copy: storage of its own with the source's shape and values, ld equal to rows. False on
    /// exhaustion; the matrix is then unchanged.
    [[nodiscard]] bool copy(const dense2D& source)
    {
        dense2D fresh;
        if (!fresh.resize(source.rows, source.cols)) return false;
        if (!source.is_empty()) {
            const T* from = source.block->data + source.offset;
            T* to = fresh.block->data;
            if (source.ld == source.rows) {
                std::copy(from, from + source.rows * source.cols, to);
            } else {
                for (std::size_t j = 0; j < source.cols; ++j)
                    std::copy(from + j * source.ld, from + j * source.ld + source.rows,
                              to + j * fresh.ld);
            }
        }
        swap(fresh);
        return true;
    }

    /// Shares the source's block and takes its shape.
    void shallow_copy(const dense2D& source) noexcept { *this = source; }

    /// All rows * cols entries as one run of the same block; asked for only when ld equals rows.
    dense1D<T, 8> as_vector() const
    {
        dense1D<T, 8> run(block);
        run.size = rows * cols;
        run.offset = offset;
        return run;
    }

    /// No entries.
    bool is_empty() const noexcept { return rows == 0 || cols == 0; }

    /// Forgets the contents and keeps the storage.
    void clear() noexcept
    {
        size = 0;
        rows = 0;
        cols = 0;
        ld = 0;
    }

    /// Number of columns that the storage holds with the present ld.
    std::size_t column_capacity() const noexcept
    {
        const std::size_t room = block->capacity > offset ? block->capacity - offset : 0;
        return ld == 0 ? room : room / ld;
    }

    /// Entry in row i of column j.
    T& operator()(std::size_t i, std::size_t j) { return block->data[offset + j * ld + i]; }
    /// Entry in row i of column j.
    const T& operator()(std::size_t i, std::size_t j) const
    {
        return block->data[offset + j * ld + i];
    }

    /// First entry of column j.
    T* column(std::size_t j) { return block->data + offset + j * ld; }
    /// First entry of column j.
    const T* column(std::size_t j) const { return block->data + offset + j * ld; }

    /// The storage; never null.
    Ptr<block_type> block;
    /// Number of elements from the first entry to the last one, gaps included.
    std::size_t size = 0;
    /// Index of the first entry in the block.
    std::size_t offset = 0;
    /// Number of entries in a column.
    std::size_t rows = 0;
    /// Number of columns.
    std::size_t cols = 0;
    /// Leading dimension: distance in elements between the starts of neighbouring columns.
    std::size_t ld = 0;

private:
    explicit dense2D(Ptr<block_type> held) : block(std::move(held)) {}

    static std::size_t span(std::size_t rows_, std::size_t cols_, std::size_t ld_) noexcept
    {
        return rows_ == 0 || cols_ == 0 ? 0 : (cols_ - 1) * ld_ + rows_;
    }

    std::size_t extent() const noexcept { return span(rows, cols, ld); }

    /// The leading dimension that this matrix has with that many rows.
    std::size_t ld_for(std::size_t new_rows) const noexcept
    {
        return is_empty() ? new_rows : std::max(ld, new_rows);
    }

    /// Moves the first `count` columns `new_ld` apart. They move away from the front, so the last
    /// one goes first.
    void spread_columns(std::size_t count, std::size_t new_ld)
    {
        T* const first = block->data + offset;
        for (std::size_t j = count - 1; j > 0; --j)
            std::copy_backward(first + j * ld, first + j * ld + rows, first + j * new_ld + rows);
    }
};

} // namespace vorel
