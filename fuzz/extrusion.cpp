// The extrusions under fuzzed arguments.
#include "fuzz/expectations.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <unordered_map>

using namespace fuzz;
using namespace vorel::tessalo2d;

namespace {

// Positions in `arguments::real`.
constexpr unsigned H0 = 0;
constexpr unsigned H1 = 1;
constexpr unsigned ANGLE = 2;
constexpr unsigned FIRST = 3;  // the vector, or the centre
constexpr unsigned SECOND = 6; // the rotation
constexpr unsigned THIRD = 9;  // the translation of a screw

/// Lines: an open or closed chain, a star, or any edges.
ids read_lines(input& in, std::size_t rows, std::size_t nodes)
{
    const std::size_t edges = in.chance(5) ? 40 + in.below(40) : in.below(8);
    ids m = read_ids(in, {rows, edges}, nodes);
    const unsigned kind = in.below(3);
    if (kind == 2 || rows != 2 || nodes == 0 || in.chance(20)) return m;
    for (unsigned e = 0; e < m.cols; ++e) {
        if (in.wild_id_mood()) continue;
        m(0, e) = kind == 0 ? e % unsigned(nodes) : 0;
        m(1, e) = (e + 1) % unsigned(nodes);
    }
    return m;
}

void prepare(input& in, arguments& a, std::size_t output_rows)
{
    const std::size_t nodes = in.chance(5) ? 100 + in.below(200) : in.below(9);
    a.coords() = read_reals(in, {in.rows({2, 3}), nodes});
    a.connect() = read_lines(in, in.rows({2}), nodes);
    a.result() = read_result(in, {output_rows});
    a.count[0] = in.count(5);
    a.choice = in.chance(85) ? int(in.below(3)) : int(in.word());
    a.flag = in.chance(50);
    const unsigned wild = in.pick({0u, 0u, 15u});
    for (double& x : a.real) x = in.small_real(wild);
    for (const unsigned k : {H0, H1})
        if (in.chance(90)) a.real[k] = in.pick({0.125, 0.25, 1.0, 3.0, 0.1, 1e-3});
    if (in.chance(20)) a.real[H1] = a.real[H0];
}

// ------------------------------------------------------------------------------- order of checks

/// The checks of one overload, in order: the status of each, 0 for one that it does not make. Odd
/// codes among them are kept: callers rely on them.
struct checks {
    bool plane_only; ///< takes no third coordinate
    bool sized;      ///< h0 and h1 in place of N
    bool widens;     ///< makes room for a third coordinate, if only on the way
    int lines;
    int h0;
    int h1;
    int pattern;
    int output;
    std::size_t output_rows;
};

bool is_above_0(double x)
{
    return x > 0.0;
}

/// A screw of counted layers goes by the size that its translation has a layer.
double layer_height(const arguments& a)
{
    double square = 0.0;
    for (unsigned k = 0; k < 3; ++k) square += a.real[THIRD + k] * a.real[THIRD + k];
    return std::sqrt(square) * (1.0 / a.count[0]);
}

int first_failure(const checks& c, const arguments& a)
{
    if (a.connect().is_empty() || (!c.sized && a.count[0] == 0)) return 0;
    if (a.coords().rows != 2 && (c.plane_only || a.coords().rows != 3)) return -1;
    if (a.connect().rows != 2 || !holds_IDs(a.connect(), a.coords().cols, false)) return c.lines;
    if (c.h0 != 0 && !is_above_0(c.sized ? a.real[H0] : layer_height(a))) return c.h0;
    if (c.h1 != 0 && !is_above_0(a.real[H1])) return c.h1;
    if (c.pattern != 0 && (a.choice < 0 || a.choice > 2)) return c.pattern;
    return takes(a.result(), c.output_rows) ? 0 : c.output;
}

// ----------------------------------------------------------------------------------- numbering

/// IDs, layer by layer, as the numbering formula has them.
struct layers {
    std::unordered_map<unsigned, unsigned> rank;
    std::size_t first_new;

    layers(const ids& connect, std::size_t nodes) : first_new(nodes)
    {
        for (std::size_t e = 0; e < connect.cols; ++e)
            for (unsigned i = 0; i < 2; ++i)
                rank.emplace(connect(i, e), static_cast<unsigned>(rank.size()));
    }
    std::size_t operator()(unsigned node, std::size_t layer) const
    {
        return layer == 0 ? node : first_new + (layer - 1) * rank.size() + rank.at(node);
    }
};

void check_cell(const arguments& before, const ids& now, const layers& id, std::size_t e,
                std::size_t l, std::size_t column)
{
    const unsigned a = before.connect()(0, e);
    const unsigned b = before.connect()(1, e);
    const std::size_t corner[4] = {id(a, l), id(b, l), id(b, l + 1), id(a, l + 1)};
    const auto is = [&](std::size_t c, std::initializer_list<unsigned> order) {
        unsigned i = 0;
        for (const unsigned k : order)
            if (now(i++, c) != corner[k]) return false;
        return true;
    };
    if (now.rows == 4) {
        promise(is(column, {0, 1, 2, 3}), "the quadrilateral of an edge in a layer");
        return;
    }
    const bool from_second = before.choice == 0 || (before.choice == 2 && (l + e) % 2 == 1);
    promise(from_second ? is(column, {0, 1, 3}) && is(column + 1, {1, 2, 3})
                        : is(column, {0, 1, 2}) && is(column + 1, {0, 2, 3}),
            "the triangles of an edge in a layer");
}

void verify(const arguments& before, const arguments& after, int status)
{
    const ids& lines = before.connect();
    const std::size_t nodes = before.coords().cols;
    const std::size_t first = before.result().cols; // also those without rows
    const ids& now = after.result();
    const bool widened = before.result().rows == 3 && now.rows == 4;
    promise(after.coords().cols >= nodes, "no node goes");
    if (status != 0 || lines.is_empty() || lines.rows != 2 || now.is_empty()) return;
    const std::size_t cells = (now.rows == 4 ? 1 : 2) * lines.cols;
    promise((now.cols - first) % cells == 0, "the same number of layers over each edge");
    const std::size_t count = (now.cols - first) / cells;
    const layers id(lines, nodes);
    if (count == 0 && now.cols == first) {
        promise(after.coords().cols == nodes, "no nodes without a layer");
        return;
    }
    promise(after.coords().cols == nodes + count * id.rank.size(), "a copy of each node a layer");
    for (std::size_t e = 0; e < lines.cols; ++e)
        for (std::size_t l = 0; l < count; ++l)
            check_cell(before, now, id, e, l, first + cells / lines.cols * (e * count + l));
    for (std::size_t j = 0; widened && j < first; ++j)
        promise(now(3, j) == UNSET_ID, "old columns get an unset fourth row");
}

// The number of layers is the one that was asked for.
void verify_counted(const arguments& before, const arguments& after, int status)
{
    verify(before, after, status);
    const ids& lines = before.connect();
    if (status != 0 || lines.is_empty() || before.count[0] == 0) return;
    const std::size_t added = after.result().cols - before.result().cols;
    const std::size_t cells = (after.result().rows == 4 ? 1 : 2) * lines.cols;
    // A path whose length is out of range may have none.
    const bool moderate = std::all_of(std::begin(before.real), std::end(before.real),
                                      [](double x) { return std::fabs(x) < 1e6; });
    promise(added == cells * before.count[0] || (added == 0 && !moderate),
            "as many layers as asked for");
}

// ---------------------------------------------------------------------------------------- table

call extrude(const char* name, const checks& c, std::function<int(arguments&)> run)
{
    std::vector<int> failures{-1, c.lines, c.h0, c.h1, c.pattern, c.output};
    return {name,
            returns::zero,
            failures,
            {{COORDS, c.widens ? role::widens : role::appends}, {RESULT, role::appends}},
            [c](input& in, arguments& a) { prepare(in, a, c.output_rows); },
            std::move(run),
            [c](const arguments& a) { return first_failure(c, a); },
            c.sized ? verify : verify_counted,
            true,
            true};
}

const std::vector<call> calls = {
    extrude("translate Q4 plane", {true, false, false, -2, 0, 0, 0, -5, 4},
            [](arguments& a) {
                return extrude_translate_Q4(a.coords(), a.connect(), a.plane(FIRST), a.count[0],
                                            a.result());
            }),
    extrude("translate Q4 plane sized", {true, true, false, -2, -4, -5, 0, -7, 4},
            [](arguments& a) {
                return extrude_translate_Q4(a.coords(), a.connect(), a.plane(FIRST), a.real[H0],
                                            a.real[H1], a.flag, a.result());
            }),
    extrude("translate Q4 space", {false, false, true, -2, 0, 0, 0, -5, 4},
            [](arguments& a) {
                return extrude_translate_Q4(a.coords(), a.connect(), a.space(FIRST), a.count[0],
                                            a.result());
            }),
    extrude("translate Q4 space sized", {false, true, true, -2, -4, -5, 0, -7, 4},
            [](arguments& a) {
                return extrude_translate_Q4(a.coords(), a.connect(), a.space(FIRST), a.real[H0],
                                            a.real[H1], a.flag, a.result());
            }),
    extrude("translate T3 plane", {true, false, false, -2, 0, 0, -5, -6, 3},
            [](arguments& a) {
                return extrude_translate_T3(a.coords(), a.connect(), a.plane(FIRST), a.count[0],
                                            a.choice, a.result());
            }),
    extrude("translate T3 plane sized", {true, true, true, -2, -4, -5, -6, -8, 3},
            [](arguments& a) {
                return extrude_translate_T3(a.coords(), a.connect(), a.plane(FIRST), a.real[H0],
                                            a.real[H1], a.choice, a.flag, a.result());
            }),
    extrude("translate T3 space", {false, false, true, -2, 0, 0, -5, -6, 3},
            [](arguments& a) {
                return extrude_translate_T3(a.coords(), a.connect(), a.space(FIRST), a.count[0],
                                            a.choice, a.result());
            }),
    extrude("translate T3 space sized", {false, true, true, -2, -4, -5, -6, -8, 3},
            [](arguments& a) {
                return extrude_translate_T3(a.coords(), a.connect(), a.space(FIRST), a.real[H0],
                                            a.real[H1], a.choice, a.flag, a.result());
            }),
    extrude("rotate Q4 plane", {false, false, false, -2, 0, 0, 0, -6, 4},
            [](arguments& a) {
                return extrude_rotate_Q4(a.coords(), a.connect(), a.plane(FIRST), a.real[ANGLE],
                                         a.count[0], a.result());
            }),
    extrude("rotate Q4 plane sized", {false, true, false, -2, -5, -6, 0, -8, 4},
            [](arguments& a) {
                return extrude_rotate_Q4(a.coords(), a.connect(), a.plane(FIRST), a.real[ANGLE],
                                         a.real[H0], a.real[H1], a.flag, a.result());
            }),
    extrude("rotate Q4 space", {false, false, true, -2, 0, 0, 0, -3, 3},
            [](arguments& a) {
                return extrude_rotate_Q4(a.coords(), a.connect(), a.space(FIRST), a.space(SECOND),
                                         a.count[0], a.result());
            }),
    extrude("rotate Q4 space sized", {false, true, true, -2, -5, -6, 0, -8, 3},
            [](arguments& a) {
                return extrude_rotate_Q4(a.coords(), a.connect(), a.space(FIRST), a.space(SECOND),
                                         a.real[H0], a.real[H1], a.flag, a.result());
            }),
    extrude("rotate T3 plane", {false, false, false, -2, 0, 0, 0, -7, 3},
            [](arguments& a) {
                return extrude_rotate_T3(a.coords(), a.connect(), a.plane(FIRST), a.real[ANGLE],
                                         a.count[0], a.choice, a.result());
            }),
    extrude("rotate T3 plane sized", {false, true, false, -2, -5, -6, -7, -9, 3},
            [](arguments& a) {
                return extrude_rotate_T3(a.coords(), a.connect(), a.plane(FIRST), a.real[ANGLE],
                                         a.real[H0], a.real[H1], a.choice, a.flag, a.result());
            }),
    extrude("rotate T3 space", {false, false, true, -2, 0, 0, 0, -7, 3},
            [](arguments& a) {
                return extrude_rotate_T3(a.coords(), a.connect(), a.space(FIRST), a.space(SECOND),
                                         a.count[0], a.choice, a.result());
            }),
    extrude("rotate T3 space sized", {false, true, true, -1, -5, -6, 0, -9, 3},
            [](arguments& a) {
                return extrude_rotate_T3(a.coords(), a.connect(), a.space(FIRST), a.space(SECOND),
                                         a.real[H0], a.real[H1], a.choice, a.flag, a.result());
            }),
    extrude("spiral Q4", {false, false, true, -2, -6, 0, 0, -9, 4},
            [](arguments& a) {
                return extrude_spiral_Q4(a.coords(), a.connect(), a.space(FIRST), a.space(SECOND),
                                         a.space(THIRD), a.count[0], a.result());
            }),
    extrude("spiral Q4 sized", {false, true, true, -2, -6, -7, 0, -9, 4},
            [](arguments& a) {
                return extrude_spiral_Q4(a.coords(), a.connect(), a.space(FIRST), a.space(SECOND),
                                         a.space(THIRD), a.real[H0], a.real[H1], a.flag,
                                         a.result());
            }),
    extrude("spiral T3", {false, false, true, -2, -6, 0, 0, -10, 3},
            [](arguments& a) {
                return extrude_spiral_T3(a.coords(), a.connect(), a.space(FIRST), a.space(SECOND),
                                         a.space(THIRD), a.count[0], a.choice, a.result());
            }),
    extrude("spiral T3 sized", {false, true, true, -2, -6, -4, 0, -10, 3},
            [](arguments& a) {
                return extrude_spiral_T3(a.coords(), a.connect(), a.space(FIRST), a.space(SECOND),
                                         a.space(THIRD), a.real[H0], a.real[H1], a.choice, a.flag,
                                         a.result());
            }),
};

} // namespace

const std::vector<call>& fuzz::family()
{
    return calls;
}
