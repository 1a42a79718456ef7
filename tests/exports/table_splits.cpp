#include "exports/examples.h"
#include "exports/table.h"

namespace exports {

std::vector<exported> splits()
{
    using namespace tessalo2d;
    const slot three = elements_grown("result", {{9, 8, 7}}, state::unchanged);
    std::vector<exported> all;

    all.push_back(overload<const IDs&, IDs&>::row(
        "split_Q4_into_T3", split_Q4_into_T3, {connect_in(MIXED), three},
        {none_without_columns("connect"), rows("connect", {3, 4}, -1), takes("result", {3}, -2)},
        1));

    all.push_back(overload<const reals&, const IDs&, IDs&>::row(
        "split_Q4_into_T3", split_Q4_into_T3, {coords_in(PLANE), connect_in(MIXED), three},
        {none_without_columns("connect"), rows("coords", {2, 3}, -1),
         typed_IDs("connect", ELEMENT_ANY_FACE, "coords", -2), takes("result", {3}, -3)},
        1));

    // The quadrilateral is a square: only a threshold above 1 has it cut.
    const auto list = [](const std::string& name) {
        return slot{name,      kind::elements,   flow::grown,
                    ID_list{}, state::unchanged, state::extended};
    };
    const auto threshold = [](const std::string& name, double valid) {
        return number(name, kind::measure, valid);
    };
    all.push_back(
        overload<const reals&, const IDs&, double, double, double, int, ID_list&, ID_list&,
                 IDs&>::row("split_Q4_into_T3", split_Q4_into_T3,
                            {coords_in(SPACE), connect_in(MIXED),
                             threshold("min_shape_quality", 2.0),
                             threshold("min_angle_quality", 0.5), threshold("min_warp", 0.5),
                             number("diagonal_criterion", kind::choice, int(DIAGONAL_LEAST_FOLD)),
                             list("kept_IDs"), list("split_IDs"),
                             elements_grown("result", {{9, 8, 7, 6}}, state::unchanged)},
                            // Kept: the code of `result` is that of the eighth argument.
                            {none_without_columns("connect"), rows("coords", {2, 3}, -1),
                             rows("connect", {4}, -2),
                             typed_IDs("connect", ELEMENT_ANY_FACE, "coords", -2),
                             takes("result", {4}, -8)},
                            1));

    all[0].enlarge = [](arguments& a) { a["connect"] = support::grid_mixed(7, 6).connect; };
    for (std::size_t k = 1; k < all.size(); ++k)
        all[k].enlarge = [](arguments& a) {
            set_mesh(a, support::grid_mixed(7, 6, a.rows("coords")));
        };
    return all;
}

} // namespace exports
