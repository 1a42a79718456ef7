#include "exports/examples.h"
#include "exports/table.h"

namespace exports {

namespace {

/// A background of triangles and targets behind its nodes.
struct background {
    reals coords;
    IDs connect;
    ID_list node_element;
    ID_list nodes;
};

background with_targets(const support::mesh& m, const std::vector<std::vector<double>>& targets)
{
    const std::size_t n = m.coords.cols;
    background b;
    b.coords = reals(2, n + targets.size());
    for (std::size_t j = 0; j < b.coords.cols; ++j)
        for (std::size_t i = 0; i < 2; ++i)
            b.coords(i, j) = j < n ? m.coords(i, j) : targets[j - n][i];
    b.connect = m.connect;
    b.node_element = support::node_element_of(m.connect, b.coords.cols);
    for (std::size_t j = n; j < b.coords.cols; ++j) b.nodes.append(static_cast<unsigned>(j));
    return b;
}

/// Targets inside triangles, off all sides, one off the mesh; the background is 3 x 2 cells.
const background& small()
{
    static const background b =
        with_targets(support::grid_T3(3, 2), {{0.3, 0.2}, {1.6, 1.1}, {9.0, 9.0}});
    return b;
}

const background& large()
{
    static const background b = [] {
        std::vector<std::vector<double>> targets;
        for (int k = 0; k < 25; ++k) targets.push_back({0.3 + (k * 7) % 11, 0.2 + (k * 5) % 9});
        return with_targets(support::grid_T3(12, 10), targets);
    }();
    return b;
}

real_list some_sizes(std::size_t n)
{
    real_list sizes(n, 0.0);
    for (std::size_t k = 0; k < n; ++k) sizes[k] = 1.0 + 0.25 * static_cast<double>(k % 5);
    return sizes;
}

reals some_metrics(std::size_t n)
{
    reals metrics(3, n, 0.0);
    for (std::size_t k = 0; k < n; ++k) {
        metrics(0, k) = 1.0 + static_cast<double>(k % 3);
        metrics(1, k) = 0.25;
        metrics(2, k) = 2.0;
    }
    return metrics;
}

struct form {
    bool matrix;     ///< of any rows for fields, of 3 or 6 for metrics
    bool listed;     ///< has the argument `nodes`
    bool keep_valid; ///< has that argument
};

std::vector<slot> slots_of(const form& f)
{
    const background& b = small();
    const std::size_t n = b.coords.cols;
    std::vector<slot> all = {
        coords_in(b.coords),
        connect_in(b.connect),
        {"neighbors", kind::elements, flow::in, support::neighbors_of(b.connect)},
        {"node_element", kind::elements, flow::in, b.node_element},
        {"field", kind::field, flow::changed,
         f.matrix ? value(some_metrics(n)) : value(some_sizes(n))}};
    if (f.listed) all.push_back({"nodes", kind::nodes, flow::in, b.nodes});
    if (f.keep_valid) all.push_back(number("keep_valid", kind::flag, false));
    all.push_back(number("type", kind::type, ELEMENT_T3));
    return all;
}

/// The steps: all forms share them but for the kind of elements and the rows of metrics.
std::vector<step> steps_of(const form& f)
{
    const bool metrics = f.matrix && f.keep_valid;
    std::vector<step> steps = {f.listed ? none_if_empty("nodes") : none_without_columns("coords"),
                               rows("coords", {2}, -1)};
    steps.push_back(refuse(
        "connect",
        [metrics](const arguments& a) {
            // Metrics are for triangles, whatever the type says.
            const element_type type = metrics ? ELEMENT_T3 : a.get<element_type>("type");
            return !good_IDs(a.get<IDs>("connect"), type, a.cols("coords"));
        },
        -2));
    steps.push_back(shape_of("neighbors", "connect", -3));
    steps.push_back(IDs_or_unset("neighbors", "connect", -3));
    steps.push_back(columns_of("node_element", "coords", -4));
    steps.push_back(columns_of("field", "coords", -5));
    if (metrics) steps.push_back(rows("field", {3, 6}, -5));
    if (f.listed) steps.push_back(listed_IDs("nodes", "coords", -6));
    return steps;
}

void enlarge(arguments& a)
{
    const background& b = large();
    a["coords"] = b.coords;
    a["connect"] = b.connect;
    a["neighbors"] = support::neighbors_of(b.connect);
    a["node_element"] = b.node_element;
    const bool matrix = std::holds_alternative<reals>(a["field"]);
    a["field"] = matrix ? value(some_metrics(b.coords.cols)) : value(some_sizes(b.coords.cols));
    if (a.has("nodes")) a["nodes"] = b.nodes;
}

} // namespace

std::vector<exported> interpolations()
{
    using namespace tessalo2d;
    using e_type = element_type;
    std::vector<exported> all;
    const form field = {true, true, false}, scalar = {false, true, false};
    all.push_back(
        overload<const reals&, const IDs&, const IDs&, const ID_list&, reals&, const ID_list&,
                 e_type>::row("interpolate", interpolate, slots_of(field), steps_of(field)));
    all.push_back(
        overload<const reals&, const IDs&, const IDs&, const ID_list&, real_list&, const ID_list&,
                 e_type>::row("interpolate", interpolate, slots_of(scalar), steps_of(scalar)));
    const form metrics = {true, true, true}, all_metrics = {true, false, true};
    all.push_back(
        overload<const reals&, const IDs&, const IDs&, const ID_list&, reals&, const ID_list&, bool,
                 e_type>::row("interpolate_metrics", interpolate_metrics, slots_of(metrics),
                              steps_of(metrics)));
    all.push_back(
        overload<const reals&, const IDs&, const IDs&, const ID_list&, reals&, bool, e_type>::row(
            "interpolate_metrics", interpolate_metrics, slots_of(all_metrics),
            steps_of(all_metrics)));
    const form sizes = {false, true, true}, all_sizes = {false, false, true};
    all.push_back(overload<const reals&, const IDs&, const IDs&, const ID_list&, real_list&,
                           const ID_list&, bool, e_type>::row("interpolate_metrics",
                                                              interpolate_metrics, slots_of(sizes),
                                                              steps_of(sizes)));
    all.push_back(overload<const reals&, const IDs&, const IDs&, const ID_list&, real_list&, bool,
                           e_type>::row("interpolate_metrics", interpolate_metrics,
                                        slots_of(all_sizes), steps_of(all_sizes)));
    for (exported& e : all) e.enlarge = enlarge;
    return all;
}

} // namespace exports
