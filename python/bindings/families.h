// The families of functions that make up the module.
#pragma once

#include <pybind11/pybind11.h>

namespace tessalo2d_python {

void bind_measures(pybind11::module_& m);
void bind_order(pybind11::module_& m);
void bind_splitting(pybind11::module_& m);
void bind_translation(pybind11::module_& m);
void bind_rotation(pybind11::module_& m);
void bind_structured(pybind11::module_& m);
void bind_connectivity(pybind11::module_& m);
void bind_interpolation(pybind11::module_& m);
void bind_curvature(pybind11::module_& m);

} // namespace tessalo2d_python
