#include "interpolation/clouds.h"

#include "interpolation/plain_locator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

namespace support {

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INF = std::numeric_limits<double>::infinity();

cloud make_cloud(const char* name, unsigned n, unsigned seed,
                 const std::function<plain::point(std::mt19937&, unsigned)>& place)
{
    std::mt19937 draw(seed);
    cloud c{std::string(name) + ", seed " + std::to_string(seed), dense2D<double>(2, n)};
    for (unsigned j = 0; j < n; ++j) {
        const plain::point p = place(draw, j);
        c.coords(0, j) = p[0];
        c.coords(1, j) = p[1];
    }
    return c;
}

double unit(std::mt19937& draw)
{
    return std::uniform_real_distribution<double>(0.0, 1.0)(draw);
}

void append_shape(const node_quadtree& tree, unsigned cell, unsigned level, std::string& text,
                  std::vector<unsigned>& ids)
{
    const unsigned* const c = tree.cells.column(cell);
    if (c[0] < 4) {
        text += "(" + std::to_string(level) + ":";
        for (unsigned row = 1; row <= c[0]; ++row) {
            text += " " + std::to_string(c[row]);
            ids.push_back(c[row]);
            if (row > 1) {
                EXPECT_LT(c[row - 1], c[row]);
            }
        }
        text += ")";
        return;
    }
    for (unsigned k = 0; k < 4; ++k) {
        ASSERT_GE(c[k], 4u);
        ASSERT_LT(c[k], tree.cells.cols);
        append_shape(tree, c[k], level - 1, text, ids);
    }
}

} // namespace

std::vector<cloud> clouds(unsigned n, unsigned seed)
{
    std::vector<cloud> all;
    all.push_back(make_cloud("random", n, seed, [](auto& d, unsigned) {
        return plain::point{unit(d) * 7 - 3, unit(d) * 2 + 100};
    }));
    all.push_back(make_cloud("clustered", n, seed, [](auto& d, unsigned j) {
        const double r = std::pow(10.0, -double(j % 9));
        return plain::point{unit(d) * r + double(j % 2), unit(d) * r};
    }));
    all.push_back(make_cloud("collinear", n, seed, [](auto& d, unsigned) {
        const double t = unit(d);
        return plain::point{t, 0.25 + 0.5 * t};
    }));
    all.push_back(make_cloud("on a horizontal line", n, seed, [](auto& d, unsigned) {
        return plain::point{unit(d), -4.0};
    }));
    all.push_back(make_cloud("coincident in groups", n, seed, [](auto& d, unsigned j) {
        (void)unit(d);
        return plain::point{double(j % 5), double(j % 3) * 0.1};
    }));
    all.push_back(make_cloud("all at one place", n, seed, [](auto&, unsigned) {
        return plain::point{-2.5, 8.0};
    }));
    all.push_back(make_cloud("lattice", n, seed, [](auto&, unsigned j) {
        return plain::point{double(j % 8), double(j / 8)};
    }));
    all.push_back(make_cloud("with NaN and infinity", n, seed, [](auto& d, unsigned j) {
        if (j % 7 == 3) return plain::point{NOT_A_NUMBER, unit(d)};
        if (j % 11 == 5) return plain::point{unit(d), INF};
        return plain::point{unit(d), unit(d)};
    }));
    return all;
}

void bounds(const dense2D<double>& coords, vec2& low, vec2& high)
{
    low = {{INF, INF}};
    high = {{-INF, -INF}};
    for (std::size_t j = 0; j < coords.cols; ++j)
        for (int i = 0; i < 2; ++i) {
            const double x = coords(std::size_t(i), j);
            if (!std::isfinite(x)) continue;
            low[i] = std::min(low[i], x);
            high[i] = std::max(high[i], x);
        }
}

dense1D<unsigned, 8> all_ids(std::size_t n)
{
    dense1D<unsigned, 8> ids(n);
    std::iota(ids.begin(), ids.end(), 0u);
    return ids;
}

dense1D<unsigned, 8> shuffled_ids(std::size_t n, unsigned seed)
{
    dense1D<unsigned, 8> ids = all_ids(n);
    std::mt19937 draw(seed);
    std::shuffle(ids.begin(), ids.end(), draw);
    return ids;
}

std::vector<vec2> probes(const dense2D<double>& coords, const vec2& low, const vec2& high,
                         unsigned seed)
{
    std::vector<vec2> all{low, high, {{low[0], high[1]}}, 0.5 * (low + high)};
    std::mt19937 draw(seed);
    for (std::size_t j = 0; j < coords.cols; j += 3) all.push_back(load<2>(coords.column(j)));
    for (std::size_t j = 1; j < coords.cols; j += 5)
        all.push_back(0.5 * (load<2>(coords.column(j)) + load<2>(coords.column(j - 1))));
    for (int k = 0; k < 60; ++k)
        all.push_back(
            {{low[0] + unit(draw) * (high[0] - low[0]), low[1] + unit(draw) * (high[1] - low[1])}});
    all.push_back({{std::nextafter(low[0], -INF), low[1]}});
    all.push_back({{high[0], std::nextafter(high[1], INF)}});
    all.push_back({{NOT_A_NUMBER, low[1]}});
    all.push_back({{low[0], NOT_A_NUMBER}});
    return all;
}

std::string shape(const node_quadtree& tree)
{
    std::string text;
    std::vector<unsigned> ids;
    append_shape(tree, 0, 32, text, ids);
    return text;
}

std::vector<unsigned> stored_ids(const node_quadtree& tree)
{
    std::string text;
    std::vector<unsigned> ids;
    append_shape(tree, 0, 32, text, ids);
    return ids;
}

} // namespace support
