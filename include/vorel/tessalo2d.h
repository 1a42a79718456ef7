// tessalo2d: edits, measures and extends meshes held in plain numeric matrices.
//
// A mesh is two matrices. `coords` has one column a node and 2 or 3 rows, its coordinates; a node
// ID is a column index. `connect` has one column an element, its node IDs:
//
//   rows  form             a column
//   3     all T3           three corners
//   4     mixed linear     a Q4, or a T3 when row 3 is UNSET_ID
//   6     all T6           corners, then the nodes on edges 1-2, 2-0, 0-1
//   8, 9  mixed quadratic  a Q8 or Q9, or a T6 when row 6 is UNSET_ID (rows 6 up are then unset)
//
// Every function but `version` returns an int:
//
//   0      success, or nothing to do
//   > 0    success with a count, where the function says so
//   -k     argument k, counted from 1, failed its check
//   -199   out of memory
//
// Results are appended behind what the caller passes in unless a function says otherwise. An input
// without entries is nothing to do, not an error, whatever the other arguments hold. Entries that
// name no node or element where no check is promised are treated as absent; no input makes a call
// read or write outside its matrices or run for ever. Outputs must not share storage with other
// arguments. The library throws nothing of its own: `std::bad_alloc` passes when the small object
// of a new storage block can't be had. It keeps no state; two calls may run at once when neither
// writes what the other reads. Results are the same bit for bit on every run.
#pragma once

#include <vorel/append.h>
#include <vorel/checks.h>
#include <vorel/dense1D.h>
#include <vorel/dense2D.h>
#include <vorel/element_type.h>
#include <vorel/fixed.h>

namespace vorel::tessalo2d {

// ---------------------------------------------------------------------------------------- frame

/// The version of the library, "5.1.0.0".
VOREL_API const char* version();

// ------------------------------------------------------------------------------------- measures

/// Sum of the areas of all elements. In the plane it is signed: elements listed clockwise count
/// negatively. In space every element counts positively, a warped quadrilateral with the larger of
/// its two cuts into triangles.
///
/// coords   2 x N or 3 x N
/// connect  3 x E or 4 x E (mixed linear), IDs below N
/// result   the area in squared units of `coords`; 0.0 on every other return
/// returns  0; -1 rows of `coords`; -2 rows or IDs of `connect`
///
/// Plain summation in column order, halved once at the end. O(E), no allocation.
VOREL_API int area(const dense2D<double>& coords, const dense2D<unsigned>& connect, double& result);

// ----------------------------------------------------------------------------- order conversion

// ------------------------------------------------------------------------------------ splitting

// ------------------------------------------------------------------------------------ extrusion
//
// A line mesh is swept along a path into layers of quadrilaterals (`_Q4`) or of triangle pairs
// (`_T3`). In all of these functions:
//
//   coords      2 x n or 3 x n; the new nodes are appended
//   connect     2 x E, the line mesh: an edge a column, IDs below n. Open, closed, branched and
//               separate lines need no distinction; the edge direction is that of the columns
//   N           number of layers, of equal height
//   h0, h1      in its place the size at the start and at the end of the path: N becomes the length
//               of the path by the logarithmic mean of the two, rounded in ratio, at least 1 unless
//               told otherwise, and heights grow from layer to layer by a constant factor
//   force_even  makes the N of sizes even
//   pattern     how quadrilaterals are cut: 0 from the edge's second node to the copy of its first,
//               1 from the first to the copy of the second, 2 as 0 where layer and edge (both
//               counted from 0) have an odd sum and as 1 elsewhere. A value that an overload does
//               not check counts as 1
//   connectQ    4 x C, or empty; E * N quadrilaterals are appended
//   connectT    3 x C, or empty; 2 * E * N triangles are appended
//
// The m nodes that `connect` uses are the first layer and stay as they are. Ranked by their first
// appearance, column by column, the copy of rank k in layer l = 1, ..., N has the ID
// n + (l - 1) * m + k. The quadrilateral of edge e = (a, b) in layer l = 0, ..., N - 1 is column
// C + e * N + l and runs a, b, copy of b, copy of a; its two triangles are columns
// C + 2 * (e * N + l) and the next one. Nothing is merged: a full turn leaves its last layer on top
// of the line, and a node on an axis gets coincident copies.
//
// They return 0, also when `connect` is empty or N is 0 and then whatever the other arguments hold;
// the negative numbers that are listed in the order of the checks; or -199 out of memory or of IDs,
// with the column counts as before. `coords` then has the row count that it had, unless another is
// told, and the output may have got its row count. An output must not share storage with `connect`.
//
// O(n) to widen or move `coords`, O((E + m) * N) for the rest; about 100 bytes an edge at most
// during the call. Each matrix grows once and each new entry is written once.

/// Translation by `V` in the plane.
///
/// coords   2 x n
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -5 rows of `connectQ`
VOREL_API int extrude_translate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const vector_fixed<double, 2>& V, unsigned N,
                                   dense2D<unsigned>& connectQ);

/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -4, -5 `h0`, `h1` not above 0; -7
///          rows of `connectQ`
VOREL_API int extrude_translate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const vector_fixed<double, 2>& V, double h0, double h1,
                                   bool force_even, dense2D<unsigned>& connectQ);

/// Translation by `V` in space. Plane `coords` get a third row of 0.0.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -5 rows of `connectQ`
VOREL_API int extrude_translate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const vector_fixed<double, 3>& V, unsigned N,
                                   dense2D<unsigned>& connectQ);

/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -4, -5 `h0`, `h1` not above 0; -7
///          rows of `connectQ`
VOREL_API int extrude_translate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const vector_fixed<double, 3>& V, double h0, double h1,
                                   bool force_even, dense2D<unsigned>& connectQ);

/// Translation by `V` in the plane, into triangles.
///
/// coords   2 x n
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -5 `pattern` not 0, 1 or 2; -6 rows
/// of
///          `connectT`
VOREL_API int extrude_translate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const vector_fixed<double, 2>& V, unsigned N, int pattern,
                                   dense2D<unsigned>& connectT);

/// Needs room for a third row of `coords` on the way, and may leave their columns 3 apart.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -4, -5 `h0`, `h1` not above 0; -6
///          `pattern` not 0, 1 or 2; -8 rows of `connectT`
VOREL_API int extrude_translate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const vector_fixed<double, 2>& V, double h0, double h1,
                                   int pattern, bool force_even, dense2D<unsigned>& connectT);

/// Translation by `V` in space, into triangles. Plane `coords` get a third row of 0.0.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -5 `pattern` not 0, 1 or 2; -6 rows
/// of
///          `connectT`
VOREL_API int extrude_translate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const vector_fixed<double, 3>& V, unsigned N, int pattern,
                                   dense2D<unsigned>& connectT);

/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -4, -5 `h0`, `h1` not above 0; -6
///          `pattern` not 0, 1 or 2; -8 rows of `connectT`
VOREL_API int extrude_translate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const vector_fixed<double, 3>& V, double h0, double h1,
                                   int pattern, bool force_even, dense2D<unsigned>& connectT);

/// Rotation around `center` by `angle` in radians, counterclockwise where positive. With 3 rows of
/// `coords` the new nodes lie at z = 0.0, whatever the z of the line.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6 rows of `connectQ`. `coords` has 2
///          rows after -199
VOREL_API int extrude_rotate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 2>& center, double angle, unsigned N,
                                dense2D<unsigned>& connectQ);

/// The path is the arc of one node only, the first of the first edge; with 3 rows of `coords` its z
/// counts as part of the radius.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -5, -6 `h0`, `h1` not above 0; -8
///          rows of `connectQ`
VOREL_API int extrude_rotate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 2>& center, double angle, double h0,
                                double h1, bool force_even, dense2D<unsigned>& connectQ);

/// Rotation around the axis through `center` along `rotation`, by the right-hand rule and by as
/// many radians as `rotation` is long. Plane `coords` get a third row of 0.0.
///
/// connectQ  empty or 3 x C: old columns get an unset fourth row, the storage of triangles among
///           quadrilaterals. A matrix of 4 rows is refused
/// returns   -1 rows of `coords`; -2 rows or IDs of `connect`; -3 rows of `connectQ`
VOREL_API int extrude_rotate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation, unsigned N,
                                dense2D<unsigned>& connectQ);

/// The path is the arc of one node only, the first of the first edge.
///
/// connectQ  empty or 3 x C, as above
/// returns   -1 rows of `coords`; -2 rows or IDs of `connect`; -5, -6 `h0`, `h1` not above 0; -8
///           rows of `connectQ`
VOREL_API int extrude_rotate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation, double h0, double h1,
                                bool force_even, dense2D<unsigned>& connectQ);

/// Rotation in the plane, into triangles; z as with `extrude_rotate_Q4`. Takes any `pattern`.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -7 rows of `connectT`. `coords` has 2
///          rows after -199
VOREL_API int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 2>& center, double angle, unsigned N,
                                int pattern, dense2D<unsigned>& connectT);

/// The path is the arc of one node only, the first of the first edge; with 3 rows of `coords` its z
/// counts as part of the radius.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -5, -6 `h0`, `h1` not above 0; -7
///          `pattern` not 0, 1 or 2; -9 rows of `connectT`. `coords` has 2 rows after -199
VOREL_API int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 2>& center, double angle, double h0,
                                double h1, int pattern, bool force_even,
                                dense2D<unsigned>& connectT);

/// Rotation in space, into triangles. Plane `coords` get a third row of 0.0. Takes any `pattern`.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -7 rows of `connectT`
VOREL_API int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation, unsigned N, int pattern,
                                dense2D<unsigned>& connectT);

/// The path is the arc of one node only, the first of the first edge. Takes any `pattern`.
///
/// returns  -1 rows of `coords`, and also rows or IDs of `connect`; -5, -6 `h0`, `h1` not above 0;
///          -9 rows of `connectT`
VOREL_API int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation, double h0, double h1,
                                int pattern, bool force_even, dense2D<unsigned>& connectT);

/// Screw motion: rotation around the axis through `center` along `rotation`, as with
/// `extrude_rotate_Q4`, and translation by `translation`, which need not lie along the axis. Plane
/// `coords` get a third row of 0.0.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6 `translation` of no length; -9
/// rows
///          of `connectQ`. `coords` has 2 rows after -199
VOREL_API int extrude_spiral_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation,
                                const vector_fixed<double, 3>& translation, unsigned N,
                                dense2D<unsigned>& connectQ);

/// The path is the translation alone. One of no length makes no layer: only an empty `connectQ`
/// gets its row count.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6, -7 `h0`, `h1` not above 0; -9
///          rows of `connectQ`. `coords` has 2 rows after -199
VOREL_API int extrude_spiral_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation,
                                const vector_fixed<double, 3>& translation, double h0, double h1,
                                bool force_even, dense2D<unsigned>& connectQ);

/// Screw motion, into triangles. Takes any `pattern`.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6 `translation` of no length; -10
///          rows of `connectT`. `coords` has 2 rows after -199
VOREL_API int extrude_spiral_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation,
                                const vector_fixed<double, 3>& translation, unsigned N, int pattern,
                                dense2D<unsigned>& connectT);

/// The path is the translation alone, as with `extrude_spiral_Q4`. Takes any `pattern`.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6 `h0` not above 0; -4 `h1` not
/// above
///          0; -10 rows of `connectT`. `coords` has 2 rows after -199
VOREL_API int extrude_spiral_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation,
                                const vector_fixed<double, 3>& translation, double h0, double h1,
                                int pattern, bool force_even, dense2D<unsigned>& connectT);

// ----------------------------------------------------------------------------- structured grids

// --------------------------------------------------------------------------------- connectivity

// ------------------------------------------------------------------- interpolation of fields

// ------------------------------------------------------------------- curvature and metric fields

} // namespace vorel::tessalo2d
