// Meshes for benchmarks: a jittered grid over the unit square, in natural or random numbering.
#pragma once

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <random>
#include <vector>

namespace bench {

struct mesh {
    vorel::dense2D<double> coords;
    vorel::dense2D<unsigned> connect;
};

enum class cells { quads, triangles, mixed };
enum class numbering { natural, random };

/// About `elements` elements; in 3 dimensions on a wavy surface. Mixed storage has 4 rows, and half
/// of the cells are two triangles each by a draw.
inline mesh grid(std::size_t elements, std::size_t dimension, cells kind,
                 numbering order = numbering::natural)
{
    const double per_cell = kind == cells::quads ? 1.0 : kind == cells::triangles ? 2.0 : 1.5;
    const unsigned n =
        static_cast<unsigned>(std::sqrt(static_cast<double>(elements) / per_cell) + 0.5);
    std::mt19937 draw(1);
    std::uniform_real_distribution<double> move(-0.3, 0.3);

    mesh m;
    m.coords = vorel::dense2D<double>(dimension, std::size_t(n + 1) * (n + 1));
    std::vector<unsigned> name(m.coords.cols);
    std::iota(name.begin(), name.end(), 0u);
    if (order == numbering::random) std::shuffle(name.begin(), name.end(), draw);
    for (unsigned j = 0; j <= n; ++j)
        for (unsigned i = 0; i <= n; ++i) {
            double* const p = m.coords.column(name[std::size_t(j) * (n + 1) + i]);
            p[0] = (i + move(draw)) / n;
            p[1] = (j + move(draw)) / n;
            if (dimension == 3) p[2] = 0.1 * std::sin(9 * p[0]) * std::cos(7 * p[1]);
        }

    std::vector<unsigned> entries;
    const std::size_t rows = kind == cells::triangles ? 3 : 4;
    const auto add = [&](unsigned a, unsigned b, unsigned c, unsigned d) {
        entries.insert(entries.end(), {name[a], name[b], name[c]});
        if (rows == 4) entries.push_back(d == vorel::UNSET_ID ? d : name[d]);
    };
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i < n; ++i) {
            const unsigned a = j * (n + 1) + i;
            const bool whole = kind == cells::quads || (kind == cells::mixed && draw() % 2);
            if (whole) {
                add(a, a + 1, a + n + 2, a + n + 1);
            } else {
                add(a, a + 1, a + n + 2, vorel::UNSET_ID);
                add(a + n + 2, a + n + 1, a, vorel::UNSET_ID);
            }
        }
    std::vector<std::size_t> place(entries.size() / rows);
    std::iota(place.begin(), place.end(), std::size_t(0));
    if (order == numbering::random) std::shuffle(place.begin(), place.end(), draw);
    m.connect = vorel::dense2D<unsigned>(rows, place.size());
    for (std::size_t e = 0; e < place.size(); ++e)
        std::copy_n(entries.data() + place[e] * rows, rows, m.connect.column(e));
    return m;
}

} // namespace bench
