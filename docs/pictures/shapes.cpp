#include "shapes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <utility>

namespace pictures {

using vorel::UNSET_ID;

mesh grid(unsigned nx, unsigned ny, cells kind, double jitter)
{
    std::mt19937 draw(2);
    const auto shift = [&] {
        return jitter * (2.0 * (static_cast<double>(draw()) * 0x1p-32) - 1.0);
    };
    mesh m;
    for (unsigned j = 0; j <= ny; ++j)
        for (unsigned i = 0; i <= nx; ++i) {
            const bool inner = i > 0 && j > 0 && i < nx && j < ny;
            const double dx = inner ? shift() : 0.0;
            const double dy = inner ? shift() : 0.0;
            add_node(m.coords, {i + dx, j + dy});
        }
    for (unsigned j = 0; j < ny; ++j)
        for (unsigned i = 0; i < nx; ++i) {
            const unsigned a = j * (nx + 1) + i;
            const unsigned b = a + 1;
            const unsigned c = a + nx + 2;
            const unsigned d = a + nx + 1;
            bool kept = true;
            const auto put = [&](const std::vector<unsigned>& column) {
                const std::size_t rows = kind == cells::triangles ? 3 : 4;
                kept = kept && m.connect.resize(rows, m.connect.cols + 1);
                for (std::size_t k = 0; kept && k < rows; ++k)
                    m.connect(k, m.connect.cols - 1) = column[k];
            };
            if (kind == cells::quads || (kind == cells::mixed && draw() % 3 != 0)) {
                put({a, b, c, d});
            } else if ((i + j) % 2) {
                put({a, b, c, UNSET_ID});
                put({c, d, a, UNSET_ID});
            } else {
                put({b, c, d, UNSET_ID});
                put({d, a, b, UNSET_ID});
            }
            require(kept ? 0 : -199, "resize");
        }
    return m;
}

void lift(mesh& m, const std::function<void(double, double, double*)>& place)
{
    vorel::dense2D<double> space(3, m.coords.cols);
    for (std::size_t n = 0; n < m.coords.cols; ++n)
        place(m.coords(0, n), m.coords(1, n), space.column(n));
    m.coords = space;
}

vorel::dense2D<unsigned> neighbors_of(const vorel::dense2D<unsigned>& connect)
{
    vorel::dense2D<unsigned> neighbors(connect.rows, connect.cols, UNSET_ID);
    std::map<std::pair<unsigned, unsigned>, std::pair<std::size_t, std::size_t>> open;
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const std::vector<unsigned> ring = corners(connect, e);
        const std::size_t n = ring.size();
        for (std::size_t k = 0; k < n; ++k) {
            const unsigned a = ring[n == 3 ? (k + 1) % 3 : k];
            const unsigned b = ring[n == 3 ? (k + 2) % 3 : (k + 1) % 4];
            const auto [place, is_first] = open.try_emplace(std::minmax(a, b), k, e);
            if (is_first) continue;
            const auto [other_k, other_e] = place->second;
            neighbors(k, e) = static_cast<unsigned>(other_e);
            neighbors(other_k, other_e) = static_cast<unsigned>(e);
        }
    }
    return neighbors;
}

vorel::dense1D<unsigned> node_element_of(const vorel::dense2D<unsigned>& connect, std::size_t nodes)
{
    vorel::dense1D<unsigned> node_element(nodes, UNSET_ID);
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (const unsigned n : corners(connect, e)) node_element[n] = static_cast<unsigned>(e);
    return node_element;
}

unsigned add_node(vorel::dense2D<double>& coords, const std::vector<double>& place)
{
    const std::size_t node = coords.cols;
    require(coords.resize(place.size(), node + 1) ? 0 : -199, "resize");
    std::copy(place.begin(), place.end(), coords.column(node));
    return static_cast<unsigned>(node);
}

mesh line(const std::vector<std::vector<double>>& points)
{
    mesh m;
    for (const std::vector<double>& p : points) {
        const unsigned node = add_node(m.coords, p);
        if (node == 0) continue;
        require(append_column(m.connect, {node - 1, node}) ? 0 : -199, "append_column");
    }
    return m;
}

std::vector<point> airfoil(unsigned points)
{
    // The mean line of two parabolas, and the thickness across it.
    const double camber = 0.04;
    const double summit = 0.4;
    const double thickness = 0.12;
    const double pi = std::acos(-1.0);
    std::vector<point> outline;
    for (unsigned k = 0; k <= points; ++k) {
        const double t = 2.0 * k / points - 1.0; // upper side below 0
        const double x = 0.5 * (1.0 - std::cos(pi * std::fabs(t)));
        const bool front = x < summit;
        const double part = front ? summit : 1.0 - summit;
        const double y =
            front ? camber / (part * part) * (2.0 * summit * x - x * x)
                  : camber / (part * part) * (1.0 - 2.0 * summit + 2.0 * summit * x - x * x);
        const double slope = 2.0 * camber / (part * part) * (summit - x);
        const double half =
            5.0 * thickness *
            (0.2969 * std::sqrt(x) + x * (-0.126 + x * (-0.3516 + x * (0.2843 - 0.1036 * x))));
        const double side = t < 0.0 ? 1.0 : -1.0;
        const double norm = std::sqrt(1.0 + slope * slope);
        outline.push_back({x - side * half * slope / norm, y + side * half / norm});
    }
    return outline;
}

channel around_airfoil(unsigned along, unsigned across)
{
    const double pi = std::acos(-1.0);
    std::vector<point> upper = airfoil(2 * along);
    upper.resize(along + 1);
    channel c;
    c.across = across;
    const auto add = [&](double x, double y) { c.loop.append(add_node(c.coords, {x, y})); };
    const auto graded = [&](unsigned k) { return (std::pow(8.0, double(k) / across) - 1.0) / 7.0; };
    const auto outer = [&](unsigned k) {
        const double angle = pi * k / along;
        return point{0.5 + 0.95 * std::cos(angle), 0.75 * std::sin(angle)};
    };
    // Outwards at the trailing edge, along the bow, inwards at the nose, back on the airfoil.
    const auto between = [&](unsigned k, unsigned at) {
        const point p = upper[at];
        const point q = outer(at);
        add(p.x + graded(k) * (q.x - p.x), p.y + graded(k) * (q.y - p.y));
    };
    for (unsigned k = 0; k < across; ++k) between(k, 0);
    for (unsigned k = 0; k < along; ++k) add(outer(k).x, outer(k).y);
    for (unsigned k = across; k > 0; --k) between(k, along);
    for (unsigned k = along; k > 0; --k) add(upper[k].x, upper[k].y);
    c.loop.append(0);
    return c;
}

} // namespace pictures
