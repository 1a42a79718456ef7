// The calls of the functions that interpolate, that carry metrics and that measure curvature.
#include "golden_calls.h"

#include <algorithm>
#include <utility>

namespace golden {

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

/// Metrics of all kinds: most positive definite, some diagonal, equal, singular or none at all.
dense2D<double> metrics_of(std::size_t rows, std::size_t n)
{
    integers draw(rows);
    dense2D<double> m(rows, n, 0.0);
    for (std::size_t j = 0; j < n; ++j) {
        double* const p = m.column(j);
        const unsigned kind = draw.below(12);
        for (const std::size_t i : {0u, 2u, 5u})
            if (i < rows) p[i] = kind == 0 ? 1.0 : 1.0 + 3.0 * draw.unit();
        if (kind == 1) p[2] = -p[2];
        if (kind == 2) p[0] = 0.0;
        if (kind < 4) continue;
        for (const std::size_t i : {1u, 3u, 4u})
            if (i < rows) p[i] = 0.45 * draw.both_signs();
        // A large ratio of sizes.
        if (kind == 4)
            for (std::size_t i = 0; i < rows; ++i) p[i] *= 0x1p+40;
    }
    return m;
}

dense1D<double, 8> numbers(std::size_t n)
{
    integers draw(77);
    dense1D<double, 8> v(n);
    for (std::size_t i = 0; i < n; ++i) v[i] = draw.below(16) == 0 ? 0.0 : 0.25 + draw.unit();
    return v;
}

} // namespace

std::vector<golden_call> interpolation_calls()
{
    return {
        {"interpolate(matrix)",
         [](const char* function, const inputs& in, results& out) {
             for (const background& b : in.backgrounds) {
                 out.from(function, b.of.name);
                 dense2D<double> field = metrics_of(3, b.of.coords.cols);
                 out.before("field", field);
                 out.add("status", interpolate(b.of.coords, b.of.connect, b.of.neighbors,
                                               b.of.node_element, field, b.nodes, b.type));
                 out.add("field", field);
             }
         }},
        {"interpolate(scalars)",
         [](const char* function, const inputs& in, results& out) {
             for (const background& b : in.backgrounds) {
                 out.from(function, b.of.name);
                 dense1D<double, 8> field = numbers(b.of.coords.cols);
                 out.before("field", field);
                 out.add("status", interpolate(b.of.coords, b.of.connect, b.of.neighbors,
                                               b.of.node_element, field, b.nodes, b.type));
                 out.add("field", field);
             }
         }},
        {"interpolate_metrics(matrix, nodes)",
         [](const char* function, const inputs& in, results& out) {
             for (const background& b : in.backgrounds)
                 for (const std::size_t rows : {3u, 6u}) {
                     out.from(function, b.of.name + ", rows " + std::to_string(rows));
                     dense2D<double> metrics = metrics_of(rows, b.of.coords.cols);
                     out.before("metrics", metrics);
                     out.add("status", interpolate_metrics(b.of.coords, b.of.connect,
                                                           b.of.neighbors, b.of.node_element,
                                                           metrics, b.nodes, false, b.type));
                     out.add("metrics", metrics);
                 }
         }},
        {"interpolate_metrics(matrix)",
         [](const char* function, const inputs& in, results& out) {
             for (const background& b : in.backgrounds)
                 for (const std::size_t rows : {3u, 6u}) {
                     out.from(function, b.of.name + ", rows " + std::to_string(rows));
                     dense2D<double> metrics = metrics_of(rows, b.of.coords.cols);
                     for (std::size_t j = 0; j < metrics.cols; j += 2)
                         if (b.of.node_element[j] == UNSET_ID)
                             std::fill_n(metrics.column(j), rows, 0.0);
                     out.before("metrics", metrics);
                     out.add("status",
                             interpolate_metrics(b.of.coords, b.of.connect, b.of.neighbors,
                                                 b.of.node_element, metrics, true, b.type));
                     out.add("metrics", metrics);
                 }
         }},
        {"interpolate_metrics(sizes, nodes)",
         [](const char* function, const inputs& in, results& out) {
             for (const background& b : in.backgrounds) {
                 out.from(function, b.of.name);
                 dense1D<double, 8> sizes = numbers(b.of.coords.cols);
                 out.before("sizes", sizes);
                 out.add("status",
                         interpolate_metrics(b.of.coords, b.of.connect, b.of.neighbors,
                                             b.of.node_element, sizes, b.nodes, false, b.type));
                 out.add("sizes", sizes);
             }
         }},
        {"interpolate_metrics(sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const background& b : in.backgrounds) {
                 out.from(function, b.of.name);
                 dense1D<double, 8> sizes = numbers(b.of.coords.cols);
                 for (std::size_t j = 0; j < sizes.size; j += 2)
                     if (b.of.node_element[j] == UNSET_ID) sizes[j] = 0.0;
                 out.before("sizes", sizes);
                 out.add("status", interpolate_metrics(b.of.coords, b.of.connect, b.of.neighbors,
                                                       b.of.node_element, sizes, true, b.type));
                 out.add("sizes", sizes);
             }
         }},
    };
}

std::vector<golden_call> metric_calls()
{
    return {
        {"metrics_struct(sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const loop& l : in.loops) {
                 out.from(function, l.name);
                 dense1D<double, 8> sizes = numbers(l.coords.cols);
                 out.before("sizes", sizes);
                 out.add("status", metrics_struct(l.boundary, l.n, sizes));
                 out.add("sizes", sizes);
             }
         }},
        {"metrics_struct(metrics)",
         [](const char* function, const inputs& in, results& out) {
             for (const loop& l : in.loops)
                 for (const std::size_t rows : {3u, 6u}) {
                     out.from(function, l.name + ", rows " + std::to_string(rows));
                     dense2D<double> metrics = metrics_of(rows, l.coords.cols);
                     out.before("metrics", metrics);
                     out.add("status", metrics_struct(l.boundary, l.n, metrics));
                     out.add("metrics", metrics);
                 }
         }},
        {"parametric_curvatures",
         [](const char* function, const inputs& in, results& out) {
             for (const mesh& m : in.plane) {
                 if (m.connect.rows != 3) continue;
                 out.from(function, m.name);
                 dense2D<double> derivatives = metrics_of(6, m.coords.cols);
                 dense2D<double> forms;
                 out.add("status", parametric_curvatures(m.coords, m.connect, derivatives, forms));
                 out.add("forms", forms);
             }
         }},
        {"principal_curvatures",
         [](const char* function, const inputs& in, results& out) {
             constexpr double PI = 0x1.921fb54442d18p+1;
             for (const mesh& m : in.space) {
                 if (m.connect.rows != 3) continue;
                 dense2D<unsigned> ridges;
                 for (unsigned i = 0; i < 4; ++i) {
                     const unsigned ends[] = {m.connect(i % 3, i * 5), m.connect(i % 2, i * 7)};
                     (void)append_column(ridges, ends);
                 }
                 const std::pair<double, double> limits[] = {{2.5, PI}, {1.5, 1.0}, {1e9, 0.6}};
                 for (const auto& [radius, angle] : limits) {
                     out.from(function, m.name + ", radius " + std::to_string(radius));
                     dense2D<double> curvatures;
                     out.add("status", principal_curvatures(m.coords, m.connect, m.neighbors,
                                                            radius, angle, 40, ridges, curvatures));
                     out.add("curvatures", curvatures);
                 }
             }
         }},
        {"metrics_gen_aniso3d",
         [](const char* function, const inputs& in, results& out) {
             for (const mesh& m : in.space) {
                 if (m.connect.rows != 3) continue;
                 for (const double size : {0.0, 0.125, -0.3}) {
                     out.from(function, m.name + ", size " + std::to_string(size));
                     dense2D<double> metrics = metrics_of(6, 20);
                     out.before("metrics", metrics);
                     out.add("status", metrics_gen_aniso3d(m.coords, m.connect, size, metrics));
                     out.add("metrics", metrics);
                 }
             }
         }},
    };
}

} // namespace golden
