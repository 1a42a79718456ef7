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
/// On every other return the outputs are empty. An angle that is not a number is taken over and the
/// next corner's angle takes its place. O(E), the time of the `atan2` calls; no other allocation.
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

// ----------------------------------------------------------------------------- order conversion

// ------------------------------------------------------------------------------------ splitting

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

// ----------------------------------------------------------------------------- structured grids

// --------------------------------------------------------------------------------- connectivity

// ------------------------------------------------------------------- interpolation of fields

// ------------------------------------------------------------------- curvature and metric fields

} // namespace vorel::tessalo2d
