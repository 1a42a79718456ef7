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

} // namespace

const std::vector<overload>& overloads()
{
    using namespace tessalo2d;
    static const std::vector<overload> all = {
        {"translate Q4 plane fixed", motion::translate, 2, 4, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_translate_Q4(c, l, a.plane, a.N, o);
         }},
        {"translate Q4 plane sized", motion::translate, 2, 4, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_translate_Q4(c, l, a.plane, a.h0, a.h1, a.force_even, o);
         }},
        {"translate Q4 space fixed", motion::translate, 3, 4, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_translate_Q4(c, l, a.translation, a.N, o);
         }},
        {"translate Q4 space sized", motion::translate, 3, 4, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_translate_Q4(c, l, a.translation, a.h0, a.h1, a.force_even, o);
         }},
        {"translate T3 plane fixed", motion::translate, 2, 3, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_translate_T3(c, l, a.plane, a.N, a.pattern, o);
         }},
        {"translate T3 plane sized", motion::translate, 2, 3, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_translate_T3(c, l, a.plane, a.h0, a.h1, a.pattern, a.force_even, o);
         }},
        {"translate T3 space fixed", motion::translate, 3, 3, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_translate_T3(c, l, a.translation, a.N, a.pattern, o);
         }},
        {"translate T3 space sized", motion::translate, 3, 3, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_translate_T3(c, l, a.translation, a.h0, a.h1, a.pattern, a.force_even,
                                         o);
         }},
        {"rotate Q4 plane fixed", motion::rotate, 2, 4, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_rotate_Q4(c, l, a.plane_center, a.angle, a.N, o);
         }},
        {"rotate Q4 plane sized", motion::rotate, 2, 4, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_rotate_Q4(c, l, a.plane_center, a.angle, a.h0, a.h1, a.force_even, o);
         }},
        {"rotate Q4 space fixed", motion::rotate, 3, 4, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_rotate_Q4(c, l, a.center, a.rotation, a.N, o);
         }},
        {"rotate Q4 space sized", motion::rotate, 3, 4, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_rotate_Q4(c, l, a.center, a.rotation, a.h0, a.h1, a.force_even, o);
         }},
        {"rotate T3 plane fixed", motion::rotate, 2, 3, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_rotate_T3(c, l, a.plane_center, a.angle, a.N, a.pattern, o);
         }},
        {"rotate T3 plane sized", motion::rotate, 2, 3, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_rotate_T3(c, l, a.plane_center, a.angle, a.h0, a.h1, a.pattern,
                                      a.force_even, o);
         }},
        {"rotate T3 space fixed", motion::rotate, 3, 3, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_rotate_T3(c, l, a.center, a.rotation, a.N, a.pattern, o);
         }},
        {"rotate T3 space sized", motion::rotate, 3, 3, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_rotate_T3(c, l, a.center, a.rotation, a.h0, a.h1, a.pattern,
                                      a.force_even, o);
         }},
        {"spiral Q4 fixed", motion::spiral, 3, 4, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_spiral_Q4(c, l, a.center, a.rotation, a.translation, a.N, o);
         }},
        {"spiral Q4 sized", motion::spiral, 3, 4, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_spiral_Q4(c, l, a.center, a.rotation, a.translation, a.h0, a.h1,
                                      a.force_even, o);
         }},
        {"spiral T3 fixed", motion::spiral, 3, 3, false,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_spiral_T3(c, l, a.center, a.rotation, a.translation, a.N, a.pattern, o);
         }},
        {"spiral T3 sized", motion::spiral, 3, 3, true,
         [](coords_type& c, const connect_type& l, const arguments& a, connect_type& o) {
             return extrude_spiral_T3(c, l, a.center, a.rotation, a.translation, a.h0, a.h1,
                                      a.pattern, a.force_even, o);
         }},
    };
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
