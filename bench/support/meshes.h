// Large meshes, made in time linear in their size (but for the sort of the edges).
#pragma once

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

namespace bench_support {

struct mesh {
    vorel::dense2D<double> coords;
    vorel::dense2D<unsigned> connect;
};

enum class form {
    T3,   ///< 3 rows
    Q4,   ///< 4 rows, quadrilaterals only
    mixed ///< 4 rows, a third of the cells cut into two triangles, by a seeded draw
};

enum class numbering {
    natural, ///< row by row: what a mesher hands out after renumbering
    shuffled ///< nodes and elements in random order: the worst that memory can meet
};

/// Numbers the nodes anew and puts the elements in random order.
inline void shuffle(mesh& m, unsigned seed = 1)
{
    std::mt19937 draw(seed);
    std::vector<unsigned> number(m.coords.cols);
    std::iota(number.begin(), number.end(), 0u);
    std::shuffle(number.begin(), number.end(), draw);
    std::vector<unsigned> place(m.connect.cols);
    std::iota(place.begin(), place.end(), 0u);
    std::shuffle(place.begin(), place.end(), draw);

    mesh shuffled{vorel::dense2D<double>(m.coords.rows, m.coords.cols),
                  vorel::dense2D<unsigned>(m.connect.rows, m.connect.cols)};
    for (std::size_t j = 0; j < m.coords.cols; ++j)
        for (std::size_t i = 0; i < m.coords.rows; ++i)
            shuffled.coords(i, number[j]) = m.coords(i, j);
    for (std::size_t e = 0; e < m.connect.cols; ++e)
        for (std::size_t i = 0; i < m.connect.rows; ++i) {
            const unsigned id = m.connect(i, e);
            shuffled.connect(i, place[e]) = id < vorel::UNSET_ID ? number[id] : id;
        }
    m = shuffled;
}

/// A square grid of about `elements` elements with unit cells, counterclockwise, whose inner nodes
/// are jittered. With three dimensions it lies on the surface z = sin(x / 10) * cos(y / 10).
inline mesh grid(form kind, std::size_t elements, std::size_t dimension = 2,
                 numbering order = numbering::natural)
{
    const double per_cell = kind == form::T3 ? 2.0 : kind == form::Q4 ? 1.0 : 4.0 / 3.0;
    const double cells = static_cast<double>(elements) / per_cell;
    const unsigned n = std::max(1u, static_cast<unsigned>(std::lround(std::sqrt(cells))));
    std::mt19937 draw(1);
    const auto uniform = [&] { return static_cast<double>(draw()) * 0x1p-32; };

    mesh m;
    m.coords = vorel::dense2D<double>(dimension, std::size_t(n + 1) * (n + 1));
    double* point = m.coords.column(0);
    for (unsigned j = 0; j <= n; ++j)
        for (unsigned i = 0; i <= n; ++i, point += dimension) {
            const bool inner = i > 0 && j > 0 && i < n && j < n;
            point[0] = i + (inner ? 0.4 * (uniform() - 0.5) : 0.0);
            point[1] = j + (inner ? 0.4 * (uniform() - 0.5) : 0.0);
            if (dimension == 3) point[2] = std::sin(point[0] / 10.0) * std::cos(point[1] / 10.0);
        }

    const std::size_t rows = kind == form::T3 ? 3 : 4;
    m.connect = vorel::dense2D<unsigned>(rows, 2 * std::size_t(n) * n);
    unsigned* column = m.connect.column(0);
    const auto put = [&](unsigned a, unsigned b, unsigned c, unsigned d) {
        column[0] = a;
        column[1] = b;
        column[2] = c;
        if (rows == 4) column[3] = d;
        column += rows;
    };
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i < n; ++i) {
            const unsigned a = j * (n + 1) + i;
            const unsigned c = a + n + 2;
            if (kind == form::T3 || (kind == form::mixed && draw() % 3 == 0)) {
                put(a, a + 1, c, vorel::UNSET_ID);
                put(c, c - 1, a, vorel::UNSET_ID);
            } else {
                put(a, a + 1, c, c - 1);
            }
        }
    const auto columns = static_cast<std::size_t>(column - m.connect.column(0)) / rows;
    (void)m.connect.resize(rows, columns); // cannot fail: it is a cut
    if (order == numbering::shuffled) shuffle(m);
    return m;
}

/// The elements across the local edges of a linear face mesh in which an edge has two elements at
/// most. O(E log E).
inline vorel::dense2D<unsigned> neighbors_of(const vorel::dense2D<unsigned>& connect)
{
    struct side {
        std::uint64_t edge;
        unsigned element;
        unsigned row;
    };
    std::vector<side> sides;
    sides.reserve(connect.rows * connect.cols);
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const unsigned* const c = connect.column(e);
        const bool quad = connect.rows == 4 && c[3] != vorel::UNSET_ID;
        const unsigned corners = quad ? 4 : 3;
        for (unsigned k = 0; k < corners; ++k) {
            const unsigned a = c[quad ? k : (k + 1) % 3];
            const unsigned b = c[quad ? (k + 1) % 4 : (k + 2) % 3];
            const std::uint64_t edge = std::uint64_t(std::min(a, b)) << 32 | std::max(a, b);
            sides.push_back({edge, static_cast<unsigned>(e), k});
        }
    }
    std::sort(sides.begin(), sides.end(),
              [](const side& x, const side& y) { return x.edge < y.edge; });
    vorel::dense2D<unsigned> neighbors(connect.rows, connect.cols, vorel::UNSET_ID);
    for (std::size_t i = 1; i < sides.size(); ++i) {
        const side& x = sides[i - 1];
        const side& y = sides[i];
        if (x.edge != y.edge) continue;
        neighbors(x.row, x.element) = y.element;
        neighbors(y.row, y.element) = x.element;
    }
    return neighbors;
}

/// For each of `nodes` nodes an element that holds it, or `UNSET_ID`.
inline vorel::dense1D<unsigned> node_element_of(const vorel::dense2D<unsigned>& connect,
                                                std::size_t nodes)
{
    vorel::dense1D<unsigned> node_element(nodes, vorel::UNSET_ID);
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (std::size_t i = 0; i < connect.rows; ++i)
            if (connect(i, e) < nodes) node_element[connect(i, e)] = static_cast<unsigned>(e);
    return node_element;
}

/// Bytes of the entries of a matrix.
template <class T>
std::size_t bytes(const vorel::dense2D<T>& m)
{
    return m.rows * m.cols * sizeof(T);
}

} // namespace bench_support
