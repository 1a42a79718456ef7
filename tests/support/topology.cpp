#include "support/topology.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace support {

using namespace vorel;

namespace {

using edge = std::pair<unsigned, unsigned>;

unsigned corners(const dense2D<unsigned>& connect, std::size_t e)
{
    return connect.rows == 4 && connect(3, e) != UNSET_ID ? 4 : 3;
}

edge local_edge(const dense2D<unsigned>& connect, std::size_t e, unsigned k)
{
    const unsigned n = corners(connect, e);
    const unsigned from = n == 3 ? (k + 1) % 3 : k;
    const unsigned to = n == 3 ? (k + 2) % 3 : (k + 1) % 4;
    return std::minmax(connect(from, e), connect(to, e));
}

} // namespace

dense2D<unsigned> neighbors_of(const dense2D<unsigned>& connect)
{
    dense2D<unsigned> neighbors(connect.rows, connect.cols, UNSET_ID);
    std::map<edge, std::vector<std::pair<unsigned, std::size_t>>> sides;
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (unsigned k = 0; k < corners(connect, e); ++k)
            sides[local_edge(connect, e, k)].push_back({k, e});
    for (const auto& [key, at] : sides) {
        (void)key;
        if (at.size() < 2) continue;
        neighbors(at[0].first, at[0].second) = static_cast<unsigned>(at[1].second);
        neighbors(at[1].first, at[1].second) = static_cast<unsigned>(at[0].second);
    }
    return neighbors;
}

dense1D<unsigned, 8> node_element_of(const dense2D<unsigned>& connect, std::size_t nodes)
{
    dense1D<unsigned, 8> node_element(nodes, UNSET_ID);
    for (std::size_t e = connect.cols; e-- > 0;)
        for (std::size_t i = 0; i < connect.rows; ++i)
            if (connect(i, e) < nodes) node_element[connect(i, e)] = static_cast<unsigned>(e);
    return node_element;
}

std::size_t edge_count(const dense2D<unsigned>& connect)
{
    std::set<edge> edges;
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (unsigned k = 0; k < corners(connect, e); ++k) edges.insert(local_edge(connect, e, k));
    return edges.size();
}

} // namespace support
