#include "interpolation/background.h"

#include "support/matrices.h"
#include "support/topology.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace support {

using namespace vorel;

namespace {

/// Drops every `nth` element, which leaves holes.
mesh with_holes(mesh m, std::size_t nth)
{
    std::size_t kept = 0;
    for (std::size_t e = 0; e < m.connect.cols; ++e) {
        if (e % nth == nth - 1) continue;
        std::copy(m.connect.column(e), m.connect.column(e) + m.connect.rows,
                  m.connect.column(kept++));
    }
    EXPECT_TRUE(m.connect.resize(m.connect.rows, kept));
    m.name += " with holes";
    return m;
}

mesh prepared(mesh m, unsigned seed)
{
    jitter(m, 0.2, seed);
    shuffle(m, seed + 1);
    m.name += ", seed " + std::to_string(seed);
    return m;
}

/// Turns one element in four around.
mesh with_clockwise(mesh m)
{
    for (std::size_t e = 0; e < m.connect.cols; e += 4) std::swap(m.connect(0, e), m.connect(2, e));
    m.name += " with clockwise elements";
    return m;
}

/// Puts coordinates that no mesh should have at one node in nine, also of the targets.
background poisoned(background b, unsigned seed)
{
    const double strange[] = {NAN, INFINITY, -INFINITY, 1e308, -1e308};
    for (std::size_t j = seed % 9; j < b.coords.cols; j += 9)
        b.coords(j % 2, j) = strange[(j + seed) % 5];
    b.name += " with strange coordinates";
    return b;
}

/// As above with one kind of strange coordinate, so that the others don't hide what it does.
background poisoned_by(double strange, background b)
{
    for (std::size_t j = 4; j < b.coords.cols; j += 11) b.coords(j % 2, j) = strange;
    b.name += " with coordinates " + std::to_string(strange);
    return b;
}

} // namespace

background with_targets(const mesh& m, element_type type, const std::vector<plain::point>& points)
{
    background b;
    b.name = m.name;
    b.type = type;
    const std::size_t nodes = m.coords.cols;
    b.coords = dense2D<double>(2, nodes + points.size());
    for (std::size_t j = 0; j < nodes; ++j)
        for (std::size_t i = 0; i < 2; ++i) b.coords(i, j) = m.coords(i, j);
    b.targets = dense1D<unsigned, 8>(points.size());
    for (std::size_t k = 0; k < points.size(); ++k) {
        b.coords(0, nodes + k) = points[k][0];
        b.coords(1, nodes + k) = points[k][1];
        b.targets[k] = static_cast<unsigned>(nodes + k);
    }
    EXPECT_TRUE(b.connect.copy(m.connect));
    b.neighbors = neighbors_of(m.connect);
    b.node_element = node_element_of(m.connect, b.coords.cols);
    return b;
}

background with_random_targets(const mesh& m, element_type type, unsigned count, unsigned seed)
{
    double low[2] = {INFINITY, INFINITY};
    double high[2] = {-INFINITY, -INFINITY};
    for (std::size_t j = 0; j < m.coords.cols; ++j)
        for (std::size_t i = 0; i < 2; ++i) {
            low[i] = std::min(low[i], m.coords(i, j));
            high[i] = std::max(high[i], m.coords(i, j));
        }
    std::mt19937 draw(seed);
    std::uniform_real_distribution<double> part(-0.1, 1.1);
    std::vector<plain::point> points;
    for (unsigned k = 0; k < count; ++k) {
        const double x = low[0] + part(draw) * (high[0] - low[0]);
        const double y = low[1] + part(draw) * (high[1] - low[1]);
        points.push_back({x, y});
        const unsigned a = m.connect(k % 3, k % m.connect.cols);
        const unsigned b = m.connect((k + 1) % 3, k % m.connect.cols);
        if (k % 5 == 1) points.back() = {m.coords(0, a), m.coords(1, a)};
        if (k % 5 == 2)
            points.back() = {(m.coords(0, a) + m.coords(0, b)) / 2,
                             (m.coords(1, a) + m.coords(1, b)) / 2};
    }
    return with_targets(m, type, points);
}

background with_list_repeated(background b, std::size_t times)
{
    dense1D<unsigned, 8> list(b.targets.size * times);
    for (std::size_t k = 0; k < list.size; ++k) list[k] = b.targets[k % b.targets.size];
    b.targets = list;
    return b;
}

std::vector<background> backgrounds(unsigned seed)
{
    const unsigned n = 5 + seed % 4;
    std::vector<background> all;
    const auto add = [&](const mesh& m, element_type type) {
        all.push_back(with_random_targets(m, type, 120, seed));
    };
    for (const auto& [m, type] :
         {std::pair(grid_T3(n, 6), ELEMENT_T3), std::pair(grid_Q4(n, 6), ELEMENT_Q4),
          std::pair(grid_mixed(n, 6, 2, seed), ELEMENT_ANY_FACE)}) {
        add(m, type);
        add(prepared(m, seed), type);
        add(prepared(with_holes(m, 4), seed), type);
        add(prepared(with_holes(m, 2), seed), type);
        add(prepared(with_clockwise(m), seed), type);
    }
    add(grid_T3(1, 1), ELEMENT_T3);
    add(grid_Q4(1, 1), ELEMENT_Q4);
    // Adjacency that is no adjacency.
    background alone = with_random_targets(grid_T3(4, 4), ELEMENT_T3, 60, seed);
    alone.name = "no neighbours";
    alone.neighbors = dense2D<unsigned>(3, alone.connect.cols, UNSET_ID);
    all.push_back(alone);
    background wrong = with_random_targets(grid_mixed(4, 4), ELEMENT_ANY_FACE, 60, seed);
    wrong.name = "random neighbours";
    std::mt19937 draw(seed);
    for (std::size_t e = 0; e < wrong.neighbors.cols; ++e)
        for (std::size_t i = 0; i < 4; ++i) {
            const auto drawn = static_cast<unsigned>(draw() % (wrong.connect.cols + 1));
            wrong.neighbors(i, e) = drawn < wrong.connect.cols ? drawn : UNSET_ID;
        }
    all.push_back(wrong);
    // Nodes that yield no element to start at, and nodes of elements that are targets themselves.
    background strange = with_random_targets(grid_T3(6, 6), ELEMENT_T3, 60, seed);
    strange.name = "strange node_element";
    for (unsigned id = 0; id < 49; ++id) {
        if (draw() % 4 == 0) strange.node_element[id] = 1000 + id;
        if (draw() % 4 == 1) strange.node_element[id] = UNSET_ID;
    }
    for (unsigned id = 0; id < 49; id += 2) strange.targets.append(id);
    all.push_back(strange);
    const background triangles = with_random_targets(grid_T3(6, 5), ELEMENT_T3, 60, seed);
    const background both =
        with_random_targets(grid_mixed(6, 5, 2, seed), ELEMENT_ANY_FACE, 60, seed);
    for (const background& b : {triangles, both}) {
        all.push_back(poisoned(b, seed));
        for (const double x : {double(NAN), double(INFINITY), -double(INFINITY), 1e308, -1e308})
            all.push_back(poisoned_by(x, b));
    }
    return all;
}

std::vector<std::uint64_t> bits(const dense1D<double, 8>& values)
{
    std::vector<std::uint64_t> all;
    for (const double v : values) all.push_back(bits(v));
    return all;
}

} // namespace support
