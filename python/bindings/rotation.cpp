// Extrusion by rotation and by screw motion.
#include "extrusion.h"
#include "families.h"

namespace tessalo2d_python {

namespace {

namespace lib = vorel::tessalo2d;

/// A centre of 2 numbers goes with an angle, one of 3 with a vector.
bool in_plane(const py::object& center, const py::object& rotation)
{
    const std::size_t length = vector_length(center, "center");
    if (length != 2 && length != 3) throw py::value_error("center must have 2 or 3 numbers");
    const std::size_t turn = vector_length(rotation, "rotation");
    if (length == 2 && turn != 0)
        throw py::value_error("rotation must be an angle when center has 2 numbers");
    if (length == 3 && turn != 3)
        throw py::value_error("rotation must have 3 numbers when center has 3");
    return length == 2;
}

/// The angle or the vector.
template <std::size_t D>
auto turn(const py::object& rotation)
{
    if constexpr (D == 2)
        return real(rotation, "rotation");
    else
        return vector<3>(rotation, "rotation");
}

template <std::size_t D>
py::tuple rotate_Q4(extrusion& on, const py::object& center_, const py::object& rotation_,
                    const layers& wanted)
{
    constexpr const char* name = "extrude_rotate_Q4";
    const auto center = vector<D>(center_, "center");
    const auto rotation = turn<D>(rotation_);
    if (wanted.by_size)
        run(name,
            {needs::coords,
             needs::lines,
             {-5, needs::h0},
             {-6, needs::h1},
             {-8, D == 2 ? needs::quads : needs::quads_in_space}},
            [&] {
                return lib::extrude_rotate_Q4(on.nodes, on.lines, center, rotation, wanted.h0,
                                              wanted.h1, wanted.force_even, on.output);
            });
    else
        run(name, {needs::coords, needs::lines, {-6, needs::quads}, {-3, needs::quads_in_space}},
            [&] {
                return lib::extrude_rotate_Q4(on.nodes, on.lines, center, rotation, wanted.N,
                                              on.output);
            });
    return on.results(4);
}

template <std::size_t D>
py::tuple rotate_T3(extrusion& on, const py::object& center_, const py::object& rotation_,
                    const layers& wanted, int pattern)
{
    constexpr const char* name = "extrude_rotate_T3";
    // Kept by the library: in space, by sizes, the code of `coords` covers `connect`, too.
    constexpr refusal first = D == 2 ? needs::coords
                                     : refusal{-1, "coords must have 2 or 3 columns, and connect 2 "
                                                   "columns and IDs below the number of nodes"};
    const auto center = vector<D>(center_, "center");
    const auto rotation = turn<D>(rotation_);
    if (wanted.by_size)
        run(name,
            {first,
             needs::lines,
             {-5, needs::h0},
             {-6, needs::h1},
             {-7, needs::pattern},
             {-9, needs::tris}},
            [&] {
                return lib::extrude_rotate_T3(on.nodes, on.lines, center, rotation, wanted.h0,
                                              wanted.h1, pattern, wanted.force_even, on.output);
            });
    else
        run(name, {needs::coords, needs::lines, {-7, needs::tris}}, [&] {
            return lib::extrude_rotate_T3(on.nodes, on.lines, center, rotation, wanted.N, pattern,
                                          on.output);
        });
    return on.results(3);
}

py::tuple extrude_rotate_Q4(const py::object& coords, const py::object& connect,
                            const py::object& center, const py::object& rotation,
                            const py::object& N, const py::object& h0, const py::object& h1,
                            bool force_even, const py::object& connectQ)
{
    const layers wanted(N, h0, h1, force_even);
    extrusion on(coords, connect, connectQ, "connectQ");
    if (in_plane(center, rotation)) return rotate_Q4<2>(on, center, rotation, wanted);
    return rotate_Q4<3>(on, center, rotation, wanted);
}

py::tuple extrude_rotate_T3(const py::object& coords, const py::object& connect,
                            const py::object& center, const py::object& rotation,
                            const py::object& N, const py::object& h0, const py::object& h1,
                            bool force_even, const py::object& pattern, const py::object& connectT)
{
    const layers wanted(N, h0, h1, force_even);
    extrusion on(coords, connect, connectT, "connectT");
    const int cuts = integer(pattern, "pattern");
    if (in_plane(center, rotation)) return rotate_T3<2>(on, center, rotation, wanted, cuts);
    return rotate_T3<3>(on, center, rotation, wanted, cuts);
}

/// The three vectors of a screw motion.
struct screw {
    screw(const py::object& center_, const py::object& rotation_, const py::object& translation_)
        : center(vector<3>(center_, "center")),
          rotation(vector<3>(rotation_, "rotation")),
          translation(vector<3>(translation_, "translation"))
    {
    }

    vector_fixed<double, 3> center, rotation, translation;
};

py::tuple extrude_spiral_Q4(const py::object& coords, const py::object& connect,
                            const py::object& center, const py::object& rotation,
                            const py::object& translation, const py::object& N,
                            const py::object& h0, const py::object& h1, bool force_even,
                            const py::object& connectQ)
{
    const layers wanted(N, h0, h1, force_even);
    const screw by(center, rotation, translation);
    extrusion on(coords, connect, connectQ, "connectQ");
    constexpr const char* name = "extrude_spiral_Q4";
    if (wanted.by_size)
        run(name,
            {needs::coords, needs::lines, {-6, needs::h0}, {-7, needs::h1}, {-9, needs::quads}},
            [&] {
                return lib::extrude_spiral_Q4(on.nodes, on.lines, by.center, by.rotation,
                                              by.translation, wanted.h0, wanted.h1,
                                              wanted.force_even, on.output);
            });
    else
        run(name, {needs::coords, needs::lines, {-6, needs::translation}, {-9, needs::quads}}, [&] {
            return lib::extrude_spiral_Q4(on.nodes, on.lines, by.center, by.rotation,
                                          by.translation, wanted.N, on.output);
        });
    return on.results(4);
}

py::tuple extrude_spiral_T3(const py::object& coords, const py::object& connect,
                            const py::object& center, const py::object& rotation,
                            const py::object& translation, const py::object& N,
                            const py::object& h0, const py::object& h1, bool force_even,
                            const py::object& pattern, const py::object& connectT)
{
    const layers wanted(N, h0, h1, force_even);
    const screw by(center, rotation, translation);
    extrusion on(coords, connect, connectT, "connectT");
    const int cuts = integer(pattern, "pattern");
    constexpr const char* name = "extrude_spiral_T3";
    if (wanted.by_size)
        // Kept by the library: -4 for h1.
        run(name,
            {needs::coords, needs::lines, {-6, needs::h0}, {-4, needs::h1}, {-10, needs::tris}},
            [&] {
                return lib::extrude_spiral_T3(on.nodes, on.lines, by.center, by.rotation,
                                              by.translation, wanted.h0, wanted.h1, cuts,
                                              wanted.force_even, on.output);
            });
    else
        run(name, {needs::coords, needs::lines, {-6, needs::translation}, {-10, needs::tris}}, [&] {
            return lib::extrude_spiral_T3(on.nodes, on.lines, by.center, by.rotation,
                                          by.translation, wanted.N, cuts, on.output);
        });
    return on.results(3);
}

} // namespace

void bind_rotation(py::module_& m)
{
    m.def(
        "extrude_rotate_Q4", &extrude_rotate_Q4, py::arg("coords"), py::arg("connect"),
        py::arg("center"), py::arg("rotation"), py::arg("N") = py::none(), py::kw_only(),
        py::arg("h0") = py::none(), py::arg("h1") = py::none(), py::arg("force_even") = false,
        py::arg("connectQ") = py::none(),
        R"(extrude_rotate_Q4(coords, connect, center, rotation, N=None, *, h0=None, h1=None, force_even=False, connectQ=None)
--

Sweeps a line mesh around a centre or an axis into layers of quadrilaterals.

Numbers nodes and elements as `extrude_translate_Q4` does. Nothing is merged: a full turn leaves
its last layer on top of the line.

Parameters
----------
coords : (n, 2) or (n, 3) float64
connect : (m, 2) uint32
    Edges.
center : 2 or 3 numbers
    With 2, the rotation is in the plane and new nodes have z = 0. With 3, plane `coords` get a
    third column of zeros.
rotation : float, or 3 numbers
    An angle in radians when `center` has 2 numbers, else the axis, as long as the angle.
N, h0, h1, force_even
    As in `extrude_translate_Q4`. Sizes are spread on the arc of the first node of the first edge.
connectQ : (k, 4) uint32, optional
    Elements to append to; in space (k, 3), which get UNSET_ID as their fourth.

Returns
-------
coords : (n + new, 2) or (n + new, 3) float64
connectQ : (k + m N, 4) uint32)");

    m.def(
        "extrude_rotate_T3", &extrude_rotate_T3, py::arg("coords"), py::arg("connect"),
        py::arg("center"), py::arg("rotation"), py::arg("N") = py::none(), py::kw_only(),
        py::arg("h0") = py::none(), py::arg("h1") = py::none(), py::arg("force_even") = false,
        py::arg("pattern") = 0, py::arg("connectT") = py::none(),
        R"(extrude_rotate_T3(coords, connect, center, rotation, N=None, *, h0=None, h1=None, force_even=False, pattern=0, connectT=None)
--

Sweeps a line mesh around a centre or an axis into layers of triangle pairs.

Parameters
----------
coords, connect, center, rotation, N, h0, h1, force_even
    As in `extrude_rotate_Q4`.
pattern : int
    As in `extrude_translate_T3`; only the form in the plane with sizes refuses other numbers, the
    others take them as 1.
connectT : (k, 3) uint32, optional
    Elements to append to.

Returns
-------
coords : (n + new, 2) or (n + new, 3) float64
connectT : (k + 2 m N, 3) uint32)");

    m.def(
        "extrude_spiral_Q4", &extrude_spiral_Q4, py::arg("coords"), py::arg("connect"),
        py::arg("center"), py::arg("rotation"), py::arg("translation"), py::arg("N") = py::none(),
        py::kw_only(), py::arg("h0") = py::none(), py::arg("h1") = py::none(),
        py::arg("force_even") = false, py::arg("connectQ") = py::none(),
        R"(extrude_spiral_Q4(coords, connect, center, rotation, translation, N=None, *, h0=None, h1=None, force_even=False, connectQ=None)
--

Sweeps a line mesh by a screw motion into layers of quadrilaterals: a rotation around the axis
through `center` along `rotation`, and a translation, which need not lie along the axis.

Parameters
----------
coords : (n, 2) or (n, 3) float64
    Plane ones get a third column of zeros.
connect : (m, 2) uint32
    Edges.
center, rotation, translation : 3 numbers
    `rotation` is as long as the angle in radians. A `translation` of no length is refused with
    `N`; with sizes it makes no layer.
N, h0, h1, force_even
    As in `extrude_translate_Q4`. Sizes are spread on the translation.
connectQ : (k, 4) uint32, optional
    Elements to append to.

Returns
-------
coords : (n + new, 3) float64
    Plane ones are (n, 2) still where there is nothing to do: no layer, or an empty `connect`.
connectQ : (k + m N, 4) uint32)");

    m.def(
        "extrude_spiral_T3", &extrude_spiral_T3, py::arg("coords"), py::arg("connect"),
        py::arg("center"), py::arg("rotation"), py::arg("translation"), py::arg("N") = py::none(),
        py::kw_only(), py::arg("h0") = py::none(), py::arg("h1") = py::none(),
        py::arg("force_even") = false, py::arg("pattern") = 0, py::arg("connectT") = py::none(),
        R"(extrude_spiral_T3(coords, connect, center, rotation, translation, N=None, *, h0=None, h1=None, force_even=False, pattern=0, connectT=None)
--

Sweeps a line mesh by a screw motion into layers of triangle pairs.

Parameters
----------
coords, connect, center, rotation, translation, N, h0, h1, force_even
    As in `extrude_spiral_Q4`.
pattern : int
    As in `extrude_translate_T3`; other numbers count as 1.
connectT : (k, 3) uint32, optional
    Elements to append to.

Returns
-------
coords : (n + new, 3) float64
    As by `extrude_spiral_Q4`.
connectT : (k + 2 m N, 3) uint32)");
}

} // namespace tessalo2d_python
