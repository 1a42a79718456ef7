// Calls of the library without Python's global lock, and its statuses as exceptions.
#pragma once

#include <pybind11/pybind11.h>

#include <initializer_list>
#include <new>
#include <stdexcept>

namespace tessalo2d_python {

namespace py = pybind11;

/// What a negative status means: the name of the argument and what it must be.
struct refusal {
    int status;
    const char* text;
};

/// Raises the exception that a negative status asks for: MemoryError for -199, else ValueError with
/// the text of the status.
void raise_for_status(int status, const char* function, std::initializer_list<refusal> refusals);

/// Runs a call of the library, which must not touch any Python object, while other threads may run
/// Python. Its count if it succeeds; raises an exception otherwise.
template <class Call>
int run(const char* function, std::initializer_list<refusal> refusals, Call&& call)
{
    int status = 0;
    {
        const py::gil_scoped_release released;
        try {
            status = call();
        } catch (const std::length_error&) {
            throw std::bad_alloc();
        }
    }
    if (status < 0) raise_for_status(status, function, refusals);
    return status;
}

// What several functions ask of their arguments.
namespace needs {

inline constexpr refusal coords{-1, "coords must have 2 or 3 columns"};
inline constexpr refusal coords2{-1, "coords must have 2 columns"};
inline constexpr refusal coords3{-1, "coords must have 3 columns"};
inline constexpr refusal triangles{
    -2, "connect must have 3 columns (T3) and IDs below the number of nodes"};
inline constexpr refusal faces{
    -2,
    "connect must have 3 columns (T3) or 4 (Q4, or T3 with UNSET_ID in the last), and IDs below "
    "the number of nodes"};
inline constexpr refusal lines{-2, "connect must have 2 columns and IDs below the number of nodes"};

} // namespace needs

} // namespace tessalo2d_python
