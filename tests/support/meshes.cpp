#include "support/meshes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <numeric>
#include <utility>

namespace support {

using namespace vorel;

namespace {

using cell = std::array<unsigned, 4>;

dense2D<double> grid_nodes(unsigned nx, unsigned ny, std::size_t dimension)
{
    dense2D<double> coords(dimension, std::size_t(nx + 1) * (ny + 1), 0.0);
    for (unsigned j = 0; j <= ny; ++j)
        for (unsigned i = 0; i <= nx; ++i) {
            double* const p = coords.column(std::size_t(j) * (nx + 1) + i);
            p[0] = i;
            p[1] = j;
        }
    return coords;
}

std::vector<cell> grid_cells(unsigned nx, unsigned ny)
{
    std::vector<cell> cells;
    for (unsigned j = 0; j < ny; ++j)
        for (unsigned i = 0; i < nx; ++i) {
            const unsigned a = j * (nx + 1) + i;
            cells.push_back({a, a + 1, a + nx + 2, a + nx + 1});
        }
    return cells;
}

/// Adds midnodes and centres to `coords` and lists them, each edge's node once.
class midnodes {
public:
    explicit midnodes(dense2D<double>& coords_) : coords(coords_) {}

    unsigned on_edge(unsigned a, unsigned b)
    {
        const auto [at, fresh] = known.insert({std::minmax(a, b), 0u});
        if (fresh) at->second = mean({a, b});
        return at->second;
    }

    unsigned mean(const std::vector<unsigned>& nodes)
    {
        const std::size_t id = coords.cols;
        require(coords.resize(coords.rows, id + 1, 0.0));
        for (const unsigned node : nodes)
            for (std::size_t i = 0; i < coords.rows; ++i)
                coords(i, id) += coords(i, node) / static_cast<double>(nodes.size());
        return static_cast<unsigned>(id);
    }

private:
    static void require(bool done)
    {
        if (!done) std::abort();
    }

    dense2D<double>& coords;
    std::map<std::pair<unsigned, unsigned>, unsigned> known;
};

std::vector<unsigned> quadratic_triangle(midnodes& mid, unsigned a, unsigned b, unsigned c)
{
    return {a, b, c, mid.on_edge(b, c), mid.on_edge(c, a), mid.on_edge(a, b)};
}

mesh quadratic_grid(unsigned nx, unsigned ny, std::size_t dimension, std::size_t rows,
                    bool with_triangles, const char* name)
{
    mesh m{name, grid_nodes(nx, ny, dimension), {}};
    midnodes mid(m.coords);
    std::vector<std::vector<unsigned>> all;
    unsigned index = 0;
    for (const cell& c : grid_cells(nx, ny)) {
        const bool cut = rows == 6 || (with_triangles && index % 3 == 1);
        ++index;
        if (cut) {
            all.push_back(quadratic_triangle(mid, c[0], c[1], c[2]));
            all.push_back(quadratic_triangle(mid, c[2], c[3], c[0]));
        } else {
            std::vector<unsigned> column(c.begin(), c.end());
            for (unsigned k = 0; k < 4; ++k) column.push_back(mid.on_edge(c[k], c[(k + 1) % 4]));
            if (rows == 9) column.push_back(mid.mean({c[0], c[1], c[2], c[3]}));
            all.push_back(column);
        }
    }
    m.connect = dense2D<unsigned>(rows, all.size(), UNSET_ID);
    for (std::size_t e = 0; e < all.size(); ++e)
        std::copy(all[e].begin(), all[e].end(), m.connect.column(e));
    return m;
}

mesh single(const char* name, std::size_t dimension, std::vector<std::array<double, 2>> points,
            dense2D<unsigned> connect)
{
    mesh m{name, dense2D<double>(dimension, points.size(), 0.0), std::move(connect)};
    for (std::size_t j = 0; j < points.size(); ++j) {
        m.coords(0, j) = points[j][0];
        m.coords(1, j) = points[j][1];
    }
    return m;
}

} // namespace

mesh grid_Q4(unsigned nx, unsigned ny, std::size_t dimension)
{
    mesh m{"grid of Q4", grid_nodes(nx, ny, dimension), dense2D<unsigned>(4, std::size_t(nx) * ny)};
    std::size_t e = 0;
    for (const cell& c : grid_cells(nx, ny)) std::copy(c.begin(), c.end(), m.connect.column(e++));
    return m;
}

mesh grid_T3(unsigned nx, unsigned ny, std::size_t dimension)
{
    mesh m{"grid of T3", grid_nodes(nx, ny, dimension),
           dense2D<unsigned>(3, 2 * std::size_t(nx) * ny)};
    std::size_t e = 0;
    for (const cell& c : grid_cells(nx, ny)) {
        const unsigned both[] = {c[0], c[1], c[2], c[2], c[3], c[0]};
        std::copy(both, both + 3, m.connect.column(e++));
        std::copy(both + 3, both + 6, m.connect.column(e++));
    }
    return m;
}

mesh grid_mixed(unsigned nx, unsigned ny, std::size_t dimension, unsigned seed)
{
    std::mt19937 draw(seed);
    std::vector<cell> columns;
    for (const cell& c : grid_cells(nx, ny)) {
        if (draw() % 2) {
            columns.push_back(c);
        } else {
            columns.push_back({c[0], c[1], c[2], UNSET_ID});
            columns.push_back({c[2], c[3], c[0], UNSET_ID});
        }
    }
    mesh m{"mixed grid", grid_nodes(nx, ny, dimension), dense2D<unsigned>(4, columns.size())};
    for (std::size_t e = 0; e < columns.size(); ++e)
        std::copy(columns[e].begin(), columns[e].end(), m.connect.column(e));
    return m;
}

mesh grid_T6(unsigned nx, unsigned ny, std::size_t dimension)
{
    return quadratic_grid(nx, ny, dimension, 6, true, "grid of T6");
}

mesh grid_Q8(unsigned nx, unsigned ny, std::size_t dimension, bool with_triangles)
{
    return quadratic_grid(nx, ny, dimension, 8, with_triangles, "grid of Q8");
}

mesh grid_Q9(unsigned nx, unsigned ny, std::size_t dimension, bool with_triangles)
{
    return quadratic_grid(nx, ny, dimension, 9, with_triangles, "grid of Q9");
}

void jitter(mesh& m, double amount, unsigned seed)
{
    std::mt19937 draw(seed);
    std::uniform_real_distribution<double> move(-amount, amount);
    for (std::size_t j = 0; j < m.coords.cols; ++j)
        for (std::size_t i = 0; i < m.coords.rows; ++i) m.coords(i, j) += move(draw);
}

void shuffle(mesh& m, unsigned seed)
{
    std::mt19937 draw(seed);
    std::vector<unsigned> number(m.coords.cols);
    std::iota(number.begin(), number.end(), 0u);
    std::shuffle(number.begin(), number.end(), draw);
    std::vector<std::size_t> order(m.connect.cols);
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::shuffle(order.begin(), order.end(), draw);

    dense2D<double> coords(m.coords.rows, m.coords.cols);
    for (std::size_t j = 0; j < coords.cols; ++j)
        std::copy(m.coords.column(j), m.coords.column(j) + coords.rows, coords.column(number[j]));
    dense2D<unsigned> connect(m.connect.rows, m.connect.cols);
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (std::size_t i = 0; i < connect.rows; ++i) {
            const unsigned id = m.connect(i, order[e]);
            connect(i, e) = id < number.size() ? number[id] : id;
        }
    m.coords = coords;
    m.connect = connect;
}

mesh lifted(const mesh& m, double (*height)(double, double))
{
    mesh up{m.name + ", lifted", dense2D<double>(3, m.coords.cols), m.connect};
    for (std::size_t j = 0; j < m.coords.cols; ++j) {
        up.coords(0, j) = m.coords(0, j);
        up.coords(1, j) = m.coords(1, j);
        up.coords(2, j) = height(m.coords(0, j), m.coords(1, j));
    }
    return up;
}

std::vector<mesh> awkward_meshes(std::size_t dimension)
{
    constexpr double INF = std::numeric_limits<double>::infinity();
    constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
    constexpr unsigned U = UNSET_ID;
    const dense2D<unsigned> one_T3{{0, 1, 2}};
    const dense2D<unsigned> one_Q4{{0, 1, 2, 3}};

    std::vector<mesh> all;
    all.push_back(single("needle", dimension, {{0, 0}, {1, 0}, {0.5, 1e-13}}, one_T3));
    all.push_back(single("cap", dimension, {{0, 0}, {1e8, 0}, {1, 1e-8}}, one_T3));
    all.push_back(single("no area", dimension, {{0, 0}, {1, 1}, {2, 2}}, one_T3));
    all.push_back(single("all nodes at one place", dimension, {{3, 3}, {3, 3}, {3, 3}}, one_T3));
    all.push_back(single("one node thrice", dimension, {{1, 2}}, {{0, 0, 0}}));
    all.push_back(single("repeated corner", dimension, {{0, 0}, {1, 0}, {1, 1}}, {{0, 1, 2, 2}}));
    all.push_back(single("bow tie", dimension, {{0, 0}, {1, 1}, {1, 0}, {0, 1}}, one_Q4));
    all.push_back(single("concave", dimension, {{0, 0}, {4, 0}, {1, 1}, {0, 4}}, one_Q4));
    all.push_back(single("clockwise", dimension, {{0, 0}, {0, 1}, {1, 1}, {1, 0}}, one_Q4));
    all.push_back(single("coincident nodes", dimension, {{0, 0}, {1, 0}, {1, 1}, {0, 0}}, one_Q4));
    all.push_back(
        single("idle node", dimension, {{9, 9}, {0, 0}, {1, 0}, {0, 1}, {8, 8}}, {{1, 2, 3}}));
    all.push_back(single("edge of three", dimension, {{0, 0}, {1, 0}, {0, 1}, {0, -1}, {2, 2}},
                         {{0, 1, 2}, {0, 1, 3}, {1, 0, 4}}));
    all.push_back(single("same element twice", dimension, {{0, 0}, {1, 0}, {0, 1}},
                         {{0, 1, 2}, {0, 1, 2}, {2, 1, 0}}));
    all.push_back(single("mixed pair", dimension, {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {2, 0.5}},
                         {{0, 1, 2, 3}, {1, 4, 2, U}}));
    all.push_back(single("tiny", dimension, {{0, 0}, {1e-160, 0}, {0, 1e-160}}, one_T3));
    all.push_back(single("huge", dimension, {{0, 0}, {1e160, 0}, {0, 1e160}}, one_T3));
    all.push_back(single("infinite", dimension, {{0, 0}, {INF, 0}, {0, 1}, {1, -INF}}, one_Q4));
    all.push_back(
        single("not a number", dimension, {{0, 0}, {NOT_A_NUMBER, 0}, {0, 1}, {1, 1}}, one_Q4));
    all.push_back(single("signed zeros", dimension, {{-0.0, 0.0}, {1, -0.0}, {0.0, 1}}, one_T3));
    return all;
}

} // namespace support
