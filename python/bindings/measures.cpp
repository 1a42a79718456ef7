// Areas, angles, normals, circumcenters.
#include "arrays.h"
#include "call.h"
#include "families.h"

namespace tessalo2d_python {

namespace {

namespace lib = vorel::tessalo2d;

double area(const py::object& coords, const py::object& connect)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto elements = matrix<unsigned>(connect, "connect");
    double result = 0.0;
    run("area", {needs::coords, needs::faces}, [&] { return lib::area(nodes, elements, result); });
    return result;
}

py::tuple angles(const py::object& coords, const py::object& connect, bool normalized)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto elements = matrix<unsigned>(connect, "connect");
    double_list smallest, largest;
    run("angles", {needs::coords, needs::faces},
        [&] { return lib::angles(nodes, elements, normalized, smallest, largest); });
    return py::make_tuple(to_array(smallest), to_array(largest));
}

py::array normals(const py::object& coords, const py::object& connect, bool unit_length)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto elements = matrix<unsigned>(connect, "connect");
    dense2D<double> vectors;
    run("normals", {needs::coords3, needs::faces},
        [&] { return lib::normals(nodes, elements, unit_length, vectors); });
    return to_array(vectors, 3);
}

py::array node_normals(const py::object& coords, const py::object& connect, double weight_exponent,
                       bool unit_length)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto elements = matrix<unsigned>(connect, "connect");
    dense2D<double> vectors;
    run("node_normals", {needs::coords3, needs::faces},
        [&] { return lib::normals(nodes, elements, weight_exponent, unit_length, vectors); });
    return to_array(vectors, 3);
}

py::array circumcenters(const py::object& coords, const py::object& connect)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto elements = matrix<unsigned>(connect, "connect");
    dense2D<double> centers;
    run("circumcenters", {needs::coords, needs::triangles},
        [&] { return lib::circumcenters(nodes, elements, centers); });
    return to_array(centers, nodes.rows);
}

} // namespace

void bind_measures(py::module_& m)
{
    m.def("area", &area, py::arg("coords"), py::arg("connect"), R"(area(coords, connect)
--

Sum of the areas of all elements.

Parameters
----------
coords : (n, 2) or (n, 3) float64
    In the plane elements listed clockwise count negatively. In space all count positively, a
    warped quadrilateral with the larger of its two cuts into triangles.
connect : (m, 3) or (m, 4) uint32
    Triangles, or quadrilaterals mixed with triangles.

Returns
-------
float)");

    m.def("angles", &angles, py::arg("coords"), py::arg("connect"), py::arg("normalized") = false,
          R"(angles(coords, connect, normalized=False)
--

The smallest and the largest corner angle of each element.

In the plane angles carry the sign of the turn: they are negative in an element listed clockwise
and at a reflex corner. In space they lie between 0 and pi.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 3) or (m, 4) uint32
normalized : bool
    False: in radians. True: divided by the ideal angle, pi / 3 or pi / 2.

Returns
-------
angle_min, angle_max : (m,) float64)");

    m.def("normals", &normals, py::arg("coords"), py::arg("connect"), py::arg("unit_length") = true,
          R"(normals(coords, connect, unit_length=True)
--

The normal of each element of a surface, to where its corners turn anticlockwise.

Parameters
----------
coords : (n, 3) float64
connect : (m, 3) or (m, 4) uint32
unit_length : bool
    False leaves it twice the area long, in a quadrilateral twice the vector area.

Returns
-------
(m, 3) float64)");

    m.def("node_normals", &node_normals, py::arg("coords"), py::arg("connect"),
          py::arg("weight_exponent") = 1.0, py::arg("unit_length") = true,
          R"(node_normals(coords, connect, weight_exponent=1.0, unit_length=True)
--

The normal at each node of a surface: the weighted mean of the unit normals of the elements around
it.

Parameters
----------
coords : (n, 3) float64
connect : (m, 3) or (m, 4) uint32
weight_exponent : float
    0 weighs all elements alike, 1 by size, -1 by inverse size. The largest finite float takes the
    normal of the largest element, its negative that of the smallest.
unit_length : bool

Returns
-------
(n, 3) float64
    Zero at a node that no element holds. Without rows when there are no elements.)");

    m.def("circumcenters", &circumcenters, py::arg("coords"), py::arg("connect"),
          R"(circumcenters(coords, connect)
--

Centre of the circumscribed circle of each triangle.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 3) uint32

Returns
-------
(m, 2) or (m, 3) float64)");
}

} // namespace tessalo2d_python
