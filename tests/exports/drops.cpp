#include "exports/drops.h"

#include "exports/outcome.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace exports {

namespace {

double real(std::uint64_t bits)
{
    double x;
    std::memcpy(&x, &bits, 8);
    return x;
}

/// What argument `name` holds in a result.
const picture& held(const exported& e, const result& r, const std::string& name)
{
    std::size_t k = 0;
    while (e.slots[k].name != name) ++k;
    return r.after[k];
}

bool same_column(const picture& a, std::size_t j, const picture& b, std::size_t k)
{
    for (std::size_t i = 0; i < a.rows; ++i)
        if (a(i, j) != b(i, k)) return false;
    return true;
}

/// True if `part` has entries of `whole` in their order, and fewer.
bool is_part_of(const picture& part, const picture& whole)
{
    std::size_t next = 0;
    for (const std::uint64_t id : part.bits) {
        while (next < whole.bits.size() && whole.bits[next] != id) ++next;
        if (next++ == whole.bits.size()) return false;
    }
    return part.bits.size() < whole.bits.size();
}

bool unlisted_column(const exported& e, const arguments&, const result& got, const result& calm)
{
    const picture& listed = held(e, got, "converted_IDs");
    return held(e, got, "connect") == held(e, calm, "connect") &&
           is_part_of(listed, held(e, calm, "converted_IDs")) &&
           got.status == static_cast<int>(listed.cols);
}

/// The lists of the first nodes, and the end of the last one as the closing entry.
bool early_end(const exported& e, const arguments&, const result& got, const result& calm)
{
    const picture& offsets = held(e, got, "offsets");
    const picture& elements = held(e, got, "elements");
    const picture& all = held(e, calm, "offsets");
    if (got.status != 0 || offsets.cols < 2 || offsets.cols > all.cols) return false;
    return std::equal(offsets.bits.begin(), offsets.bits.end() - 1, all.bits.begin()) &&
           offsets.bits.back() == elements.cols &&
           keeps_columns(elements, held(e, calm, "elements")) &&
           elements.cols < held(e, calm, "elements").cols;
}

bool no_target_served(const exported& e, const arguments& fresh, const result& got, const result&)
{
    return got.status == 0 && held(e, got, "field") == picture_of(fresh["field"]);
}

/// A target that is not located for want of a node gets what it is given when it lies off the mesh:
/// the value of a node, or its own.
bool node_not_found(const exported& e, const arguments& fresh, const result& got,
                    const result& calm)
{
    const picture& now = held(e, got, "field");
    const picture& wanted = held(e, calm, "field");
    const picture old = picture_of(fresh["field"]);
    const ID_list& holder = fresh.get<ID_list>("node_element");
    for (std::size_t j = 0; j < now.cols; ++j) {
        bool known = same_column(now, j, wanted, j) || same_column(now, j, old, j);
        for (std::size_t k = 0; k < now.cols && holder[j] == UNSET_ID; ++k)
            known = known || (holder[k] != UNSET_ID && same_column(now, j, old, k));
        if (!known) return false;
    }
    return got.status == 0;
}

/// The result is that of a call without one of the last ridges, or without all from it on.
bool ridge_crossed(const exported& e, const arguments& fresh, const result& got, const result&)
{
    const std::size_t count = fresh.cols("ridges");
    const auto without = [&](std::size_t begin, std::size_t end) {
        arguments a(fresh);
        IDs& ridges = a.get<IDs>("ridges");
        std::size_t kept = 0;
        for (std::size_t j = 0; j < count; ++j) {
            if (begin <= j && j < end) continue;
            for (std::size_t i = 0; i < 2; ++i) ridges(i, kept) = ridges(i, j);
            ++kept;
        }
        ridges.cols = kept;
        return e.run(a) == got.status && picture_of(a["curvatures"]) == held(e, got, "curvatures");
    };
    // Those that an element has stand at the end.
    for (std::size_t j = count; j > 0 && j + 30 > count; --j)
        if (without(j - 1, j) || without(j - 1, count)) return true;
    return false;
}

/// Each column is that of an undisturbed call, or of another patch: zeros, or two directions at
/// right angles and two values of which the first is the larger.
bool smaller_patch(const exported& e, const arguments&, const result& got, const result& calm)
{
    const picture& now = held(e, got, "curvatures");
    const picture& wanted = held(e, calm, "curvatures");
    if (now.rows != wanted.rows || now.cols != wanted.cols) return false;
    for (std::size_t j = 0; j < now.cols; ++j) {
        if (same_column(now, j, wanted, j)) continue;
        bool zeros = true;
        for (std::size_t i = 0; i < now.rows; ++i) zeros = zeros && now(i, j) == 0;
        if (zeros) continue;
        double uu = 0.0, vv = 0.0, uv = 0.0;
        for (std::size_t i = 0; i < 3; ++i) {
            const double u = real(now(i, j)), v = real(now(i + 3, j));
            uu += u * u;
            vv += v * v;
            uv += u * v;
        }
        if (!(std::abs(uu - 1.0) + std::abs(vv - 1.0) + std::abs(uv) < 1e-9)) return false;
        if (!(std::abs(real(now(6, j))) >= std::abs(real(now(7, j))))) return false;
    }
    return got.status == 0;
}

/// `coords` begins with the nodes from before, and has at most `per_element` new ones an element.
bool nodes_are_added(const exported& e, const arguments& fresh, const result& got,
                     std::size_t per_element)
{
    const picture before = picture_of(fresh["coords"]);
    const picture& now = held(e, got, "coords");
    return now.cols >= before.cols &&
           now.cols <= before.cols + per_element * fresh.cols("connect") &&
           keeps_columns(before, now);
}

/// The elements keep their corners, and every node that a side lists stands where it would stand
/// undisturbed; a side without nodes lists none, or one that was met again has a run of its own.
bool side_without_nodes(const exported& e, const arguments& fresh, const result& got,
                        const result& calm)
{
    const bool in_place = e.slots.size() < 7;
    const picture& now = held(e, got, in_place ? "connect" : "result");
    const picture& wanted = held(e, calm, in_place ? "connect" : "result");
    const picture& points = held(e, got, "coords");
    const picture& wanted_points = held(e, calm, "coords");
    if (now.rows != wanted.rows || now.cols != wanted.cols) return false;
    for (std::size_t j = 0; j < now.cols; ++j)
        for (std::size_t i = 0; i < now.rows; ++i) {
            if (now(i, j) == UNSET_ID) continue;
            if (now(i, j) >= points.cols || wanted(i, j) == UNSET_ID) return false;
            if (!same_column(points, now(i, j), wanted_points, wanted(i, j))) return false;
        }
    return got.status == 0 && nodes_are_added(e, fresh, got, now.rows - fresh.rows("connect"));
}

/// True if some element has all nodes of column `j` of `children` that are neither new nor middles
/// of the given edges.
bool is_inside_one(const arguments& fresh, const picture& children, std::size_t j)
{
    const IDs& connect = fresh.get<IDs>("connect");
    const IDs& edges = fresh.get<IDs>("edges");
    const std::size_t nodes = fresh.cols("coords");
    const auto is_middle = [&](std::uint64_t id) {
        for (std::size_t k = 0; k < edges.cols && edges.rows == 3; ++k)
            if (edges(2, k) == id) return true;
        return false;
    };
    for (std::size_t parent = 0; parent < connect.cols; ++parent) {
        const unsigned* const corners = connect.column(parent);
        bool all = true;
        for (std::size_t i = 0; i < children.rows; ++i) {
            const std::uint64_t id = children(i, j);
            all = all && (id == UNSET_ID || id >= nodes || is_middle(id) ||
                          std::find(corners, corners + connect.rows, id) != corners + connect.rows);
        }
        if (all) return true;
    }
    return false;
}

/// The same inside the cut into quadrilaterals: a corner of a child can be missing, and a
/// quadrilateral without nodes on its last side is cut like a triangle.
bool child_without_corner(const exported& e, const arguments& fresh, const result& got,
                          const result& calm)
{
    const picture& now = held(e, got, "result");
    const std::size_t bound = held(e, got, "coords").cols;
    for (std::size_t j = fresh.cols("result"); j < now.cols; ++j)
        if (!is_inside_one(fresh, now, j)) return false;
    // A node for each side and one inside.
    return got.status == 0 && nodes_are_added(e, fresh, got, 5) && now.rows == 4 &&
           now.cols <= held(e, calm, "result").cols &&
           keeps_columns(picture_of(fresh["result"]), now) && good_or_unset(now, bound);
}

} // namespace

const std::vector<drop>& drops()
{
    static const std::vector<drop> all = {
        {{"convert_degenerated_Q("}, "a converted column in the list of them", unlisted_column},
        {{"get_connected_elements("}, "the lists from a node on", early_end},
        {{"interpolate(", "interpolate_metrics("},
         "the list of the background's nodes: no target is served",
         no_target_served},
        {{"interpolate(", "interpolate_metrics("},
         "a node of the background in the tree, or an element around one",
         node_not_found},
        {{"principal_curvatures("}, "a ridge in the set of ridges", ridge_crossed},
        {{"principal_curvatures("}, "a triangle in the list of a patch", smaller_patch},
        {{"convert_into_high_order(", "convert_into_quadratic("},
         "an edge in the table of edges",
         side_without_nodes},
        {{"split_into_Q4("}, "an edge in the table of edges on the way", child_without_corner},
    };
    return all;
}

const drop* drop_that_shows(const exported& e, const arguments& fresh, const result& got,
                            const result& undisturbed)
{
    for (const drop& d : drops())
        for (const std::string& name : d.functions)
            if (e.signature.rfind("vorel::tessalo2d::" + name, 0) == 0 &&
                d.shows(e, fresh, got, undisturbed))
                return &d;
    return nullptr;
}

} // namespace exports
