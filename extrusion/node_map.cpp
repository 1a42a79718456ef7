// Numbering by first appearance: without look-ups while the line goes on and on to higher IDs, as a
// mesher's lines mostly do; behind that through a table of all nodes where the line uses a fair
// share of them, through a hash table where a short line lies in a large mesh.
#include "extrusion/node_map.h"

#include "foundation/chained_hash.h"

#include <vorel/element_type.h>

namespace vorel::tessalo2d {

namespace {

/// A line of fewer edges than one to so many nodes is hashed: the table would take more storage.
constexpr std::size_t SPARSE = 16;

/// The ranks in one slot for each node of the mesh. A rank never reaches the mark of the nodes that
/// have none: it is below the number of IDs.
class node_table {
public:
    [[nodiscard]] bool init(std::size_t nodes) { return ranks.resize(nodes, UNSET_ID); }

    /// Where the rank of a node stands, unset for a new one. Null when storage is refused.
    unsigned* rank_of(unsigned id) { return &ranks[id]; }

private:
    dense1D<unsigned, 8> ranks;
};

/// The ranks by hashing.
class node_hash {
public:
    [[nodiscard]] bool init(std::size_t edges)
    {
        if (!map.init(23, 23)) return false;
        map.expect(edges);
        return true;
    }

    unsigned* rank_of(unsigned id)
    {
        if (!map.prepare_insertion()) return nullptr;
        auto* const slot = map.find_or_insert({id, UNSET_ID});
        // A map that can't grow hands back another node's slot.
        return slot->first.first == id ? &slot->first.second : nullptr;
    }

private:
    chained_hash<std::pair<unsigned, unsigned>> map;
};

/// Numbers the edges up to the first that does not go on from the one before it to a higher ID:
/// each of them leads to a new node, which is known without a table. Returns how many they are.
std::size_t number_rising(const dense2D<unsigned>& connect, unsigned first_id, node_map& map)
{
    const std::size_t edges = connect.cols;
    const std::size_t ld = connect.ld;
    const unsigned* edge = connect.column(0);
    unsigned* const source = map.sources.begin();
    unsigned* copy = map.copies.column(0);
    unsigned last = edge[0];
    source[0] = last;
    std::size_t e = 0;
    for (; e < edges && edge[0] == last && edge[1] > last; ++e, edge += ld, copy += 2) {
        last = edge[1];
        source[e + 1] = last;
        copy[0] = first_id + static_cast<unsigned>(e);
        copy[1] = copy[0] + 1;
    }
    return e;
}

/// Numbers the edges from the first one behind the rising ones on.
template <class Ranks>
bool number_others(const dense2D<unsigned>& connect, unsigned first_id, std::size_t rising,
                   Ranks& ranks, node_map& map)
{
    const std::size_t edges = connect.cols;
    unsigned* const source = map.sources.begin();
    unsigned distinct = rising > 0 ? static_cast<unsigned>(rising + 1) : 0;
    for (unsigned rank = 0; rank < distinct; ++rank) {
        unsigned* const slot = ranks.rank_of(source[rank]);
        if (!slot) return false;
        *slot = rank;
    }
    const std::size_t ld = connect.ld;
    const unsigned* edge = connect.column(rising);
    unsigned* copy = map.copies.column(rising);
    for (std::size_t e = rising; e < edges; ++e, edge += ld)
        for (int end = 0; end < 2; ++end) {
            unsigned* const slot = ranks.rank_of(edge[end]);
            if (!slot) return false;
            unsigned rank = *slot;
            if (rank == UNSET_ID) {
                rank = distinct++;
                *slot = rank;
                source[rank] = edge[end];
            }
            *copy++ = first_id + rank;
        }
    return map.sources.resize(distinct);
}

} // namespace

bool extrusion_node_map(const dense2D<unsigned>& connect, unsigned first_id, std::size_t nodes,
                        node_map& map)
{
    const std::size_t edges = connect.cols;
    if (!map.sources.resize(std::min(2 * edges, nodes))) return false;
    if (!map.copies.resize(2, edges)) return false;
    const std::size_t rising = number_rising(connect, first_id, map);
    if (rising == edges) return map.sources.resize(edges + 1);
    if (nodes / SPARSE <= edges) {
        node_table table;
        return table.init(nodes) && number_others(connect, first_id, rising, table, map);
    }
    node_hash hash;
    return hash.init(edges) && number_others(connect, first_id, rising, hash, map);
}

} // namespace vorel::tessalo2d
