// Fields carried to target nodes under fuzzed arguments.
#include "fuzz/interpolation.h"
#include "fuzz/expectations.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

using namespace fuzz;
using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

/// Puts targets on nodes, between nodes and beside them.
void place_targets(input& in, dense2D<double>& coords, std::size_t first)
{
    for (std::size_t t = first; t < coords.cols && coords.rows >= 2 && first > 0; ++t) {
        const std::size_t p = in.below(unsigned(first));
        const std::size_t q = in.below(unsigned(first));
        const double s = in.pick({0.0, 0.5, 0.25, 1.0 / 3.0, 1.25, 1e-7});
        if (in.chance(30)) continue;
        for (unsigned i = 0; i < 2; ++i)
            coords(i, t) = coords(i, p) + s * (coords(i, q) - coords(i, p));
    }
}

/// On the nodes that elements use. The others get another metric, so that a target which is not
/// served shows.
void make_reproduced(arguments& a)
{
    a.count[REPRODUCED] = 1;
    const dense2D<double>& coords = a.coords();
    dense2D<double>& field = a.field();
    const std::vector<bool> used = used_nodes(a);
    for (std::size_t k = 0; k < a.values().size && k < coords.cols && coords.rows >= 2; ++k)
        if (used[k]) a.values()[k] = linear_value(coords, k);
    for (std::size_t j = field.cols; j-- > 0;)
        for (std::size_t i = 0; i < field.rows; ++i)
            field(i, j) = (j < used.size() && used[j] ? 1.0 : 4.0) * field(i, 0);
}

void prepare_rows(input& in, arguments& a, std::size_t rows)
{
    const unsigned targets = in.chance(10) ? 40 + in.below(40) : in.below(12);
    const mesh m = read_mesh(in, {rows, in.rows({2, 2, 2, 3}), targets});
    a.coords() = m.coords;
    a.connect() = m.connect;
    a.neighbors() = m.neighbors;
    a.node_element() = m.node_element;
    const std::size_t nodes = m.coords.cols;
    const std::size_t background = nodes > targets ? nodes - targets : 0;
    place_targets(in, a.coords(), background);
    a.nodes() = read_id_list(in, in.below(20), nodes);
    if (in.chance(60))
        for (std::size_t k = 0; k < a.nodes().size && background < nodes; ++k)
            a.nodes()[k] = unsigned(background + in.below(unsigned(nodes - background)));
    a.choice = in.chance(4) ? int(in.below(26)) - 1
               : rows == 3  ? in.pick({6, 6, 5})
                            : in.pick({5, 5, 5, 7});
    a.flag = in.chance(40);
    const std::size_t length = in.chance(3) ? in.below(9) : nodes;
    a.values() = read_real_list(in, length);
    a.field() = read_metrics(in, {in.rows({3, 6}), length});
    if (in.chance(40)) make_reproduced(a);
}

void prepare(input& in, arguments& a)
{
    prepare_rows(in, a, in.rows({3, 4}));
}

/// Metrics are carried by triangles only.
void prepare_triangles(input& in, arguments& a)
{
    prepare_rows(in, a, in.rows({3, 3, 3, 3, 3, 3, 3, 4}));
}

/// The first failure of the checks that all forms share; the last one looks at the field.
int background_failure(const arguments& a, element_type type, std::size_t field_length,
                       bool right_field)
{
    const ids& connect = a.connect();
    const std::size_t nodes = a.coords().cols;
    if (a.coords().rows != 2) return -1;
    if (!holds_elements(connect, type, nodes)) return -2;
    if (!same_shape(a.neighbors(), connect)) return -3;
    if (!holds_IDs(a.neighbors(), connect.cols, true)) return -3;
    if (a.node_element().size != nodes) return -4;
    return field_length == nodes && right_field ? 0 : -5;
}

int listed_failure(const arguments& a, element_type type, std::size_t length, bool right_field)
{
    if (a.nodes().size == 0) return 0;
    if (const int failure = background_failure(a, type, length, right_field)) return failure;
    return holds_IDs(a.nodes(), a.coords().cols) ? 0 : -6;
}

int field_failure(const arguments& a)
{
    return listed_failure(a, element_type(a.choice), a.field().cols, true);
}
int values_failure(const arguments& a)
{
    return listed_failure(a, element_type(a.choice), a.values().size, true);
}
bool holds_metrics(const arguments& a)
{
    return a.field().rows == 3 || a.field().rows == 6;
}
int metrics_failure(const arguments& a)
{
    return listed_failure(a, ELEMENT_T3, a.field().cols, holds_metrics(a));
}
int all_metrics_failure(const arguments& a)
{
    if (a.coords().cols == 0) return 0;
    return background_failure(a, ELEMENT_T3, a.field().cols, holds_metrics(a));
}
int all_sizes_failure(const arguments& a)
{
    if (a.coords().cols == 0) return 0;
    return background_failure(a, element_type(a.choice), a.values().size, true);
}

const std::vector<int> listed{-1, -2, -3, -4, -5, -6};

const std::vector<call> calls = {
    {"interpolate a matrix",
     returns::zero,
     listed,
     {{FIELD, role::edits}},
     prepare,
     [](arguments& a) {
         return interpolate(a.coords(), a.connect(), a.neighbors(), a.node_element(), a.field(),
                            a.nodes(), element_type(a.choice));
     },
     field_failure,
     verify_kept},
    {"interpolate",
     returns::zero,
     listed,
     {{VALUES, role::edits}},
     prepare,
     [](arguments& a) {
         return interpolate(a.coords(), a.connect(), a.neighbors(), a.node_element(), a.values(),
                            a.nodes(), element_type(a.choice));
     },
     values_failure,
     verify_list<false, true>},
    {"interpolate_metrics",
     returns::zero,
     listed,
     {{FIELD, role::edits}},
     prepare_triangles,
     [](arguments& a) {
         return interpolate_metrics(a.coords(), a.connect(), a.neighbors(), a.node_element(),
                                    a.field(), a.nodes(), a.flag, element_type(a.choice));
     },
     metrics_failure,
     verify_matrix<false>},
    {"interpolate_metrics of all",
     returns::zero,
     listed,
     {{FIELD, role::edits}},
     prepare_triangles,
     [](arguments& a) {
         return interpolate_metrics(a.coords(), a.connect(), a.neighbors(), a.node_element(),
                                    a.field(), a.flag, element_type(a.choice));
     },
     all_metrics_failure,
     verify_matrix<true>},
    {"interpolate_metrics of sizes",
     returns::zero,
     listed,
     {{VALUES, role::edits}},
     prepare,
     [](arguments& a) {
         return interpolate_metrics(a.coords(), a.connect(), a.neighbors(), a.node_element(),
                                    a.values(), a.nodes(), a.flag, element_type(a.choice));
     },
     values_failure,
     verify_list<false, false>},
    {"interpolate_metrics of all sizes",
     returns::zero,
     listed,
     {{VALUES, role::edits}},
     prepare,
     [](arguments& a) {
         return interpolate_metrics(a.coords(), a.connect(), a.neighbors(), a.node_element(),
                                    a.values(), a.flag, element_type(a.choice));
     },
     all_sizes_failure,
     verify_list<true, false>},
};

} // namespace

const std::vector<call>& fuzz::family()
{
    return calls;
}
