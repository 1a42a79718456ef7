#include "golden_inputs.h"

#include "support/topology.h"

#include <algorithm>
#include <limits>

namespace golden {

using namespace vorel;

namespace {

constexpr unsigned U = UNSET_ID;

/// Cells of a lattice: all triangles (3 rows), or in 4 rows every one, none or some of them cut.
enum class cells { triangles, quads, mixed };

dense2D<unsigned> lattice_cells(unsigned nx, unsigned ny, cells kind, integers& draw)
{
    dense2D<unsigned> connect(kind == cells::triangles ? 3 : 4, 0);
    for (unsigned j = 0; j < ny; ++j)
        for (unsigned i = 0; i < nx; ++i) {
            const unsigned a = j * (nx + 1) + i;
            const unsigned b = a + 1;
            const unsigned c = a + nx + 2;
            const unsigned d = a + nx + 1;
            if (kind == cells::triangles) {
                const unsigned first[] = {a, b, c};
                const unsigned second[] = {c, d, a};
                (void)append_column(connect, first);
                (void)append_column(connect, second);
            } else if (kind == cells::mixed && draw.below(2) == 0) {
                const unsigned first[] = {a, b, d, U};
                const unsigned second[] = {b, c, d, U};
                (void)append_column(connect, first);
                (void)append_column(connect, second);
            } else {
                const unsigned cell[] = {a, b, c, d};
                (void)append_column(connect, cell);
            }
        }
    return connect;
}

/// Nodes at whole numbers, moved by up to `amount` in each direction; in space on a hilly surface.
dense2D<double> lattice_nodes(unsigned nx, unsigned ny, std::size_t dimension, double amount,
                              integers& draw)
{
    dense2D<double> coords(dimension, std::size_t(nx + 1) * (ny + 1), 0.0);
    for (unsigned j = 0; j <= ny; ++j)
        for (unsigned i = 0; i <= nx; ++i) {
            double* const p = coords.column(std::size_t(j) * (nx + 1) + i);
            const int x = static_cast<int>(i);
            const int y = static_cast<int>(j);
            p[0] = x + amount * draw.both_signs();
            p[1] = y + amount * draw.both_signs();
            if (dimension == 3)
                p[2] = (x * x - 2 * y * x + 3 * y) * 0x1p-4 + amount * draw.both_signs();
        }
    return coords;
}

void connect_up(mesh& m)
{
    m.neighbors = support::neighbors_of(m.connect);
    m.node_element = support::node_element_of(m.connect, m.coords.cols);
}

mesh lattice(const char* name, std::size_t dimension, cells kind, double amount, unsigned nx = 7,
             unsigned ny = 5)
{
    integers draw(dimension * 10 + static_cast<unsigned>(kind));
    mesh m{name, lattice_nodes(nx, ny, dimension, amount, draw), {}, {}, {}};
    m.connect = lattice_cells(nx, ny, kind, draw);
    connect_up(m);
    return m;
}

mesh spread(const mesh& m)
{
    return {m.name + ", spread", placed(m.coords, 3, 2), placed(m.connect, 5, 1),
            placed(m.neighbors, 0, 3), m.node_element};
}

/// Elements between random nodes: turned, folded, flat, with nodes that coincide or repeat, and
/// numbers from one end of the doubles to the other.
mesh wild(const char* name, std::size_t dimension, std::size_t rows)
{
    constexpr double INF = std::numeric_limits<double>::infinity();
    constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
    constexpr unsigned NODES = 96;
    integers draw(dimension * 100 + rows);
    mesh m{name, dense2D<double>(dimension, NODES), dense2D<unsigned>(rows, 160), {}, {}};
    for (unsigned j = 0; j < NODES; ++j)
        for (std::size_t i = 0; i < dimension; ++i) {
            double& x = m.coords(i, j);
            if (j < 32)
                x = draw.below(4) * 0.5;
            else if (j < 64)
                x = draw.both_signs();
            else if (j < 72)
                x = draw.both_signs() * 0x1p-540;
            else if (j < 80)
                x = draw.both_signs() * 0x1p+520;
            else if (j < 88)
                x = draw.both_signs() * 0x1p-46;
            else
                x = draw.below(4) != 0 ? draw.both_signs() : j < 92 ? INF : NOT_A_NUMBER;
            // A statement of its own: the order of draws within one is the compiler's.
            if (j >= 80 && j < 88) x += draw.below(3);
        }
    for (std::size_t e = 0; e < m.connect.cols; ++e) {
        // Within a part of the nodes, so that scales mix in some elements only.
        const unsigned part = static_cast<unsigned>(e) % 5;
        const unsigned first = part == 4 ? 0 : part == 3 ? 64 : part * 32;
        const unsigned count = part == 4 ? NODES : part == 3 ? 24 : 32;
        for (std::size_t i = 0; i < rows; ++i) m.connect(i, e) = first + draw.below(count);
        if (rows == 4 && draw.below(3) == 0) m.connect(3, e) = U;
    }
    connect_up(m);
    return m;
}

std::vector<mesh> meshes(std::size_t dimension)
{
    std::vector<mesh> all;
    all.push_back(lattice("lattice of triangles", dimension, cells::triangles, 0.0));
    all.push_back(lattice("lattice of quads", dimension, cells::quads, 0.0));
    all.push_back(lattice("mixed lattice", dimension, cells::mixed, 0.0));
    all.push_back(lattice("stirred triangles", dimension, cells::triangles, 0.3));
    all.push_back(lattice("stirred quads", dimension, cells::quads, 0.3));
    all.push_back(lattice("stirred mixture", dimension, cells::mixed, 0.3));
    all.push_back(lattice("folded mixture", dimension, cells::mixed, 1.2));
    all.push_back(spread(all[3]));
    all.push_back(spread(all[5]));
    all.push_back(wild("wild triangles", dimension, 3));
    all.push_back(wild("wild mixture", dimension, 4));
    return all;
}

std::vector<line> lines(std::size_t dimension)
{
    integers draw(dimension);
    std::vector<line> all;
    line open{"open line", dense2D<double>(dimension, 12), dense2D<unsigned>(2, 9)};
    for (std::size_t j = 0; j < open.coords.cols; ++j)
        for (std::size_t i = 0; i < dimension; ++i) open.coords(i, j) = 2.0 + draw.both_signs();
    for (unsigned e = 0; e < 9; ++e) {
        open.connect(0, e) = e + 1;
        open.connect(1, e) = e + 2;
    }
    line branched{"branched line", placed(open.coords, 1, 4), dense2D<unsigned>(2, 14)};
    for (std::size_t e = 0; e < branched.connect.cols; ++e)
        for (std::size_t i = 0; i < 2; ++i) branched.connect(i, e) = draw.below(12);
    line square{"square", dense2D<double>(dimension, 4, 0.0), {{0, 1}, {1, 2}, {2, 3}, {3, 0}}};
    square.coords(0, 1) = square.coords(0, 2) = 1.0;
    square.coords(1, 2) = square.coords(1, 3) = 1.0;
    all.push_back(open);
    all.push_back(branched);
    all.push_back(square);
    return all;
}

loop make_loop(const char* name, std::size_t dimension, unsigned m, unsigned n, double amount)
{
    integers draw(m * 16 + n);
    const unsigned count = 2 * (m + n);
    loop l{name, dense2D<double>(dimension, count, 0.0), dense1D<unsigned, 8>(count + 1), n};
    for (unsigned k = 0; k < count; ++k) {
        const unsigned x = k < m ? k : k < m + n ? m : k < 2 * m + n ? 2 * m + n - k : 0;
        const unsigned y = k < m ? 0 : k < m + n ? k - m : k < 2 * m + n ? n : count - k;
        l.coords(0, k) = x + amount * draw.both_signs();
        l.coords(1, k) = y + amount * draw.both_signs();
        if (dimension == 3) l.coords(2, k) = amount * draw.both_signs();
        l.boundary[k] = k;
    }
    l.boundary[count] = 0;
    return l;
}

ids quadratic(const char* name, std::size_t rows, unsigned variety)
{
    integers draw(rows + variety);
    ids q{name, dense2D<unsigned>(rows, 60)};
    for (std::size_t e = 0; e < q.connect.cols; ++e) {
        for (std::size_t i = 0; i < rows; ++i) q.connect(i, e) = draw.below(variety);
        if (rows > 6 && draw.below(3) == 0)
            for (std::size_t i = 6; i < rows; ++i) q.connect(i, e) = U;
    }
    return q;
}

/// Targets everywhere: inside, on nodes, on sides, outside, and nowhere.
background with_targets(const mesh& m, element_type type)
{
    constexpr unsigned TARGETS = 120;
    integers draw(m.connect.rows);
    const std::size_t nodes = m.coords.cols;
    background b{{m.name, own(m.coords), m.connect, m.neighbors, own(m.node_element)}, type, {}};
    const bool room = b.of.coords.resize(2, nodes + TARGETS, 0.0) &&
                      b.of.node_element.resize(nodes + TARGETS, U) &&
                      b.nodes.resize(nodes + TARGETS);
    if (!room) return b;
    for (unsigned t = 0; t < TARGETS; ++t) {
        double* const p = b.of.coords.column(nodes + t);
        const unsigned e = draw.below(static_cast<unsigned>(m.connect.cols));
        const double* const p0 = m.coords.column(m.connect(0, e));
        const double* const p1 = m.coords.column(m.connect(1, e));
        const double* const p2 = m.coords.column(m.connect(2, e));
        const double s = t % 4 == 0 ? 0.5 : draw.unit();
        const double u = t % 4 == 1 ? 0.0 : (1.0 - s) * draw.unit();
        for (int i = 0; i < 2; ++i)
            p[i] = t % 12 == 5    ? p1[i]
                   : t % 12 == 7  ? 5.0 * draw.both_signs()
                   : t % 60 == 11 ? std::numeric_limits<double>::quiet_NaN()
                                  : p0[i] + s * (p1[i] - p0[i]) + u * (p2[i] - p0[i]);
    }
    if (m.coords.ld > 2) b.of.coords = placed(b.of.coords, 1, 2);
    const unsigned total = static_cast<unsigned>(b.nodes.size);
    for (unsigned k = 0; k < total; ++k) b.nodes[k] = k;
    for (unsigned k = total; k-- > 1;) std::swap(b.nodes[k], b.nodes[draw.below(k + 1)]);
    return b;
}

} // namespace

std::uint64_t integers::next()
{
    state = state * 6364136223846793005u + 1442695040888963407u;
    std::uint64_t x = state;
    x ^= x >> 32;
    x *= 0x9E3779B97F4A7C15u;
    x ^= x >> 29;
    return x >> 11;
}

inputs make_inputs()
{
    inputs all;
    all.plane = meshes(2);
    all.space = meshes(3);
    all.plane_lines = lines(2);
    all.space_lines = lines(3);
    all.loops.push_back(make_loop("rectangle", 2, 5, 3, 0.0));
    all.loops.push_back(make_loop("stirred loop", 2, 6, 5, 0.4));
    all.loops.push_back(make_loop("stirred loop in space", 3, 4, 7, 0.4));
    all.quadratic.push_back(quadratic("T6", 6, 1000));
    all.quadratic.push_back(quadratic("Q8", 8, 1000));
    all.quadratic.push_back(quadratic("Q9", 9, 1000));
    all.quadratic.push_back(quadratic("T6 of few nodes", 6, 4));
    all.quadratic.push_back(quadratic("Q8 of few nodes", 8, 4));
    all.quadratic.push_back(quadratic("Q9 of few nodes", 9, 4));
    for (const std::size_t i : {0u, 3u, 7u, 9u})
        all.backgrounds.push_back(with_targets(all.plane[i], ELEMENT_T3));
    for (const std::size_t i : {1u, 4u})
        all.backgrounds.push_back(with_targets(all.plane[i], ELEMENT_Q4));
    for (const std::size_t i : {2u, 5u, 6u, 8u, 10u})
        all.backgrounds.push_back(with_targets(all.plane[i], ELEMENT_ANY_FACE));
    return all;
}

} // namespace golden
