// Structured grids and the fields on them.
#include "arrays.h"
#include "call.h"
#include "families.h"

namespace tessalo2d_python {

namespace {

namespace lib = vorel::tessalo2d;

constexpr refusal loop{-2, "boundary must be a closed list of at least 5 IDs below the number of "
                           "nodes, the last one the first again"};
constexpr refusal sides{-3, "N does not fit the length of boundary"};

py::tuple mesh_struct_Q4(const py::object& coords, const py::object& boundary, const py::object& N,
                         const py::object& connectQ)
{
    auto nodes = growing_matrix<double>(coords, "coords");
    const auto around = list<unsigned>(boundary, "boundary");
    auto elements = growing_matrix<unsigned>(connectQ, "connectQ");
    const unsigned subdivisions = count(N, "N");
    run("mesh_struct_Q4", {needs::coords, loop, sides, {-4, "connectQ must have 4 columns"}},
        [&] { return lib::mesh_struct_Q4(nodes, around, subdivisions, elements); });
    return py::make_tuple(to_array(nodes, 2), to_array(elements, 4));
}

py::tuple mesh_struct_T3(const py::object& coords, const py::object& boundary, const py::object& N,
                         const py::object& pattern, const py::object& connectT)
{
    auto nodes = growing_matrix<double>(coords, "coords");
    const auto around = list<unsigned>(boundary, "boundary");
    auto elements = growing_matrix<unsigned>(connectT, "connectT");
    const unsigned subdivisions = count(N, "N");
    const int cuts = integer(pattern, "pattern");
    run("mesh_struct_T3",
        {needs::coords,
         loop,
         sides,
         {-4, "pattern must be 0, 1 or 2"},
         {-5, "connectT must have 3 columns"}},
        [&] { return lib::mesh_struct_T3(nodes, around, subdivisions, cuts, elements); });
    return py::make_tuple(to_array(nodes, 2), to_array(elements, 3));
}

py::array metrics_struct(const py::object& ids, const py::object& count_, const py::object& field)
{
    const auto around = list<unsigned>(ids, "ids");
    const unsigned cells = count(count_, "count");
    const auto refusals = {
        refusal{-1, "ids must be a closed list of at least 5 IDs below the length of field, the "
                    "last one the first again"},
        refusal{-2, "count does not fit the length of ids"},
        refusal{-3, "field must be (n,) sizes, or metrics of 3 or 6 columns"}};
    if (py::isinstance<py::array>(field) && py::reinterpret_borrow<py::array>(field).ndim() == 1) {
        auto sizes = growing_list<double>(field, "field");
        run("metrics_struct", refusals, [&] { return lib::metrics_struct(around, cells, sizes); });
        return to_array(sizes);
    }
    auto metrics = growing_matrix<double>(field, "field");
    run("metrics_struct", refusals, [&] { return lib::metrics_struct(around, cells, metrics); });
    return to_array(metrics, 3);
}

} // namespace

void bind_structured(py::module_& m)
{
    m.def("mesh_struct_Q4", &mesh_struct_Q4, py::arg("coords"), py::arg("boundary"), py::arg("N"),
          py::arg("connectQ") = py::none(), R"(mesh_struct_Q4(coords, boundary, N, connectQ=None)
--

Fills a closed loop of nodes with a structured grid of quadrilaterals: the Coons patch of four
sides of M, N, M and N subdivisions.

Parameters
----------
coords : (n, 2) or (n, 3) float64
boundary : (2 (M + N) + 1,) uint32
    IDs around the domain, the last one the first again.
N : int
    Subdivisions of the second and the fourth side.
connectQ : (k, 4) uint32, optional
    Elements to append to.

Returns
-------
coords : (n + (M - 1) (N - 1), 2) or (..., 3) float64
connectQ : (k + M N, 4) uint32)");

    m.def("mesh_struct_T3", &mesh_struct_T3, py::arg("coords"), py::arg("boundary"), py::arg("N"),
          py::arg("pattern") = 0, py::arg("connectT") = py::none(),
          R"(mesh_struct_T3(coords, boundary, N, pattern=0, connectT=None)
--

As `mesh_struct_Q4`, with two triangles for each cell.

Parameters
----------
coords : (n, 2) or (n, 3) float64
boundary : (2 (M + N) + 1,) uint32
N : int
pattern : int
    The diagonal of cell (i, j): from (i + 1, j) to (i, j + 1) (0), from (i, j) to
    (i + 1, j + 1) (1), or alternately (2).
connectT : (k, 3) uint32, optional
    Elements to append to.

Returns
-------
coords : (n + (M - 1) (N - 1), 2) or (..., 3) float64
connectT : (k + 2 M N, 3) uint32)");

    m.def("metrics_struct", &metrics_struct, py::arg("ids"), py::arg("count"), py::arg("field"),
          R"(metrics_struct(ids, count, field)
--

Extends sizes or metrics over the interior nodes of a structured patch: one entry for each node
that `mesh_struct_Q4` or `mesh_struct_T3` appends with the same list and count.

Parameters
----------
ids : (2 (M + count) + 1,) uint32
    IDs around the patch, the last one the first again.
count : int
    Cells along the second and the fourth side.
field : (n,) float64, or (n, 3) or (n, 6) float64
    Sizes, or metrics (m00, m01, m11) or (m00, m01, m11, m02, m12, m22).

Returns
-------
field : (n + (M - 1) (count - 1),) or (..., 3) or (..., 6) float64
    A node whose boundary values are no sizes or metrics gets zeros.)");
}

} // namespace tessalo2d_python
