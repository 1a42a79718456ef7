#include "fuzz/meshes.h"

#include "support/topology.h"

#include <algorithm>
#include <vector>

namespace fuzz {

namespace {

template <class T>
dense2D<T> without_entries(std::size_t rows, std::size_t cols)
{
    dense2D<T> m;
    m.rows = rows;
    m.cols = cols;
    m.ld = rows;
    return m;
}

using element = std::vector<unsigned>;

std::size_t corners(const element& e)
{
    return e.size() == 4 && e[3] != UNSET_ID ? 4 : 3;
}

struct grid {
    std::vector<element> elements;
    std::vector<std::pair<int, int>> points;
};

void add_cell(input& in, grid& g, std::size_t rows, const element& q)
{
    if (rows == 4 && in.chance(60)) {
        g.elements.push_back(q);
        return;
    }
    for (element t : {element{q[0], q[1], q[2]}, element{q[0], q[2], q[3]}}) {
        t.resize(rows, UNSET_ID);
        g.elements.push_back(t);
    }
}

grid read_grid(input& in, std::size_t rows)
{
    const unsigned most = in.chance(2) ? 20 : 4; // a front of many elements now and then
    const unsigned nx = 1 + in.below(most);
    const unsigned ny = 1 + in.below(most);
    grid g;
    for (unsigned j = 0; j <= ny; ++j)
        for (unsigned i = 0; i <= nx; ++i) g.points.emplace_back(i, j);
    for (unsigned j = 0; j < ny; ++j)
        for (unsigned i = 0; i < nx; ++i) {
            const unsigned a = j * (nx + 1) + i;
            add_cell(in, g, rows, {a, a + 1, a + nx + 2, a + nx + 1});
        }
    return g;
}

grid read_fan(input& in, std::size_t rows)
{
    const unsigned spokes = 2 + in.below(30);
    grid g;
    g.points.emplace_back(0, 0);
    for (unsigned k = 0; k < spokes; ++k)
        g.points.emplace_back(1 - int(k + 1) % 4 / 2 * 2, 1 - int(k) % 4 / 2 * 2);
    for (unsigned k = 0; k < spokes; ++k) {
        element t{0, 1 + k, 1 + (k + 1) % spokes};
        t.resize(rows, UNSET_ID);
        g.elements.push_back(t);
    }
    return g;
}

grid read_any(input& in, std::size_t rows)
{
    const unsigned nodes = 1 + in.below(8);
    grid g;
    for (unsigned k = 0; k < nodes; ++k) g.points.push_back({int(in.below(4)), int(in.below(4))});
    for (unsigned e = in.below(12); e > 0; --e) {
        element any(rows);
        for (unsigned& id : any) id = in.below(nodes);
        if (rows == 4 && in.chance(40)) any[3] = UNSET_ID;
        g.elements.push_back(any);
    }
    return g;
}

/// Other first corners, other orientations, another order of elements and nodes.
void vary(input& in, grid& g)
{
    const unsigned nodes = static_cast<unsigned>(g.points.size());
    const bool starts = in.chance(60);
    const unsigned flips = in.pick({0u, 0u, 0u, 30u, 100u});
    for (element& e : g.elements) {
        const std::size_t n = corners(e);
        if (starts) std::rotate(e.begin(), e.begin() + in.below(unsigned(n)), e.begin() + int(n));
        if (in.chance(flips)) std::swap(e[0], e[2]);
        if (in.chance(flips / 10)) e[1] = e[0];
    }
    if (in.chance(40)) std::reverse(g.elements.begin(), g.elements.end());
    if (const unsigned shift = in.chance(40) ? in.below(nodes) : 0) {
        std::rotate(g.points.begin(), g.points.end() - shift, g.points.end());
        for (element& e : g.elements)
            for (unsigned& id : e)
                if (id != UNSET_ID) id = (id + shift) % nodes;
    }
    if (in.chance(15) && !g.elements.empty()) g.elements.pop_back(); // a hole at the end
}

ids matrix(const std::vector<element>& elements, std::size_t rows)
{
    if (elements.empty()) return without_entries<unsigned>(rows, 0);
    ids m(rows, elements.size());
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < rows; ++i) m(i, j) = elements[j][i];
    return m;
}

void spoil(input& in, ids& m, std::size_t bound)
{
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i)
            if (in.wild_id_mood())
                m(i, j) = in.chance(50) ? in.wild_id(bound) : in.below(unsigned(bound));
}

void spoil(input& in, dense1D<unsigned, 8>& v, std::size_t bound)
{
    for (std::size_t k = 0; k < v.size; ++k)
        if (in.wild_id_mood()) v[k] = in.chance(50) ? in.wild_id(bound) : in.below(unsigned(bound));
}

} // namespace

ids read_ids(input& in, extent size, std::size_t bound)
{
    const auto [rows, cols] = size;
    if (rows == 0 || cols == 0) return without_entries<unsigned>(rows, cols);
    ids m(rows, cols);
    for (std::size_t j = 0; j < cols; ++j)
        for (std::size_t i = 0; i < rows; ++i) m(i, j) = in.id(bound);
    return m;
}

dense2D<double> read_reals(input& in, extent size)
{
    const auto [rows, cols] = size;
    if (rows == 0 || cols == 0) return without_entries<double>(rows, cols);
    dense2D<double> m(rows, cols);
    for (std::size_t j = 0; j < cols; ++j)
        for (std::size_t i = 0; i < rows; ++i) m(i, j) = in.real();
    return m;
}

dense1D<unsigned, 8> read_id_list(input& in, std::size_t size, std::size_t bound)
{
    dense1D<unsigned, 8> v(size);
    for (std::size_t k = 0; k < size; ++k) v[k] = in.id(bound);
    return v;
}

dense1D<double, 8> read_real_list(input& in, std::size_t size)
{
    const unsigned wild_percent = in.pick({0u, 0u, 5u, 50u});
    dense1D<double, 8> v(size);
    for (std::size_t k = 0; k < size; ++k)
        v[k] = in.chance(wild_percent) ? in.wild_real() : 0.25 * (1 + in.below(9));
    return v;
}

dense2D<double> read_metrics(input& in, extent size)
{
    const auto [rows, cols] = size;
    if (rows != 3 && rows != 6) return read_reals(in, {rows, cols});
    dense2D<double> m(rows, cols);
    for (std::size_t j = 0; j < cols; ++j) {
        double* const entries = m.column(j);
        // Diagonally dominant, unless a case below spoils it.
        for (std::size_t k = 0; k < rows; ++k)
            entries[k] =
                k == 0 || k == 2 || k == 5 ? 1.0 + in.below(4) : 0.25 * (in.below(3) - 1.0);
        const double factor = in.pick({1.0, 1.0, 1.0, 1.0, 1e150, 1e-160, 1e14, 1e-300});
        switch (in.below(24)) {
        case 0:
            entries[0] = 0.0;
            break;
        case 1:
            entries[1] = 5.0;
            break;
        case 2:
            std::fill(entries, entries + rows, 0.0);
            break;
        case 3:
            entries[in.below(unsigned(rows))] = in.wild_real();
            break;
        case 4:
            std::fill(entries, entries + rows, 1.0);
            break;
        case 5:
            for (std::size_t k = 0; k < rows; ++k) entries[k] *= factor;
            break;
        case 6:
            entries[0] *= factor;
            break;
        case 7:
            for (std::size_t k = 0; k < rows; ++k) entries[k] = in.wild_real();
            break;
        case 8:
            std::fill(entries + 1, entries + rows, 0.0);
            break;
        default:
            break;
        }
    }
    return m;
}

ids read_result(input& in, std::initializer_list<std::size_t> usual_rows)
{
    const std::size_t cols = in.chance(50) ? 0 : 1 + in.below(5);
    const std::size_t rows = in.chance(20) ? 0 : in.rows(usual_rows);
    return read_ids(in, {rows, cols}, 30);
}

mesh read_mesh(input& in, mesh_extent extents)
{
    const auto [rows, dimension, more_nodes] = extents;
    mesh m;
    if (rows != 3 && rows != 4) {
        const std::size_t cols = in.below(4);
        m.coords = read_reals(in, {dimension, in.below(6) + more_nodes});
        m.connect = read_ids(in, {rows, cols}, m.coords.cols);
        m.neighbors = read_ids(in, {in.rows({rows}), cols}, cols);
        m.node_element = read_id_list(in, m.coords.cols, cols);
        return m;
    }
    const unsigned kind = in.below(10);
    grid g = kind < 6 ? read_grid(in, rows) : kind < 8 ? read_fan(in, rows) : read_any(in, rows);
    vary(in, g);
    const std::size_t nodes = g.points.size();
    m.coords = read_reals(in, {dimension, nodes + more_nodes});
    const bool lattice = in.chance(75);
    for (std::size_t j = 0; lattice && j < nodes && dimension >= 2; ++j) {
        m.coords(0, j) = in.real_at(g.points[j].first);
        m.coords(1, j) = in.real_at(g.points[j].second);
    }
    m.connect = matrix(g.elements, rows);
    m.neighbors = support::neighbors_of(m.connect);
    m.node_element = support::node_element_of(m.connect, nodes + more_nodes);

    // Each may be whole while another is spoiled.
    if (in.chance(30)) spoil(in, m.connect, m.coords.cols);
    if (in.chance(60)) spoil(in, m.neighbors, m.connect.cols);
    if (in.chance(60)) spoil(in, m.node_element, m.connect.cols);
    if (in.chance(2)) m.neighbors = read_ids(in, {in.below(6), in.below(6)}, m.connect.cols);
    if (in.chance(2)) m.node_element.size = in.below(unsigned(m.node_element.size) + 1);
    if (in.chance(2)) m.coords.cols = in.below(unsigned(m.coords.cols) + 1);
    if (in.chance(2)) m.connect.cols = in.below(unsigned(m.connect.cols) + 1);
    return m;
}

void read_mesh(input& in, arguments& a, mesh_extent extents)
{
    const mesh m = read_mesh(in, extents);
    a.coords() = m.coords;
    a.connect() = m.connect;
}

void unset_some(input& in, ids& m, unsigned percent)
{
    for (std::size_t j = 0; j < m.cols && m.rows > 0; ++j)
        if (in.chance(percent)) m(in.below(unsigned(m.rows)), j) = UNSET_ID;
}

ids read_quadratic(input& in, std::size_t rows, std::size_t nodes)
{
    ids m = read_ids(in, {rows, in.below(8)}, nodes);
    if (rows != 8 && rows != 9) return m;
    for (std::size_t j = 0; j < m.cols; ++j)
        if (in.chance(40)) std::fill(m.column(j) + 6, m.column(j) + rows, UNSET_ID);
    return m;
}

} // namespace fuzz
