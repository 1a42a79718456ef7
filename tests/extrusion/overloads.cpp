#include "extrusion/overloads.h"

#include <algorithm>
#include <random>

namespace extrusion_tests {

namespace {

using coords_type = dense2D<double>;
using connect_type = dense2D<unsigned>;

std::vector<std::vector<unsigned>> random_edges(unsigned nodes, unsigned count, unsigned seed)
{
    std::mt19937 draw(seed);
    std::uniform_int_distribution<unsigned> id(0, nodes - 1);
    std::vector<std::vector<unsigned>> edges;
    for (unsigned e = 0; e < count; ++e) {
        const unsigned a = id(draw);
        edges.push_back({a, id(draw)});
    }
    return edges;
}

std::vector<std::vector<unsigned>> long_line(unsigned nodes, unsigned stride)
{
    std::vector<std::vector<unsigned>> edges;
    for (unsigned k = 0; k + stride < nodes; k += stride) edges.push_back({k, k + stride});
    return edges;
}

// An overloaded name can't be handed on, a call of it can.
constexpr auto translate_Q4 = [](auto&... all) { return tessalo2d::extrude_translate_Q4(all...); };
constexpr auto translate_T3 = [](auto&... all) { return tessalo2d::extrude_translate_T3(all...); };
constexpr auto rotate_Q4 = [](auto&... all) { return tessalo2d::extrude_rotate_Q4(all...); };
constexpr auto rotate_T3 = [](auto&... all) { return tessalo2d::extrude_rotate_T3(all...); };
constexpr auto spiral_Q4 = [](auto&... all) { return tessalo2d::extrude_spiral_Q4(all...); };
constexpr auto spiral_T3 = [](auto&... all) { return tessalo2d::extrude_spiral_T3(all...); };

/// The fixed and the sized overload of one export. `path` names the arguments that only its motion
/// takes.
template <class Export, class... Path>
void add_Q4(std::vector<overload>& all, const std::string& name, motion moves, int dimension,
            Export call, Path arguments::*... path)
{
    all.push_back({name + " fixed", moves, dimension, 4, false,
                   [=](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
                       return call(c, l, a.*path..., a.N, o);
                   }});
    all.push_back({name + " sized", moves, dimension, 4, true,
                   [=](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
                       return call(c, l, a.*path..., a.h0, a.h1, a.force_even, o);
                   }});
}

/// As above for an export that makes triangles, which takes a pattern too.
template <class Export, class... Path>
void add_T3(std::vector<overload>& all, const std::string& name, motion moves, int dimension,
            Export call, Path arguments::*... path)
{
    all.push_back({name + " fixed", moves, dimension, 3, false,
                   [=](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
                       return call(c, l, a.*path..., a.N, a.pattern, o);
                   }});
    all.push_back({name + " sized", moves, dimension, 3, true,
                   [=](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
                       return call(c, l, a.*path..., a.h0, a.h1, a.pattern, a.force_even, o);
                   }});
}

std::vector<overload> make_overloads()
{
    using A = arguments;
    std::vector<overload> all;
    add_Q4(all, "translate Q4 plane", motion::translate, 2, translate_Q4, &A::plane);
    add_Q4(all, "translate Q4 space", motion::translate, 3, translate_Q4, &A::translation);
    add_T3(all, "translate T3 plane", motion::translate, 2, translate_T3, &A::plane);
    add_T3(all, "translate T3 space", motion::translate, 3, translate_T3, &A::translation);
    add_Q4(all, "rotate Q4 plane", motion::rotate, 2, rotate_Q4, &A::plane_center, &A::angle);
    add_Q4(all, "rotate Q4 space", motion::rotate, 3, rotate_Q4, &A::center, &A::rotation);
    add_T3(all, "rotate T3 plane", motion::rotate, 2, rotate_T3, &A::plane_center, &A::angle);
    add_T3(all, "rotate T3 space", motion::rotate, 3, rotate_T3, &A::center, &A::rotation);
    add_Q4(all, "spiral Q4", motion::spiral, 3, spiral_Q4, &A::center, &A::rotation,
           &A::translation);
    add_T3(all, "spiral T3", motion::spiral, 3, spiral_T3, &A::center, &A::rotation,
           &A::translation);
    return all;
}

} // namespace

const std::vector<overload>& overloads()
{
    static const std::vector<overload> all = make_overloads();
    return all;
}

const overload& overload_named(const std::string& name)
{
    for (const overload& o : overloads())
        if (o.name == name) return o;
    throw std::string("no overload " + name);
}

std::vector<std::size_t> coords_rows(const overload& o)
{
    if (o.moves == motion::translate && o.dimension == 2) return {2};
    return {2, 3};
}

std::vector<line_mesh> line_meshes()
{
    return {
        {"one edge", 2, {{0, 1}}},
        {"open, in order", 4, {{0, 1}, {1, 2}, {2, 3}}},
        {"open, out of order and turned", 6, {{5, 2}, {0, 1}, {2, 1}, {3, 0}}},
        {"closed", 3, {{2, 0}, {0, 1}, {1, 2}}},
        {"rising, then closed", 4, {{0, 1}, {1, 3}, {3, 2}, {2, 0}}},
        {"rising, back and rising again", 6, {{1, 2}, {2, 4}, {4, 3}, {3, 4}, {4, 5}, {0, 1}}},
        {"rising, then an edge without length", 4, {{0, 1}, {1, 1}, {1, 3}}},
        {"rising with a gap", 6, {{0, 1}, {2, 3}, {3, 5}}},
        {"falling", 4, {{3, 2}, {2, 1}, {1, 0}}},
        {"branched", 5, {{0, 1}, {1, 2}, {1, 3}, {4, 1}}},
        {"separate lines", 8, {{0, 1}, {6, 7}, {1, 2}, {5, 6}}},
        {"an edge without length and a repeated one", 3, {{1, 1}, {0, 2}, {0, 2}, {2, 0}}},
        {"few nodes of many", 5000, {{4999, 17}, {17, 40}, {40, 63}, {4000, 4999}}},
        {"random, dense", 60, random_edges(60, 200, 11)},
        {"random, sparse", 100000, random_edges(100000, 150, 12)},
        {"long, in order", 3000, long_line(3000, 1)},
        {"long, in a large mesh", 60000, long_line(60000, 23)},
    };
}

dense2D<double> nodes(std::size_t rows, std::size_t count, unsigned seed)
{
    std::mt19937 draw(seed);
    std::uniform_real_distribution<double> coordinate(-3.0, 5.0);
    dense2D<double> coords(rows, count);
    for (std::size_t j = 0; j < count; ++j)
        for (std::size_t i = 0; i < rows; ++i) coords(i, j) = coordinate(draw);
    return coords;
}

std::vector<unsigned> first_appearances(const dense2D<unsigned>& connect)
{
    std::vector<unsigned> order;
    std::vector<bool> seen;
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (std::size_t i = 0; i < 2; ++i) {
            const unsigned id = connect(i, e);
            if (seen.size() <= id) seen.resize(id + 1, false);
            if (!seen[id]) order.push_back(id);
            seen[id] = true;
        }
    return order;
}

} // namespace extrusion_tests
