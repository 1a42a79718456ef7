#include "exports/examples.h"
#include "exports/table.h"

#include <cmath>

namespace exports {

namespace {

slot edges_in()
{
    return {"edges", kind::nodes, flow::in, IDs{{0, 1, 5}}};
}

/// The steps of all high-order conversions; `counts` says whether they are arguments.
std::vector<step> high_order_steps(bool counts, bool edges)
{
    std::vector<step> steps = {
        // Ahead of everything, also of an empty mesh, and the only check that leaves the result.
        rows("coords", {2, 3}, -1).leaving(state::unchanged), none_if_empty("connect")};
    if (counts)
        steps.push_back(nothing_to_do("no nodes are asked for", [](const arguments& a) {
            return a.get<unsigned>("edge_nodes") == 0 && a.get<unsigned>("quad_nodes") == 0 &&
                   a.get<unsigned>("triangle_nodes") == 0;
        }));
    steps.push_back(typed_IDs("connect", ELEMENT_ANY_FACE, "coords", -2));
    if (counts) {
        steps.push_back(refuse(
            "quad_nodes a square",
            [](const arguments& a) {
                const std::uint64_t n = a.get<unsigned>("quad_nodes");
                const auto root = static_cast<std::uint64_t>(std::llround(std::sqrt(double(n))));
                return root * root != n;
            },
            -4));
        steps.push_back(refuse(
            "triangle_nodes",
            [](const arguments& a) {
                const unsigned n = a.get<unsigned>("triangle_nodes");
                return n != 0 && n != 1 && n != 3;
            },
            -5));
    }
    // Kept: 6 in all forms, whatever the place of the argument.
    if (edges)
        steps.push_back(refuse(
            "edges",
            [counts](const arguments& a) {
                if (a.rows("edges") == 0 || a.cols("edges") == 0) return false;
                const std::size_t nodes = counts ? a.get<unsigned>("edge_nodes") : 1;
                return a.rows("edges") != nodes + 2 ||
                       !good_or_unset(picture_of(a["edges"]), a.cols("coords"));
            },
            -6));
    return steps;
}

slot count(const std::string& name, unsigned valid)
{
    return {name, kind::count, flow::in, valid};
}

} // namespace

std::vector<exported> conversions()
{
    using namespace tessalo2d;
    const IDs six = {{0, 1, 2, 5, 4, 3}, {2, 1, 0, 3, 4, 5}};
    const IDs nine = {{0, 1, 2, 3, 4, 5, 6, 7, 8}, {0, 1, 2, 3, 4, 5, U, U, U}};
    const slot converted = {"connect", kind::nodes, flow::changed, nine};
    std::vector<exported> all;

    all.push_back(overload<IDs&>::row("convert_into_linear", convert_into_linear, {converted},
                                      {none_if_empty("connect"), rows("connect", {6, 8, 9}, -1)}));
    all.back().enlarge = [](arguments& a) {
        a["connect"] = support::grid_Q9(4, 3, 2, true).connect;
    };
    all.back().allocates = false;

    all.push_back(overload<const IDs&, IDs&>::row(
        "split_into_linear", split_into_linear,
        {connect_in(six), elements_grown("result", {{7, 8, 9}}, state::unchanged)},
        // Rows alone count for `result`, also where it has no columns.
        {none_if_empty("connect"), rows("connect", {6, 9}, -1), rows("result", {0, 3, 4}, -2)}));
    all.back().enlarge = [](arguments& a) {
        a["connect"] = support::grid_Q9(4, 3, 2, true).connect;
    };

    slot in_place = {"connect", kind::nodes,    flow::replaced,
                     MIXED,     state::emptied, state::unchanged_or_emptied};
    const slot coords = coords_grown(PLANE, state::unchanged);
    all.push_back(overload<reals&, const IDs&, unsigned, unsigned, unsigned, IDs&, const IDs&>::row(
        "convert_into_high_order", convert_into_high_order,
        {coords, connect_in(MIXED), count("edge_nodes", 1), count("quad_nodes", 0),
         count("triangle_nodes", 3), replaced("result", kind::nodes, IDs{{7, 8}}), edges_in()},
        high_order_steps(true, true)));
    all.push_back(overload<reals&, IDs&, unsigned, unsigned, unsigned, const IDs&>::row(
        "convert_into_high_order", convert_into_high_order,
        {coords, in_place, count("edge_nodes", 1), count("quad_nodes", 4),
         count("triangle_nodes", 0), edges_in()},
        high_order_steps(true, true)));
    all.push_back(overload<reals&, IDs&>::row("convert_into_quadratic", convert_into_quadratic,
                                              {coords, in_place}, high_order_steps(false, false)));
    all.push_back(overload<reals&, IDs&, const IDs&>::row(
        "convert_into_quadratic", convert_into_quadratic, {coords, in_place, edges_in()},
        high_order_steps(false, true)));

    // `coords` may have its new nodes when storage for the elements can't be had.
    all.push_back(overload<reals&, const IDs&, IDs&, const IDs&>::row(
        "split_into_Q4", split_into_Q4,
        {coords_grown(PLANE, state::extended), connect_in(MIXED),
         elements_grown("result", {{9, 8, 7, 6}}, state::unchanged), edges_in()},
        {none_without_columns("connect"), rows("coords", {2, 3}, -1),
         typed_IDs("connect", ELEMENT_ANY_FACE, "coords", -2), takes("result", {4}, -3),
         typed_IDs("edges", ELEMENT_E3, "coords", -4)}));

    for (std::size_t k = 2; k < all.size(); ++k)
        all[k].enlarge = [](arguments& a) {
            set_mesh(a, support::grid_mixed(7, 6));
            if (a.has("edges")) a["edges"] = far_pairs(3);
        };
    return all;
}

} // namespace exports
