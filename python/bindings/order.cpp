// Between linear elements and elements of higher order.
#include "arrays.h"
#include "call.h"
#include "families.h"

namespace tessalo2d_python {

namespace {

namespace lib = vorel::tessalo2d;

constexpr refusal prepared_edges{-6,
                                 "edges must have edge_nodes + 2 columns (end, end, first node, "
                                 "...) and IDs below the number of nodes, or UNSET_ID"};

py::array convert_into_linear(const py::object& connect)
{
    auto elements = matrix_copy<unsigned>(connect, "connect");
    const std::size_t corners = elements.rows == 6 ? 3 : 4;
    run("convert_into_linear", {{-1, "connect must have 6 columns (T6), or 8 or 9 (Q8, Q9, T6)"}},
        [&] { return lib::convert_into_linear(elements); });
    // The library leaves one without entries as it is; the columns of the result are the corners.
    if (elements.is_empty()) elements.clear();
    return to_array(elements, corners);
}

py::array split_into_linear(const py::object& connect, const py::object& result)
{
    const auto elements = matrix<unsigned>(connect, "connect");
    auto pieces = growing_matrix<unsigned>(result, "result");
    run("split_into_linear",
        {{-1, "connect must have 6 columns (T6) or 9 (Q9, T6)"},
         {-2, "result must have 3 or 4 columns"}},
        [&] { return lib::split_into_linear(elements, pieces); });
    return to_array(pieces, elements.rows == 9 ? 4 : 3);
}

py::tuple convert_into_high_order(const py::object& coords, const py::object& connect,
                                  const py::object& edge_nodes, const py::object& quad_nodes,
                                  const py::object& triangle_nodes, const py::object& edges,
                                  bool replace_connect)
{
    auto nodes = growing_matrix<double>(coords, "coords");
    const unsigned on_edge = count(edge_nodes, "edge_nodes");
    const unsigned in_quad = count(quad_nodes, "quad_nodes");
    const unsigned in_triangle = count(triangle_nodes, "triangle_nodes");
    const auto prepared = optional_matrix<unsigned>(edges, "edges");
    const std::initializer_list<refusal> refusals = {needs::coords,
                                                     needs::faces,
                                                     {-4, "quad_nodes must be a square number"},
                                                     {-5, "triangle_nodes must be 0, 1 or 3"},
                                                     prepared_edges};
    dense2D<unsigned> result;
    if (replace_connect) {
        result = matrix_copy<unsigned>(connect, "connect");
        run("convert_into_high_order", refusals, [&] {
            return lib::convert_into_high_order(nodes, result, on_edge, in_quad, in_triangle,
                                                prepared);
        });
    } else {
        const auto elements = matrix<unsigned>(connect, "connect");
        run("convert_into_high_order", refusals, [&] {
            return lib::convert_into_high_order(nodes, elements, on_edge, in_quad, in_triangle,
                                                result, prepared);
        });
    }
    return py::make_tuple(to_array(nodes, 2), to_array(result, 0));
}

py::tuple convert_into_quadratic(const py::object& coords, const py::object& connect,
                                 const py::object& edges)
{
    auto nodes = growing_matrix<double>(coords, "coords");
    auto elements = matrix_copy<unsigned>(connect, "connect");
    const std::size_t rows = elements.rows == 3 ? 6 : 9;
    if (edges.is_none()) {
        run("convert_into_quadratic", {needs::coords, needs::faces},
            [&] { return lib::convert_into_quadratic(nodes, elements); });
    } else {
        const auto prepared = matrix<unsigned>(edges, "edges");
        run("convert_into_quadratic",
            {needs::coords,
             needs::faces,
             {-6, "edges must have 3 columns (end, end, middle) and IDs below the number of nodes, "
                  "or UNSET_ID"}},
            [&] { return lib::convert_into_quadratic(nodes, elements, prepared); });
    }
    return py::make_tuple(to_array(nodes, 2), to_array(elements, rows));
}

} // namespace

void bind_order(py::module_& m)
{
    m.def("convert_into_linear", &convert_into_linear, py::arg("connect"),
          R"(convert_into_linear(connect)
--

Cuts a quadratic connectivity down to the corners.

Parameters
----------
connect : (m, 6) uint32, or (m, 8) or (m, 9) uint32
    T6, or Q8 or Q9 mixed with T6.

Returns
-------
connect : (m, 3) or (m, 4) uint32)");

    m.def("split_into_linear", &split_into_linear, py::arg("connect"),
          py::arg("result") = py::none(),
          R"(split_into_linear(connect, result=None)
--

Cuts each quadratic element into four linear ones that use its midside nodes as corners.

Parameters
----------
connect : (m, 6) or (m, 9) uint32
    T6, or Q9 mixed with T6.
result : (k, 3) or (k, 4) uint32, optional
    Elements to append to.

Returns
-------
result : (k + 4 m, 3) or (k + 4 m, 4) uint32
    Four columns from Q9, or when `result` has them.)");

    m.def(
        "convert_into_high_order", &convert_into_high_order, py::arg("coords"), py::arg("connect"),
        py::arg("edge_nodes"), py::arg("quad_nodes"), py::arg("triangle_nodes"),
        py::arg("edges") = py::none(), py::kw_only(), py::arg("replace_connect") = false,
        R"(convert_into_high_order(coords, connect, edge_nodes, quad_nodes, triangle_nodes, edges=None, *, replace_connect=False)
--

Raises the order of linear elements: adds nodes on every edge and inside every element. Elements
that share an edge share its nodes.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 3) or (m, 4) uint32
edge_nodes : int
    New nodes on each edge.
quad_nodes : int
    New nodes in each quadrilateral, a square number.
triangle_nodes : int
    New nodes in each triangle: 0, 1 or 3.
edges : (k, edge_nodes + 2) uint32, optional
    Edges that have their nodes already: end, end, first node, ...
replace_connect : bool
    True takes the form of the library that replaces `connect` itself, on a copy. The results are
    the same, it takes more memory.

Returns
-------
coords : (n + new, 2) or (n + new, 3) float64
connect : (m, k) uint32
    Corners, nodes of each edge in order, interior nodes, UNSET_ID. Without entries when all three
    counts are 0.)");

    m.def("convert_into_quadratic", &convert_into_quadratic, py::arg("coords"), py::arg("connect"),
          py::arg("edges") = py::none(), R"(convert_into_quadratic(coords, connect, edges=None)
--

Makes T6 of a mesh of T3, and Q9 mixed with T6 of one with quadrilaterals.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 3) or (m, 4) uint32
edges : (k, 3) uint32, optional
    Edges that have their node already: end, end, middle.

Returns
-------
coords : (n + new, 2) or (n + new, 3) float64
connect : (m, 6) or (m, 9) uint32)");
}

} // namespace tessalo2d_python
