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
/// node,
///                 ...), IDs below N or unset. The nodes of an edge are consecutive from the first
///                 one on, in the direction of the ends; they keep their coordinates. Of two
///                 columns for the same edge the first gives the direction and the last the nodes.
///                 A column with an unset ID in rows 0 to 2 is ignored.
/// returns         0, also when all three counts are 0 (`result` is then empty); -1 rows of
///                 `coords`, checked first, then `result` is unchanged; -2 rows or IDs of
///                 `connect`; -4 `quad_nodes`; -5 `triangle_nodes`; -6 rows or IDs of `edges`; -199
///                 out of memory or of node IDs. `coords` is unchanged on all but 0.
///
/// Each output is grown once. O(E) at about 8 bytes a side and 4 bytes a node of working storage.
/// When that can't be had a hash table takes its place, and an edge that this table has no storage
/// for gets `UNSET_ID` for its nodes.
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
/// IDs
///          of `edges`; -199 out of memory or of node IDs. On -199 `coords` may have the new nodes
///          already; `result` is unchanged on all but 0.
///
/// O(E); memory for the high-order connectivity on the way, and what that conversion takes.
VOREL_API int split_into_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                            dense2D<unsigned>& result, const dense2D<unsigned>& edges);

// ------------------------------------------------------------------------------------ extrusion

// ----------------------------------------------------------------------------- structured grids

// --------------------------------------------------------------------------------- connectivity

// ------------------------------------------------------------------- interpolation of fields

// ------------------------------------------------------------------- curvature and metric fields

} // namespace vorel::tessalo2d
