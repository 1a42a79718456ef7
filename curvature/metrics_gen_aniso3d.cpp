// A metric field from a surface: the local mesh size in the tangent planes, a chosen size along the
// normals. Each triangle proposes a metric at its nodes; the proposals of a node are intersected.
#include "curvature/complete_frame.h"
#include "foundation/status.h"
#include "measures/triangle_normal.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cmath>

namespace vorel::tessalo2d {

namespace {

unsigned largest_entry(const dense2D<unsigned>& connect)
{
    unsigned largest = 0;
    const unsigned* column = connect.block->data + connect.offset;
    for (std::size_t e = 0; e < connect.cols; ++e, column += connect.ld)
        for (int k = 0; k < 3; ++k) largest = std::max(largest, column[k]);
    return largest;
}

double distance(const double* a, const double* b, std::size_t dimension)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < dimension; ++i) sum += (b[i] - a[i]) * (b[i] - a[i]);
    return std::sqrt(sum);
}

/// The mean length of the edges at each node into `sizes`, 0 where there is none. An edge counts
/// once for each triangle that holds it; one of no length or of no finite length does not count.
void mean_edge_lengths(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                       dense1D<double, 8>& sizes, dense1D<unsigned, 8>& counts)
{
    const double* const points = coords.column(0);
    const std::size_t point_ld = coords.ld;
    const std::size_t dimension = coords.rows;
    double* const sum = sizes.begin();
    unsigned* const count = counts.begin();
    const unsigned* column = connect.block->data + connect.offset;
    for (std::size_t e = 0; e < connect.cols; ++e, column += connect.ld)
        for (int k = 0; k < 3; ++k) {
            const unsigned a = column[k];
            const unsigned b = column[k < 2 ? k + 1 : 0];
            const double l = distance(points + a * point_ld, points + b * point_ld, dimension);
            if (l == 0.0 || !std::isfinite(l)) continue;
            sum[a] += l;
            sum[b] += l;
            ++count[a];
            ++count[b];
        }
    for (std::size_t i = 0; i < sizes.size; ++i)
        if (count[i] > 0) sum[i] /= count[i];
}

/// The eigenvalue along the normal where the tangent one is `t`: the size asked for is h itself
/// for a `normal_size` of 0 (or NaN), that size when positive, |normal_size| * h when negative.
double normal_eigenvalue(double normal_size, double t)
{
    if (normal_size > 0.0) return 1.0 / (normal_size * normal_size);
    if (normal_size < 0.0) return t / (normal_size * normal_size);
    return t;
}

/// t (UU' + VV') + w nn', packed.
symmetric_fixed<double, 3> tangent_metric(double t, const vec3& u, const vec3& v, double w,
                                          const vec3& n)
{
    symmetric_fixed<double, 3> m;
    std::size_t at = 0;
    for (int p = 0; p < 3; ++p)
        for (int q = 0; q <= p; ++q) m[at++] = t * u[p] * u[q] + t * v[p] * v[q] + w * n[p] * n[q];
    return m;
}

} // namespace

int metrics_gen_aniso3d(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                        double normal_size, dense2D<double>& metrics)
{
    if (coords.rows < 3) return bad_argument(1);
    if (!has_rows(connect, 3)) return bad_argument(2);
    const std::size_t largest = largest_entry(connect);
    if (largest >= coords.cols) return bad_argument(2);
    if (!takes_rows(metrics, 6)) return bad_argument(4);

    const std::size_t nodes = largest + 1;
    dense1D<double, 8> sizes;
    dense1D<unsigned, 8> counts;
    if (!sizes.resize(nodes, 0.0) || !counts.resize(nodes, 0u)) return out_of_memory;
    if (!metrics.resize(6, std::max(metrics.cols, nodes), 0.0)) return out_of_memory;

    mean_edge_lengths(coords, connect, sizes, counts);

    // The frame of one triangle is the hint for the next.
    vec3 u = {{0.0, 0.0, 0.0}};
    vec3 v = {{0.0, 0.0, 0.0}};
    const std::size_t elements = connect.cols;
    for (std::size_t e = 0; e < elements; ++e) {
        const unsigned* const column = connect.column(e);
        vec3 n = normalized(triangle_normal(coords.column(0), coords.ld, column));
        complete_frame(n, u, v);
        for (int k = 0; k < 3; ++k) {
            const double h = sizes[column[k]];
            // A node without a usable size ends the triangle: kept, callers rely on it.
            if (!(h > 0.0) || !std::isfinite(h)) break;
            const double t = 1.0 / (h * h);
            const auto proposal = tangent_metric(t, u, v, normal_eigenvalue(normal_size, t), n);
            double* const target = metrics.column(column[k]);
            symmetric_fixed<double, 3> present;
            std::copy(target, target + 6, present.data);
            symmetric_fixed<double, 3> result;
            // The result is stored in any case.
            (void)tessalo::minimum_metric(proposal, present, result);
            std::copy(result.data, result.data + 6, target);
        }
    }
    return success;
}

} // namespace vorel::tessalo2d
