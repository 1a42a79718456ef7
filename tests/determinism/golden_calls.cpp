// The calls of the families that measure, convert and restructure.
#include "golden_calls.h"

#include "support/topology.h"

#include <utility>

namespace golden {

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

/// The meshes of the plane and of space.
template <class Use>
void each_mesh(const inputs& in, Use use)
{
    for (const mesh& m : in.plane) use(m, m.name + ", plane");
    for (const mesh& m : in.space) use(m, m.name + ", space");
}

void all_of_edge_nodes(const mesh& m, dense2D<unsigned>& edges, std::size_t rows)
{
    // The first sides of some elements have nodes: existing ones.
    for (std::size_t e = 0; e < m.connect.cols; e += 7) {
        (void)edges.resize(rows, edges.cols + 1, m.connect(2, e));
        edges(0, edges.cols - 1) = m.connect(0, e);
        edges(1, edges.cols - 1) = m.connect(1, e);
    }
}

} // namespace

std::vector<golden_call> measure_calls()
{
    return {
        {"version",
         [](const char* function, const inputs&, results& out) {
             out.from(function, "");
             for (const char* c = version(); *c; ++c) out.add("character", int(*c));
         }},
        {"area",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 out.from(function, name);
                 double result = -1.0;
                 out.add("status", area(m.coords, m.connect, result));
                 out.add("result", result);
             });
         }},
        {"angles",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 for (const bool normalized : {false, true}) {
                     out.from(function, name + (normalized ? ", normalized" : ""));
                     dense1D<double, 8> low;
                     dense1D<double, 8> high;
                     out.add("status", angles(m.coords, m.connect, normalized, low, high));
                     out.add("angle_min", low);
                     out.add("angle_max", high);
                 }
             });
         }},
        {"normals(elements)",
         [](const char* function, const inputs& in, results& out) {
             for (const mesh& m : in.space)
                 for (const bool unit : {false, true}) {
                     out.from(function, m.name + (unit ? ", unit" : ""));
                     dense2D<double> vectors;
                     out.add("status", normals(m.coords, m.connect, unit, vectors));
                     out.add("vectors", vectors);
                 }
         }},
        {"normals(nodes)",
         [](const char* function, const inputs& in, results& out) {
             constexpr double LARGEST = 0x1.fffffffffffffp+1023;
             for (const mesh& m : in.space)
                 for (const double weight : {0.0, 1.0, -1.0, 0.5, 2.25, LARGEST, -LARGEST}) {
                     out.from(function, m.name + ", weight " + std::to_string(weight));
                     dense2D<double> vectors;
                     out.add("status", normals(m.coords, m.connect, weight, true, vectors));
                     out.add("vectors", vectors);
                 }
         }},
        {"circumcenters",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 out.from(function, name);
                 dense2D<double> centers;
                 out.add("status", circumcenters(m.coords, m.connect, centers));
                 out.add("centers", centers);
             });
         }},
    };
}

std::vector<golden_call> conversion_calls()
{
    return {
        {"convert_into_linear",
         [](const char* function, const inputs& in, results& out) {
             for (const ids& q : in.quadratic) {
                 out.from(function, q.name);
                 dense2D<unsigned> connect = own(q.connect);
                 out.before("connect", connect);
                 out.add("status", convert_into_linear(connect));
                 out.add("connect", connect);
             }
         }},
        {"split_into_linear",
         [](const char* function, const inputs& in, results& out) {
             for (const ids& q : in.quadratic) {
                 out.from(function, q.name);
                 dense2D<unsigned> result;
                 out.add("status", split_into_linear(q.connect, result));
                 out.add("result", result);
             }
         }},
        {"convert_into_high_order(result)",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 for (const unsigned nodes : {1u, 3u, 4u}) {
                     out.from(function, name + ", " + std::to_string(nodes) + " nodes");
                     dense2D<double> coords = own(m.coords);
                     dense2D<unsigned> edges;
                     dense2D<unsigned> result;
                     const unsigned in_quads = nodes == 3 ? 9 : nodes == 4 ? 4 : 1;
                     out.before("coords", coords);
                     out.add("status",
                             convert_into_high_order(coords, m.connect, nodes, in_quads,
                                                     nodes == 4 ? 3 : nodes / 3, result, edges));
                     out.add("coords", coords);
                     out.add("result", result);
                 }
             });
         }},
        {"convert_into_high_order(in place)",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 out.from(function, name);
                 dense2D<double> coords = own(m.coords);
                 dense2D<unsigned> connect = own(m.connect);
                 dense2D<unsigned> edges;
                 all_of_edge_nodes(m, edges, 4);
                 out.before("coords", coords);
                 out.before("connect", connect);
                 out.add("status", convert_into_high_order(coords, connect, 2, 4, 3, edges));
                 out.add("coords", coords);
                 out.add("connect", connect);
             });
         }},
        {"convert_into_quadratic",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 out.from(function, name);
                 dense2D<double> coords = own(m.coords);
                 dense2D<unsigned> connect = own(m.connect);
                 out.before("coords", coords);
                 out.before("connect", connect);
                 out.add("status", convert_into_quadratic(coords, connect));
                 out.add("coords", coords);
                 out.add("connect", connect);
             });
         }},
        {"convert_into_quadratic(edges)",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 out.from(function, name);
                 dense2D<double> coords = own(m.coords);
                 dense2D<unsigned> connect = own(m.connect);
                 dense2D<unsigned> edges;
                 all_of_edge_nodes(m, edges, 3);
                 out.before("coords", coords);
                 out.before("connect", connect);
                 out.add("status", convert_into_quadratic(coords, connect, edges));
                 out.add("coords", coords);
                 out.add("connect", connect);
             });
         }},
        {"split_into_Q4",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 out.from(function, name);
                 dense2D<double> coords = own(m.coords);
                 dense2D<unsigned> edges;
                 dense2D<unsigned> result;
                 all_of_edge_nodes(m, edges, 3);
                 out.before("coords", coords);
                 out.add("status", split_into_Q4(coords, m.connect, result, edges));
                 out.add("coords", coords);
                 out.add("result", result);
             });
         }},
        {"split_Q4_into_T3(fixed)",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 out.from(function, name);
                 dense2D<unsigned> result;
                 out.add("status", split_Q4_into_T3(m.connect, result));
                 out.add("result", result);
             });
         }},
        {"split_Q4_into_T3(quality)",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 out.from(function, name);
                 dense2D<unsigned> result;
                 out.add("status", split_Q4_into_T3(m.coords, m.connect, result));
                 out.add("result", result);
             });
         }},
        {"split_Q4_into_T3(gated)",
         [](const char* function, const inputs& in, results& out) {
             each_mesh(in, [&](const mesh& m, const std::string& name) {
                 for (int choice = 0; choice <= 7; ++choice) {
                     // At 2 all are cut, so that the diagonals show; at the others the gates do.
                     const double gate = choice < 7 ? 2.0 : 0.5;
                     out.from(function, name + ", criterion " + std::to_string(choice));
                     dense1D<unsigned, 8> kept;
                     dense1D<unsigned, 8> split;
                     dense2D<unsigned> result;
                     out.add("status", split_Q4_into_T3(m.coords, m.connect, gate, gate, gate,
                                                        choice, kept, split, result));
                     out.add("kept_IDs", kept);
                     out.add("split_IDs", split);
                     out.add("result", result);
                 }
             });
         }},
    };
}

std::vector<golden_call> structured_calls()
{
    return {
        {"mesh_struct_Q4",
         [](const char* function, const inputs& in, results& out) {
             for (const loop& l : in.loops) {
                 out.from(function, l.name);
                 dense2D<double> coords = own(l.coords);
                 dense2D<unsigned> connectQ;
                 out.before("coords", coords);
                 out.add("status", mesh_struct_Q4(coords, l.boundary, l.n, connectQ));
                 out.add("coords", coords);
                 out.add("connectQ", connectQ);
             }
         }},
        {"mesh_struct_T3",
         [](const char* function, const inputs& in, results& out) {
             for (const loop& l : in.loops)
                 for (const int pattern : {0, 1, 2}) {
                     out.from(function, l.name + ", pattern " + std::to_string(pattern));
                     dense2D<double> coords = own(l.coords);
                     dense2D<unsigned> connectT;
                     out.before("coords", coords);
                     out.add("status", mesh_struct_T3(coords, l.boundary, l.n, pattern, connectT));
                     out.add("coords", coords);
                     out.add("connectT", connectT);
                 }
         }},
        {"flip",
         [](const char* function, const inputs& in, results& out) {
             for (const ids& q : in.quadratic) {
                 out.from(function, q.name);
                 dense2D<unsigned> connect = own(q.connect);
                 out.before("connect", connect);
                 out.add("status", flip(connect));
                 out.add("connect", connect);
             }
         }},
        {"flip(type)",
         [](const char* function, const inputs& in, results& out) {
             for (const ids& q : in.quadratic) {
                 out.from(function, q.name);
                 dense2D<unsigned> connect = own(q.connect);
                 out.before("connect", connect);
                 out.add("status", flip(connect, ELEMENT_ANY_FACE));
                 out.add("connect", connect);
             }
         }},
        {"convert_degenerated_Q4",
         [](const char* function, const inputs& in, results& out) {
             for (const mesh& m : in.plane) {
                 out.from(function, m.name);
                 dense2D<unsigned> connect = own(m.connect);
                 for (std::size_t e = 0; connect.rows == 4 && e < connect.cols; e += 3)
                     connect(e / 3 % 4, e) = connect((e / 3 + 1) % 4, e);
                 out.before("connect", connect);
                 out.add("status", convert_degenerated_Q4(connect));
                 out.add("connect", connect);
             }
         }},
        {"convert_degenerated_Q",
         [](const char* function, const inputs& in, results& out) {
             for (const ids& q : in.quadratic) {
                 out.from(function, q.name);
                 dense2D<unsigned> connect = own(q.connect);
                 dense1D<unsigned, 8> converted;
                 out.before("connect", connect);
                 out.add("status", convert_degenerated_Q(connect, converted));
                 out.add("connect", connect);
                 out.add("converted_IDs", converted);
             }
         }},
        {"mesh_reorient",
         [](const char* function, const inputs& in, results& out) {
             for (const mesh& m : in.plane)
                 for (const bool contradictory : {false, true}) {
                     out.from(function, m.name + (contradictory ? ", contradictory" : ""));
                     integers draw(5);
                     dense2D<unsigned> connect = own(m.connect);
                     for (std::size_t e = 0; e < connect.cols; ++e)
                         if (draw.below(2) == 0) std::swap(connect(0, e), connect(2, e));
                     // Those from before are at the wrong sides of the elements that were turned.
                     dense2D<unsigned> neighbors =
                         own(contradictory ? m.neighbors : support::neighbors_of(connect));
                     out.before("connect", connect);
                     out.before("neighbors", neighbors);
                     out.add("status", mesh_reorient(connect, neighbors, 3, 1));
                     out.add("connect", connect);
                     out.add("neighbors", neighbors);
                 }
         }},
        {"get_connected_elements",
         [](const char* function, const inputs& in, results& out) {
             for (const mesh& m : in.plane) {
                 out.from(function, m.name);
                 dense1D<unsigned, 8> offsets;
                 dense1D<unsigned, 8> elements;
                 out.add("status", get_connected_elements(m.connect, m.neighbors, m.node_element,
                                                          offsets, elements));
                 out.add("offsets", offsets);
                 out.add("elements", elements);
             }
         }},
    };
}

std::vector<golden_call> all_calls()
{
    std::vector<golden_call> all;
    for (const auto& family : {measure_calls(), conversion_calls(), extrusion_calls(),
                               structured_calls(), interpolation_calls(), metric_calls()})
        all.insert(all.end(), family.begin(), family.end());
    return all;
}

} // namespace golden
