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

// ------------------------------------------------------------------- curvature and metric fields

/// Second fundamental form of a parametric surface at the nodes of a triangulation of its parameter
/// plane, from first derivatives alone: line integrals around the ring of triangles of each node
/// (Green's theorem), divided by the ring's area. With n the unit vector of Su x Sv at the node,
/// the form is (-n.Suu, -n.Suv, -n.Svv): positive where the surface bends away from n. It does not
/// depend on the orientation of the triangles. On the boundary the ring is open and the missing
/// part is left out. A node in no triangle, or in triangles flat in the parameter plane only, gets
/// zeros.
///
/// uvs          2 x N parameters (u, v)
/// connect      3 x E, IDs below N
/// derivatives  6 x N: Su in rows 0 to 2, Sv in rows 3 to 5
/// forms        replaced: 3 x N, rows L, M, N of the form; empty on every other return
/// returns      0; -1 rows of `uvs`; -2 rows or IDs of `connect`; -3 shape of `derivatives`; -199
///
/// O(E + N); 64 bytes a node besides the result.
VOREL_API int parametric_curvatures(const dense2D<double>& uvs, const dense2D<unsigned>& connect,
                                    const dense2D<double>& derivatives, dense2D<double>& forms);

/// Principal directions and curvatures at the nodes of a triangulated surface, from the tensor that
/// the dihedral angles of a patch of triangles around the node make along its edges (the normal
/// cycle of a polyhedral surface: Cohen-Steiner and Morvan, 2003). The patch grows from the first
/// triangle that holds the node across edges, as far as centroids lie within `radius` of it. An
/// edge is not crossed when it is a ridge or when the normals beside it enclose more than
/// `max_angle`.
///
/// coords         3 x N
/// connect        3 x E, IDs below N
/// neighbors      3 x E: entry (k, e) is the triangle across the edge of e opposite its node k.
/// Only
///                the columns are checked; an entry that names no triangle is no neighbour
/// radius         of a patch, in units of `coords`; its sign is lost. With 0 or NaN patches are
///                single triangles and the values 0
/// max_angle      in radians; pi or more, or NaN, switches the test off
/// max_triangles  growth of a patch ends when it has that many; it may have two more
/// ridges         2 x R edges that a patch may not cross, IDs below N; may be empty
/// curvatures     replaced: 8 x N. Rows 0 to 2 and 3 to 5 are the directions, unit vectors; row 6
/// is
///                the eigenvalue of largest magnitude, row 7 the second. Edges add up along
///                themselves, so the first direction runs along the sharp edges, across the
///                strongest bending. Convex surfaces with outward normals have negative values. A
///                second value below a thousandth of the first has no direction of its own: it gets
///                the one across the first and the normal. A node in no triangle or in a patch
///                without area: zeros
/// returns        0; -1 rows of `coords`; -2 rows or IDs of `connect`; -3 columns of `neighbors`;
///                -7 rows or IDs of `ridges`; -199, with `curvatures` empty
///
/// The cost of a node follows its patch. About 150 bytes a triangle and 4 a node besides the
/// result. When storage for a patch's list is refused the triangle concerned is left out.
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
///              the ID 0); new columns start at zero, which constrains nothing. The columns of
///              other nodes keep their values
/// returns      0; -1 rows of `coords`; -2 rows or IDs of `connect`; -4 rows of `metrics`; -199,
/// with
///              nothing changed
///
/// Edges of zero or infinite length do not count. A triangle is left at its first node without an
/// edge that counts. O(E), three intersections a triangle; 12 bytes a node besides the result.
VOREL_API int metrics_gen_aniso3d(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                                  double normal_size, dense2D<double>& metrics);

} // namespace vorel::tessalo2d
