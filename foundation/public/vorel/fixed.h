// Small fixed-size values: points and directions, and packed symmetric matrices.
#pragma once

#include <cstddef>

namespace vorel {

/// N contiguous numbers: a point or a direction. `vector_fixed<double, 3>{{1.0, 0.0, 0.0}}`.
template <class T, std::size_t N>
struct vector_fixed {
    /// Count of numbers.
    static constexpr std::size_t size = N;

    /// Number i.
    constexpr T& operator[](std::size_t i) { return data[i]; }
    /// Number i.
    constexpr const T& operator[](std::size_t i) const { return data[i]; }

    /// The numbers.
    T data[N];
};

/// A symmetric N x N matrix as its N(N+1)/2 packed entries, the upper triangle column by column:
/// 00, 01, 11 and for N = 3 then 02, 12, 22.
template <class T, std::size_t N>
struct symmetric_fixed {
    /// Count of packed entries.
    static constexpr std::size_t size = N * (N + 1) / 2;

    /// Packed entry k.
    constexpr T& operator[](std::size_t k) { return data[k]; }
    /// Packed entry k.
    constexpr const T& operator[](std::size_t k) const { return data[k]; }

    /// Entry (i, j) of the full matrix.
    constexpr T& operator()(std::size_t i, std::size_t j) { return data[index(i, j)]; }
    /// Entry (i, j) of the full matrix.
    constexpr const T& operator()(std::size_t i, std::size_t j) const { return data[index(i, j)]; }

    /// Where entry (i, j) stands among the packed ones.
    static constexpr std::size_t index(std::size_t i, std::size_t j)
    {
        return i <= j ? j * (j + 1) / 2 + i : i * (i + 1) / 2 + j;
    }

    /// The packed entries.
    T data[N * (N + 1) / 2];
};

} // namespace vorel
