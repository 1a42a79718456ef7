// The frame and the containers' free functions under fuzzed arguments.
#include "fuzz/expectations.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

#include <cstring>

using namespace fuzz;
using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

void prepare_area(input& in, arguments& a)
{
    read_mesh(in, a, {in.rows({3, 4}), in.rows({2, 3}), in.below(3)});
}

int area_failure(const arguments& a)
{
    return a.connect().is_empty() ? 0 : faces_failure(a);
}

void verify_area(const arguments& before, const arguments& after, int status)
{
    const double area = after.real_out;
    if (status != 0 || before.connect().is_empty()) {
        promise(same(area, 0.0), "0 without elements and on failure");
        return;
    }
    if (before.coords().rows == 3) promise(!(area < 0.0), "areas in space are not negative");
    if (!before.tame) return;
    // Exact numbers: a mesh with every element turned round has the opposite area.
    arguments turned = dense_copy(before);
    ids& connect = turned.connect();
    for (std::size_t e = 0; e < connect.cols; ++e) std::swap(connect(0, e), connect(2, e));
    double opposite = 0.0;
    promise(tessalo2d::area(turned.coords(), connect, opposite) == 0, "status of the turned mesh");
    if (before.coords().rows == 2) promise(opposite == -area, "area of the turned mesh");
}

// --------------------------------------------------------------------------------------- checks

void prepare_checks(input& in, arguments& a)
{
    const unsigned nodes = in.below(12);
    const unsigned columns = in.chance(20) ? 40 + in.below(60) : in.below(9); // beyond one block
    a.connect() = read_ids(in, {in.rows({2, 3, 3, 4, 4, 6, 8, 9}), columns}, nodes);
    if (a.connect().rows == 4)
        for (std::size_t j = 0; j < a.connect().cols; ++j)
            if (in.chance(40)) a.connect()(3, j) = UNSET_ID;
    a.nodes() = read_id_list(in, in.chance(20) ? 60 + in.below(90) : in.below(9), nodes);
    a.count[0] = in.chance(80) ? nodes : in.wild_id(nodes);
    a.choice = in.pick({5, 5, 5, 6, 7, 3, int(in.below(26)) - 1});
}

void verify_typed_check(const arguments& before, const arguments&, int status)
{
    const bool allowed =
        holds_elements(before.connect(), element_type(before.choice), before.count[0]);
    promise(status == int(allowed), "entries and rows that the type allows");
}

void verify_matrix_check(const arguments& before, const arguments&, int status)
{
    promise(status == int(holds_IDs(before.connect(), before.count[0], true)),
            "entries below the bound or unset");
}

void verify_list_check(const arguments& before, const arguments&, int status)
{
    promise(status == int(holds_IDs(before.nodes(), before.count[0])), "entries below the bound");
}

// ---------------------------------------------------------------------------------------- appends

void prepare_append(input& in, arguments& a)
{
    const std::size_t rows = in.below(5);
    a.connect() = read_ids(in, {rows, in.below(9)}, 30);
    // New rows of a filled target are left unspecified, so the target has them already.
    const std::size_t target_rows = in.chance(70) ? rows : rows + in.below(3);
    a.result() = read_ids(in, {target_rows, in.chance(30) ? 0 : in.below(9)}, 30);
    a.nodes() = dense1D<unsigned, 8>(a.connect().cols ? in.below(6) : 0);
    for (std::size_t k = 0; k < a.nodes().size; ++k)
        a.nodes()[k] = in.below(unsigned(a.connect().cols));
}

/// Statuses of the wrappers below, which turn a refusal into what exports return.
int status_of(bool done)
{
    return done ? 1 : -199;
}

void verify_append_column(const arguments& before, const arguments& after, int status)
{
    const ids& old = before.result();
    const ids& now = after.result();
    promise((status == 1) == takes(old, 3), "taken where the rows fit");
    if (status != 1) return;
    const std::size_t last = columns_of(old);
    promise(now.rows == 3 && now.cols == last + 1, "one column more");
    for (unsigned i = 0; i < 3; ++i) promise(now(i, last) == 7 + i, "its entries");
}

void verify_append_columns(const arguments& before, const arguments& after, int status)
{
    const ids& source = before.connect();
    const std::size_t last = columns_of(before.result());
    const ids& now = after.result();
    if (status != 1 || source.is_empty()) return;
    promise(now.cols == last + source.cols, "all columns");
    for (std::size_t j = 0; j < source.cols; ++j)
        for (std::size_t i = 0; i < source.rows; ++i)
            promise(now(i, last + j) == source(i, j), "their entries");
}

void verify_append_selected(const arguments& before, const arguments& after, int status)
{
    const ids& source = before.connect();
    const auto& list = before.nodes();
    const std::size_t last = columns_of(before.result());
    const ids& now = after.result();
    if (status != 1 || source.is_empty() || list.size == 0) return;
    promise(now.cols == last + list.size, "all listed columns");
    for (std::size_t k = 0; k < list.size; ++k)
        for (std::size_t i = 0; i < source.rows; ++i)
            promise(now(i, last + k) == source(i, list[k]), "their entries");
}

int no_failure(const arguments&)
{
    return 0;
}

// ---------------------------------------------------------------------------------------- table

const std::vector<call> calls = {
    {"version",
     returns::zero,
     {},
     {},
     [](input&, arguments&) {},
     [](arguments&) { return std::strcmp(version(), "5.1.0.0"); },
     no_failure,
     [](const arguments&, const arguments&, int) {}},
    {"area",
     returns::zero,
     {-1, -2},
     {},
     prepare_area,
     [](arguments& a) { return area(a.coords(), a.connect(), a.real_out); },
     area_failure,
     verify_area},
    {"check_IDs of a type",
     returns::count,
     {},
     {},
     prepare_checks,
     [](arguments& a) {
         return int(tessalo::check_IDs(a.connect(), element_type(a.choice), a.count[0]));
     },
     no_failure,
     verify_typed_check},
    {"check_IDs of a matrix",
     returns::count,
     {},
     {},
     prepare_checks,
     [](arguments& a) { return int(tessalo::check_IDs(a.connect(), a.count[0])); },
     no_failure,
     verify_matrix_check},
    {"check_IDs of a list",
     returns::count,
     {},
     {},
     prepare_checks,
     [](arguments& a) { return int(tessalo::check_IDs(a.nodes(), a.count[0])); },
     no_failure,
     verify_list_check},
    {"append_column",
     returns::count,
     {},
     {{RESULT, role::appends}},
     prepare_append,
     [](arguments& a) {
         const unsigned entries[] = {7, 8, 9};
         return status_of(append_column(a.result(), entries));
     },
     no_failure,
     verify_append_column,
     true,
     true},
    {"append_columns",
     returns::count,
     {},
     {{RESULT, role::appends}},
     prepare_append,
     [](arguments& a) { return status_of(append_columns(a.connect(), a.result())); },
     no_failure,
     verify_append_columns,
     false,
     true},
    {"append_selected_columns",
     returns::count,
     {},
     {{RESULT, role::appends}},
     prepare_append,
     [](arguments& a) {
         return status_of(append_selected_columns(a.connect(), a.nodes(), a.result()));
     },
     no_failure,
     verify_append_selected,
     false,
     true},
};

} // namespace

const std::vector<call>& fuzz::family()
{
    return calls;
}
