#include "exports/examples.h"
#include "exports/table.h"

namespace exports {

namespace {

/// Codes of the checks of a sweep, in the order of the checks; 0 is no check. Kept: callers rely on
/// each row as it stands.
struct codes {
    int rows;
    int ids;
    int h0;
    int h1;
    int pattern;
    int output;
};

/// How a sweep is driven: a fixed number of layers, or the sizes at both ends.
enum class drive { fixed, sized };

/// The shape of a sweep beside its codes.
struct sweep {
    drive driven;
    /// Row counts of `coords` that pass, and of an output that has columns.
    std::vector<std::size_t> coords_rows;
    std::size_t output_rows;
    bool quads;
    codes code;
};

const value CENTER2 = vector2{{0.25, -1.0}};
const value CENTER3 = vector3{{0.25, -1.0, 0.5}};
const value ROTATION = vector3{{0.3, -0.2, 1.1}};
const value MOVE2 = vector2{{0.5, 2.0}};
const value MOVE3 = vector3{{0.5, 2.0, -1.0}};

/// The slots of a sweep: the line, the motion, how it is driven, the output. Where a T3 overload
/// takes sizes, `pattern` stands before `force_even`.
std::vector<slot> slots_of(const sweep& s, const std::vector<slot>& motion)
{
    slot coords = coords_grown(PLANE, state::columns_back);
    // The sized translation of triangles in the plane widens on the way.
    const bool plane_translation =
        motion.size() == 1 && std::holds_alternative<vector2>(motion[0].valid);
    if (plane_translation && s.driven == drive::sized && !s.quads) coords.rows_on_the_way = 3;
    std::vector<slot> all = {coords, connect_in(IDs{{2, 0}, {0, 3}})};
    all.insert(all.end(), motion.begin(), motion.end());
    if (s.driven == drive::fixed) {
        all.push_back(number("N", kind::count, 3u));
    } else {
        all.push_back(number("h0", kind::size, 0.4));
        all.push_back(number("h1", kind::size, 0.8));
    }
    if (!s.quads) all.push_back(number("pattern", kind::choice, 2));
    if (s.driven == drive::sized) all.push_back(number("force_even", kind::flag, true));
    IDs old;
    if (s.output_rows == 4) old = IDs{{9, 8, 7, 6}};
    if (s.output_rows == 3) old = IDs{{9, 8, 7}};
    all.push_back(elements_grown(s.quads ? "connectQ" : "connectT", old, state::columns_back));
    return all;
}

std::vector<step> steps_of(const sweep& s)
{
    std::vector<step> steps;
    if (s.driven == drive::fixed) steps.push_back(none_at_zero("N"));
    steps.push_back(none_if_empty("connect"));
    steps.push_back(refuse(
        "rows of coords",
        [accepted = s.coords_rows](const arguments& a) {
            for (const std::size_t n : accepted)
                if (a.rows("coords") == n) return false;
            return true;
        },
        s.code.rows));
    steps.push_back(typed_IDs("connect", ELEMENT_E2, "coords", s.code.ids));
    if (s.code.h0 && s.driven == drive::sized) {
        steps.push_back(above_zero("h0", s.code.h0));
        steps.push_back(above_zero("h1", s.code.h1));
    }
    // A spiral of a fixed count derives its sizes from the translation.
    if (s.code.h0 && s.driven == drive::fixed)
        steps.push_back(refuse(
            "length of translation",
            [](const arguments& a) {
                const vector3& t = a.get<vector3>("translation");
                return !(t[0] * t[0] + t[1] * t[1] + t[2] * t[2] > 0.0);
            },
            s.code.h0));
    if (s.code.pattern) steps.push_back(pattern_checked(s.code.pattern));
    steps.push_back(takes(s.quads ? "connectQ" : "connectT", {s.output_rows}, s.code.output));
    return steps;
}

template <class... A>
exported sweep_row(const std::string& name, int (*f)(reals&, const IDs&, A...),
                   const std::vector<slot>& motion, const sweep& s)
{
    exported e = overload<reals&, const IDs&, A...>::row(name, f, slots_of(s, motion), steps_of(s));
    e.enlarge = [](arguments& a) {
        // A line of few edges, out of order, among many nodes.
        a["coords"] = support::grid_T3(30, 30, a.rows("coords")).coords;
        IDs line(2, 50);
        for (unsigned k = 0; k < 50; ++k) {
            line(0, k) = (k * 147) % 961;
            line(1, k) = (k * 147 + 3) % 961;
        }
        a["connect"] = line;
    };
    return e;
}

slot motion(const std::string& name, const value& valid)
{
    return number(name, kind::measure, valid);
}

void add_translations(std::vector<exported>& all)
{
    using namespace tessalo2d;
    constexpr drive fixed = drive::fixed;
    constexpr drive sized = drive::sized;
    const std::vector<slot> plane = {motion("V", MOVE2)};
    const std::vector<slot> space = {motion("V", MOVE3)};
    const char* const Q4 = "extrude_translate_Q4";
    const char* const T3 = "extrude_translate_T3";
    const auto add = [&](exported e) { all.push_back(std::move(e)); };
    using count = unsigned;
    add(sweep_row<const vector2&, count, IDs&>(Q4, extrude_translate_Q4, plane,
                                               {fixed, {2}, 4, true, {-1, -2, 0, 0, 0, -5}}));
    add(sweep_row<const vector2&, double, double, bool, IDs&>(
        Q4, extrude_translate_Q4, plane, {sized, {2}, 4, true, {-1, -2, -4, -5, 0, -7}}));
    add(sweep_row<const vector3&, count, IDs&>(Q4, extrude_translate_Q4, space,
                                               {fixed, {2, 3}, 4, true, {-1, -2, 0, 0, 0, -5}}));
    add(sweep_row<const vector3&, double, double, bool, IDs&>(
        Q4, extrude_translate_Q4, space, {sized, {2, 3}, 4, true, {-1, -2, -4, -5, 0, -7}}));
    add(sweep_row<const vector2&, count, int, IDs&>(
        T3, extrude_translate_T3, plane, {fixed, {2}, 3, false, {-1, -2, 0, 0, -5, -6}}));
    add(sweep_row<const vector2&, double, double, int, bool, IDs&>(
        T3, extrude_translate_T3, plane, {sized, {2}, 3, false, {-1, -2, -4, -5, -6, -8}}));
    add(sweep_row<const vector3&, count, int, IDs&>(
        T3, extrude_translate_T3, space, {fixed, {2, 3}, 3, false, {-1, -2, 0, 0, -5, -6}}));
    add(sweep_row<const vector3&, double, double, int, bool, IDs&>(
        T3, extrude_translate_T3, space, {sized, {2, 3}, 3, false, {-1, -2, -4, -5, -6, -8}}));
}

void add_rotations(std::vector<exported>& all)
{
    using namespace tessalo2d;
    constexpr drive fixed = drive::fixed;
    constexpr drive sized = drive::sized;
    const std::vector<slot> plane = {motion("center", CENTER2), motion("angle", 1.25)};
    const std::vector<slot> space = {motion("center", CENTER3), motion("rotation", ROTATION)};
    const char* const Q4 = "extrude_rotate_Q4";
    const char* const T3 = "extrude_rotate_T3";
    const auto add = [&](exported e) { all.push_back(std::move(e)); };
    using count = unsigned;
    add(sweep_row<const vector2&, double, count, IDs&>(
        Q4, extrude_rotate_Q4, plane, {fixed, {2, 3}, 4, true, {-1, -2, 0, 0, 0, -6}}));
    add(sweep_row<const vector2&, double, double, double, bool, IDs&>(
        Q4, extrude_rotate_Q4, plane, {sized, {2, 3}, 4, true, {-1, -2, -5, -6, 0, -8}}));
    // The two in space take a filled output of 3 rows only, and make 4 of them.
    add(sweep_row<const vector3&, const vector3&, count, IDs&>(
        Q4, extrude_rotate_Q4, space, {fixed, {2, 3}, 3, true, {-1, -2, 0, 0, 0, -3}}));
    add(sweep_row<const vector3&, const vector3&, double, double, bool, IDs&>(
        Q4, extrude_rotate_Q4, space, {sized, {2, 3}, 3, true, {-1, -2, -5, -6, 0, -8}}));
    add(sweep_row<const vector2&, double, count, int, IDs&>(
        T3, extrude_rotate_T3, plane, {fixed, {2, 3}, 3, false, {-1, -2, 0, 0, 0, -7}}));
    add(sweep_row<const vector2&, double, double, double, int, bool, IDs&>(
        T3, extrude_rotate_T3, plane, {sized, {2, 3}, 3, false, {-1, -2, -5, -6, -7, -9}}));
    add(sweep_row<const vector3&, const vector3&, count, int, IDs&>(
        T3, extrude_rotate_T3, space, {fixed, {2, 3}, 3, false, {-1, -2, 0, 0, 0, -7}}));
    add(sweep_row<const vector3&, const vector3&, double, double, int, bool, IDs&>(
        T3, extrude_rotate_T3, space, {sized, {2, 3}, 3, false, {-1, -1, -5, -6, 0, -9}}));
}

void add_spirals(std::vector<exported>& all)
{
    using namespace tessalo2d;
    constexpr drive fixed = drive::fixed;
    constexpr drive sized = drive::sized;
    const std::vector<slot> screw = {motion("center", CENTER3), motion("rotation", ROTATION),
                                     motion("translation", MOVE3)};
    const char* const Q4 = "extrude_spiral_Q4";
    const char* const T3 = "extrude_spiral_T3";
    const auto add = [&](exported e) { all.push_back(std::move(e)); };
    using count = unsigned;
    add(sweep_row<const vector3&, const vector3&, const vector3&, count, IDs&>(
        Q4, extrude_spiral_Q4, screw, {fixed, {2, 3}, 4, true, {-1, -2, -6, -7, 0, -9}}));
    add(sweep_row<const vector3&, const vector3&, const vector3&, double, double, bool, IDs&>(
        Q4, extrude_spiral_Q4, screw, {sized, {2, 3}, 4, true, {-1, -2, -6, -7, 0, -9}}));
    add(sweep_row<const vector3&, const vector3&, const vector3&, count, int, IDs&>(
        T3, extrude_spiral_T3, screw, {fixed, {2, 3}, 3, false, {-1, -2, -6, -4, 0, -10}}));
    add(sweep_row<const vector3&, const vector3&, const vector3&, double, double, int, bool, IDs&>(
        T3, extrude_spiral_T3, screw, {sized, {2, 3}, 3, false, {-1, -2, -6, -4, 0, -10}}));
}

} // namespace

std::vector<exported> extrusions()
{
    std::vector<exported> all;
    add_translations(all);
    add_rotations(all);
    add_spirals(all);
    return all;
}

} // namespace exports
