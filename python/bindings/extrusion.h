// What the bindings of all extrusions share.
#pragma once

#include "arrays.h"
#include "call.h"

namespace tessalo2d_python {

/// The wanted layers: a number of equal ones, or the sizes at both ends of the path.
struct layers {
    /// Raises TypeError unless either N or both sizes are given.
    layers(const py::object& N_, const py::object& h0_, const py::object& h1_, bool force_even_);

    bool by_size;
    unsigned N = 0;
    double h0 = 0.0;
    double h1 = 0.0;
    bool force_even;
};

/// Views on the arguments of an extrusion, and its results.
struct extrusion {
    extrusion(const py::object& coords, const py::object& connect, const py::object& output_,
              const char* output_name)
        : nodes(growing_matrix<double>(coords, "coords")),
          lines(matrix<unsigned>(connect, "connect")),
          output(growing_matrix<unsigned>(output_, output_name))
    {
    }

    py::tuple results(std::size_t corners)
    {
        return py::make_tuple(to_array(nodes, 2), to_array(output, corners));
    }

    dense2D<double> nodes;
    const dense2D<unsigned> lines;
    dense2D<unsigned> output;
};

namespace needs {

inline constexpr const char* quads = "connectQ must have 4 columns";
inline constexpr const char* quads_in_space = "connectQ must have 3 columns or no elements";
inline constexpr const char* tris = "connectT must have 3 columns";
inline constexpr const char* pattern = "pattern must be 0, 1 or 2";
inline constexpr const char* h0 = "h0 must be above 0";
inline constexpr const char* h1 = "h1 must be above 0";
inline constexpr const char* translation = "translation must have a length";

} // namespace needs

} // namespace tessalo2d_python
