// Numbering by first appearance: through a table of all nodes where the line uses a fair share of
// them, through a hash table where a short line lies in a large mesh.
#include "extrusion/node_map.h"

#include "foundation/chained_hash.h"

#include <vorel/element_type.h>

namespace vorel::tessalo2d {

namespace {

/// A line of fewer edges than one to so many nodes is hashed: the table would take more storage.
constexpr std::size_t SPARSE = 16;

/// The map entries by one slot for each node of the mesh.
class node_table {
public:
    [[nodiscard]] bool init(std::size_t nodes) { return copies.resize(nodes, UNSET_ID); }

    /// The copy of a node: the one that it has, or else `fresh`. Null when storage is refused.
    const unsigned* find_or_insert(unsigned id, unsigned fresh)
    {
        unsigned& copy = copies[id];
        if (copy == UNSET_ID) copy = fresh;
        return &copy;
    }

private:
    dense1D<unsigned, 8> copies;
};

/// The map entries by hashing.
class node_hash {
public:
    [[nodiscard]] bool init(std::size_t edges)
    {
        if (!map.init(23, 23)) return false;
        map.expect(edges);
        return true;
    }

    const unsigned* find_or_insert(unsigned id, unsigned fresh)
    {
        if (!map.prepare_insertion()) return nullptr;
        const auto* const slot = map.find_or_insert({id, fresh});
        // A map that can't grow hands back another node's slot.
        return slot->first.first == id ? &slot->first.second : nullptr;
    }

private:
    chained_hash<std::pair<unsigned, unsigned>> map;
};

template <class Numbers>
bool number_nodes(const dense2D<unsigned>& connect, unsigned first_id, Numbers& numbers,
                  node_map& map)
{
    const std::size_t edges = connect.cols;
    const std::size_t ld = connect.ld;
    const unsigned* edge = connect.column(0);
    unsigned* const source = map.sources.begin();
    unsigned* copy = map.copies.column(0);
    unsigned rank = 0;
    for (std::size_t e = 0; e < edges; ++e, edge += ld)
        for (int end = 0; end < 2; ++end) {
            const unsigned fresh = first_id + rank;
            const unsigned* const found = numbers.find_or_insert(edge[end], fresh);
            if (!found) return false;
            *copy++ = *found;
            if (*found == fresh) source[rank++] = edge[end];
        }
    return map.sources.resize(rank);
}

} // namespace

bool extrusion_node_map(const dense2D<unsigned>& connect, unsigned first_id, std::size_t nodes,
                        node_map& map)
{
    const std::size_t edges = connect.cols;
    const bool dense = nodes / SPARSE <= edges;
    if (!map.sources.resize(std::min(2 * edges, nodes))) return false;
    if (!map.copies.resize(2, edges)) return false;
    if (dense) {
        node_table table;
        return table.init(nodes) && number_nodes(connect, first_id, table, map);
    }
    node_hash hash;
    return hash.init(edges) && number_nodes(connect, first_id, hash, map);
}

} // namespace vorel::tessalo2d
