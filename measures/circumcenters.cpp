// Circumcenters of the triangles of a mesh.
#include "measures/circumcenters.h"

#include "foundation/status.h"

#include <vorel/tessalo2d.h>

#include <algorithm>

namespace vorel::tessalo2d {

namespace {

template <int D>
void circumcenter(const dense2D<double>& coords, const unsigned* nodes, double& radius2,
                  double* center)
{
    const circumcircle<D> circle =
        circumcircle_of(load<D>(coords.column(nodes[0])), load<D>(coords.column(nodes[1])),
                        load<D>(coords.column(nodes[2])));
    radius2 = circle.radius2;
    store<D>(circle.center, center);
}

/// A few triangles, component by component, so that the arithmetic runs on whole registers.
template <int D>
struct triangle_block {
    static constexpr std::size_t SIZE = 64;

    vec<D> corner(int i, std::size_t k) const
    {
        vec<D> p;
        for (int d = 0; d < D; ++d) p[d] = corners[i][d][k];
        return p;
    }

    double corners[3][D][SIZE];
    double centers[D][SIZE];
};

template <int D>
void compute_centers(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                     dense2D<double>& centers)
{
    constexpr std::size_t SIZE = triangle_block<D>::SIZE;
    const double* const points = coords.block->data + coords.offset;
    const std::size_t point_ld = coords.ld;
    const unsigned* column = connect.block->data + connect.offset;
    const std::size_t column_ld = connect.ld;
    double* to = centers.block->data + centers.offset;
    const std::size_t to_ld = centers.ld;
    const std::size_t elements = connect.cols;

    triangle_block<D> block;
    for (std::size_t first = 0; first < elements; first += SIZE) {
        const std::size_t count = std::min(SIZE, elements - first);
        for (std::size_t k = 0; k < count; ++k, column += column_ld)
            for (int i = 0; i < 3; ++i) {
                const double* const point = points + column[i] * point_ld;
                for (int d = 0; d < D; ++d) block.corners[i][d][k] = point[d];
            }
        for (std::size_t k = 0; k < count; ++k) {
            const vec<D> center =
                circumcircle_of(block.corner(0, k), block.corner(1, k), block.corner(2, k)).center;
            for (int d = 0; d < D; ++d) block.centers[d][k] = center[d];
        }
        for (std::size_t k = 0; k < count; ++k, to += to_ld)
            for (int d = 0; d < D; ++d) to[d] = block.centers[d][k];
    }
}

} // namespace

void circumcenter_2d(const dense2D<double>& coords, const unsigned* nodes, double& radius2,
                     double center[2])
{
    circumcenter<2>(coords, nodes, radius2, center);
}

void circumcenter_3d(const dense2D<double>& coords, const unsigned* nodes, double& radius2,
                     double center[3])
{
    circumcenter<3>(coords, nodes, radius2, center);
}

int circumcenters(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                  dense2D<double>& centers)
{
    centers.clear();
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    if (!has_rows(connect, 3)) return bad_argument(2);
    if (!tessalo::check_IDs(connect, ELEMENT_T3, node_bound(coords))) return bad_argument(2);
    // Writing to a block that the coordinates share would take them away.
    if (shares_block(centers, coords)) centers = dense2D<double>();
    const std::size_t elements = connect.cols;
    if (!centers.resize(coords.rows, elements)) return out_of_memory;
    if (elements == 0) return success;

    if (coords.rows == 2)
        compute_centers<2>(coords, connect, centers);
    else
        compute_centers<3>(coords, connect, centers);
    return success;
}

} // namespace vorel::tessalo2d
