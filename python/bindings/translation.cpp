// Extrusion along a vector.
#include "extrusion.h"
#include "families.h"

namespace tessalo2d_python {

layers::layers(const py::object& N_, const py::object& h0_, const py::object& h1_, bool force_even_)
    : by_size(N_.is_none()), force_even(force_even_)
{
    if (by_size == h0_.is_none() || by_size == h1_.is_none())
        throw py::type_error("give either N, the number of layers, or the sizes h0 and h1");
    if (!by_size && force_even) throw py::type_error("force_even goes with the sizes h0 and h1");
    if (by_size) {
        h0 = real(h0_, "h0");
        h1 = real(h1_, "h1");
    } else {
        N = count(N_, "N");
    }
}

namespace {

namespace lib = vorel::tessalo2d;

template <std::size_t D>
py::tuple translate_Q4(extrusion& on, const vector_fixed<double, D>& V, const layers& wanted)
{
    constexpr refusal plane_or_space = D == 2 ? needs::coords2 : needs::coords;
    constexpr const char* name = "extrude_translate_Q4";
    if (wanted.by_size)
        run(name,
            {plane_or_space, needs::lines, {-4, needs::h0}, {-5, needs::h1}, {-7, needs::quads}},
            [&] {
                return lib::extrude_translate_Q4(on.nodes, on.lines, V, wanted.h0, wanted.h1,
                                                 wanted.force_even, on.output);
            });
    else
        run(name, {plane_or_space, needs::lines, {-5, needs::quads}},
            [&] { return lib::extrude_translate_Q4(on.nodes, on.lines, V, wanted.N, on.output); });
    return on.results(4);
}

template <std::size_t D>
py::tuple translate_T3(extrusion& on, const vector_fixed<double, D>& V, const layers& wanted,
                       int pattern)
{
    constexpr refusal plane_or_space = D == 2 ? needs::coords2 : needs::coords;
    constexpr const char* name = "extrude_translate_T3";
    if (wanted.by_size)
        run(name,
            {plane_or_space,
             needs::lines,
             {-4, needs::h0},
             {-5, needs::h1},
             {-6, needs::pattern},
             {-8, needs::tris}},
            [&] {
                return lib::extrude_translate_T3(on.nodes, on.lines, V, wanted.h0, wanted.h1,
                                                 pattern, wanted.force_even, on.output);
            });
    else
        run(name, {plane_or_space, needs::lines, {-5, needs::pattern}, {-6, needs::tris}}, [&] {
            return lib::extrude_translate_T3(on.nodes, on.lines, V, wanted.N, pattern, on.output);
        });
    return on.results(3);
}

bool in_plane(const py::object& V)
{
    const std::size_t length = vector_length(V, "V");
    if (length != 2 && length != 3) throw py::value_error("V must have 2 or 3 numbers");
    return length == 2;
}

py::tuple extrude_translate_Q4(const py::object& coords, const py::object& connect,
                               const py::object& V, const py::object& N, const py::object& h0,
                               const py::object& h1, bool force_even, const py::object& connectQ)
{
    const layers wanted(N, h0, h1, force_even);
    extrusion on(coords, connect, connectQ, "connectQ");
    if (in_plane(V)) return translate_Q4(on, vector<2>(V, "V"), wanted);
    return translate_Q4(on, vector<3>(V, "V"), wanted);
}

py::tuple extrude_translate_T3(const py::object& coords, const py::object& connect,
                               const py::object& V, const py::object& N, const py::object& h0,
                               const py::object& h1, bool force_even, const py::object& pattern,
                               const py::object& connectT)
{
    const layers wanted(N, h0, h1, force_even);
    extrusion on(coords, connect, connectT, "connectT");
    const int cuts = integer(pattern, "pattern");
    if (in_plane(V)) return translate_T3(on, vector<2>(V, "V"), wanted, cuts);
    return translate_T3(on, vector<3>(V, "V"), wanted, cuts);
}

} // namespace

void bind_translation(py::module_& m)
{
    m.def(
        "extrude_translate_Q4", &extrude_translate_Q4, py::arg("coords"), py::arg("connect"),
        py::arg("V"), py::arg("N") = py::none(), py::kw_only(), py::arg("h0") = py::none(),
        py::arg("h1") = py::none(), py::arg("force_even") = false, py::arg("connectQ") = py::none(),
        R"(extrude_translate_Q4(coords, connect, V, N=None, *, h0=None, h1=None, force_even=False, connectQ=None)
--

Sweeps a line mesh along a vector into layers of quadrilaterals.

Copies of the nodes that `connect` uses are appended layer by layer, in the order of their first
appearance. The quadrilateral of edge e = (a, b) in layer l is element k + e N + l and runs a, b,
copy of b, copy of a.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 2) uint32
    Edges.
V : 2 or 3 numbers
    With 2, `coords` has 2 columns. With 3, plane `coords` get a third column of zeros.
N : int
    Number of layers, of equal height.
h0, h1 : float
    In place of `N`: sizes at the start and at the end of the path.
force_even : bool
    With sizes: make the number of layers even.
connectQ : (k, 4) uint32, optional
    Elements to append to.

Returns
-------
coords : (n + new, 2) or (n + new, 3) float64
connectQ : (k + m N, 4) uint32)");

    m.def(
        "extrude_translate_T3", &extrude_translate_T3, py::arg("coords"), py::arg("connect"),
        py::arg("V"), py::arg("N") = py::none(), py::kw_only(), py::arg("h0") = py::none(),
        py::arg("h1") = py::none(), py::arg("force_even") = false, py::arg("pattern") = 0,
        py::arg("connectT") = py::none(),
        R"(extrude_translate_T3(coords, connect, V, N=None, *, h0=None, h1=None, force_even=False, pattern=0, connectT=None)
--

Sweeps a line mesh along a vector into layers of triangle pairs.

Nodes are appended as by `extrude_translate_Q4`; the triangles of edge e in layer l are elements
k + 2 (e N + l) and the next one.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 2) uint32
    Edges.
V : 2 or 3 numbers
    With 2, `coords` has 2 columns. With 3, plane `coords` get a third column of zeros.
N : int
    Number of layers, of equal height.
h0, h1 : float
    In place of `N`: sizes at the start and at the end of the path.
force_even : bool
    With sizes: make the number of layers even.
pattern : int
    Cuts from the second node of the edge to the copy of the first (0), from the first to the copy
    of the second (1), or alternately (2).
connectT : (k, 3) uint32, optional
    Elements to append to.

Returns
-------
coords : (n + new, 2) or (n + new, 3) float64
connectT : (k + 2 m N, 3) uint32)");
}

} // namespace tessalo2d_python
