// NumPy arrays as the library's matrices and lists, and back, without a copy of their entries.
//
// An array of shape (n, k) in C order is, byte for byte, a matrix of k rows and n columns. Inputs
// are views on the caller's memory, which the call's argument keeps alive; results are arrays on
// the block that the library filled, which a capsule keeps alive.
#pragma once

#include <vorel/tessalo2d.h>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <cstddef>
#include <new>
#include <utility>

namespace tessalo2d_python {

namespace py = pybind11;

using vorel::dense1D;
using vorel::dense2D;
using vorel::vector_fixed;
using unsigned_list = dense1D<unsigned, 8>;
using double_list = dense1D<double, 8>;

/// A view on an array of shape (n, k) as a matrix of k rows and n columns. The rows of the array
/// may lie further apart than they are long. Raises TypeError with the remedy for another dtype or
/// order, ValueError for another number of dimensions.
template <class T>
const dense2D<T> matrix(const py::object& array, const char* name);

/// As above; None is a matrix without entries.
template <class T>
const dense2D<T> optional_matrix(const py::object& array, const char* name);

/// A view on an array of shape (n,).
template <class T>
const dense1D<T, 8> list(const py::object& array, const char* name);

/// As `optional_matrix`, for a matrix to which the call only appends: to append leaves the array's
/// memory before anything is written, and `to_array` copies what was not appended to.
template <class T>
dense2D<T> growing_matrix(const py::object& array, const char* name)
{
    return optional_matrix<T>(array, name);
}

/// As above for a list; None is an empty one.
template <class T>
dense1D<T, 8> growing_list(const py::object& array, const char* name)
{
    if (array.is_none()) return dense1D<T, 8>();
    return list<T>(array, name);
}

/// A copy of an array that the call writes to.
template <class T>
dense2D<T> matrix_copy(const py::object& array, const char* name)
{
    dense2D<T> copy;
    if (!copy.copy(optional_matrix<T>(array, name))) throw std::bad_alloc();
    return copy;
}

template <class T>
dense1D<T, 8> list_copy(const py::object& array, const char* name)
{
    dense1D<T, 8> copy;
    if (!copy.copy(list<T>(array, name))) throw std::bad_alloc();
    return copy;
}

/// The array on a matrix, which gives its block away. One without rows gets the shape (0, `rows`).
template <class T>
py::array to_array(dense2D<T>& m, std::size_t rows);

template <class T>
py::array to_array(dense1D<T, 8>& v);

/// A sequence of `N` numbers. Raises ValueError naming the argument.
template <std::size_t N>
vector_fixed<double, N> vector(const py::object& numbers, const char* name);

/// The length of a sequence of numbers; 0 for a single number.
std::size_t vector_length(const py::object& numbers, const char* name);

/// A number. Raises TypeError naming the argument.
double real(const py::object& number, const char* name);

/// An integer from 0 to 4294967295. Raises TypeError or ValueError naming the argument.
unsigned count(const py::object& number, const char* name);

/// An integer; the nearest `int` for one that does not fit. Raises TypeError naming the argument.
int integer(const py::object& number, const char* name);

/// The code of an element type; `otherwise` for None.
vorel::element_type element_code(const py::object& type, vorel::element_type otherwise);

} // namespace tessalo2d_python
