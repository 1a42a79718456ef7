// The frame that the exported functions share: status codes and the shape tests they begin with.
#pragma once

#include <vorel/checks.h>

namespace vorel::tessalo2d {

inline constexpr int success = 0;
inline constexpr int out_of_memory = -199;

/// Status of a failed check on argument `number`, counted from 1.
constexpr int bad_argument(int number)
{
    return -number;
}

template <class T>
bool is_empty(const dense2D<T>& m)
{
    return m.is_empty();
}

template <class T>
bool has_rows(const dense2D<T>& m, std::size_t rows)
{
    return m.rows == rows;
}

template <class T>
bool has_rows(const dense2D<T>& m, std::size_t rows, std::size_t other_rows)
{
    return m.rows == rows || m.rows == other_rows;
}

/// Results are appended: a matrix that is to take columns of `rows` entries is empty or has that
/// row count.
template <class T>
bool takes_rows(const dense2D<T>& m, std::size_t rows)
{
    return m.is_empty() || m.rows == rows;
}

/// True if growing or writing the output can take entries of an input away: they are views of one
/// block.
template <class Output, class... Inputs>
bool shares_block(const Output& output, const Inputs&... inputs)
{
    return ((output.block == inputs.block) || ...);
}

/// The bound for node IDs: the number of nodes, cut to the largest count that IDs can name.
inline unsigned node_bound(std::size_t nodes)
{
    return nodes < UNSET_ID ? static_cast<unsigned>(nodes) : UNSET_ID;
}
inline unsigned node_bound(const dense2D<double>& coords)
{
    return node_bound(coords.cols);
}

} // namespace vorel::tessalo2d
