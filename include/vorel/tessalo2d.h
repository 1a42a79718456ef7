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

// ------------------------------------------------------------------------------------ splitting

// ------------------------------------------------------------------------------------ extrusion

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
///           `connectQ`; -199, the counts of columns are then as before
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
///           -5 rows of `connectT`; -199, the counts of columns are then as before
///
/// A loop with M = 0 passes the checks when L is 2 N + 1: no element is made, and the last N - 1
/// columns of `coords` are cut off. -199 if there are fewer.
VOREL_API int mesh_struct_T3(dense2D<double>& coords, const dense1D<unsigned, 8>& boundary,
                             unsigned N, int pattern, dense2D<unsigned>& connectT);

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
/// A neighbor that does not hold the common edge is a conflict. It sets the result to -2, and later
/// flips count on from there; while the result is negative each element compares itself to one
/// neighbor only. A surface that can't be oriented is no error. O(E); 4 bytes and 2 bits for each
/// element, from the standard allocator, before anything changes.
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
/// on the way does not hold the node, or the lists find no storage, the run ends there with status
/// 0; `offsets` has then at most n + 2 entries for the node n where it ended. O(size of the
/// lists); 4 bytes for each element beside the outputs.
VOREL_API int get_connected_elements(const dense2D<unsigned>& connect,
                                     const dense2D<unsigned>& neighbors,
                                     const dense1D<unsigned, 8>& node_element,
                                     dense1D<unsigned, 8>& offsets, dense1D<unsigned, 8>& elements);

// ------------------------------------------------------------------- interpolation of fields

// ------------------------------------------------------------------- curvature and metric fields

} // namespace vorel::tessalo2d
