#include "exports/examples.h"
#include "exports/table.h"

namespace exports {

std::vector<exported> measures()
{
    using namespace tessalo2d;
    const real_list old_list = {7.0, 8.0};
    const reals old_matrix = {{7.0, 8.0}};
    std::vector<exported> all;

    slot result = replaced("result", kind::field, 7.0);
    result.refused = state::zeros;
    all.push_back(overload<const reals&, const IDs&, double&>::row(
        "area", area, {coords_in(PLANE), connect_in(MIXED), result},
        {none_if_empty("connect"), rows("coords", {2, 3}, -1), rows("connect", {3, 4}, -2),
         typed_IDs("connect", ELEMENT_ANY_FACE, "coords", -2)}));
    all.back().allocates = false;

    all.push_back(overload<const reals&, const IDs&, bool, real_list&, real_list&>::row(
        "angles", angles,
        {coords_in(PLANE), connect_in(MIXED), number("normalized", kind::flag, false),
         replaced("angle_min", kind::field, old_list),
         replaced("angle_max", kind::field, old_list)},
        {none_if_empty("connect"), rows("coords", {2, 3}, -1), rows("connect", {3, 4}, -2),
         typed_IDs("connect", ELEMENT_ANY_FACE, "coords", -2).leaving(state::zeros)}));

    const std::vector<step> of_normals = {none_if_empty("coords"), none_if_empty("connect"),
                                          rows("coords", {3}, -1), rows("connect", {3, 4}, -2),
                                          IDs_or_unset("connect", "coords", -2)};
    all.push_back(overload<const reals&, const IDs&, bool, reals&>::row(
        "normals", normals,
        {coords_in(SPACE), connect_in(MIXED), number("unit_length", kind::flag, true),
         replaced("vectors", kind::field, old_matrix)},
        of_normals));
    all.push_back(overload<const reals&, const IDs&, double, bool, reals&>::row(
        "normals", normals,
        {coords_in(SPACE), connect_in(MIXED), number("weight_exponent", kind::measure, 1.0),
         number("unit_length", kind::flag, true), replaced("vectors", kind::field, old_matrix)},
        of_normals));

    // Nothing to do is not a case of its own: an empty `connect` needs its rows too.
    all.push_back(overload<const reals&, const IDs&, reals&>::row(
        "circumcenters", circumcenters,
        {coords_in(PLANE), connect_in(TRIANGLES), replaced("centers", kind::field, old_matrix)},
        {rows("coords", {2, 3}, -1), rows("connect", {3}, -2),
         typed_IDs("connect", ELEMENT_T3, "coords", -2)}));

    for (exported& e : all)
        e.enlarge = [](arguments& a) {
            const bool triangles = a.rows("connect") == 3;
            const std::size_t dimension = a.rows("coords");
            set_mesh(a, triangles ? support::grid_T3(7, 6, dimension)
                                  : support::grid_mixed(7, 6, dimension));
        };
    return all;
}

} // namespace exports
