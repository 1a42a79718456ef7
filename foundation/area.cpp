// The area of a mesh.
#include "foundation/area.h"

#include "foundation/status.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cstdint>

namespace vorel::tessalo2d {

namespace {

/// Columns that are checked and summed while they are in the nearest cache.
constexpr std::size_t BLOCK = 512;

/// Nodes and some columns of a mesh as the kernels read them.
struct columns {
    const double* points;
    std::size_t point_ld;
    const unsigned* connect;
    std::size_t ld;
    std::size_t count;

    const unsigned* operator[](std::size_t j) const { return connect + j * ld; }

    /// Corner k of two columns.
    template <int D>
    vec<D, lanes> corner(int k, const unsigned* a, const unsigned* b) const
    {
        return load_both<D>(points + a[k] * point_ld, points + b[k] * point_ld);
    }
};

/// Doubled areas of the triangles of two columns.
template <int D>
struct two_triangles {
    lanes operator()(const columns& mesh, const unsigned* a, const unsigned* b) const
    {
        return triangle_double_area(mesh.corner<D>(0, a, b), mesh.corner<D>(1, a, b),
                                    mesh.corner<D>(2, a, b));
    }
};

/// Doubled areas of the quadrilaterals of two columns.
template <int D>
struct two_quads {
    lanes operator()(const columns& mesh, const unsigned* a, const unsigned* b) const
    {
        return quad_double_area(mesh.corner<D>(0, a, b), mesh.corner<D>(1, a, b),
                                mesh.corner<D>(2, a, b), mesh.corner<D>(3, a, b));
    }
};

/// `sum` and the doubled areas of triangles, added in column order.
template <int D>
double add_triangles(const columns& mesh, double sum)
{
    for (std::size_t j = 0; j < mesh.count; j += 2) {
        // An odd last column goes with itself.
        const bool pair = j + 1 < mesh.count;
        const lanes both = two_triangles<D>()(mesh, mesh[j], mesh[j + pair]);
        sum += both[0];
        if (pair) sum += both[1];
    }
    return sum;
}

/// Writes what `kernel` gives for the listed columns to their places in `values`. The list has room
/// for one entry more than its `count`.
template <class Kernel>
void work_off(const columns& mesh, std::uint16_t* list, std::size_t count, double* values)
{
    if (count == 0) return;
    list[count] = list[count - 1];
    for (std::size_t i = 0; i < count; i += 2) {
        const lanes both = Kernel()(mesh, mesh[list[i]], mesh[list[i + 1]]);
        values[list[i]] = both[0];
        values[list[i + 1]] = both[1];
    }
}

/// As `add_triangles` for columns of four rows. Each kind of element is listed and worked off by
/// itself, which leaves no branch to mispredict; the sum then goes by column.
template <int D>
double add_mixed(const columns& mesh, double sum)
{
    std::uint16_t triangles[BLOCK + 1];
    std::uint16_t quads[BLOCK + 1];
    std::size_t triangle_count = 0;
    std::size_t quad_count = 0;
    for (std::size_t j = 0; j < mesh.count; ++j) {
        triangles[triangle_count] = quads[quad_count] = static_cast<std::uint16_t>(j);
        const bool quad = mesh[j][3] < UNSET_ID;
        quad_count += quad;
        triangle_count += !quad;
    }
    double values[BLOCK];
    work_off<two_triangles<D>>(mesh, triangles, triangle_count, values);
    work_off<two_quads<D>>(mesh, quads, quad_count, values);
    for (std::size_t j = 0; j < mesh.count; ++j) sum += values[j];
    return sum;
}

/// Sums the doubled areas, and checks each block of columns ahead of its sum. False when a check
/// fails.
bool sum_double_areas(const dense2D<double>& coords, const dense2D<unsigned>& connect, double& sum)
{
    const bool mixed = connect.rows == 4;
    const element_type form = mixed ? ELEMENT_ANY_FACE : ELEMENT_T3;
    const auto add = coords.rows == 2 ? (mixed ? add_mixed<2> : add_triangles<2>)
                                      : (mixed ? add_mixed<3> : add_triangles<3>);
    const unsigned bound = node_bound(coords);
    dense2D<unsigned> block = connect;
    for (std::size_t first = 0; first < connect.cols; first += BLOCK) {
        block.offset = connect.offset + first * connect.ld;
        block.cols = std::min(BLOCK, connect.cols - first);
        if (!tessalo::check_IDs(block, form, bound)) return false;
        sum = add({coords.column(0), coords.ld, block.column(0), block.ld, block.cols}, sum);
    }
    return true;
}

} // namespace

int area(const dense2D<double>& coords, const dense2D<unsigned>& connect, double& result)
{
    result = 0.0;
    if (is_empty(connect)) return success;
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    if (!has_rows(connect, 3, 4)) return bad_argument(2);
    double sum = 0.0;
    if (!sum_double_areas(coords, connect, sum)) return bad_argument(2);
    result = sum * 0.5;
    return success;
}

} // namespace vorel::tessalo2d
