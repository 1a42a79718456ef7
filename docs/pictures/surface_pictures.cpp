// The pictures of the families that work on surfaces in space.
#include "pictures.h"
#include "shapes.h"

#include <algorithm>
#include <cmath>

using namespace vorel;

namespace pictures {

namespace {

const double pi = std::acos(-1.0);

/// Numbers spread from 0 to 1.
std::vector<double> spread(std::vector<double> values)
{
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    const double from = *low;
    const double range = *high - from;
    for (double& x : values) x = range > 0.0 ? (x - from) / range : 0.5;
    return values;
}

/// The means of a value of nodes over the elements.
std::vector<double> over_elements(const dense2D<unsigned>& connect, const std::vector<double>& node)
{
    std::vector<double> mean(connect.cols, 0.0);
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const std::vector<unsigned> ring = corners(connect, e);
        for (const unsigned n : ring) mean[e] += node[n] / static_cast<double>(ring.size());
    }
    return mean;
}

/// The heights of elements, for colours.
std::vector<double> heights(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    std::vector<double> z(coords.cols);
    for (std::size_t n = 0; n < coords.cols; ++n) z[n] = coords(2, n);
    return spread(over_elements(connect, z));
}

mesh hills(unsigned n, cells kind)
{
    mesh m = grid(n, n, kind, 0.15);
    lift(m, [&](double x, double y, double* p) {
        const double u = 6.0 * x / n;
        const double v = 6.0 * y / n;
        p[0] = u;
        p[1] = v;
        p[2] = 0.55 * std::sin(1.2 * u) * std::cos(1.1 * v) + 0.3 * std::cos(0.5 * u);
    });
    return m;
}

mesh torus(unsigned around, unsigned section)
{
    mesh m;
    for (unsigned i = 0; i < around; ++i)
        for (unsigned j = 0; j < section; ++j) {
            const double u = 2.0 * pi * i / around;
            const double v = 2.0 * pi * j / section;
            const double r = 2.4 + std::cos(v);
            add_node(m.coords, {r * std::cos(u), r * std::sin(u), std::sin(v)});
        }
    for (unsigned i = 0; i < around; ++i)
        for (unsigned j = 0; j < section; ++j) {
            const unsigned a = i * section + j;
            const unsigned b = (i + 1) % around * section + j;
            const unsigned c = (i + 1) % around * section + (j + 1) % section;
            const unsigned d = i * section + (j + 1) % section;
            const bool done =
                (i + j) % 2
                    ? append_column(m.connect, {a, b, c}) && append_column(m.connect, {c, d, a})
                    : append_column(m.connect, {b, c, d}) && append_column(m.connect, {d, a, b});
            require(done ? 0 : -199, "append_column");
        }
    return m;
}

} // namespace

void draw_measures(canvas& c, point at)
{
    const mesh plane = grid(8, 8, cells::mixed, 0.3);
    const view v(plane.coords, {at.x + 40, at.y + 30}, {at.x + 260, at.y + 250});
    draw_mesh(c, v, plane.coords, plane.connect, poor_angles(plane.coords, plane.connect));
    c.text({at.x + 150, at.y + 282}, "angles: the smallest of each");

    const mesh surface = hills(12, cells::quads);
    dense2D<double> normals;
    require(tessalo2d::normals(surface.coords, surface.connect, 1.0, true, normals), "normals");
    const view s(surface.coords, {at.x + 310, at.y + 60}, {at.x + 600, at.y + 250}, 30, 32);
    draw_mesh(c, s, surface.coords, surface.connect, heights(surface.coords, surface.connect), 0.4);
    for (std::size_t n = 0; n < surface.coords.cols; n += 3) {
        const double* const p = surface.coords.column(n);
        const double* const d = normals.column(n);
        c.arrow(s(p), s(p[0] + 0.5 * d[0], p[1] + 0.5 * d[1], p[2] + 0.5 * d[2]), ACCENT);
    }
    c.text({at.x + 455, at.y + 282}, "normals at the nodes of a surface");

    const mesh triangles = grid(3, 3, cells::triangles, 0.14);
    dense2D<double> centers;
    require(tessalo2d::circumcenters(triangles.coords, triangles.connect, centers),
            "circumcenters");
    const view t(triangles.coords, {at.x + 650, at.y + 42}, {at.x + 850, at.y + 242});
    draw_mesh(c, t, triangles.coords, triangles.connect);
    for (std::size_t e = 0; e < centers.cols; ++e) {
        const double* const p = triangles.coords.column(triangles.connect(0, e));
        const double dx = p[0] - centers(0, e);
        const double dy = p[1] - centers(1, e);
        draw_ellipse(c, t, {centers(0, e), centers(1, e)}, 1, 0, 1, std::sqrt(dx * dx + dy * dy),
                     e % 4 == 0 ? SECOND : "#c9d3e3", e % 4 == 0 ? 1.2 : 0.7);
    }
    for (std::size_t e = 0; e < centers.cols; ++e) c.dot(t(centers.column(e)), 3.0, ACCENT);
    c.text({at.x + 750, at.y + 282}, "circumcenters");
}

void draw_screw(canvas& c, point at, double width, double height)
{
    // The outline of an airfoil, turned and raised: a blade of one and a half turns.
    std::vector<std::vector<double>> points;
    for (const point& p : airfoil(48)) points.push_back({3.0 * (p.x - 0.5), 3.0 * p.y, 0.0});
    mesh blade = line(points);
    const vector_fixed<double, 3> axis = {{0, 0, 0}};
    const vector_fixed<double, 3> turn = {{0, 0, 0.75 * pi}};
    const vector_fixed<double, 3> rise = {{0, 0, 4.4}};
    dense2D<unsigned> quads;
    require(tessalo2d::extrude_spiral_Q4(blade.coords, blade.connect, axis, turn, rise, 30, quads),
            "extrude_spiral_Q4");
    const view v(blade.coords, at, {at.x + width, at.y + height}, 35, 24);
    draw_mesh(c, v, blade.coords, quads, heights(blade.coords, quads), 0.4);
}

void draw_extrusion(canvas& c, point at)
{
    std::vector<std::vector<double>> points;
    for (int k = 0; k <= 28; ++k) {
        const double x = 0.25 * k;
        points.push_back({x, 0.0, 0.6 * std::sin(1.7 * x)});
    }
    mesh sheet = line(points);
    dense2D<unsigned> quads;
    const vector_fixed<double, 3> along = {{0, 6, 0}};
    require(tessalo2d::extrude_translate_Q4(sheet.coords, sheet.connect, along, 0.12, 0.9, false,
                                            quads),
            "extrude_translate_Q4");
    const view v(sheet.coords, {at.x + 20, at.y + 50}, {at.x + 290, at.y + 250}, 25, 35);
    draw_mesh(c, v, sheet.coords, quads, heights(sheet.coords, quads), 0.4);
    c.text({at.x + 155, at.y + 282}, "extrude_translate_Q4, layers by size");

    points.clear();
    for (int k = 0; k <= 26; ++k) {
        const double z = k / 26.0 * 3.0;
        points.push_back({0.75 + 0.35 * std::sin(2.3 * z + 0.4), 0.0, z});
    }
    mesh vase = line(points);
    const vector_fixed<double, 3> origin = {{0, 0, 0}};
    const vector_fixed<double, 3> turn = {{0, 0, 1.55 * pi}};
    dense2D<unsigned> triangles;
    require(tessalo2d::extrude_rotate_T3(vase.coords, vase.connect, origin, turn, 30, 2, triangles),
            "extrude_rotate_T3");
    const view w(vase.coords, {at.x + 330, at.y + 24}, {at.x + 570, at.y + 258}, 140, 20);
    draw_mesh(c, w, vase.coords, triangles, heights(vase.coords, triangles), 0.4);
    c.text({at.x + 450, at.y + 282}, "extrude_rotate_T3, pattern 2");

    draw_screw(c, {at.x + 630, at.y + 20}, 240, 240);
    c.text({at.x + 750, at.y + 282}, "extrude_spiral_Q4");
}

void draw_torus(canvas& c, point at, double width, double height)
{
    const mesh m = torus(36, 16);
    const dense2D<unsigned> no_ridges;
    dense2D<double> curvatures;
    require(tessalo2d::principal_curvatures(m.coords, m.connect, neighbors_of(m.connect), 0.8, 1.5,
                                            400, no_ridges, curvatures),
            "principal_curvatures");
    std::vector<double> gauss(m.coords.cols);
    for (std::size_t n = 0; n < m.coords.cols; ++n)
        gauss[n] = 0.5 + 0.8 * curvatures(6, n) * curvatures(7, n);
    const view v(m.coords, at, {at.x + width, at.y + height}, 0, 48);
    draw_mesh(c, v, m.coords, m.connect, over_elements(m.connect, gauss), 0.2, true);
    // Strokes along the weak bending, on the side that faces the viewer.
    dense2D<double> normals;
    require(tessalo2d::normals(m.coords, m.connect, 1.0, true, normals), "normals");
    for (std::size_t n = 0; n < m.coords.cols; ++n) {
        const double* const p = m.coords.column(n);
        const double* const d = normals.column(n);
        const double tip[3] = {p[0] + d[0], p[1] + d[1], p[2] + d[2]};
        if (v.depth(tip) - v.depth(p) < 0.25) continue;
        const double* a = curvatures.column(n);
        const double* b = a + 3;
        const double length = 0.13;
        for (const double* const e : {a, b}) {
            const std::vector<point> stroke = {
                v(p[0] - length * e[0], p[1] - length * e[1], p[2] - length * e[2]),
                v(p[0] + length * e[0], p[1] + length * e[1], p[2] + length * e[2])};
            // An eigenvector has no sign: from left to right.
            const bool turned = stroke[0].x > stroke[1].x;
            c.path(turned ? std::vector<point>{stroke[1], stroke[0]} : stroke,
                   e == a ? "#ffffff" : "#8c2f1b", 1.1);
        }
    }
}

void draw_curvature(canvas& c, point at)
{
    draw_torus(c, {at.x + 10, at.y + 30}, 330, 220);
    c.text({at.x + 175, at.y + 282}, "principal_curvatures");

    // A graph over its parameters: z = f(u, v), with exact derivatives.
    mesh m = grid(18, 18, cells::triangles, 0.15);
    const mesh parameters = m;
    dense2D<double> derivatives(6, m.coords.cols);
    const auto height = [](double u, double v) {
        return 0.9 * std::sin(0.36 * u) * std::sin(0.3 * v);
    };
    for (std::size_t n = 0; n < m.coords.cols; ++n) {
        const double u = m.coords(0, n);
        const double v = m.coords(1, n);
        const double column[6] = {1, 0, 0.324 * std::cos(0.36 * u) * std::sin(0.3 * v),
                                  0, 1, 0.27 * std::sin(0.36 * u) * std::cos(0.3 * v)};
        std::copy(column, column + 6, derivatives.column(n));
    }
    dense2D<double> forms;
    require(tessalo2d::parametric_curvatures(parameters.coords, m.connect, derivatives, forms),
            "parametric_curvatures");
    std::vector<double> trace(m.coords.cols);
    for (std::size_t n = 0; n < m.coords.cols; ++n)
        trace[n] = 0.5 + 4.0 * (forms(0, n) + forms(2, n));
    lift(m, [&](double u, double v, double* p) {
        p[0] = u;
        p[1] = v;
        p[2] = 3.0 * height(u, v);
    });
    const view w(m.coords, {at.x + 350, at.y + 50}, {at.x + 600, at.y + 250}, 30, 35);
    draw_mesh(c, w, m.coords, m.connect, over_elements(m.connect, trace), 0.3);
    c.text({at.x + 475, at.y + 282}, "parametric_curvatures: L + N");

    // A folded sheet from the side. Sizes are those of its edges along it and a third of that
    // across it; where it bends the metrics of both sides are intersected.
    const auto profile = [](double x) { return std::fabs(std::fmod(x, 6.0) - 3.0); };
    mesh s = grid(9, 2, cells::triangles);
    lift(s, [&](double x, double y, double* p) {
        p[0] = 0.4 * x + 0.04 * x * x;
        p[1] = y;
        p[2] = profile(x);
    });
    dense2D<double> metrics;
    require(tessalo2d::metrics_gen_aniso3d(s.coords, s.connect, -0.33, metrics),
            "metrics_gen_aniso3d");
    const std::size_t middle = 10;
    dense2D<double> side(2, 10);
    std::vector<point> sheet;
    for (std::size_t k = 0; k < side.cols; ++k) {
        side(0, k) = s.coords(0, middle + k);
        side(1, k) = s.coords(2, middle + k);
    }
    const view z(side, {at.x + 660, at.y + 60}, {at.x + 865, at.y + 240});
    for (std::size_t k = 0; k < side.cols; ++k) sheet.push_back(z(side.column(k)));
    c.path(sheet, INK, 1.6);
    for (std::size_t k = 0; k < side.cols; ++k) {
        const double* const m6 = metrics.column(middle + k);
        c.dot(sheet[k], 1.8, INK);
        draw_ellipse(c, z, {side(0, k), side(1, k)}, m6[0], m6[3], m6[5], 0.45, ACCENT);
    }
    c.text({at.x + 760, at.y + 282}, "metrics_gen_aniso3d, from the side");
}

} // namespace pictures
