// Fixed inputs for all functions, the same bit for bit with every compiler and library: they are
// made of integers alone, by a generator of their own, and scaled by powers of two.
#pragma once

#include <vorel/tessalo2d.h>

#include <cstdint>
#include <string>
#include <vector>

namespace golden {

/// A linear congruence modulo 2^64 whose high bits are stirred: the same numbers everywhere.
class integers {
public:
    explicit integers(std::uint64_t seed) : state(seed * 2 + 1) {}

    /// 53 bits.
    std::uint64_t next();
    /// 0 up to before n.
    unsigned below(unsigned n) { return static_cast<unsigned>(next() % n); }
    /// In [0, 1), all 53 bits in use.
    double unit() { return static_cast<double>(next()) * 0x1p-53; }
    /// In [-1, 1).
    double both_signs() { return unit() * 2.0 - 1.0; }

private:
    std::uint64_t state;
};

struct mesh {
    std::string name;
    vorel::dense2D<double> coords;
    vorel::dense2D<unsigned> connect;
    vorel::dense2D<unsigned> neighbors;
    vorel::dense1D<unsigned, 8> node_element;
};

/// A line of edges to sweep.
struct line {
    std::string name;
    vorel::dense2D<double> coords;
    vorel::dense2D<unsigned> connect;
};

/// A closed list of nodes around a patch of m x n cells.
struct loop {
    std::string name;
    vorel::dense2D<double> coords;
    vorel::dense1D<unsigned, 8> boundary;
    unsigned n;
};

struct ids {
    std::string name;
    vorel::dense2D<unsigned> connect;
};

/// Nodes of a background mesh with targets behind them.
struct background {
    mesh of;
    vorel::element_type type;
    /// All nodes in a stirred order.
    vorel::dense1D<unsigned, 8> nodes;
};

struct inputs {
    /// 3 or 4 rows of linear elements: lattices full of ties, stirred grids, a stirred one whose
    /// columns stand apart, and one of elements that break assumptions.
    std::vector<mesh> plane;
    std::vector<mesh> space;
    std::vector<line> plane_lines;
    std::vector<line> space_lines;
    std::vector<loop> loops;
    /// Columns of 6, 8 and 9 IDs without coordinates, many of them repeated.
    std::vector<ids> quadratic;
    std::vector<background> backgrounds;
};

inputs make_inputs();

/// A deep copy that shares nothing.
template <class Container>
Container own(const Container& source)
{
    Container copy;
    (void)copy.copy(source);
    return copy;
}

/// A deep copy that starts at `offset` in its block and whose columns stand `gap` entries further
/// apart than they need.
template <class T>
vorel::dense2D<T> placed(const vorel::dense2D<T>& m, std::size_t offset, std::size_t gap)
{
    vorel::dense2D<T> view(1, offset + m.cols * (m.rows + gap), T(77));
    view.offset = offset;
    view.rows = m.rows;
    view.cols = m.cols;
    view.ld = m.rows + gap;
    view.size = m.cols == 0 ? 0 : (m.cols - 1) * view.ld + m.rows;
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i) view(i, j) = m(i, j);
    return view;
}

} // namespace golden
