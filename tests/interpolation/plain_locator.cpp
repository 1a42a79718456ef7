#include "interpolation/plain_locator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace plain {

using namespace vorel;

namespace {

constexpr double MOST = std::numeric_limits<double>::max();

/// Which child of a cell of level + 1.
int child(const std::array<std::uint32_t, 2>& at, int level)
{
    return int(at[1] >> level & 1) * 2 + int(at[0] >> level & 1);
}

double squared(point a, point b)
{
    return (a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]);
}

/// Doubled area of the triangle (0, a, b) from its two shorter sides.
double doubled(point a, point b)
{
    const point d{b[0] - a[0], b[1] - a[1]};
    const double dd = d[0] * d[0] + d[1] * d[1];
    const double aa = a[0] * a[0] + a[1] * a[1];
    const double bb = b[0] * b[0] + b[1] * b[1];
    if (dd >= std::min(bb, aa)) return a[0] * b[1] - a[1] * b[0];
    return a[0] * d[1] - a[1] * d[0];
}

point minus(point a, point b)
{
    return {a[0] - b[0], a[1] - b[1]};
}

} // namespace

tree::tree(const dense2D<double>& coords_, point low_, point high_)
    : coords(coords_), low(low_), high(high_)
{
    const double extent = std::max(high[0] - low[0], high[1] - low[1]);
    const double size = extent > 0 ? extent * 1.000000000001 : 1e-12;
    for (std::size_t i = 0; i < 2; ++i) origin[i] = (low[i] + high[i]) * 0.5 - size * 0.5;
    scale = 4294967295.0 / size;
}

bool tree::in_box(point p) const
{
    return p[0] >= low[0] && p[0] <= high[0] && p[1] >= low[1] && p[1] <= high[1];
}

std::array<std::uint32_t, 2> tree::integers(point p) const
{
    std::array<std::uint32_t, 2> at{};
    for (std::size_t i = 0; i < 2; ++i) {
        const double t = (p[i] - origin[i]) * scale;
        if (t >= 0) at[i] = t > 4294967295.0 ? 0xFFFFFFFFu : std::uint32_t(t);
    }
    return at;
}

std::size_t tree::insert(const std::vector<unsigned>& ids)
{
    for (const unsigned id : ids) {
        if (!in_box(node(id))) continue;
        const entry e{id, integers(node(id))};
        const auto same = [&](const entry& other) { return other.at == e.at; };
        const bool refused = std::count_if(offered.begin(), offered.end(), same) >= 3;
        offered.push_back(e);
        if (!refused) stored.insert(id);
    }
    order(offered, 32);
    return stored.size();
}

void tree::order(const std::vector<entry>& offered_here, int level)
{
    if (offered_here.size() <= 3 || level == 0) {
        std::set<unsigned> ids;
        for (const entry& e : offered_here)
            if (stored.count(e.id)) ids.insert(e.id);
        traversal.insert(traversal.end(), ids.begin(), ids.end());
        return;
    }
    for (int k = 0; k < 4; ++k) {
        std::vector<entry> inside;
        for (const entry& e : offered_here)
            if (child(e.at, level - 1) == k) inside.push_back(e);
        order(inside, level - 1);
    }
}

bool tree::in_cell(const std::array<std::uint32_t, 2>& a, const std::array<std::uint32_t, 2>& b,
                   int level)
{
    return level >= 32 || (a[0] >> level == b[0] >> level && a[1] >> level == b[1] >> level);
}

int tree::leaf_level(point p) const
{
    const auto at = integers(p);
    for (int level = 32; level > 0; --level) {
        const auto inside = [&](const entry& e) { return in_cell(e.at, at, level); };
        if (std::count_if(offered.begin(), offered.end(), inside) <= 3) return level;
    }
    return 0;
}

unsigned tree::first(point p, double& distance2, const dense1D<unsigned, 8>& filter) const
{
    const auto at = integers(p);
    const int level = leaf_level(p);
    unsigned best = UNSET_ID;
    // The leaf, else the rest of its parent, else all others.
    for (const int reach : {level, level + 1, 33}) {
        for (const unsigned id : traversal)
            if (in_cell(integers(node(id)), at, reach)) offer(id, p, filter, best, distance2);
        if (best != UNSET_ID) break;
    }
    return best;
}

void tree::offer(unsigned id, point p, const dense1D<unsigned, 8>& filter, unsigned& best,
                 double& distance2) const
{
    if (id >= filter.size || filter[id] == UNSET_ID || id == best) return;
    const double d = squared(node(id), p);
    if (d < distance2) {
        distance2 = d;
        best = id;
    }
}

unsigned tree::approximate(point p, const dense1D<unsigned, 8>& filter) const
{
    if (stored.empty() || !in_box(p)) return UNSET_ID;
    double distance2 = MOST;
    return first(p, distance2, filter);
}

unsigned tree::nearest(point p, double& distance2, const dense1D<unsigned, 8>& filter) const
{
    if (stored.empty() || !in_box(p)) return UNSET_ID;
    unsigned best = first(p, distance2, filter);
    for (const unsigned id : traversal) offer(id, p, filter, best, distance2);
    return best;
}

unsigned mesh::corners(unsigned element) const
{
    return connect.rows == 4 && connect(3, element) != UNSET_ID ? 4 : 3;
}

int side_outside(const mesh& m, point p, unsigned element, double tolerance, int start)
{
    const unsigned n = m.corners(element);
    point corner[4] = {};
    for (unsigned i = 0; i < n; ++i)
        corner[i] = {m.coords(0, m.connect(i, element)), m.coords(1, m.connect(i, element))};
    double area;
    if (n == 3) {
        area = doubled(minus(corner[0], corner[2]), minus(corner[1], corner[2]));
    } else {
        const point e = minus(corner[2], corner[0]);
        const point f = minus(corner[3], corner[1]);
        area = f[1] * e[0] - e[1] * f[0];
    }
    if (!(area > 0) || !std::isfinite(area)) return -2;
    const double threshold = -(area * tolerance);
    for (unsigned k = 1; k <= n; ++k) {
        const unsigned side = (unsigned(start) + k) % n;
        const unsigned from = n == 3 ? (side + 1) % 3 : side;
        const unsigned to = n == 3 ? (side + 2) % 3 : (side + 1) % 4;
        if (!(doubled(minus(corner[from], p), minus(corner[to], p)) >= threshold)) return int(side);
    }
    return -1;
}

int walk(const mesh& m, point p, unsigned& element, double tolerance, std::size_t& steps, draws& d)
{
    steps = 0;
    int code;
    for (;;) {
        if (element == UNSET_ID) {
            code = 0;
            break;
        }
        if (steps++ >= m.connect.cols) {
            code = 0;
            break;
        }
        const unsigned n = m.corners(element);
        unsigned r = d.next();
        if (r >= n) r %= n;
        int s = side_outside(m, p, element, tolerance, int(r));
        if (s == -1) return 1;
        if (s < 0) {
            code = -1;
            break;
        }
        unsigned next = m.neighbors(unsigned(s), element);
        for (unsigned attempt = 1; next == UNSET_ID && attempt <= n - 1; ++attempt) {
            r = (r + 1) % n;
            s = side_outside(m, p, element, tolerance, int(r));
            next = m.neighbors(unsigned(s), element);
        }
        element = next;
    }
    if (steps == m.connect.cols) code = -2;
    element = UNSET_ID;
    return code;
}

int ball(const mesh& m, unsigned node, unsigned element, std::vector<unsigned>& list, bool& closed)
{
    closed = false;
    if (element == UNSET_ID) return 0;
    closed = true;
    std::set<unsigned> visited{element};
    std::vector<unsigned> stack{element};
    while (!stack.empty()) {
        const unsigned e = stack.back();
        stack.pop_back();
        const unsigned n = m.corners(e);
        unsigned i = 0;
        while (i < n && m.connect(i, e) != node) ++i;
        if (i == n) return -1;
        list.push_back(e);
        std::vector<unsigned> sides;
        if (n == 4)
            sides = {i, (i + 3) % 4};
        else
            sides = {(i + 2) % 3, (i + 1) % 3};
        for (const unsigned side : sides) {
            const unsigned next = m.neighbors(side, e);
            if (next == UNSET_ID)
                closed = false;
            else if (visited.insert(next).second)
                stack.push_back(next);
        }
    }
    return 0;
}

tree filled(const mesh& m)
{
    std::vector<unsigned> ids;
    std::set<unsigned> seen;
    for (std::size_t e = 0; e < m.connect.cols; ++e)
        for (unsigned i = 0; i < m.corners(unsigned(e)); ++i)
            if (seen.insert(m.connect(i, e)).second) ids.push_back(m.connect(i, e));
    point low{MOST, MOST};
    point high{-MOST, -MOST};
    for (const unsigned id : ids)
        for (unsigned i = 0; i < 2; ++i) {
            if (m.coords(i, id) < low[i]) low[i] = m.coords(i, id);
            if (m.coords(i, id) > high[i]) high[i] = m.coords(i, id);
        }
    if (m.connect.is_empty()) {
        low = {0, 0};
        high = {1, 1};
    }
    tree t(m.coords, low, high);
    t.insert(ids);
    return t;
}

bool locate(const mesh& m, const tree& t, point p, unsigned& element, draws& d)
{
    const auto start = [&](unsigned node) {
        return m.node_element[node] < m.connect.cols ? m.node_element[node] : UNSET_ID;
    };
    if (element == UNSET_ID) {
        const unsigned node = t.approximate(p, m.node_element);
        if (node == UNSET_ID) return false;
        element = start(node);
        if (element == UNSET_ID) return false;
    }
    std::size_t steps;
    int code = walk(m, p, element, 1e-6, steps, d);
    if (code == 0) {
        double distance2 = MOST;
        const unsigned node = t.nearest(p, distance2, m.node_element);
        if (node == UNSET_ID) return false;
        std::vector<unsigned> list;
        bool closed;
        ball(m, node, start(node), list, closed);
        for (const unsigned e : list) {
            if (code != 0) break;
            element = e;
            code = walk(m, p, element, 1e-6, steps, d);
        }
    }
    if (code != 1) element = UNSET_ID;
    return code == 1;
}

place place_of(const mesh& m, const tree& t, unsigned node, draws& d)
{
    const point p{m.coords(0, node), m.coords(1, node)};
    place found{UNSET_ID, UNSET_ID};
    if (!locate(m, t, p, found.element, d)) {
        double distance2 = MOST;
        found.nearest = t.nearest(p, distance2, m.node_element);
    }
    return found;
}

std::vector<place> places(const mesh& m, const dense1D<unsigned, 8>& nodes, draws& d)
{
    const tree t = filled(m);
    std::vector<place> all;
    for (const unsigned node : nodes)
        all.push_back(m.node_element[node] != UNSET_ID ? place{UNSET_ID - 1, UNSET_ID - 1}
                                                       : place_of(m, t, node, d));
    return all;
}

} // namespace plain
