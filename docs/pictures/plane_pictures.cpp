// The pictures of the families that work in the plane.
#include "pictures.h"
#include "shapes.h"

#include <algorithm>
#include <cmath>

using namespace vorel;

namespace pictures {

namespace {

/// Marks nodes from `first` on.
void mark_nodes(canvas& c, const view& v, const dense2D<double>& coords, std::size_t first)
{
    for (std::size_t n = first; n < coords.cols; ++n) c.dot(v(coords.column(n)), 2.4, ACCENT);
}

} // namespace

std::vector<double> poor_angles(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    dense1D<double> low;
    dense1D<double> high;
    require(tessalo2d::angles(coords, connect, true, low, high), "angles");
    std::vector<double> poor;
    for (const double quality : low) poor.push_back(0.3 + 0.9 * (1.0 - quality));
    return poor;
}

void draw_conversion(canvas& c, point at)
{
    const dense2D<unsigned> no_edges;
    const mesh source = grid(3, 3, cells::mixed, 0.16);
    const auto place = [&](double x) {
        return view(source.coords, {at.x + x, at.y + 40}, {at.x + x + 190, at.y + 250});
    };

    // A copy of a matrix is a view on the same storage: what is changed in place gets its own.
    dense2D<double> coords;
    dense2D<unsigned> connect;
    require(coords.copy(source.coords) && connect.copy(source.connect) ? 0 : -199, "copy");
    require(tessalo2d::convert_into_quadratic(coords, connect), "convert_into_quadratic");
    draw_mesh(c, place(20), coords, connect);
    mark_nodes(c, place(20), coords, source.coords.cols);
    c.text({at.x + 115, at.y + 278}, "convert_into_quadratic");

    require(coords.copy(source.coords) ? 0 : -199, "copy");
    dense2D<unsigned> quads;
    require(tessalo2d::split_into_Q4(coords, source.connect, quads, no_edges), "split_into_Q4");
    draw_mesh(c, place(245), coords, quads, poor_angles(coords, quads));
    c.text({at.x + 340, at.y + 278}, "split_into_Q4");

    const mesh quad_mesh = grid(4, 4, cells::quads, 0.34);
    const auto cut = [&](double x, const dense2D<unsigned>& triangles, const char* name) {
        const view v(quad_mesh.coords, {at.x + x, at.y + 40}, {at.x + x + 190, at.y + 250});
        draw_mesh(c, v, quad_mesh.coords, triangles, poor_angles(quad_mesh.coords, triangles));
        c.text({at.x + x + 95, at.y + 278}, name);
    };
    dense2D<unsigned> fixed;
    require(tessalo2d::split_Q4_into_T3(quad_mesh.connect, fixed), "split_Q4_into_T3");
    cut(470, fixed, "split_Q4_into_T3, fixed");
    dense2D<unsigned> best;
    require(tessalo2d::split_Q4_into_T3(quad_mesh.coords, quad_mesh.connect, best),
            "split_Q4_into_T3");
    cut(695, best, "by quality");
}

void draw_airfoil_grid(canvas& c, point at, double width, double height)
{
    channel a = around_airfoil(44, 14);
    const std::size_t given = a.coords.cols;
    const unsigned along = static_cast<unsigned>(given) / 2 - a.across;
    dense2D<unsigned> quads;
    require(tessalo2d::mesh_struct_Q4(a.coords, a.loop, along, quads), "mesh_struct_Q4");
    const view v(a.coords, at, {at.x + width, at.y + height});
    draw_mesh(c, v, a.coords, quads, poor_angles(a.coords, quads), 0.5);
}

void draw_structured(canvas& c, point at)
{
    draw_airfoil_grid(c, {at.x + 20, at.y + 30}, 400, 220);
    c.text({at.x + 220, at.y + 278}, "mesh_struct_Q4: a loop, filled");

    // A surface of triangles before and after: those that run clockwise are marked.
    mesh m = grid(7, 7, cells::triangles, 0.2);
    for (std::size_t e = 1; e < m.connect.cols; e += 1 + e * e % 5)
        std::swap(m.connect(0, e), m.connect(2, e));
    dense2D<unsigned> neighbors = neighbors_of(m.connect);
    const auto show = [&](double x, const char* name) {
        const view v(m.coords, {at.x + x, at.y + 40}, {at.x + x + 190, at.y + 250});
        std::vector<double> turned;
        for (std::size_t e = 0; e < m.connect.cols; ++e) {
            double area = 0.0;
            const dense2D<unsigned> one{{m.connect(0, e), m.connect(1, e), m.connect(2, e)}};
            require(tessalo2d::area(m.coords, one, area), "area");
            turned.push_back(area < 0.0 ? 1.0 : 0.5);
        }
        draw_mesh(c, v, m.coords, m.connect, turned);
        c.text({at.x + x + 95, at.y + 278}, name);
    };
    show(460, "clockwise ones marked");
    require(tessalo2d::mesh_reorient(m.connect, neighbors, 0, 0), "mesh_reorient");
    show(690, "mesh_reorient");
}

namespace {

/// A background of triangles with fields on its nodes, and targets behind them.
struct transfer {
    mesh background = grid(5, 5, cells::triangles, 0.22);
    dense2D<double> coords = background.coords;
    dense2D<unsigned> neighbors = neighbors_of(background.connect);
    dense1D<unsigned> targets;
    dense1D<unsigned> node_element;

    transfer(unsigned across, double margin)
    {
        const double step = (5.0 - 2 * margin) / across;
        for (unsigned j = 0; j <= across; ++j)
            for (unsigned i = 0; i <= across; ++i)
                targets.append(add_node(coords, {margin + i * step, margin + j * step}));
        node_element = node_element_of(background.connect, coords.cols);
    }
};

double wave(double x, double y)
{
    return 0.5 + 0.28 * std::sin(1.3 * x) + 0.22 * std::cos(1.7 * y);
}

} // namespace

void draw_interpolation(canvas& c, point at)
{
    const transfer t(24, 0.0);
    const std::size_t given = t.background.coords.cols;
    dense1D<double> field(t.coords.cols, 0.0);
    for (std::size_t n = 0; n < given; ++n) field[n] = wave(t.coords(0, n), t.coords(1, n));
    require(tessalo2d::interpolate(t.coords, t.background.connect, t.neighbors, t.node_element,
                                   field, t.targets, ELEMENT_T3),
            "interpolate");
    const auto place = [&](double x) {
        return view(t.background.coords, {at.x + x, at.y + 30}, {at.x + x + 225, at.y + 255});
    };
    draw_mesh(c, place(40), t.coords, t.background.connect);
    for (std::size_t n = 0; n < given; ++n)
        c.dot(place(40)(t.coords.column(n)), 7.0, color(field[n]));
    c.text({at.x + 152, at.y + 282}, "a field on a background mesh");

    const view v = place(340);
    for (const unsigned n : t.targets) c.dot(v(t.coords.column(n)), 4.6, color(field[n]));
    c.text({at.x + 452, at.y + 282}, "interpolate: 625 targets");

    const transfer few(8, 0.4);
    dense2D<double> metrics(3, few.coords.cols, 0.0);
    for (std::size_t n = 0; n < given; ++n) {
        const double turn = 0.9 * few.coords(0, n) - 0.4 * few.coords(1, n);
        const double thin = 1.0 + 8.0 * wave(few.coords(0, n), few.coords(1, n));
        const double cs = std::cos(turn);
        const double sn = std::sin(turn);
        const double packed[] = {thin * cs * cs + sn * sn, (thin - 1.0) * cs * sn,
                                 thin * sn * sn + cs * cs};
        std::copy(packed, packed + 3, metrics.column(n));
    }
    require(tessalo2d::interpolate_metrics(few.coords, few.background.connect, few.neighbors,
                                           few.node_element, metrics, few.targets, false,
                                           ELEMENT_T3),
            "interpolate_metrics");
    const view w = place(640);
    draw_mesh(c, w, few.coords, few.background.connect, {}, 0.3);
    for (std::size_t n = 0; n < few.coords.cols; ++n)
        draw_ellipse(c, w, {few.coords(0, n), few.coords(1, n)}, metrics(0, n), metrics(1, n),
                     metrics(2, n), 0.24, n < given ? SECOND : ACCENT);
    c.text({at.x + 752, at.y + 282}, "interpolate_metrics: given, carried");
}

void draw_metrics(canvas& c, point at)
{
    // Two metrics in the plane z = 0, and what asks for the shorter edges of both.
    const auto packed = [](double turn, double h0, double h1) {
        const double a = 1.0 / (h0 * h0);
        const double b = 1.0 / (h1 * h1);
        const double cs = std::cos(turn);
        const double sn = std::sin(turn);
        return symmetric_fixed<double, 3>{
            {a * cs * cs + b * sn * sn, (a - b) * cs * sn, a * sn * sn + b * cs * cs, 0, 0, 1}};
    };
    const auto a = packed(0.3, 1.0, 0.35);
    const auto b = packed(1.5, 0.9, 0.45);
    symmetric_fixed<double, 3> both;
    require(tessalo::minimum_metric(a, b, both) ? 0 : -1, "minimum_metric");
    const dense2D<double> square{{-1, -1}, {1, 1}};
    const view v(square, {at.x + 40, at.y + 30}, {at.x + 265, at.y + 255});
    draw_ellipse(c, v, {0, 0}, a[0], a[1], a[2], 1.0, SECOND, 1.8);
    draw_ellipse(c, v, {0, 0}, b[0], b[1], b[2], 1.0, INK, 1.8);
    draw_ellipse(c, v, {0, 0}, both[0], both[1], both[2], 1.0, ACCENT, 2.6);
    c.text({at.x + 152, at.y + 282}, "minimum_metric of two");

    // A patch of 10 x 6 cells: metrics on its sides, carried over the inner nodes.
    const unsigned n = 10;
    const unsigned m = 6;
    dense2D<double> coords;
    dense1D<unsigned> loop;
    const auto add = [&](double x, double y) { loop.append(add_node(coords, {x, y})); };
    for (unsigned k = 0; k < n; ++k) add(k, 0);
    for (unsigned k = 0; k < m; ++k) add(n, k);
    for (unsigned k = n; k > 0; --k) add(k, m);
    for (unsigned k = m; k > 0; --k) add(0, k);
    loop.append(0);
    const std::size_t given = coords.cols;
    dense2D<double> metrics(3, given);
    dense1D<double> sizes(given, 0.0);
    for (std::size_t k = 0; k < given; ++k) {
        const double x = coords(0, k) / n;
        const auto p = packed(1.5 * x + 0.2 * coords(1, k), 1.0 - 0.3 * x, 0.35 + 0.3 * x);
        std::copy(p.data, p.data + 3, metrics.column(k));
        sizes[k] = 0.15 + 0.85 * std::fabs(x - 0.5) + 0.03 * coords(1, k);
    }
    dense2D<unsigned> quads;
    require(tessalo2d::mesh_struct_Q4(coords, loop, m, quads), "mesh_struct_Q4");
    require(tessalo2d::metrics_struct(loop, m, metrics), "metrics_struct");
    require(tessalo2d::metrics_struct(loop, m, sizes), "metrics_struct");
    const view w(coords, {at.x + 320, at.y + 30}, {at.x + 620, at.y + 255});
    for (std::size_t k = 0; k < coords.cols; ++k)
        draw_ellipse(c, w, {coords(0, k), coords(1, k)}, metrics(0, k), metrics(1, k),
                     metrics(2, k), 0.48, k < given ? SECOND : ACCENT);
    c.text({at.x + 470, at.y + 282}, "metrics_struct: on the sides, inside");

    const view s(coords, {at.x + 660, at.y + 30}, {at.x + 880, at.y + 255});
    for (std::size_t k = 0; k < coords.cols; ++k)
        c.dot(s(coords.column(k)), 10.0 * sizes[k], k < given ? SECOND : ACCENT);
    c.text({at.x + 770, at.y + 282}, "the same for sizes");
}

} // namespace pictures
