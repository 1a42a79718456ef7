// Splitting into quadrilaterals and into triangles.
#include "arrays.h"
#include "call.h"
#include "families.h"

namespace tessalo2d_python {

namespace {

namespace lib = vorel::tessalo2d;

py::tuple split_into_Q4(const py::object& coords, const py::object& connect,
                        const py::object& result, const py::object& edges)
{
    auto nodes = growing_matrix<double>(coords, "coords");
    const auto elements = matrix<unsigned>(connect, "connect");
    auto pieces = growing_matrix<unsigned>(result, "result");
    const auto prepared = optional_matrix<unsigned>(edges, "edges");
    run("split_into_Q4",
        {needs::coords,
         needs::faces,
         {-3, "result must have 4 columns"},
         {-4, "edges must have 3 columns (end, end, middle) and IDs below the number of nodes"}},
        [&] { return lib::split_into_Q4(nodes, elements, pieces, prepared); });
    return py::make_tuple(to_array(nodes, 2), to_array(pieces, 4));
}

py::array split_Q4_into_T3(const py::object& connect, const py::object& result)
{
    const auto elements = matrix<unsigned>(connect, "connect");
    auto pieces = growing_matrix<unsigned>(result, "result");
    run("split_Q4_into_T3",
        {{-1, "connect must have 3 or 4 columns"}, {-2, "result must have 3 columns"}},
        [&] { return lib::split_Q4_into_T3(elements, pieces); });
    return to_array(pieces, 3);
}

py::array split_Q4_into_T3_by_quality(const py::object& coords, const py::object& connect,
                                      const py::object& result)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto elements = matrix<unsigned>(connect, "connect");
    auto pieces = growing_matrix<unsigned>(result, "result");
    run("split_Q4_into_T3_by_quality",
        {needs::coords, needs::faces, {-3, "result must have 3 columns"}},
        [&] { return lib::split_Q4_into_T3(nodes, elements, pieces); });
    return to_array(pieces, 3);
}

py::tuple split_Q4_into_T3_gated(const py::object& coords, const py::object& connect,
                                 double min_shape_quality, double min_angle_quality,
                                 double min_warp, const py::object& diagonal_criterion,
                                 const py::object& kept_IDs, const py::object& split_IDs,
                                 const py::object& result)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto elements = matrix<unsigned>(connect, "connect");
    auto kept = growing_list<unsigned>(kept_IDs, "kept_IDs");
    auto split = growing_list<unsigned>(split_IDs, "split_IDs");
    auto pieces = growing_matrix<unsigned>(result, "result");
    const int criterion = integer(diagonal_criterion, "diagonal_criterion");
    run("split_Q4_into_T3_gated",
        {needs::coords,
         {-2, "connect must have 4 columns (Q4, or T3 with UNSET_ID in the last) and IDs below the "
              "number of nodes"},
         {-8, "result must have 4 columns"}},
        [&] {
            return lib::split_Q4_into_T3(nodes, elements, min_shape_quality, min_angle_quality,
                                         min_warp, criterion, kept, split, pieces);
        });
    return py::make_tuple(to_array(pieces, 4), to_array(kept), to_array(split));
}

} // namespace

void bind_splitting(py::module_& m)
{
    m.def("split_into_Q4", &split_into_Q4, py::arg("coords"), py::arg("connect"),
          py::arg("result") = py::none(), py::arg("edges") = py::none(),
          R"(split_into_Q4(coords, connect, result=None, edges=None)
--

Makes an all-quadrilateral mesh: each triangle is cut into three and each quadrilateral into four
quadrilaterals at new nodes on its edges and inside.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 3) or (m, 4) uint32
result : (k, 4) uint32, optional
    Elements to append to.
edges : (j, 3) uint32, optional
    Edges that have their node already: end, end, middle.

Returns
-------
coords : (n + new, 2) or (n + new, 3) float64
result : (k + new, 4) uint32)");

    m.def("split_Q4_into_T3", &split_Q4_into_T3, py::arg("connect"), py::arg("result") = py::none(),
          R"(split_Q4_into_T3(connect, result=None)
--

Cuts every quadrilateral into two triangles along the diagonal from its first node. Triangles are
copied.

Parameters
----------
connect : (m, 3) or (m, 4) uint32
result : (k, 3) uint32, optional
    Triangles to append to.

Returns
-------
result : (k + m + number of quadrilaterals, 3) uint32)");

    m.def("split_Q4_into_T3_by_quality", &split_Q4_into_T3_by_quality, py::arg("coords"),
          py::arg("connect"), py::arg("result") = py::none(),
          R"(split_Q4_into_T3_by_quality(coords, connect, result=None)
--

Cuts every quadrilateral into two triangles along the diagonal that gives the better worst
triangle. Triangles are copied.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 3) or (m, 4) uint32
result : (k, 3) uint32, optional
    Triangles to append to.

Returns
-------
result : (k + m + number of quadrilaterals, 3) uint32)");

    m.def(
        "split_Q4_into_T3_gated", &split_Q4_into_T3_gated, py::arg("coords"), py::arg("connect"),
        py::arg("min_shape_quality"), py::arg("min_angle_quality"), py::arg("min_warp"),
        py::arg("diagonal_criterion") = static_cast<int>(lib::DIAGONAL_BEST_QUALITY),
        py::arg("kept_IDs") = py::none(), py::arg("split_IDs") = py::none(),
        py::arg("result") = py::none(),
        R"(split_Q4_into_T3_gated(coords, connect, min_shape_quality, min_angle_quality, min_warp, diagonal_criterion=1, kept_IDs=None, split_IDs=None, result=None)
--

Cuts the quadrilaterals that fail one of three thresholds into two triangles each and keeps the
other elements.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 4) uint32
min_shape_quality : float
    1 for a square, in the plane negative for a concave one.
min_angle_quality : float
    1 for a rectangle, 0 with a corner of 0 or 180 degrees.
min_warp : float
    1 for a flat one, 1/2 for one folded to a right angle.
diagonal_criterion : int
    A `DiagonalChoice`.
kept_IDs, split_IDs : (j,) uint32, optional
    Lists to append to; their entries count as well.
result : (k, 4) uint32, optional
    Elements to append to.

Returns
-------
result : (k + kept + 2 split, 4) uint32
    The kept elements, then the triangles, two by two, with UNSET_ID in the last place.
kept_IDs : (kept,) uint32
split_IDs : (split,) uint32)");
}

} // namespace tessalo2d_python
