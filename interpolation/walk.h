// The randomised walk from element to element towards a point.
#pragma once

#include "interpolation/background_mesh.h"
#include "interpolation/side_draw.h"

namespace vorel::tessalo2d {

inline constexpr int INSIDE_ALL_SIDES = -1;
inline constexpr int DEGENERATE_ELEMENT = -2;

/// How a walk ended.
enum walk_end : int {
    WALK_FOUND = 1,
    /// It left the mesh, or overran the step limit.
    WALK_LEFT = 0,
    WALK_DEGENERATE = -1,
    /// It ended for another reason, but exactly at the step limit.
    WALK_AT_LIMIT = -2
};

/// The sides of an element that a point lies outside of.
struct side_test {
    /// The element has a positive and finite area.
    bool proper;
    unsigned char sides;
    /// Bit i: outside side i by more than the tolerance.
    unsigned char outside;
};

/// All sides are tested without a branch: which one fails first is decided afterwards. A side fails
/// when its doubled area with the point is not at or above -(doubled area * tolerance), so the
/// margin is relative to the element's own area.
template <mesh_form F>
inline side_test test_sides(const background_mesh& mesh, const vec2& point, const unsigned* column,
                            double tolerance)
{
    constexpr double LARGEST = 1.7976931348623157e308;
    const auto result = [&](double area, unsigned sides, auto... doubled_areas) {
        const double threshold = -(area * tolerance);
        unsigned outside = 0;
        unsigned side = 0;
        ((outside |= unsigned(!(doubled_areas >= threshold)) << side++), ...);
        return side_test{area > 0.0 && area <= LARGEST, static_cast<unsigned char>(sides),
                         static_cast<unsigned char>(outside)};
    };
    const auto both = [](const vec2& p, const vec2& q) { return load_both<2>(p.data, q.data); };
    const vec2 p0 = mesh.point(column[0]);
    const vec2 p1 = mesh.point(column[1]);
    const vec2 p2 = mesh.point(column[2]);
    if (!is_quad<F>(column)) {
        // The element itself and side 2, then sides 0 and 1.
        const vec<2, lanes> from = both(p2, point);
        const lanes first = cross2(p0 - from, p1 - from);
        const lanes second = cross2(both(p1, p2) - point, both(p2, p0) - point);
        return result(first[0], 3, second[0], second[1], first[1]);
    }
    const vec2 p3 = mesh.point(column[3]);
    const lanes first = cross2(both(p0, p1) - point, both(p1, p2) - point);
    const lanes second = cross2(both(p2, p3) - point, both(p3, p0) - point);
    const double area = quad_double_area<2>(mesh.points, mesh.point_ld, column);
    return result(area, 4, first[0], first[1], second[0], second[1]);
}

/// The first failing side in cyclic order from the one after `start_side`, which comes last. At
/// least one side fails.
inline unsigned first_outside(const side_test& test, unsigned start_side)
{
    const unsigned sides = test.sides;
    const unsigned outside = test.outside;
    const unsigned twice = outside | outside << sides;
    const unsigned ahead = start_side + 1;
    const unsigned side = ahead + static_cast<unsigned>(__builtin_ctz(twice >> ahead));
    return side >= sides ? side - sides : side;
}

/// A side that the point is outside of, the first in cyclic order from the one after `start_side`;
/// `INSIDE_ALL_SIDES`; or `DEGENERATE_ELEMENT` for an element that is flat, clockwise or too large.
template <mesh_form F>
int side_outside(const background_mesh& mesh, const vec2& point, const unsigned* column,
                 double tolerance, unsigned start_side)
{
    const side_test test = test_sides<F>(mesh, point, column, tolerance);
    if (!test.proper) return DEGENERATE_ELEMENT;
    if (test.outside == 0) return INSIDE_ALL_SIDES;
    return static_cast<int>(first_outside(test, start_side));
}

/// Draws 0 to 3 to sides: a triangle's side 0 is drawn twice as often as the others.
inline unsigned start_side(unsigned drawn, unsigned sides)
{
    return drawn < sides ? drawn : drawn - sides;
}

/// Side tests of one point that were made before its walk, in the order in which the walk is
/// likely to need them. A test depends on the element and the point alone, so it is never wrong.
struct known_tests {
    static constexpr unsigned MOST = 6;

    void add(unsigned element, side_test test)
    {
        elements[size] = element;
        tests[size] = test;
        ++size;
    }
    /// Whether the test number `step` is that of the element.
    bool holds(std::size_t step, unsigned element) const
    {
        return step < size && elements[step] == element;
    }
    /// The element tested last when the point is inside it, or `UNSET_ID`.
    unsigned last_inside() const
    {
        if (size == 0 || !tests[size - 1].proper || tests[size - 1].outside != 0) return UNSET_ID;
        return elements[size - 1];
    }

    unsigned size = 0;
    unsigned elements[MOST];
    side_test tests[MOST];
};

/// Walks from `element` to the element that holds the point. Each step takes one draw and leaves
/// through a side that the point is outside of, preferably one with a neighbour. `steps` counts the
/// steps; their limit is the number of elements. Any end but `WALK_FOUND` unsets `element`.
template <mesh_form F>
walk_end walk_to_element(const background_mesh& mesh, const vec2& point, unsigned& element,
                         double tolerance, std::size_t& steps, side_draw& draw,
                         const known_tests& known = known_tests())
{
    const std::size_t limit = mesh.elements;
    walk_end end = WALK_LEFT;
    steps = 0;
    while (element != UNSET_ID) {
        const std::size_t step = steps++;
        if (step >= limit) break;
        const side_test test = known.holds(step, element)
                                   ? known.tests[step]
                                   : test_sides<F>(mesh, point, mesh.column(element), tolerance);
        unsigned start = start_side(draw.draw(), test.sides);
        if (!test.proper) {
            end = WALK_DEGENERATE;
            break;
        }
        if (test.outside == 0) return WALK_FOUND;
        const unsigned* const neighbors = mesh.neighbors(element);
        element = neighbors[first_outside(test, start)];
        for (unsigned retry = 1; element == UNSET_ID && retry < test.sides; ++retry) {
            start = start + 1 < test.sides ? start + 1 : 0;
            element = neighbors[first_outside(test, start)];
        }
    }
    // A walk that overran the limit has a fallback, one that ended on its last step has none:
    // callers rely on it.
    if (steps == limit) end = WALK_AT_LIMIT;
    element = UNSET_ID;
    return end;
}

} // namespace vorel::tessalo2d
