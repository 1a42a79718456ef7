#include "interpolation/anisotropy.h"

#include "interpolation/carried_metrics.h"
#include "interpolation/local_coordinates.h"
#include "support/matrices.h"

#include <cmath>
#include <limits>

namespace support {

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

constexpr double LARGEST = std::numeric_limits<double>::max();

double size_at(double x, double y)
{
    return 1.0 + 0.5 * std::sin(x) * std::cos(2 * y);
}

/// Calls `inside(node, column, quad, local)` or `nearest(node, from)` for each target in order, as
/// the plain search places it; a target that `keeps(node)` when its turn comes takes no draw.
template <class Keeps, class Inside, class Nearest>
void in_order(const background& b, Keeps keeps, Inside inside, Nearest nearest)
{
    plain::draws d;
    const plain::tree t = plain::filled(b.plain());
    for (const unsigned node : b.targets) {
        if (b.node_element[node] != UNSET_ID || keeps(node)) continue;
        const auto [element, from] = plain::place_of(b.plain(), t, node, d);
        if (element == UNSET_ID) {
            if (from != UNSET_ID) nearest(node, from);
            continue;
        }
        const unsigned* const n = b.connect.column(element);
        const vec2 p = load<2>(b.coords.column(node));
        vec2 local;
        const bool quad = b.plain().corners(element) == 4;
        if (quad)
            (void)local_coords_Q4(b.coords.column(0), b.coords.ld, n, p, local, 1e-12);
        else
            (void)local_coords_T3(b.coords.column(0), b.coords.ld, n, p, local);
        inside(node, n, quad, local);
    }
}

/// By the leading minors, which are all above 0.
bool is_positive(const dense2D<double>& metrics, unsigned node)
{
    const double* const m = metrics.column(node);
    const double plane = m[0] * m[2] - m[1] * m[1];
    if (!(m[0] > 0.0) || !(plane > 0.0)) return false;
    if (metrics.rows == 3) return true;
    return m[5] * plane - m[4] * (m[0] * m[4] - m[1] * m[3]) + m[3] * (m[1] * m[4] - m[2] * m[3]) >
           0.0;
}

template <std::size_t D>
dense2D<double> expected_metrics_of_dimension(const background& b, const dense2D<double>& before,
                                              bool keep_valid)
{
    dense2D<double> m = support::copy_of(before);
    const auto store = [&](unsigned node, const symmetric_fixed<double, D>& value) {
        for (std::size_t k = 0; k < value.size; ++k) m(k, node) = value[k];
    };
    in_order(
        b, [&](unsigned node) { return keep_valid && is_positive(m, node); },
        [&](unsigned node, const unsigned* n, bool quad, const vec2& local) {
            symmetric_fixed<double, D> value;
            const bool accepted = quad ? interpolate_metric_quad_columns<D>(
                                             m, local[0], local[1], n[0], n[1], n[2], n[3], value)
                                       : interpolate_metric_triangle<D>(m, local[0], local[1], n[0],
                                                                        n[1], n[2], value);
            if (accepted) store(node, value);
        },
        [&](unsigned node, unsigned from) { store(node, metric_column<D>(m, from)); });
    return m;
}

} // namespace

int run(const background& b, dense1D<double, 8>& sizes, bool keep_valid)
{
    return interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, sizes, b.targets,
                               keep_valid, b.type);
}

int run(const background& b, dense2D<double>& metrics, bool keep_valid)
{
    return interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, metrics, b.targets,
                               keep_valid, b.type);
}

dense1D<double, 8> sizes_of(const background& b, double at_targets)
{
    dense1D<double, 8> sizes(b.coords.cols, at_targets);
    for (std::size_t j = 0; j < b.coords.cols; ++j)
        if (b.node_element[j] != UNSET_ID) sizes[j] = size_at(b.coords(0, j), b.coords(1, j));
    return sizes;
}

dense2D<double> metrics_of(const background& b, std::size_t rows)
{
    dense2D<double> metrics(rows, b.coords.cols, 0.0);
    for (std::size_t j = 0; j < b.coords.cols; ++j) {
        if (b.node_element[j] == UNSET_ID) continue;
        const double x = b.coords(0, j);
        const double y = b.coords(1, j);
        metrics(0, j) = 2 + std::sin(x);
        metrics(1, j) = 0.3 * std::cos(x + y);
        metrics(2, j) = 3 + std::cos(y);
        if (rows == 6) {
            metrics(3, j) = 0.1 * std::sin(y);
            metrics(4, j) = -0.2;
            metrics(5, j) = 1.5 + 0.2 * std::sin(x - y);
        }
    }
    return metrics;
}

dense2D<double> expected_metrics(const background& b, const dense2D<double>& before,
                                 bool keep_valid)
{
    return before.rows == 3 ? expected_metrics_of_dimension<2>(b, before, keep_valid)
                            : expected_metrics_of_dimension<3>(b, before, keep_valid);
}

dense1D<double, 8> expected_sizes(const background& b, const dense1D<double, 8>& before,
                                  bool keep_valid)
{
    dense1D<double, 8> h;
    EXPECT_TRUE(h.copy(before));
    in_order(
        b, [&](unsigned node) { return keep_valid && h[node] > 0.0 && h[node] < LARGEST; },
        [&](unsigned node, const unsigned* n, bool quad, const vec2& local) {
            double value = 0;
            const bool accepted =
                quad ? interpolate_size_quad(local[0], local[1], h[n[0]], h[n[1]], h[n[2]], h[n[3]],
                                             value)
                     : interpolate_size_triangle(h, local[0], local[1], n[0], n[1], n[2], value);
            if (accepted) h[node] = value;
        },
        [&](unsigned node, unsigned from) { h[node] = h[from]; });
    return h;
}

background unit_triangle(const std::vector<plain::point>& points)
{
    const support::mesh m{"triangle", {{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}, {{0, 1, 2}}};
    return support::with_targets(m, ELEMENT_T3, points);
}

background unit_square(const std::vector<plain::point>& points)
{
    const support::mesh m{
        "square", {{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}}, {{0, 1, 2, 3}}};
    return support::with_targets(m, ELEMENT_Q4, points);
}

} // namespace support
