// Orientation, degenerated elements, elements around nodes.
#include "arrays.h"
#include "call.h"
#include "families.h"

namespace tessalo2d_python {

namespace {

namespace lib = vorel::tessalo2d;

constexpr refusal same_shape{-2, "neighbors must have the shape of connect"};

py::array flip(const py::object& connect, const py::object& type)
{
    auto elements = matrix_copy<unsigned>(connect, "connect");
    const std::size_t rows = elements.rows;
    if (type.is_none()) {
        run("flip", {{-1, "connect must have at least 3 columns"}},
            [&] { return lib::flip(elements); });
    } else {
        const auto kind = element_code(type, vorel::ELEMENT_ANY_FACE);
        run("flip", {{-2, "connect must have the number of columns that type asks for"}},
            [&] { return lib::flip(elements, kind); });
    }
    return to_array(elements, rows);
}

py::tuple convert_degenerated_Q4(const py::object& connect)
{
    auto elements = matrix_copy<unsigned>(connect, "connect");
    const int converted = run("convert_degenerated_Q4", {{-1, "connect must have 4 columns"}},
                              [&] { return lib::convert_degenerated_Q4(elements); });
    return py::make_tuple(to_array(elements, 4), converted);
}

py::tuple convert_degenerated_Q(const py::object& connect)
{
    auto elements = matrix_copy<unsigned>(connect, "connect");
    unsigned_list converted;
    run("convert_degenerated_Q", {{-1, "connect must have 4, 8 or 9 columns"}},
        [&] { return lib::convert_degenerated_Q(elements, converted); });
    return py::make_tuple(to_array(elements, 4), to_array(converted));
}

py::tuple mesh_reorient(const py::object& connect, const py::object& neighbors,
                        const py::object& seed, bool all_regions)
{
    auto elements = matrix_copy<unsigned>(connect, "connect");
    auto sides = matrix_copy<unsigned>(neighbors, "neighbors");
    const unsigned first = count(seed, "seed");
    // A neighbour that does not hold the common edge leaves a negative result, too.
    const bool is_mesh =
        vorel::tessalo::check_IDs(elements, vorel::ELEMENT_ANY_FACE, vorel::UNSET_ID);
    const bool shapes_agree = elements.rows == sides.rows && elements.cols == sides.cols;
    const refusal bad_connect{
        -1, "connect must have 3 columns, or 4 of which only the last may be UNSET_ID"};
    const refusal bad_seed{-3, "seed must be below the number of elements"};
    const char* const conflict = "neighbors names an element that does not hold the common edge";
    const bool may_conflict = is_mesh && shapes_agree;
    const int flips = run("mesh_reorient",
                          {may_conflict ? refusal{-1, conflict} : bad_connect,
                           may_conflict ? refusal{-2, conflict} : same_shape, bad_seed},
                          [&] { return lib::mesh_reorient(elements, sides, first, all_regions); });
    return py::make_tuple(to_array(elements, 3), to_array(sides, 3), flips);
}

py::tuple get_connected_elements(const py::object& connect, const py::object& neighbors,
                                 const py::object& node_element)
{
    const auto elements = matrix<unsigned>(connect, "connect");
    const auto sides = matrix<unsigned>(neighbors, "neighbors");
    const auto holders = list<unsigned>(node_element, "node_element");
    unsigned_list offsets, around;
    run("get_connected_elements",
        {{-1, "connect must have 3 or 4 columns"},
         same_shape,
         {-3, "node_element must name elements or be UNSET_ID"}},
        [&] { return lib::get_connected_elements(elements, sides, holders, offsets, around); });
    return py::make_tuple(to_array(offsets), to_array(around));
}

} // namespace

void bind_connectivity(py::module_& m)
{
    m.def("flip", &flip, py::arg("connect"), py::arg("type") = py::none(),
          R"(flip(connect, type=None)
--

Reverses the orientation of all elements.

Parameters
----------
connect : (m, k) uint32
type : ElementType, optional
    The kind of the elements; their midside nodes move along. `ELEMENT_ANY_FACE` stands for 3, 4, 6,
    8 or 9 columns. Without it corners 0 and 2 change places, whatever the other columns are.

Returns
-------
connect : (m, k) uint32)");

    m.def("convert_degenerated_Q4", &convert_degenerated_Q4, py::arg("connect"),
          R"(convert_degenerated_Q4(connect)
--

Turns quadrilaterals of which two adjacent corners are one node into triangles.

Parameters
----------
connect : (m, 4) uint32

Returns
-------
connect : (m, 4) uint32
converted : int
    Number of new triangles.)");

    m.def("convert_degenerated_Q", &convert_degenerated_Q, py::arg("connect"),
          R"(convert_degenerated_Q(connect)
--

As `convert_degenerated_Q4`, and also for quadrilaterals of 8 or 9 nodes, which become T6.

Parameters
----------
connect : (m, 4), (m, 8) or (m, 9) uint32

Returns
-------
connect : (m, 4), (m, 8) or (m, 9) uint32
converted_IDs : (k,) uint32
    The elements that are triangles now.)");

    m.def("mesh_reorient", &mesh_reorient, py::arg("connect"), py::arg("neighbors"),
          py::arg("seed") = 0, py::arg("all_regions") = false,
          R"(mesh_reorient(connect, neighbors, seed=0, all_regions=False)
--

Makes the elements of a region run their common edges in opposite directions, as the orientation of
the seed has it.

Parameters
----------
connect : (m, 3) or (m, 4) uint32
neighbors : (m, 3) or (m, 4) uint32
    The element across each local edge, or UNSET_ID (see `interop.neighbors`).
seed : int
    The element whose orientation is kept.
all_regions : bool
    Also the regions that have an element above the seed, each as its lowest such element has it.

Returns
-------
connect : (m, 3) or (m, 4) uint32
neighbors : (m, 3) or (m, 4) uint32
    Follows the flips.
flips : int
    Number of elements that were flipped.

Raises ValueError when `neighbors` names an element that does not hold the common edge, unless two
or more flips followed; `flips` is then too small.)");

    m.def("get_connected_elements", &get_connected_elements, py::arg("connect"),
          py::arg("neighbors"), py::arg("node_element"),
          R"(get_connected_elements(connect, neighbors, node_element)
--

Lists the elements around each node, in the direction in which the elements run.

Parameters
----------
connect : (m, 3) or (m, 4) uint32
neighbors : (m, 3) or (m, 4) uint32
    The element across each local edge, or UNSET_ID (see `interop.neighbors`).
node_element : (n,) uint32
    An element that holds the node, or UNSET_ID (see `interop.node_element`).

Returns
-------
offsets : (n + 1,) uint32
    The elements around node i are `elements[offsets[i]:offsets[i + 1]]`. Shorter when `neighbors`
    or `node_element` led to an element that does not hold the node: the run ends there.
elements : (k,) uint32)");
}

} // namespace tessalo2d_python
