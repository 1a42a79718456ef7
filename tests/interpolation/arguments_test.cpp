// The checks of all interpolations, which share their order: one table for the four that take a
// list.
#include "interpolation/background.h"
#include "support/matrices.h"

#include <functional>

using namespace vorel;
using namespace vorel::tessalo2d;
using support::background;

namespace {

/// A way to break one argument, and its status.
struct breakage {
    const char* name;
    int status;
    std::function<void(background&, dense1D<double, 8>&, dense2D<double>&)> break_it;
    bool only_kind = false;
};

std::vector<breakage> breakages()
{
    return {
        {"three rows of coordinates", -1,
         [](background& b, auto&, auto&) { ASSERT_TRUE(b.coords.resize(3, b.coords.cols, 0.0)); }},
        {"a node ID too large", -2,
         [](background& b, auto&, auto&) {
             b.connect(1, 2) = static_cast<unsigned>(b.coords.cols);
         }},
        {"a kind of another row count", -2,
         [](background& b, auto&, auto&) { b.type = ELEMENT_Q4; }, true},
        {"neighbours of another shape", -3,
         [](background& b, auto&, auto&) {
             ASSERT_TRUE(b.neighbors.resize(3, b.neighbors.cols - 1));
         }},
        {"a neighbour too large", -3,
         [](background& b, auto&, auto&) {
             b.neighbors(0, 0) = static_cast<unsigned>(b.connect.cols);
         }},
        {"too few entries of node_element", -4,
         [](background& b, auto&, auto&) { --b.node_element.size; }},
        {"a field of another size", -5,
         [](background&, auto& run, auto& rows) {
             --run.size;
             --rows.cols;
         }},
        {"a target too large", -6,
         [](background& b, auto&, auto&) { b.targets[1] = static_cast<unsigned>(b.coords.cols); }},
        {"an unset target", -6, [](background& b, auto&, auto&) { b.targets[0] = UNSET_ID; }},
    };
}

struct overload {
    const char* name;
    std::function<int(const background&, dense1D<double, 8>&, dense2D<double>&)> call;
};

std::vector<overload> overloads()
{
    return {
        {"field of rows",
         [](const background& b, auto&, auto& rows) {
             return interpolate(b.coords, b.connect, b.neighbors, b.node_element, rows, b.targets,
                                b.type);
         }},
        {"field",
         [](const background& b, auto& run, auto&) {
             return interpolate(b.coords, b.connect, b.neighbors, b.node_element, run, b.targets,
                                b.type);
         }},
        {"metrics",
         [](const background& b, auto&, auto& rows) {
             return interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, rows,
                                        b.targets, false, b.type);
         }},
        {"sizes",
         [](const background& b, auto& run, auto&) {
             return interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, run,
                                        b.targets, false, b.type);
         }},
    };
}

} // namespace

TEST(InterpolationArguments, EachBadOneHasItsStatusAndTheFirstIsReported)
{
    const auto all = breakages();
    for (const overload& f : overloads())
        for (std::size_t first = 0; first < all.size(); ++first)
            for (const std::size_t last : {first + 1, all.size()}) {
                background b =
                    support::with_random_targets(support::grid_T3(3, 2), ELEMENT_T3, 9, 1);
                dense1D<double, 8> run(b.coords.cols, 5.0);
                dense2D<double> rows(6, b.coords.cols, 6.0);
                for (std::size_t k = last; k-- > first;) all[k].break_it(b, run, rows);
                int status = all[first].status;
                // Metrics ask for triangles whatever the kind.
                if (std::string(f.name) == "metrics" && all[first].only_kind)
                    status = last == all.size() ? all[first + 1].status : 0;
                EXPECT_EQ(f.call(b, run, rows), status) << f.name << ": " << all[first].name;
                if (status == 0) continue;
                EXPECT_EQ(support::elements(run), std::vector<double>(run.size, 5.0));
                EXPECT_EQ(support::columns(rows),
                          support::columns(dense2D<double>(6, rows.cols, 6.0)));
            }
}

TEST(InterpolationArguments, EmptyListIsNothingToDoWhateverTheRest)
{
    const dense2D<double> coords(3, 4, 0.0);
    dense1D<double, 8> run{1.0};
    dense2D<double> rows(4, 4, 0.0);
    const dense2D<unsigned> bad(7, 7, 99u);
    EXPECT_EQ(interpolate(coords, bad, {}, {}, run, {}, ELEMENT_T3), 0);
    EXPECT_EQ(interpolate(coords, bad, {}, {}, rows, {}, ELEMENT_T3), 0);
    EXPECT_EQ(interpolate_metrics(coords, bad, {}, {}, run, {}, true, ELEMENT_T3), 0);
    EXPECT_EQ(interpolate_metrics(coords, bad, {}, {}, rows, {}, true, ELEMENT_T3), 0);
}

TEST(InterpolationArguments, WithoutNodesTheFormsForAllNodesHaveNothingToDo)
{
    const auto none = support::without_columns<double>(3);
    const dense2D<unsigned> bad(5, 5, 7u);
    dense1D<double, 8> run{1.0};
    dense2D<double> rows(4, 4, 0.0);
    EXPECT_EQ(interpolate_metrics(none, bad, {}, {}, run, true, ELEMENT_T3), 0);
    EXPECT_EQ(interpolate_metrics(none, bad, {}, {}, rows, true, ELEMENT_T3), 0);
}
