#include "exports/examples.h"
#include "exports/table.h"

namespace exports {

namespace {

support::mesh bowl()
{
    return support::lifted(support::grid_T3(7, 6),
                           [](double x, double y) { return 0.25 * x * x + 0.125 * y * y; });
}

} // namespace

std::vector<exported> curvatures()
{
    using namespace tessalo2d;
    std::vector<exported> all;

    reals derivatives(6, PLANE.cols, 0.0);
    for (std::size_t j = 0; j < PLANE.cols; ++j) {
        derivatives(0, j) = 1.0;
        derivatives(2, j) = PLANE(0, j);
        derivatives(4, j) = 1.0;
    }
    slot uvs = coords_in(PLANE);
    uvs.name = "uvs";
    all.push_back(overload<const reals&, const IDs&, const reals&, reals&>::row(
        "parametric_curvatures", parametric_curvatures,
        {uvs,
         connect_in(TRIANGLES),
         {"derivatives", kind::coordinates, flow::in, derivatives},
         replaced("forms", kind::field, reals{{7.0, 8.0}})},
        {none_if_empty("connect"), rows("uvs", {2}, -1),
         typed_IDs("connect", ELEMENT_T3, "uvs", -2), rows("derivatives", {6}, -3),
         columns_of("derivatives", "uvs", -3)}));

    // What `curvatures` held stays until all checks have passed.
    slot result = replaced("curvatures", kind::field, reals{{7.0, 8.0}});
    result.refused = state::unchanged;
    all.push_back(
        overload<const reals&, const IDs&, const IDs&, double, double, unsigned, const IDs&,
                 reals&>::row("principal_curvatures", principal_curvatures,
                              {coords_in(SPACE),
                               connect_in(TRIANGLES),
                               {"neighbors", kind::elements, flow::in,
                                support::neighbors_of(TRIANGLES)},
                               number("radius", kind::measure, 3.0),
                               number("max_angle", kind::measure, 3.0),
                               number("max_triangles", kind::count, 100u),
                               {"ridges", kind::nodes, flow::in, IDs{{0, 2}}},
                               result},
                              {none_if_empty("connect"), rows("coords", {3}, -1),
                               typed_IDs("connect", ELEMENT_T3, "coords", -2),
                               columns_of("neighbors", "connect", -3),
                               typed_IDs("ridges", ELEMENT_E2, "coords", -7)}));
    all.back().enlarge = [](arguments& a) {
        const support::mesh m = bowl();
        set_mesh(a, m);
        a["neighbors"] = support::neighbors_of(m.connect);
        // The sides along the first rows of nodes behind many edges that no element has.
        IDs ridges = far_pairs(2);
        for (unsigned k = 0; k < 20; ++k) {
            (void)ridges.resize(2, ridges.cols + 1);
            ridges(0, ridges.cols - 1) = k;
            ridges(1, ridges.cols - 1) = k + 1;
        }
        a["ridges"] = ridges;
    };

    // Old columns are refined, so they are not merely kept.
    all.push_back(overload<const reals&, const IDs&, double, reals&>::row(
        "metrics_gen_aniso3d", metrics_gen_aniso3d,
        {coords_in(SPACE),
         connect_in(TRIANGLES),
         number("normal_size", kind::measure, -0.5),
         {"metrics", kind::field, flow::changed, reals{{1, 0, 1, 0, 0, 1}}}},
        {refuse(
             "rows of coords", [](const arguments& a) { return a.rows("coords") < 3; }, -1),
         refuse(
             "connect",
             [](const arguments& a) {
                 const IDs& connect = a.get<IDs>("connect");
                 if (connect.rows != 3) return true;
                 unsigned largest = 0;
                 for (std::size_t j = 0; j < connect.cols; ++j)
                     for (std::size_t i = 0; i < 3; ++i) largest = std::max(largest, connect(i, j));
                 return largest >= a.cols("coords");
             },
             -2),
         takes("metrics", {6}, -4)}));
    all.back().enlarge = [](arguments& a) { set_mesh(a, bowl()); };
    return all;
}

} // namespace exports
