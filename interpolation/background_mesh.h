// A background mesh as the kernels of localisation read it: plain pointers and strides, and what
// the storage forms differ in.
#pragma once

#include "foundation/area.h"
#include "foundation/prefetch.h"
#include "foundation/vec.h"

#include <vorel/dense2D.h>
#include <vorel/element_type.h>

namespace vorel::tessalo2d {

/// Storage form: all triangles, all quadrilaterals, or both in four rows, a triangle having
/// `UNSET_ID` in row 3.
enum class mesh_form { T3, Q4, mixed };

template <mesh_form F>
inline bool is_quad(const unsigned* column)
{
    if constexpr (F == mesh_form::mixed) return column[3] != UNSET_ID;
    return F == mesh_form::Q4;
}

/// Pointers into the caller's matrices; valid as long as those don't grow. Node IDs in the columns
/// are below the node count, neighbours below the element count or `UNSET_ID`.
struct background_mesh {
    background_mesh(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                    const dense2D<unsigned>& neighbors)
        : points(coords.column(0)),
          point_ld(coords.ld),
          nodes(connect.column(0)),
          node_ld(connect.ld),
          sides(neighbors.column(0)),
          side_ld(neighbors.ld),
          elements(connect.cols)
    {
    }

    vec2 point(unsigned node) const { return load<2>(points + node * point_ld); }
    const unsigned* column(unsigned element) const { return nodes + element * node_ld; }
    const unsigned* neighbors(unsigned element) const { return sides + element * side_ld; }

    void prefetch_columns(unsigned element) const
    {
        prefetch(column(element));
        prefetch(neighbors(element));
    }
    template <mesh_form F>
    void prefetch_points(unsigned element) const
    {
        const unsigned* const n = column(element);
        const unsigned corners = is_quad<F>(n) ? 4 : 3;
        for (unsigned i = 0; i < corners; ++i) prefetch(points + n[i] * point_ld);
    }

    const double* points;
    std::size_t point_ld;
    const unsigned* nodes;
    std::size_t node_ld;
    const unsigned* sides;
    std::size_t side_ld;
    std::size_t elements;
};

} // namespace vorel::tessalo2d
