// Fields, sizes and metrics carried from a background mesh.
#include "arrays.h"
#include "call.h"
#include "families.h"

#include <numeric>

namespace tessalo2d_python {

namespace {

namespace lib = vorel::tessalo2d;

constexpr refusal elements_of_type{-2,
                                   "connect must be of the kind type, with IDs below the number "
                                   "of nodes"};
constexpr refusal sides{-3, "neighbors must have the shape of connect and name its elements, or be "
                            "UNSET_ID"};
constexpr refusal holders{-4, "node_element must have an entry for each node"};
constexpr refusal target_IDs{-6, "nodes must be IDs below the number of nodes"};

/// The arguments that all functions of the family share.
struct background {
    background(const py::object& coords_, const py::object& connect_, const py::object& neighbors_,
               const py::object& node_element_, const py::object& type_)
        : coords(matrix<double>(coords_, "coords")),
          connect(matrix<unsigned>(connect_, "connect")),
          neighbors(matrix<unsigned>(neighbors_, "neighbors")),
          node_element(list<unsigned>(node_element_, "node_element")),
          type(element_code(type_, connect.rows == 3 ? vorel::ELEMENT_T3 : vorel::ELEMENT_ANY_FACE))
    {
    }

    const dense2D<double> coords;
    const dense2D<unsigned> connect;
    const dense2D<unsigned> neighbors;
    const unsigned_list node_element;
    const vorel::element_type type;
};

bool is_list(const py::object& field)
{
    return py::isinstance<py::array>(field) && py::reinterpret_borrow<py::array>(field).ndim() == 1;
}

py::array interpolate(const py::object& coords, const py::object& connect,
                      const py::object& neighbors, const py::object& node_element,
                      const py::object& field, const py::object& nodes, const py::object& type)
{
    const background mesh(coords, connect, neighbors, node_element, type);
    const auto targets = list<unsigned>(nodes, "nodes");
    const auto refusals = {needs::coords2,
                           elements_of_type,
                           sides,
                           holders,
                           refusal{-5, "field must have an entry for each node"},
                           target_IDs};
    const auto serve = [&](auto& values) {
        run("interpolate", refusals, [&] {
            return lib::interpolate(mesh.coords, mesh.connect, mesh.neighbors, mesh.node_element,
                                    values, targets, mesh.type);
        });
    };
    if (is_list(field)) {
        auto values = list_copy<double>(field, "field");
        serve(values);
        return to_array(values);
    }
    auto values = matrix_copy<double>(field, "field");
    serve(values);
    return to_array(values, 0);
}

py::array interpolate_metrics(const py::object& coords, const py::object& connect,
                              const py::object& neighbors, const py::object& node_element,
                              const py::object& field, const py::object& nodes, bool keep_valid,
                              const py::object& type)
{
    const background mesh(coords, connect, neighbors, node_element, type);
    const auto serve = [&](auto& values, refusal bad_connect, refusal bad_field) {
        const auto refusals = {needs::coords2, bad_connect, sides, holders, bad_field, target_IDs};
        if (nodes.is_none()) {
            run("interpolate_metrics", refusals, [&] {
                return lib::interpolate_metrics(mesh.coords, mesh.connect, mesh.neighbors,
                                                mesh.node_element, values, keep_valid, mesh.type);
            });
        } else {
            const auto targets = list<unsigned>(nodes, "nodes");
            run("interpolate_metrics", refusals, [&] {
                return lib::interpolate_metrics(mesh.coords, mesh.connect, mesh.neighbors,
                                                mesh.node_element, values, targets, keep_valid,
                                                mesh.type);
            });
        }
    };
    if (is_list(field)) {
        auto sizes = list_copy<double>(field, "field");
        serve(sizes, elements_of_type, {-5, "field must have a size for each node"});
        return to_array(sizes);
    }
    auto metrics = matrix_copy<double>(field, "field");
    serve(metrics, needs::triangles,
          {-5, "field must have a metric of 3 or 6 numbers for each node"});
    return to_array(metrics, 3);
}

} // namespace

void bind_interpolation(py::module_& m)
{
    m.def("interpolate", &interpolate, py::arg("coords"), py::arg("connect"), py::arg("neighbors"),
          py::arg("node_element"), py::arg("field"), py::arg("nodes"), py::arg("type") = py::none(),
          R"(interpolate(coords, connect, neighbors, node_element, field, nodes, type=None)
--

Gives each target node the value of a field on the background mesh around it.

Background nodes and targets stand in one array of nodes. A target in no element takes the value of
the nearest background node; one outside the bounding box of the background keeps its value.

Parameters
----------
coords : (n, 2) float64
connect : (m, 3) or (m, 4) uint32
    The background elements, counterclockwise.
neighbors : (m, 3) or (m, 4) uint32
    The element across each local edge, or UNSET_ID (see `interop.neighbors`).
node_element : (n,) uint32
    An element that holds the node; UNSET_ID marks a target (see `interop.node_element`).
field : (n,) float64
    Values of the background nodes, and whatever of the targets. One of shape (n, k) is checked and
    returned as it is: the library carries scalar fields only.
nodes : (k,) uint32
    The nodes to serve; background nodes among them are passed over.
type : ElementType, optional
    `ELEMENT_T3`, `ELEMENT_Q4` or `ELEMENT_ANY_FACE` (mixed); by the columns of `connect`.

Returns
-------
field : (n,) float64)");

    m.def(
        "interpolate_metrics", &interpolate_metrics, py::arg("coords"), py::arg("connect"),
        py::arg("neighbors"), py::arg("node_element"), py::arg("field"),
        py::arg("nodes") = py::none(), py::arg("keep_valid") = false, py::arg("type") = py::none(),
        R"(interpolate_metrics(coords, connect, neighbors, node_element, field, nodes=None, keep_valid=False, type=None)
--

Gives each target node the size or the metric of the background mesh around it.

Parameters
----------
coords, connect, neighbors, node_element, type
    As in `interpolate`; metrics need triangles.
field : (n,) float64, or (n, 3) or (n, 6) float64
    Sizes, or metrics (m00, m01, m11) or (m00, m01, m11, m02, m12, m22).
nodes : (k,) uint32, optional
    The nodes to serve; all targets without it.
keep_valid : bool
    A target that has a valid size or metric keeps it.

Returns
-------
field : (n,), (n, 3) or (n, 6) float64
    A target whose result is no size or metric keeps its own.)");
}

} // namespace tessalo2d_python
