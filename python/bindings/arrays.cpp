#include "arrays.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

namespace tessalo2d_python {

namespace {

template <class T>
constexpr const char* dtype_name = std::is_same_v<T, double> ? "float64" : "uint32";

/// What is wrong with an array, and the one line that mends it.
template <class T>
[[noreturn]] void refuse(const char* name, const std::string& found, const std::string& remedy)
{
    throw py::type_error(std::string(name) + " must be " + dtype_name<T> + " in C order, not " +
                         found + ": use " + remedy);
}

/// As above, for another dtype or order.
template <class T>
[[noreturn]] void refuse(const char* name, const std::string& found)
{
    refuse<T>(name, found,
              std::string("np.ascontiguousarray(") + name + ", dtype=np." + dtype_name<T> + ")");
}

/// The argument as an array of that dtype and number of dimensions.
template <class T>
py::array checked(const py::object& object, const char* name, py::ssize_t dimensions)
{
    if (!py::isinstance<py::array>(object))
        refuse<T>(name, "a " + std::string(py::str(py::type::of(object).attr("__name__"))));
    const auto array = py::reinterpret_borrow<py::array>(object);
    if (!py::isinstance<py::array_t<T>>(object))
        refuse<T>(name, std::string(py::str(static_cast<py::object>(array.dtype()))));
    if (array.ndim() != dimensions)
        throw py::value_error(std::string(name) + " must have " + std::to_string(dimensions) +
                              (dimensions == 1 ? " dimension" : " dimensions") + ", not " +
                              std::to_string(array.ndim()));
    if (reinterpret_cast<std::uintptr_t>(array.data()) % alignof(T) != 0)
        // np.ascontiguousarray leaves such memory as it is.
        refuse<T>(name, "unaligned",
                  std::string("np.require(") + name + ", np." + dtype_name<T> +
                      ", [\"C\", \"A\"])");
    return array;
}

/// The owner of the block of a result, as the base of its array.
template <class T>
py::capsule owner_of(const vorel::Ptr<vorel::vector_num<T, 8>>& block)
{
    using pointer = vorel::Ptr<vorel::vector_num<T, 8>>;
    auto held = std::make_unique<pointer>(block);
    py::capsule owner(held.get(), [](void* p) { delete static_cast<pointer*>(p); });
    (void)held.release();
    return owner;
}

template <class T>
bool is_foreign(const vorel::Ptr<vorel::vector_num<T, 8>>& block)
{
    return block->shift == vorel::vector_num<T, 8>::FOREIGN;
}

/// Moves the columns of a matrix together.
template <class T>
void close_gaps(dense2D<T>& m)
{
    if (m.ld == m.rows || m.is_empty()) return;
    T* const first = m.column(0);
    for (std::size_t j = 1; j < m.cols; ++j)
        std::memmove(first + j * m.rows, first + j * m.ld, m.rows * sizeof(T));
    m.ld = m.rows;
}

/// True if NumPy holds the entries as real numbers: no text, which a cast would read, and no
/// complex ones, of which it would drop a half. A single object may be a number all the same.
bool holds_numbers(const py::array& array)
{
    const char kind = array.dtype().kind();
    return std::strchr("biuf", kind) || (kind == 'O' && array.ndim() == 0);
}

py::array_t<double> numbers_of(const py::object& object, const char* name)
{
    py::array_t<double, py::array::c_style | py::array::forcecast> numbers;
    const auto given = py::array::ensure(object);
    const bool is_sequence = given && given.ndim() <= 1 && holds_numbers(given);
    if (is_sequence) numbers = decltype(numbers)::ensure(given);
    if (!is_sequence || !numbers) {
        PyErr_Clear();
        throw py::type_error(std::string(name) + " must be a sequence of numbers");
    }
    return std::move(numbers);
}

/// The Python int of a number that stands for one.
py::object index_of(const py::object& number, const char* name)
{
    auto index = py::reinterpret_steal<py::object>(PyNumber_Index(number.ptr()));
    if (!index) {
        PyErr_Clear();
        throw py::type_error(std::string(name) + " must be an integer");
    }
    return index;
}

} // namespace

template <class T>
const dense2D<T> matrix(const py::object& object, const char* name)
{
    constexpr auto size = static_cast<py::ssize_t>(sizeof(T));
    const py::array array = checked<T>(object, name, 2);
    const py::ssize_t columns = array.shape(0);
    const py::ssize_t rows = array.shape(1);
    py::ssize_t step = rows * size;
    if (columns > 1 && rows > 0) step = array.strides(0);
    const bool gapless = rows <= 1 || columns == 0 || array.strides(1) == size;
    if (!gapless || step < rows * size || step % size != 0)
        refuse<T>(name, "transposed or strided");
    return dense2D<T>::wrap(static_cast<const T*>(array.data()), static_cast<std::size_t>(rows),
                            static_cast<std::size_t>(columns),
                            static_cast<std::size_t>(step / size));
}

template <class T>
const dense2D<T> optional_matrix(const py::object& array, const char* name)
{
    if (array.is_none()) return dense2D<T>();
    return matrix<T>(array, name);
}

template <class T>
const dense1D<T, 8> list(const py::object& object, const char* name)
{
    const py::array array = checked<T>(object, name, 1);
    const py::ssize_t entries = array.shape(0);
    if (entries > 1 && array.strides(0) != static_cast<py::ssize_t>(sizeof(T)))
        refuse<T>(name, "transposed or strided");
    return dense1D<T, 8>::wrap(static_cast<const T*>(array.data()),
                               static_cast<std::size_t>(entries));
}

template <class T>
py::array to_array(dense2D<T>& m, std::size_t rows)
{
    using shape = py::array::ShapeContainer;
    if (m.rows == 0 && m.cols == 0) return py::array_t<T>(shape({std::size_t(0), rows}));
    if (is_foreign(m.block)) {
        dense2D<T> copy;
        if (!copy.copy(m)) throw std::bad_alloc();
        m.swap(copy);
    }
    close_gaps(m);
    const shape rows_first({m.cols, m.rows});
    if (m.is_empty()) return py::array_t<T>(rows_first);
    return py::array_t<T>(rows_first, m.column(0), owner_of(m.block));
}

template <class T>
py::array to_array(dense1D<T, 8>& v)
{
    if (v.is_empty()) return py::array_t<T>(py::ssize_t(0));
    if (is_foreign(v.block)) {
        dense1D<T, 8> copy;
        if (!copy.copy(v)) throw std::bad_alloc();
        v.swap(copy);
    }
    return py::array_t<T>(static_cast<py::ssize_t>(v.size), v.begin(), owner_of(v.block));
}

std::size_t vector_length(const py::object& numbers, const char* name)
{
    const py::array_t<double> array = numbers_of(numbers, name);
    return array.ndim() == 0 ? 0 : static_cast<std::size_t>(array.size());
}

template <std::size_t N>
vector_fixed<double, N> vector(const py::object& numbers, const char* name)
{
    const py::array_t<double> array = numbers_of(numbers, name);
    if (array.ndim() != 1 || array.size() != N)
        throw py::value_error(std::string(name) + " must have " + std::to_string(N) + " numbers");
    vector_fixed<double, N> result{};
    std::copy_n(array.data(), N, result.data);
    return result;
}

double real(const py::object& number, const char* name)
{
    const double value = PyFloat_AsDouble(number.ptr());
    if (value == -1.0 && PyErr_Occurred()) {
        PyErr_Clear();
        throw py::type_error(std::string(name) + " must be a number");
    }
    return value;
}

unsigned count(const py::object& number, const char* name)
{
    const py::object index = index_of(number, name);
    const long long value = PyLong_AsLongLong(index.ptr());
    const bool overflows = value == -1 && PyErr_Occurred();
    PyErr_Clear();
    if (overflows || value < 0 || value > std::numeric_limits<unsigned>::max())
        throw py::value_error(std::string(name) + " must be from 0 to 4294967295");
    return static_cast<unsigned>(value);
}

int integer(const py::object& number, const char* name)
{
    using limits = std::numeric_limits<int>;
    int overflow = 0;
    const long long value = PyLong_AsLongLongAndOverflow(index_of(number, name).ptr(), &overflow);
    if (overflow != 0) return overflow < 0 ? limits::min() : limits::max();
    return static_cast<int>(std::clamp<long long>(value, limits::min(), limits::max()));
}

vorel::element_type element_code(const py::object& type, vorel::element_type otherwise)
{
    if (type.is_none()) return otherwise;
    const unsigned code = count(type, "type");
    constexpr unsigned largest = std::numeric_limits<int>::max();
    return static_cast<vorel::element_type>(std::min(code, largest));
}

template const dense2D<double> matrix(const py::object&, const char*);
template const dense2D<unsigned> matrix(const py::object&, const char*);
template const dense2D<double> optional_matrix(const py::object&, const char*);
template const dense2D<unsigned> optional_matrix(const py::object&, const char*);
template const dense1D<double, 8> list(const py::object&, const char*);
template const dense1D<unsigned, 8> list(const py::object&, const char*);
template py::array to_array(dense2D<double>&, std::size_t);
template py::array to_array(dense2D<unsigned>&, std::size_t);
template py::array to_array(double_list&);
template py::array to_array(unsigned_list&);
template vector_fixed<double, 2> vector(const py::object&, const char*);
template vector_fixed<double, 3> vector(const py::object&, const char*);

} // namespace tessalo2d_python
