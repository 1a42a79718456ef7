// Curvatures, and metrics from them.
#include "arrays.h"
#include "call.h"
#include "families.h"

namespace tessalo2d_python {

namespace {

namespace lib = vorel::tessalo2d;

py::array parametric_curvatures(const py::object& uvs, const py::object& connect,
                                const py::object& derivatives)
{
    const auto parameters = matrix<double>(uvs, "uvs");
    const auto triangles = matrix<unsigned>(connect, "connect");
    const auto tangents = matrix<double>(derivatives, "derivatives");
    dense2D<double> forms;
    run("parametric_curvatures",
        {{-1, "uvs must have 2 columns"},
         needs::triangles,
         {-3, "derivatives must have 6 columns and as many rows as uvs"}},
        [&] { return lib::parametric_curvatures(parameters, triangles, tangents, forms); });
    return to_array(forms, 3);
}

py::array principal_curvatures(const py::object& coords, const py::object& connect,
                               const py::object& neighbors, double radius, double max_angle,
                               const py::object& max_triangles, const py::object& ridges)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto triangles = matrix<unsigned>(connect, "connect");
    const auto sides = matrix<unsigned>(neighbors, "neighbors");
    const unsigned limit = count(max_triangles, "max_triangles");
    const auto edges = optional_matrix<unsigned>(ridges, "ridges");
    dense2D<double> curvatures;
    run("principal_curvatures",
        {needs::coords3,
         needs::triangles,
         {-3, "neighbors must have as many rows as connect"},
         {-7, "ridges must have 2 columns and IDs below the number of nodes"}},
        [&] {
            return lib::principal_curvatures(nodes, triangles, sides, radius, max_angle, limit,
                                             edges, curvatures);
        });
    return to_array(curvatures, 8);
}

py::array metrics_gen_aniso3d(const py::object& coords, const py::object& connect,
                              double normal_size, const py::object& metrics)
{
    const auto nodes = matrix<double>(coords, "coords");
    const auto triangles = matrix<unsigned>(connect, "connect");
    auto field = matrix_copy<double>(metrics, "metrics");
    run("metrics_gen_aniso3d",
        {{-1, "coords must have at least 3 columns"},
         needs::triangles,
         {-4, "metrics must have 6 columns"}},
        [&] { return lib::metrics_gen_aniso3d(nodes, triangles, normal_size, field); });
    return to_array(field, 6);
}

} // namespace

void bind_curvature(py::module_& m)
{
    m.def("parametric_curvatures", &parametric_curvatures, py::arg("uvs"), py::arg("connect"),
          py::arg("derivatives"), R"(parametric_curvatures(uvs, connect, derivatives)
--

Second fundamental form of a parametric surface at the nodes of a triangulation of its parameter
plane, from first derivatives alone.

Parameters
----------
uvs : (n, 2) float64
connect : (m, 3) uint32
derivatives : (n, 6) float64
    Su in columns 0 to 2, Sv in columns 3 to 5.

Returns
-------
(n, 3) float64
    L, M, N: positive where the surface bends away from its normal Su x Sv. Without rows when there
    are no triangles.)");

    m.def(
        "principal_curvatures", &principal_curvatures, py::arg("coords"), py::arg("connect"),
        py::arg("neighbors"), py::arg("radius"), py::arg("max_angle") = 3.141592653589793,
        py::arg("max_triangles") = 4294967295u, py::arg("ridges") = py::none(),
        R"(principal_curvatures(coords, connect, neighbors, radius, max_angle=3.141592653589793, max_triangles=4294967295, ridges=None)
--

Principal directions and curvatures at the nodes of a triangulated surface, from the dihedral angles
of a patch of triangles around each node.

Parameters
----------
coords : (n, 3) float64
connect : (m, 3) uint32
neighbors : (m, 3) uint32
    The triangle across each local edge, or UNSET_ID (see `interop.neighbors`).
radius : float
    Of a patch.
max_angle : float
    A patch does not cross edges whose normals enclose as much, in radians; pi switches it off.
max_triangles : int
    Growth of a patch ends when it has that many.
ridges : (k, 2) uint32, optional
    Edges that a patch may not cross.

Returns
-------
(n, 8) float64
    Two directions, unit vectors, in columns 0 to 2 and 3 to 5; column 6 is the eigenvalue of
    largest magnitude, column 7 the second. Convex surfaces with outward normals have negative
    values. Without rows when there are no triangles.)");

    m.def("metrics_gen_aniso3d", &metrics_gen_aniso3d, py::arg("coords"), py::arg("connect"),
          py::arg("normal_size"), py::arg("metrics") = py::none(),
          R"(metrics_gen_aniso3d(coords, connect, normal_size, metrics=None)
--

A metric field from a triangulated surface: the mean edge length of each node in the plane of its
triangles, and a chosen size along their normals.

Parameters
----------
coords : (n, 3) float64
    Or more columns, which count in edge lengths.
connect : (m, 3) uint32
normal_size : float
    0 asks for the mean edge length h, a positive one for itself, a negative one for
    abs(normal_size) * h.
metrics : (k, 6) float64, optional
    Metrics to intersect with.

Returns
-------
metrics : (max(k, largest ID + 1), 6) float64
    m00, m01, m11, m02, m12, m22. Without triangles at least one row, of zeros.)");
}

} // namespace tessalo2d_python
