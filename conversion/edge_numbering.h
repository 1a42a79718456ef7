// Numbers the nodes on the edges of a mesh: each edge gets a run of consecutive node IDs when it is
// first met, and every later meeting finds that run.
//
// An edge is kept in a short list at one of its ends: the smaller one, or the larger one when that
// list is full. A mesh in natural numbering meets an edge again while both lists are still in the
// cache, which no hash of the two ends offers. What finds both lists full (edges between two hubs)
// goes to a hash table, so that no search is longer than two full lists and a chain. The table also
// serves all edges when the lists can't be had: their storage was refused, IDs or counts don't fit
// their fields, or the mesh is so small a part of its nodes that a word for each node costs more
// than the work.
#pragma once

#include "foundation/chained_hash.h"

#include <vorel/dense1D.h>
#include <vorel/dense2D.h>
#include <vorel/element_type.h>

#include <utility>

namespace vorel::tessalo2d {

/// The nodes on an edge as an element meets them.
struct edge_run {
    /// ID of the first node in the edge's own direction; `UNSET_ID` when the edge has no nodes
    /// because the table refused it.
    unsigned first;
    /// The element runs against the edge's own direction, which is that of its first meeting.
    bool reversed;
};

/// Belongs to one conversion. Throws `std::bad_alloc` when a block object can't be had; refused
/// storage shows only as edges without nodes, in the end.
class edge_numbering {
public:
    /// For a mesh of `nodes` nodes whose elements have `sides` sides in all, at most four each.
    /// Prepared edges, one a column of (end, end, first node, ...), keep the nodes that they bring:
    /// of two for the same edge the first gives the direction and the last the node. A column with
    /// `UNSET_ID` in one of the three is no edge. New nodes are numbered from `nodes` on,
    /// `edge_nodes` for each edge.
    edge_numbering(std::size_t nodes, std::size_t elements, std::size_t sides, unsigned edge_nodes,
                   const dense2D<unsigned>& prepared);

    /// The run of the edge, numbered now if it is met for the first time. The ends must be IDs
    /// below the node count.
    edge_run meet(unsigned from, unsigned to);

    /// The run of an edge that the table refused when it was met, for the case that a later meeting
    /// had more luck.
    edge_run find_refused(unsigned from, unsigned to);

    /// The ID that the next new edge gets. Those of its predecessors were below.
    std::size_t next_id() const { return first_new_id + (used - prepared_edges) * run_length; }

    /// Some meeting was refused.
    bool any_refused() const { return refused; }

    /// Lists as long as this are full.
    static constexpr unsigned LONGEST_LIST = 16;

private:
    using edge_table = chained_hash<std::pair<elfes::edge2, unsigned>>;

    static constexpr unsigned NONE = 0xFFFFFFFFu;

    /// An edge in the list of one end: the other end, a bit that says that the edge's own direction
    /// starts there, and the edge that came into this list before.
    struct entry {
        unsigned key;
        unsigned next;
    };

    static unsigned key_of(unsigned home, unsigned other, unsigned from)
    {
        return other << 1 | unsigned(from != home);
    }

    /// Entry of the edge in the list of `home` or `NONE`; counts the entries that it passed.
    /// Entries lead to older ones, and a list of `LONGEST_LIST` entries takes no new edge.
    unsigned search(unsigned home, unsigned key, unsigned& length) const
    {
        unsigned k = newest_entry[home];
        for (; k != NONE; k = entries[k].next, ++length)
            if ((entries[k].key ^ key) < 2) break;
        return k;
    }

    void add(unsigned home, unsigned key)
    {
        entries[used] = {key, newest_entry[home]};
        newest_entry[home] = static_cast<unsigned>(used++);
    }

    edge_run run_of(unsigned k, unsigned key) const
    {
        const unsigned first =
            k < prepared_edges ? prepared_first[k] : id_of_new_edge(k - prepared_edges);
        return {first, entries[k].key != key};
    }

    unsigned id_of_new_edge(std::size_t i) const
    {
        return static_cast<unsigned>(first_new_id + i * run_length);
    }

    bool make_lists(std::size_t nodes, std::size_t sides, std::size_t prepared_columns);
    void load(unsigned from, unsigned to, unsigned first);
    void load_into_table(unsigned from, unsigned to, unsigned first);
    edge_run meet_at_full_list(unsigned from, unsigned to);
    edge_run meet_in_table(unsigned from, unsigned to);
    bool make_table();

    /// For each node its newest entry; null without lists.
    unsigned* newest_entry = nullptr;
    /// In order of insertion: entry `prepared_edges` + i is the i-th new edge, so that an entry
    /// needs no ID. A new edge that the table keeps leaves its entry idle.
    entry* entries = nullptr;
    /// First node of the prepared edge of each of the first entries.
    unsigned* prepared_first = nullptr;
    std::size_t used = 0;
    std::size_t prepared_edges = 0;
    std::size_t first_new_id;
    std::size_t run_length;
    bool refused = false;

    dense1D<unsigned, 8> newest_storage;
    dense1D<entry, 8> entry_storage;
    dense1D<unsigned, 8> prepared_storage;
    edge_table table;
};

inline edge_run edge_numbering::meet(unsigned from, unsigned to)
{
    if (!newest_entry) return meet_in_table(from, to);
    const unsigned home = from < to ? from : to;
    const unsigned key = key_of(home, from < to ? to : from, from);
    unsigned length = 0;
    const unsigned k = search(home, key, length);
    if (k != NONE) return run_of(k, key);
    if (length >= LONGEST_LIST) return meet_at_full_list(from, to);
    const unsigned first = static_cast<unsigned>(next_id());
    add(home, key);
    return {first, false};
}

} // namespace vorel::tessalo2d
