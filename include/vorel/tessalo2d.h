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
// Results are appended behind what the caller passes in, and an input without entries is nothing to
// do, not an error, whatever the other arguments hold, unless a function says otherwise. Entries
// that name no node or element where no check is promised are treated as absent; no input makes a
// call read or write outside its matrices or run for ever. Outputs must not share storage with
// other arguments. The library throws nothing of its own: `std::bad_alloc` passes when the small
// object of a new storage block, or a list that lives for one call, can't be had. It keeps no
// state; two calls may run at once when neither writes what the other reads. Results are the same
// bit for bit on every run.
#pragma once

#include <vorel/append.h>
#include <vorel/checks.h>
#include <vorel/dense1D.h>
#include <vorel/dense2D.h>
#include <vorel/element_type.h>
#include <vorel/fixed.h>
#include <vorel/minimum_metric.h>

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

/// The smallest and the largest corner angle of each element. In the plane angles carry the sign of
/// the turn: they are negative in an element listed clockwise and at a reflex corner. In space they
/// lie between 0 and pi.
///
/// coords      2 x N or 3 x N
/// connect     3 x E or 4 x E (mixed linear), IDs below N
/// normalized  false: in radians; true: divided by the ideal angle of the element's kind, pi / 3
///             for a triangle and pi / 2 for a quadrilateral
/// angle_min   gets E entries, in place of what it held
/// angle_max   gets E entries, in place of what it held
/// returns     0; -1 rows of `coords`; -2 rows of `connect`; -199; -2 IDs of `connect`, with E
///             zeros in both outputs (kept: callers rely on it)
///
/// They are empty after -1, after -2 for rows, after -199 and for an empty `connect`. An angle that
/// is not a number is taken over and the next corner's angle takes its place. O(E), the time of the
/// `atan2` calls; no other allocation.
VOREL_API int angles(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                     bool normalized, dense1D<double, 8>& angle_min, dense1D<double, 8>& angle_max);

/// The normal of each element of a surface, pointing to where its corners turn anticlockwise. Not
/// scaled, it is twice the area long for a triangle and twice the vector area, the product of the
/// diagonals, for a quadrilateral.
///
/// coords       3 x N
/// connect      3 x E or 4 x E (mixed linear), IDs below N; an element with `UNSET_ID` in rows 0 to
///              2 has a zero normal
/// unit_length  true: scaled to length 1; a normal of length 0 stays
/// vectors      3 x E in place of what it held; without columns on every other return
/// returns      0; -1 rows of `coords`; -2 rows or IDs of `connect`; -199
///
/// O(E), no other allocation.
VOREL_API int normals(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                      bool unit_length, dense2D<double>& vectors);

/// The normal at each node of a surface: the mean of the unit normals of the elements around it,
/// weighted by a power of their raw normals' lengths (twice the areas).
///
/// coords           3 x N
/// connect          3 x E or 4 x E (mixed linear), IDs below N; an element with `UNSET_ID` in rows
///                  0 to 2 is skipped
/// weight_exponent  0 weighs all elements alike, 1 by size, -1 by inverse size (an element of no
///                  area then spoils its nodes). The largest finite double takes the normal of the
///                  largest element instead and its negative that of the smallest: in the order of
///                  the columns an element replaces what a node has gathered if it is larger
///                  (smaller) than that, or adds its unit normal to it and 1 to its size (kept:
///                  callers rely on it). Any other exponent that is not finite weighs like 0.
/// unit_length      true: scaled to length 1; without effect for the two special exponents
/// vectors          3 x N in place of what it held; without columns on every other return. Zero at
///                  a node that no element holds.
/// returns          0; -1 rows of `coords`; -2 rows or IDs of `connect`; -199
///
/// O(N + E), and N doubles of working memory.
VOREL_API int normals(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                      double weight_exponent, bool unit_length, dense2D<double>& vectors);

/// Centre of the circumscribed circle of each triangle.
///
/// coords   2 x N or 3 x N
/// connect  3 x E, IDs below N
/// centers  emptied first, then as many rows as `coords`, column e for element e
/// returns  0; -1 rows of `coords`; -2 rows or IDs of `connect`; -199. An empty `connect` needs its
///          3 rows too.
///
/// In the plane the centre is an offset from the midpoint of the longest side, which is itself the
/// result for a triangle without area. In space it solves the 2 x 2 system of the two sides at a
/// corner, with iterative refinement, and a triangle without area gets its third corner. O(E), no
/// memory but the output.
VOREL_API int circumcenters(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                            dense2D<double>& centers);

// ----------------------------------------------------------------------------- order conversion

/// Cuts a quadratic connectivity down to the corners, in place: one linear element for each
/// quadratic one. IDs are carried over unchecked.
///
/// connect  6 x E (T6) becomes 3 x E; 8 x E or 9 x E (mixed quadratic) becomes 4 x E, with row 3
///          unset in triangles. The storage keeps its leading dimension.
/// returns  0; -1 any other row count of a filled matrix, a linear one included; `connect` is then
///          unchanged
///
/// O(E), O(1) for T6; no allocation.
VOREL_API int convert_into_linear(dense2D<unsigned>& connect);

/// Cuts each quadratic element into four linear ones that use its midnodes as corners: three or
/// four that begin at a corner each, for a triangle the one in the middle last. All keep the
/// orientation of their parent. IDs are carried over unchecked.
///
/// connect  6 x E (T6) or 9 x E (Q9 mixed with T6); Q8 has no centre to cut at
/// result   grows by 4 * E columns. From 6 rows: triangles, in 3 rows, or with row 3 unset if
///          `result` has 4. From 9 rows: 4 rows; a filled 3-row `result` is widened with row 3
///          unset.
/// returns  0; -1 rows of `connect`; -2 rows of `result` (0, 3 or 4, also when it is empty); -199
///          out of memory. `result` is unchanged on all but 0.
///
/// O(E); `result` is grown once.
VOREL_API int split_into_linear(const dense2D<unsigned>& connect, dense2D<unsigned>& result);

/// Raises the order of a linear face mesh: adds nodes on every edge and inside every element.
/// Elements that share an edge share its nodes, each listing them in its own direction. A column of
/// `result` holds the corners, the nodes of each local edge in order, the interior nodes, and
/// `UNSET_ID` up to the row count of the longest kind that occurs.
///
/// New nodes are numbered behind the old ones: first those of the edges, in the order in which a
/// walk over the columns meets the edges, then the interior ones element by element. The nodes of
/// an edge divide it evenly, from the end at which the first element that has it starts.
///
/// coords          2 x N or 3 x N; gets the new nodes
/// connect         3 x E or 4 x E (mixed linear), IDs below N
/// edge_nodes      new nodes on each edge, any number; without any, the columns get the IDs of the
///                 interior nodes alone, whose coordinates stay 0
/// quad_nodes      new nodes in each quadrilateral, a square: a bilinear grid
/// triangle_nodes  new nodes in each triangle: 0, the centroid, or 3
/// result          is replaced; empty on every outcome but 0 and -1
/// edges           nodes that exist already: empty, or edge_nodes + 2 rows of (end, end, first
///                 node, ...), IDs below N or unset. The nodes of an edge are consecutive from the
///                 first one on, in the direction of the ends; they keep their coordinates. Of two
///                 columns for the same edge the first gives the direction and the last the nodes.
///                 A column with an unset ID in rows 0 to 2 is ignored. Of a prepared edge only the
///                 first node is checked: a run that starts too late names new nodes or none.
/// returns         0, also when all three counts are 0 (`result` is then empty); -1 rows of
///                 `coords`, checked first, then `result` is unchanged; -2 rows or IDs of
///                 `connect`; -4 `quad_nodes`; -5 `triangle_nodes`; -6 rows or IDs of `edges`; -199
///                 out of memory or of node IDs. `coords` is unchanged on all but 0.
///
/// Each output is grown once. O(E) at about 8 bytes a side and 4 bytes a node of working storage.
/// When that can't be had a hash table takes its place, and an edge that this table has no storage
/// for gets `UNSET_ID` for its nodes. An edge that was lost because storage ran out while the table
/// was rebuilt is numbered again when it is met again, and has two runs. After `std::bad_alloc`,
/// thrown when a block object can't be had, `result` is unspecified.
VOREL_API int convert_into_high_order(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                      unsigned edge_nodes, unsigned quad_nodes,
                                      unsigned triangle_nodes, dense2D<unsigned>& result,
                                      const dense2D<unsigned>& edges);

/// As above, with `connect` replaced by the result. It is copied first: -199 leaves it as it was
/// when that copy can't be had, and empty otherwise, as do all other outcomes but 0 and -1.
VOREL_API int convert_into_high_order(dense2D<double>& coords, dense2D<unsigned>& connect,
                                      unsigned edge_nodes, unsigned quad_nodes,
                                      unsigned triangle_nodes, const dense2D<unsigned>& edges);

/// `convert_into_high_order` in place with the counts 1, 1, 0: T3 become T6 in 6 rows; a mesh with
/// quadrilaterals gets 9 rows of Q9 and T6.
///
/// returns  0; -1 rows of `coords`; -2 rows or IDs of `connect`; -199 out of memory or of node IDs
VOREL_API int convert_into_quadratic(dense2D<double>& coords, dense2D<unsigned>& connect);

/// As above, with prepared edges in 3 rows: end, end, middle.
///
/// returns  as above, and -6 (not -3) for rows or IDs of `edges`
VOREL_API int convert_into_quadratic(dense2D<double>& coords, dense2D<unsigned>& connect,
                                     const dense2D<unsigned>& edges);

// ------------------------------------------------------------------------------------ splitting

/// Makes an all-quadrilateral mesh: adds a node on every edge and one inside every element, and
/// cuts each triangle into three and each quadrilateral into four quadrilaterals at them. Children
/// begin at a corner of their parent each, in its order, and keep its orientation.
///
/// coords   2 x N or 3 x N; gets the new nodes as with `convert_into_high_order` at counts 1, 1, 1
/// connect  3 x E or 4 x E (mixed linear), IDs below N
/// result   empty or 4 rows; the new columns are appended
/// edges    nodes that exist already: empty, or 3 x M of (end, end, middle), IDs below N
/// returns  0; -1 rows of `coords`; -2 rows or IDs of `connect`; -3 rows of `result`; -4 rows or
///          IDs of `edges`; -199 out of memory or of node IDs. On -199 `coords` may have the new
///          nodes already; `result` is unchanged on all but 0.
///
/// O(E); memory for the high-order connectivity on the way, and what that conversion takes.
VOREL_API int split_into_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                            dense2D<unsigned>& result, const dense2D<unsigned>& edges);

/// Cuts every quadrilateral of a mixed mesh into two triangles along the diagonal from its first
/// node: (0, 1, 2) and (2, 3, 0). Triangles are copied, the order of the elements stays.
///
/// connect  3 x E or 4 x E (mixed linear); the IDs are not looked at
/// result   3 rows, or empty; grows by E columns and one for each quadrilateral
/// returns  the number of quadrilaterals, 0 for a `connect` of 3 rows; -1 rows of `connect`;
///          -2 rows of `result`; -199
///
/// O(E), no allocation but the growth of `result` for 2 E columns.
VOREL_API int split_Q4_into_T3(const dense2D<unsigned>& connect, dense2D<unsigned>& result);

/// Cuts every quadrilateral of a mixed mesh into two triangles along the diagonal that gives the
/// better worst triangle. A tie goes to the diagonal through the smallest ID, so the result does
/// not depend on where a quadrilateral's node list starts. Triangles are copied, the order of the
/// elements stays.
///
/// The quality of a triangle is twice its area over its longest side times its perimeter, scaled to
/// 1 for an equilateral one; in the plane it is negative for a clockwise one, which steers the cut
/// of a concave quadrilateral through its reflex corner.
///
/// coords   2 x N or 3 x N
/// connect  3 x E or 4 x E (mixed linear), IDs below N
/// result   3 rows, or empty; grows by E columns and one for each quadrilateral
/// returns  the number of quadrilaterals, 0 for a `connect` of 3 rows; -1 rows of `coords`;
///          -2 rows or IDs of `connect`; -3 rows of `result`; -199
///
/// O(E), no allocation but the growth of `result` for 2 E columns.
VOREL_API int split_Q4_into_T3(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                               dense2D<unsigned>& result);

/// What the diagonal of a cut is chosen by, of the two triangles on each side of it.
enum diagonal_choice : int {
    DIAGONAL_BEST_QUALITY = 1,       ///< the better worst triangle
    DIAGONAL_BEST_ANGLE = 2,         ///< the largest angles nearer to right ones
    DIAGONAL_LEAST_LARGER_AREA = 3,  ///< the smaller larger triangle
    DIAGONAL_LEAST_AREA = 4,         ///< the smaller area in all: the valley, not the roof
    DIAGONAL_LEAST_FOLD = 5,         ///< in space: the smaller fold across the diagonal
    DIAGONAL_LEAST_WEIGHTED_FOLD = 6 ///< in space: the smaller fold times length of the diagonal
};

/// Cuts the quadrilaterals that fail one of three thresholds into two triangles each and keeps the
/// other elements as they are. The kept columns come first, then the triangles, two by two, with
/// `UNSET_ID` in row 3.
///
/// coords              2 x N or 3 x N
/// connect             4 x E (mixed linear), IDs below N
/// min_shape_quality   a quadrilateral stays only if its shape quality reaches this: least corner
///                     area over longest extent times perimeter, 1 for a square, in the plane
///                     negative for a concave one, in space times the warp
/// min_angle_quality   and its warp times angle quality reaches this: nearness of its corners to
///                     right angles, 1 for a rectangle, 0 with a corner of 0 or 180 degrees
/// min_warp            and its warp reaches this: 1 always in the plane; in space 1 for a flat one
///                     (rounding can take 1e-8 off), 1/2 for one folded to a right angle, 0 for
///                     one folded over
/// diagonal_criterion  a `diagonal_choice`; with another number, or a fold in the plane, the
///                     diagonal from the smallest ID. Folds below 1e-6 are compared by quality. A
///                     tie goes to the diagonal from the smallest ID.
/// kept_IDs            gets the numbers of the columns that stay, ascending, behind what it holds
/// split_IDs           gets the numbers of the quadrilaterals to cut, ascending, behind what it
///                     holds
/// result              4 rows, or empty; gets a column for each entry of `kept_IDs` and two for
///                     each of `split_IDs`, those from before the call among them. An entry from
///                     before the call that names no column, or in `split_IDs` no quadrilateral,
///                     is passed over.
/// returns             the number of quadrilaterals cut; -1 rows of `coords`; -2 rows or IDs of
///                     `connect`; -8 rows of `result` (kept: callers rely on it); -199, when the
///                     lists may have got their entries while `result` is as it was
///
/// A threshold or a measure that is not a number is not reached. O(E), no allocation but the growth
/// of the lists by E entries each and of `result` by its new columns.
VOREL_API int split_Q4_into_T3(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                               double min_shape_quality, double min_angle_quality, double min_warp,
                               int diagonal_criterion, dense1D<unsigned, 8>& kept_IDs,
                               dense1D<unsigned, 8>& split_IDs, dense2D<unsigned>& result);

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
//               of the path by the logarithmic mean of the two, rounded in ratio, the low 32 bits
//               of that, at least 1 unless told otherwise; heights grow from layer to layer by a
//               constant factor
//   force_even  makes the N of sizes even, but 1 on a path of no length
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
// O(n) to widen or move `coords`, O((E + m) * N) for the rest. Each matrix grows once and each new
// entry is written once. Working storage is up to about 100 bytes an edge, 16 where each edge goes
// on from the one before it to a higher ID; where a line of few edges lies among many nodes it is
// hashed, and IDs that collide take up to 250.

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
///          of `connectT`
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
///          of `connectT`
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
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6 rows of `connectQ`. After -199
///          `coords` may have lost its third row
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
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -7 rows of `connectT`. After -199
///          `coords` may have lost its third row
VOREL_API int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 2>& center, double angle, unsigned N,
                                int pattern, dense2D<unsigned>& connectT);

/// The path is the arc of one node only, the first of the first edge; with 3 rows of `coords` its z
/// counts as part of the radius.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -5, -6 `h0`, `h1` not above 0; -7
///          `pattern` not 0, 1 or 2; -9 rows of `connectT`. After -199 `coords` may have lost its
///          third row
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
/// `coords` get a third row of 0.0. A `translation` whose square overflows makes no layer.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6 `translation` of no length, also
///          one whose square underflows; -9 rows of `connectQ`. After -199 `coords` may have lost
///          its third row
VOREL_API int extrude_spiral_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation,
                                const vector_fixed<double, 3>& translation, unsigned N,
                                dense2D<unsigned>& connectQ);

/// The path is the translation alone. One of no length makes no layer: only an empty `connectQ`
/// gets its row count.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6, -7 `h0`, `h1` not above 0; -9
///          rows of `connectQ`. After -199 `coords` may have lost its third row
VOREL_API int extrude_spiral_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation,
                                const vector_fixed<double, 3>& translation, double h0, double h1,
                                bool force_even, dense2D<unsigned>& connectQ);

/// Screw motion, into triangles; `translation` as with `extrude_spiral_Q4`. Takes any `pattern`.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6 `translation` of no length, also
///          one whose square underflows; -10 rows of `connectT`. After -199 `coords` may have lost
///          its third row
VOREL_API int extrude_spiral_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation,
                                const vector_fixed<double, 3>& translation, unsigned N, int pattern,
                                dense2D<unsigned>& connectT);

/// The path is the translation alone, as with `extrude_spiral_Q4`. Takes any `pattern`.
///
/// returns  -1 rows of `coords`; -2 rows or IDs of `connect`; -6 `h0` not above 0; -4 `h1` not
///          above 0; -10 rows of `connectT`. After -199 `coords` may have lost its third row
VOREL_API int extrude_spiral_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                                const vector_fixed<double, 3>& center,
                                const vector_fixed<double, 3>& rotation,
                                const vector_fixed<double, 3>& translation, double h0, double h1,
                                int pattern, bool force_even, dense2D<unsigned>& connectT);

// ----------------------------------------------------------------------------- structured grids

/// Fills a closed loop of L boundary nodes with a structured grid of quadrilaterals. The loop has
/// four sides of M, N, M and N subdivisions, L = 2 (M + N) + 1; only the count says where the
/// corners are. An anticlockwise loop gives anticlockwise elements.
///
/// coords    2 x K or 3 x K; (M - 1) (N - 1) interior nodes are appended, node (i, j) as number
///           K + (i - 1) (N - 1) + (j - 1)
/// boundary  L IDs below K around the domain, the last one the first again
/// N         subdivisions of the second and the fourth side
/// connectQ  empty or 4 rows; M * N elements are appended, those of i = 0 first, j rising
/// returns   0, also when N, L or M is 0, before any check; -1 rows of `coords`; -2 fewer than 5
///           entries, an open loop or IDs of `boundary`; -3 an N that does not fit L; -4 rows of
///           `connectQ`; -199, the counts of columns are then as before and `connectQ` has 4 rows
///
/// The interior is the bilinearly blended Coons patch of the four sides, by index and not by arc
/// length: it takes over the spacing of the sides, and a loop with straight sides is reproduced.
/// No element is tested for validity. O(M N), no memory but the outputs.
VOREL_API int mesh_struct_Q4(dense2D<double>& coords, const dense1D<unsigned, 8>& boundary,
                             unsigned N, dense2D<unsigned>& connectQ);

/// As `mesh_struct_Q4`, with two triangles for each cell.
///
/// pattern   the diagonal of cell (i, j): 0 from (i + 1, j) to (i, j + 1); 1 from (i, j) to
///           (i + 1, j + 1); 2 as 0 where i + j is odd, else as 1
/// connectT  empty or 3 rows; 2 M N elements are appended
/// returns   0, also when N or L is 0, before any check; -1 rows of `coords`; -2 fewer than 5
///           entries, an open loop or IDs of `boundary`; -3 an N that does not fit L; -4 `pattern`;
///           -5 rows of `connectT`; -199, the counts of columns are then as before and `connectT`
///           has 3 rows
///
/// A loop with M = 0 passes the checks when L is 2 N + 1: no element is made, and the last N - 1
/// columns of `coords` are cut off. -199 if there are fewer.
VOREL_API int mesh_struct_T3(dense2D<double>& coords, const dense1D<unsigned, 8>& boundary,
                             unsigned N, int pattern, dense2D<unsigned>& connectT);

/// Extends a field over the interior nodes of a structured patch of n x m cells, from its values on
/// the boundary: the companion of `mesh_struct_Q4` and `mesh_struct_T3`, called with the same list
/// and count it gives one entry for each node that they append, in their order. A node gets the
/// mean of the interpolation between left and right sides and the one between bottom and top.
///
/// ids      the nodes around the patch, closed: bottom, right, top (backward) and left (downward)
///          side, the first node again at the end; 2(n + m) + 1 IDs below the length of the field
/// count    m, the number of cells along the right and left sides
/// sizes    grows by (n - 1)(m - 1) entries. A node whose boundary sizes are not above 0 gets 0
/// returns  0 (an empty list or a count of 0 is nothing to do); -1 a list of less than 5 nodes, not
///          closed, or with a wrong ID; -2 a length that does not fit `count`; -199, also for more
///          nodes than IDs, with nothing changed
///
/// A list of 2m + 1 nodes passes as one of no cells along the bottom: it takes the last m - 1
/// entries away and adds none, -199 if there are fewer; kept: callers rely on it. O(n m), no memory
/// but the result.
VOREL_API int metrics_struct(const dense1D<unsigned, 8>& ids, unsigned count,
                             dense1D<double, 8>& sizes);

/// As above for metrics, by linear interpolation of the sizes in the common basis of two metrics.
///
/// metrics  3 x N (m00, m01, m11) or 6 x N (m00, m01, m11, m02, m12, m22), one column a node; grows
///          by (n - 1)(m - 1) columns. A node whose boundary metrics are not positive definite gets
///          zeros
/// returns  -3 rows of `metrics`, checked first, even with nothing to do; otherwise as above
///
/// In space one call of `dspev` a node.
VOREL_API int metrics_struct(const dense1D<unsigned, 8>& ids, unsigned count,
                             dense2D<double>& metrics);

// --------------------------------------------------------------------------------- connectivity

/// Reverses the orientation of all elements in place by exchanging corners 0 and 2, whatever other
/// rows there are. Midside nodes stay: the form with a type moves them along.
///
/// connect  at least 3 rows
/// returns  0, also without columns; -1 rows of `connect`
///
/// O(E), no allocation.
VOREL_API int flip(dense2D<unsigned>& connect);

/// Reverses the orientation of all elements in place, midside nodes included.
///
/// connect  with `ELEMENT_ANY_FACE` 3, 4, 6, 8 or 9 rows, the six-node triangles in 8 or 9 rows
///          told apart by row 6; with another type its node count
/// FE       the kind of the elements; kinds that are no faces are left as they are
/// returns  0, also without columns; -2 rows of `connect`, or a code outside the table
///
/// O(E), no allocation.
VOREL_API int flip(dense2D<unsigned>& connect, element_type FE);

/// Turns quadrilaterals of which two adjacent corners are one node into triangles, in place. Of
/// several equal pairs the first in the order 0-1, 1-2, 2-3, 3-0 collapses. A column with
/// `UNSET_ID` in any row is a triangle already.
///
/// connect  4 rows
/// returns  the number of converted columns; 0 for an empty matrix; -1 rows of `connect`
///
/// O(E), no allocation.
VOREL_API int convert_degenerated_Q4(dense2D<unsigned>& connect);

/// As `convert_degenerated_Q4`, and also for quadrilaterals of 8 or 9 nodes, which become six-node
/// triangles: the midside node of the collapsed edge and the centre are dropped.
///
/// connect        4, 8 or 9 rows
/// converted_IDs  emptied first, then the index of each converted column
/// returns        the size of `converted_IDs`; 0 for an empty matrix; -1 rows of `connect`
///
/// A column whose index finds no storage is converted but not listed or counted. O(E).
VOREL_API int convert_degenerated_Q(dense2D<unsigned>& connect,
                                    dense1D<unsigned, 8>& converted_IDs);

/// Makes the elements of a region run their common edges in opposite directions, as the orientation
/// of the seed has it. Elements are visited breadth first from the seed, which never changes, and
/// flipped together with their sides in `neighbors`.
///
/// connect      3 x E or 4 x E (mixed linear)
/// neighbors    the shape of `connect`; entry (r, e) is the element across local edge r of e, and
///              an entry not below E no element
/// seed         the element whose orientation is kept
/// all_regions  0: only the region of the seed; else also the regions that have an element above
///              the seed and none that was reached, each as its lowest such element has it
/// returns      the number of flips; 0 without columns; -1 rows of `connect` or a misplaced
///              `UNSET_ID`; -2 shape of `neighbors`; -3 `seed`
///
/// A neighbor that does not hold the common edge is a conflict; one that holds only one of its
/// nodes, in row 0, passes for a neighbor that does (kept: callers rely on it), and is flipped if
/// it is the node at which the edge ends. A conflict sets the result to -2, and later flips count
/// on from there; while the result is negative each element compares itself to one neighbor only.
/// A surface that can't be oriented is no error. O(E); 4 bytes and 2 bits for each element, from
/// the standard allocator, whose `std::bad_alloc` passes before anything changes.
VOREL_API int mesh_reorient(dense2D<unsigned>& connect, dense2D<unsigned>& neighbors, unsigned seed,
                            int all_regions);

/// Lists the elements around each node, in the direction in which the elements run: anticlockwise
/// in an anticlockwise mesh. An inner node's list starts with its entry of `node_element`, that of
/// a node on the boundary at one end of the fan.
///
/// connect       3 x E or 4 x E (mixed linear)
/// neighbors     the shape of `connect`; entry (r, e) is the element across local edge r of e, and
///               an entry not below E no element
/// node_element  for each of N nodes an element that holds it, or `UNSET_ID`: no list
/// offsets       emptied first, then N + 1 entries: the list of node n goes from entry n to entry
///               n + 1
/// elements      emptied first, then the lists, node after node
/// returns       0; -1 rows of `connect`; -2 shape of `neighbors`; -3 entries of `node_element`;
///               -199
///
/// Only elements that can be reached across sides that touch the node are listed. When an element
/// on the way does not hold the node, a walk takes as many steps as there are columns without an
/// end, or the lists find no storage, the run ends there with status 0; `offsets` has then n + 2
/// entries for the node n where it ended. O(N + size of the lists); 4 bytes for each element beside
/// the outputs, and the longest fan from the standard allocator, whose `std::bad_alloc` passes.
VOREL_API int get_connected_elements(const dense2D<unsigned>& connect,
                                     const dense2D<unsigned>& neighbors,
                                     const dense1D<unsigned, 8>& node_element,
                                     dense1D<unsigned, 8>& offsets, dense1D<unsigned, 8>& elements);

// ------------------------------------------------------------------- interpolation of fields
//
// The functions of this family share their first arguments. Background nodes and targets stand in
// one matrix of nodes; the background elements are held by
//
// coords        2 x N
// connect       3 x E (T3) or 4 x E (Q4 or mixed), counterclockwise
// neighbors     shape of `connect`: the element across each local edge, or UNSET_ID
// node_element  N entries: some element that holds the node; UNSET_ID marks a target. An entry that
//               names no element marks a background node that no search starts from
// nodes         IDs below N: the nodes to serve, in that order; background nodes are passed over
//
// and `type` is ELEMENT_T3 with 3 rows, ELEMENT_Q4 or ELEMENT_ANY_FACE (mixed) with 4. Any other
// pair that passes the checks is nothing to do.
//
// Each target is located by itself. A quadtree of the nodes that elements use (H. Samet,
// The quadtree and related hierarchical data structures, 1984) gives an element near it, and a
// random walk leads from there (O. Devillers, S. Pion, M. Teillaud, Walking in a triangulation,
// 2002), repeated from all elements around the nearest node when it leaves the mesh. The draws are
// those of a Mersenne Twister with seed 1 on every call. A point outside an element by less than
// 1e-6 of the element's doubled area counts as inside. A target that is not located, also because
// the walk met a clockwise or flat element, takes the value of the nearest background node. One
// outside the bounding box of the nodes in use keeps its value. Nothing of that is reported.
//
// Cost: O(E) for the checks, O(N log N) for the tree, and for each target a descent in the tree and
// a few steps between elements; at worst E steps from each element around a node, when `neighbors`
// leads in circles. Memory: 1 byte for each node ID up to the largest in use, 4 bytes for each node
// in use, and the tree: about 15 bytes for each of nodes that are spread evenly, up to 512 where
// four and more nearly coincide. While it is built 32 bytes a node. When the list of nodes can't be
// begun no target is served; nodes that it has no room for later, or that no cells can be had for,
// are not found.

/// Gives each target the value of a field with any number of rows. This form searches nothing: it
/// checks its arguments and leaves every field as it is.
///
/// field     any rows x N
/// returns   0; checked in this order: 0 `nodes` is empty; -1 rows of `coords`; -2 `connect` is not
///           of the kind `type` or has IDs from N up; -3 shape or IDs of `neighbors`; -4 size of
///           `node_element`; -5 columns of `field`; -6 IDs of `nodes`
///
/// One value of working memory.
VOREL_API int interpolate(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                          const dense2D<unsigned>& neighbors,
                          const dense1D<unsigned, 8>& node_element, dense2D<double>& field,
                          const dense1D<unsigned, 8>& nodes, element_type type);

/// Gives each target the value of a scalar field: linear in a triangle, bilinear in a
/// quadrilateral, whose local coordinates are found by at most 10 passes of Newton's method.
///
/// field     N entries; those of background nodes are read, those of targets written one by one;
///           shares no element with `coords`
/// returns   as the form above, -5 for the size of `field`
VOREL_API int interpolate(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                          const dense2D<unsigned>& neighbors,
                          const dense1D<unsigned, 8>& node_element, dense1D<double, 8>& field,
                          const dense1D<unsigned, 8>& nodes, element_type type);

/// Gives each target a metric: simultaneous reduction of two metrics, sizes linear along the common
/// directions, nested over the triangle. A result that uses a metric which is not positive definite
/// is refused and the target keeps its own; on a node of the background its metric is copied,
/// whatever it holds. A value copied from the nearest node is not tested.
///
/// metrics     3 x N (m00 m01 m11) or 6 x N (m00 m01 m11 m02 m12 m22), per squared unit of length;
///             those of background nodes are read, those of targets written one by one; shares no
///             element with `coords`
/// keep_valid  a target whose metric has only eigenvalues above 0 keeps it
/// returns     0; checked in this order: 0 `nodes` is empty; -1 rows of `coords`; -2 `connect` is
///             not all triangles, whatever `type` says, or has IDs from N up; -3 shape or IDs of
///             `neighbors`; -4 size of `node_element`; -5 columns or rows of `metrics`; -6 IDs of
///             `nodes`
///
/// With 6 rows a call of LAPACK's dspev or two for each target.
VOREL_API int interpolate_metrics(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                                  const dense2D<unsigned>& neighbors,
                                  const dense1D<unsigned, 8>& node_element,
                                  dense2D<double>& metrics, const dense1D<unsigned, 8>& nodes,
                                  bool keep_valid, element_type type);

/// As above with all N nodes in the list, of which `node_element` tells the targets: no nodes is
/// nothing to do, -199 when there is no memory for the list (4 bytes a node), -6 does not occur.
VOREL_API int interpolate_metrics(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                                  const dense2D<unsigned>& neighbors,
                                  const dense1D<unsigned, 8>& node_element,
                                  dense2D<double>& metrics, bool keep_valid, element_type type);

/// Gives each target a size, the wanted edge length: linear in a triangle. In a quadrilateral
/// linear along three of its sides; inside and on the side from corner 1 to corner 2 bilinear at
/// ((xi + 3) / 4, (eta + 3) / 4). A result that uses a size which is not above 0 is refused and the
/// target keeps its own; a value copied from the nearest node is not tested.
///
/// sizes       N entries; those of background nodes are read, those of targets written one by one;
///             shares no element with `coords`
/// keep_valid  a target whose size is above 0 and below the largest double keeps it
/// returns     0; checked in this order: 0 `nodes` is empty; -1 rows of `coords`; -2 `connect` is
///             not of the kind `type` or has IDs from N up; -3 shape or IDs of `neighbors`; -4 size
///             of `node_element`; -5 size of `sizes`; -6 IDs of `nodes`
VOREL_API int interpolate_metrics(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                                  const dense2D<unsigned>& neighbors,
                                  const dense1D<unsigned, 8>& node_element,
                                  dense1D<double, 8>& sizes, const dense1D<unsigned, 8>& nodes,
                                  bool keep_valid, element_type type);

/// As above with all N nodes in the list, as for metrics.
VOREL_API int interpolate_metrics(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                                  const dense2D<unsigned>& neighbors,
                                  const dense1D<unsigned, 8>& node_element,
                                  dense1D<double, 8>& sizes, bool keep_valid, element_type type);

// ------------------------------------------------------------------- curvature and metric fields

/// Second fundamental form of a parametric surface at the nodes of a triangulation of its parameter
/// plane, from first derivatives alone: line integrals around the ring of triangles of each node
/// (Green's theorem), divided by the ring's area. With n the unit vector of Su x Sv at the node,
/// the form is (-n.Suu, -n.Suv, -n.Svv): positive where the surface bends away from n. It does not
/// depend on the orientation of the triangles. On the boundary the ring is open and the missing
/// part is left out. A node in no triangle, or in triangles flat in the parameter plane only, gets
/// zeros.
///
/// uvs          2 x K parameters (u, v)
/// connect      3 x E, IDs below K; an empty one is nothing to do: 0, with `forms` empty
/// derivatives  6 x K: Su in rows 0 to 2, Sv in rows 3 to 5
/// forms        replaced: 3 x K, rows L, M, N of the form; empty on every other return
/// returns      0; -1 rows of `uvs`; -2 rows or IDs of `connect`; -3 shape of `derivatives`; -199
///
/// O(E + K); 64 bytes a node besides the result.
VOREL_API int parametric_curvatures(const dense2D<double>& uvs, const dense2D<unsigned>& connect,
                                    const dense2D<double>& derivatives, dense2D<double>& forms);

/// Principal directions and curvatures at the nodes of a triangulated surface, from the tensor that
/// the dihedral angles of a patch of triangles around the node make along its edges (the normal
/// cycle of a polyhedral surface: Cohen-Steiner and Morvan, 2003). The patch grows from the first
/// triangle that holds the node across edges, as far as centroids lie within `radius` of it. An
/// edge is not crossed when it is a ridge, when the normals beside it enclose `max_angle` or more,
/// or, while that is tested, when a triangle beside it has no area.
///
/// coords         3 x N
/// connect        3 x E, IDs below N; an empty one is nothing to do: 0, with `curvatures` unchanged
/// neighbors      3 x E: entry (k, e) is the triangle across the edge of e opposite its node k.
///                Only the columns are checked; an entry that names no triangle is no neighbour
/// radius         of a patch, in units of `coords`; its sign is lost. With 0 or NaN patches are
///                single triangles and the values 0
/// max_angle      in radians, of which the cosine counts; pi, or NaN, switches the test off
/// max_triangles  growth of a patch ends when it has that many; it may have two more
/// ridges         2 x R edges that a patch may not cross, IDs below N; may be empty
/// curvatures     replaced: 8 x N. Rows 0 to 2 and 3 to 5 are the directions, unit vectors; row 6
///                is the eigenvalue of largest magnitude, row 7 the second. Edges add up along
///                themselves, so the first direction runs along the sharp edges, across the
///                strongest bending. Convex surfaces with outward normals have negative values. A
///                second value not above a thousandth of the first has no direction of its own: it
///                gets the one across the first and the normal of the patch's first triangle. A
///                node in no triangle, in a patch without area or whose eigenvalues LAPACK fails to
///                find: zeros
/// returns        0; -1 rows of `coords`; -2 rows or IDs of `connect`; -3 columns of `neighbors`;
///                -7 rows or IDs of `ridges`; -199, with `curvatures` empty
///
/// The cost of a node follows its patch. About 150 bytes a triangle, 4 a node and up to 60 a ridge
/// besides the result. When storage for a patch's list is refused the triangle concerned is left
/// out, and a ridge that the set of ridges has no room for is crossed.
VOREL_API int principal_curvatures(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                                   const dense2D<unsigned>& neighbors, double radius,
                                   double max_angle, unsigned max_triangles,
                                   const dense2D<unsigned>& ridges, dense2D<double>& curvatures);

/// A metric field from a triangulated surface: each triangle proposes, at each of its nodes, the
/// mean edge length h of the node in its plane and a chosen size along its normal; the proposals of
/// a node and what its column held before are intersected (see `minimum_metric`).
///
/// coords       3 x N or more rows, which count in edge lengths; normals use rows 0 to 2
/// connect      3 x E, IDs below N
/// normal_size  size along the normal: 0 (or NaN) asks for h, a positive one for itself, a negative
///              one for |normal_size| * h
/// metrics      grows: 6 x M, rows m00, m01, m11, m02, m12, m22. M is the larger of its present
///              column count and the largest ID of `connect` plus 1 (an empty `connect` counts as
///              the ID 0); new columns start at zero, which constrains nothing. Columns of other
///              nodes keep their values
/// returns      0; -1 rows of `coords`; -2 rows or IDs of `connect`; -4 rows of `metrics`; -199,
///              with nothing changed
///
/// An edge whose squared length is 0 or not finite does not count. A triangle is left at its first
/// node without an edge that counts. The tangent frame of a triangle starts from that of the one
/// before it: after a triangle whose normal is not finite no later one proposes a usable metric.
/// O(E), three intersections a triangle; 12 bytes a node besides the result.
VOREL_API int metrics_gen_aniso3d(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                                  double normal_size, dense2D<double>& metrics);

} // namespace vorel::tessalo2d
