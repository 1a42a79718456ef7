// The extension module: the library's functions on NumPy arrays.
#include "families.h"

#include <vorel/tessalo2d.h>

namespace py = pybind11;
using namespace tessalo2d_python;

PYBIND11_MODULE(_core, m)
{
    // The docstrings begin with the signature in the form that help() and inspect know.
    py::options options;
    options.disable_function_signatures();

    m.doc() = "The functions of tessalo2d on NumPy arrays; import tessalo2d instead.";
    m.attr("UNSET_ID") = vorel::UNSET_ID;
    m.def("version", &vorel::tessalo2d::version, R"(version()
--

The version of the library, "5.1.0.0".)");

    bind_measures(m);
    bind_order(m);
    bind_splitting(m);
    bind_translation(m);
    bind_rotation(m);
    bind_structured(m);
    bind_connectivity(m);
    bind_interpolation(m);
    bind_curvature(m);
}
