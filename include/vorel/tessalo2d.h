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

// ----------------------------------------------------------------------------- structured grids

// --------------------------------------------------------------------------------- connectivity

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
// Each target is located by itself. A quadtree of the nodes that elements use (D. Meagher,
// Geometric modeling using octree encoding, 1982, in the plane) gives an element near it, and a
// random walk leads from there (O. Devillers, S. Pion, M. Teillaud, Walking in a triangulation,
// 2002), repeated from all elements around the nearest node when it leaves the mesh. The draws are
// those of a Mersenne Twister with seed 1 on every call. A point outside an element by less than
// 1e-6 of the element's doubled area counts as inside. A target that is not located, also because
// the walk met a clockwise or flat element, takes the value of the nearest background node. One
// outside the bounding box of the nodes in use keeps its value. Nothing of that is reported.
//
// Cost: O(E) for the checks, O(N log N) for the tree, and for each target a descent in the tree and
// a few steps between elements; at worst E steps from each element around a node, when `neighbors`
// leads in circles. Memory: 9 bytes for each node ID in use and 4 cells of 16 bytes for about three
// nodes, and while the tree is built 32 bytes a node. When the tree has no memory, no target is
// served.

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
/// field     N entries; those of background nodes are read, those of targets written one by one
/// returns   as the form above, -5 for the size of `field`
VOREL_API int interpolate(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                          const dense2D<unsigned>& neighbors,
                          const dense1D<unsigned, 8>& node_element, dense1D<double, 8>& field,
                          const dense1D<unsigned, 8>& nodes, element_type type);

/// Gives each target a metric: simultaneous reduction of two metrics, sizes linear along the common
/// directions, nested over the triangle. A result that uses a metric which is not positive definite
/// is refused and the target keeps its own; a value copied from the nearest node is not tested.
///
/// metrics     3 x N (m00 m01 m11) or 6 x N (m00 m01 m11 m02 m12 m22), per squared unit of
/// `coords`;
///             those of background nodes are read, those of targets written one by one
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
/// sizes       N entries; those of background nodes are read, those of targets written one by one
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

} // namespace vorel::tessalo2d
