#include "exports/examples.h"
#include "exports/table.h"

namespace exports {

namespace {

/// Ten nodes around a rectangle of 3 x 2 cells.
const reals AROUND = {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, 1},
                      {3, 2}, {2, 2}, {1, 2}, {0, 2}, {0, 1}};
const ID_list LOOP = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0};

/// A closed loop of at least 5 known nodes.
step good_loop(const std::string& name, const std::string& counted, int status)
{
    return refuse(
        "loop " + name,
        [=](const arguments& a) {
            const ID_list& loop = a.get<ID_list>(name);
            return loop.size < 5 || loop[0] != loop[loop.size - 1] ||
                   !good_list(loop, a.cols(counted));
        },
        status);
}

/// The loop has two sides of `count` cells: what is left for the other two is even.
step count_fits(const std::string& loop, const std::string& count, int status)
{
    return refuse(
        count + " fits the loop",
        [=](const arguments& a) {
            const std::size_t L = a.cols(loop);
            const std::size_t N = a.get<unsigned>(count);
            return 2 * N > L || L % 2 == 0;
        },
        status);
}

bool no_cells_beside(const arguments& a)
{
    const std::size_t L = a.cols("boundary");
    const std::size_t N = a.get<unsigned>("N");
    return L == 2 * N + 1 || L == 2 * N + 2;
}

std::vector<exported> metric_grids()
{
    using namespace tessalo2d;
    const slot ids = {"ids", kind::nodes, flow::in, LOOP};
    const slot count = number("count", kind::count, 2u);
    slot sizes = {"sizes", kind::field, flow::grown, real_list(10, 0.5)};
    slot metrics = {"metrics", kind::field, flow::grown, reals(3, 10, 2.0)};
    for (std::size_t j = 0; j < 10; ++j) std::get<reals>(metrics.valid)(1, j) = 0.25;
    sizes.may_shrink = metrics.may_shrink = true;
    const auto steps = [](const std::string& field) {
        return std::vector<step>{none_if_empty("ids"), none_at_zero("count"),
                                 good_loop("ids", field, -1), count_fits("ids", "count", -2)};
    };
    std::vector<exported> all;
    all.push_back(overload<const ID_list&, unsigned, real_list&>::row(
        "metrics_struct", metrics_struct, {ids, count, sizes}, steps("sizes")));
    std::vector<step> rows_first = steps("metrics");
    rows_first.insert(rows_first.begin(), rows("metrics", {3, 6}, -3));
    all.push_back(overload<const ID_list&, unsigned, reals&>::row(
        "metrics_struct", metrics_struct, {ids, count, metrics}, rows_first));
    return all;
}

} // namespace

std::vector<exported> grids()
{
    using namespace tessalo2d;
    const slot boundary = {"boundary", kind::nodes, flow::in, LOOP};
    const slot N = number("N", kind::count, 2u);
    slot coords = coords_grown(AROUND, state::columns_back);
    std::vector<exported> all;

    all.push_back(overload<reals&, const ID_list&, unsigned, IDs&>::row(
        "mesh_struct_Q4", mesh_struct_Q4,
        {coords, boundary, N, elements_grown("connectQ", {{9, 8, 7, 6}}, state::columns_back)},
        {none_at_zero("N"), none_if_empty("boundary"),
         nothing_to_do("no cells beside", no_cells_beside), rows("coords", {2, 3}, -1),
         good_loop("boundary", "coords", -2), count_fits("boundary", "N", -3),
         takes("connectQ", {4}, -4)}));

    // Kept: a loop of 2 N + 1 nodes gets through, and takes columns away.
    coords.may_shrink = true;
    all.push_back(overload<reals&, const ID_list&, unsigned, int, IDs&>::row(
        "mesh_struct_T3", mesh_struct_T3,
        {coords, boundary, N, number("pattern", kind::choice, 2),
         elements_grown("connectT", {{9, 8, 7}}, state::columns_back)},
        {none_at_zero("N"), none_if_empty("boundary"), rows("coords", {2, 3}, -1),
         good_loop("boundary", "coords", -2), count_fits("boundary", "N", -3), pattern_checked(-4),
         takes("connectT", {3}, -5)}));

    for (exported& e : metric_grids()) all.push_back(std::move(e));
    return all;
}

std::vector<exported> connectivity()
{
    using namespace tessalo2d;
    const auto changed = [](const IDs& valid) {
        return slot{"connect", kind::nodes, flow::changed, valid};
    };
    const IDs eight = {
        {0, 1, 1, 2, 4, 5, 6, 7}, {0, 1, 2, 3, 4, 5, 6, 7}, {0, 1, 2, 3, 4, 5, U, U}};
    std::vector<exported> all;

    all.push_back(overload<IDs&>::row(
        "flip", flip, {changed(TRIANGLES)},
        {none_without_columns("connect"),
         refuse(
             "rows of connect", [](const arguments& a) { return a.rows("connect") < 3; }, -1)}));
    all.back().allocates = false;

    all.push_back(overload<IDs&, element_type>::row(
        "flip", flip, {changed(eight), number("FE", kind::type, ELEMENT_ANY_FACE)},
        {none_without_columns("connect"), refuse(
                                              "rows of connect",
                                              [](const arguments& a) {
                                                  const element_type FE = a.get<element_type>("FE");
                                                  const std::size_t n = a.rows("connect");
                                                  if (FE == ELEMENT_ANY_FACE)
                                                      return n != 3 && n != 4 && n != 6 && n != 8 &&
                                                             n != 9;
                                                  return rows_of_type(FE) != n;
                                              },
                                              -2)}));
    all.back().allocates = false;

    all.push_back(overload<IDs&>::row("convert_degenerated_Q4", convert_degenerated_Q4,
                                      {changed({{0, 0, 1, 2}, {0, 1, 2, 3}, {0, 1, 2, U}})},
                                      {none_if_empty("connect"), rows("connect", {4}, -1)}, 1));
    all.back().allocates = false;

    all.push_back(overload<IDs&, ID_list&>::row(
        "convert_degenerated_Q", convert_degenerated_Q,
        {changed(eight), replaced("converted_IDs", kind::elements, ID_list{5, 6})},
        {none_if_empty("connect"), rows("connect", {4, 8, 9}, -1)}, 1));
    all.back().enlarge = [](arguments& a) {
        IDs many(8, 40);
        for (unsigned j = 0; j < 40; ++j)
            for (unsigned i = 0; i < 8; ++i) many(i, j) = j + (j % 3 && i == 3 ? 0 : i);
        a["connect"] = many;
    };

    // The second triangle runs the wrong way: one flip.
    const IDs turned = {{0, 1, 2}, {0, 3, 2}, {1, 4, 2}};
    slot neighbors = {"neighbors", kind::elements, flow::changed, support::neighbors_of(turned)};
    slot oriented = changed(turned);
    oriented.thrown = neighbors.thrown = state::unchanged;
    all.push_back(overload<IDs&, IDs&, unsigned, int>::row(
        "mesh_reorient", mesh_reorient,
        {oriented, neighbors, number("seed", kind::choice, 0u),
         number("all_regions", kind::choice, 1)},
        {none_without_columns("connect"),
         refuse(
             "connect",
             [](const arguments& a) {
                 return !good_IDs(a.get<IDs>("connect"), ELEMENT_ANY_FACE, U);
             },
             -1),
         shape_of("neighbors", "connect", -2),
         refuse(
             "seed",
             [](const arguments& a) { return a.get<unsigned>("seed") >= a.cols("connect"); }, -3)},
        1));
    // A conflict is reported by the code of `neighbors`, after work.
    all.back().least = -2;
    all.back().enlarge = [](arguments& a) {
        support::mesh m = support::grid_mixed(7, 6);
        for (std::size_t e = 0; e < m.connect.cols; e += 3)
            std::swap(m.connect(0, e), m.connect(2, e));
        a["connect"] = m.connect;
        a["neighbors"] = support::neighbors_of(m.connect);
    };

    neighbors.direction = flow::in;
    neighbors.thrown = std::nullopt;
    neighbors.valid = support::neighbors_of(TRIANGLES);
    all.push_back(overload<const IDs&, const IDs&, const ID_list&, ID_list&, ID_list&>::row(
        "get_connected_elements", get_connected_elements,
        {connect_in(TRIANGLES),
         neighbors,
         {"node_element", kind::elements, flow::in, support::node_element_of(TRIANGLES, 6)},
         replaced("offsets", kind::elements, ID_list{5, 6}),
         replaced("elements", kind::elements, ID_list{5, 6})},
        {rows("connect", {3, 4}, -1), shape_of("neighbors", "connect", -2),
         IDs_or_unset("node_element", "connect", -3)}));
    all.back().enlarge = [](arguments& a) {
        // A fan of 30 triangles around node 0: far more than six elements a node, once.
        IDs fan(3, 30);
        for (unsigned k = 0; k < 30; ++k) {
            fan(0, k) = 0;
            fan(1, k) = k + 1;
            fan(2, k) = (k + 1) % 30 + 1;
        }
        a["connect"] = fan;
        a["neighbors"] = support::neighbors_of(fan);
        a["node_element"] = support::node_element_of(fan, 2);
    };
    return all;
}

} // namespace exports
