// The rare ways of the edge numbering: prepared edges, full lists, the table.
#include "conversion/edge_numbering.h"

#include <algorithm>

namespace vorel::tessalo2d {

namespace {

bool same_edge(const elfes::edge2& edge, unsigned from, unsigned to)
{
    return edge == elfes::edge2{from, to};
}

} // namespace

edge_numbering::edge_numbering(std::size_t nodes, std::size_t elements, std::size_t sides,
                               unsigned edge_nodes, const dense2D<unsigned>& prepared)
    : first_new_id(nodes), run_length(edge_nodes)
{
    const std::size_t prepared_columns = prepared.is_empty() ? 0 : prepared.cols;
    const bool listed = make_lists(nodes, sides, prepared_columns);
    if (!listed && make_table()) table.expect(prepared_columns + elements);
    for (std::size_t j = 0; j < prepared_columns; ++j) {
        const unsigned* const column = prepared.column(j);
        if (std::max({column[0], column[1], column[2]}) < UNSET_ID)
            load(column[0], column[1], column[2]);
    }
    prepared_edges = used;
    if (!listed) table.expect(2 * elements);
}

/// All storage at once, for the case that no two sides share an edge: pages of it that are never
/// used are never touched.
bool edge_numbering::make_lists(std::size_t nodes, std::size_t sides, std::size_t prepared_columns)
{
    constexpr std::size_t LARGEST_NODE_COUNT = std::size_t(1) << 31;
    if (nodes > LARGEST_NODE_COUNT || nodes / 16 > sides) return false;
    if (sides >= NONE || prepared_columns >= NONE - sides) return false;
    dense1D<entry, 8> room;
    dense1D<unsigned, 8> first_nodes;
    if (!room.resize(sides + prepared_columns) || !first_nodes.resize(prepared_columns))
        return false;
    if (!newest_storage.resize(nodes, NONE)) return false;
    entry_storage.swap(room);
    prepared_storage.swap(first_nodes);
    newest_entry = newest_storage.begin();
    entries = entry_storage.begin();
    prepared_first = prepared_storage.begin();
    return true;
}

bool edge_numbering::make_table()
{
    return table.bucket_count != 0 || table.init(23, 23);
}

void edge_numbering::load(unsigned from, unsigned to, unsigned first)
{
    if (!newest_entry) return load_into_table(from, to, first);
    for (const unsigned home : {std::min(from, to), std::max(from, to)}) {
        const unsigned key = key_of(home, from ^ to ^ home, from);
        unsigned length = 0;
        unsigned k = search(home, key, length);
        if (k == NONE) {
            if (length >= LONGEST_LIST) continue;
            k = static_cast<unsigned>(used);
            add(home, key);
        }
        prepared_first[k] = first;
        return;
    }
    load_into_table(from, to, first);
}

void edge_numbering::load_into_table(unsigned from, unsigned to, unsigned first)
{
    if (!make_table()) return;
    // A refused rebuild makes longer chains, no more.
    (void)table.prepare_insertion();
    auto* const slot = table.find_or_insert({elfes::edge2{from, to}, first});
    // Without storage for the edge the slot is another one's.
    if (same_edge(slot->first.first, from, to)) slot->first.second = first;
}

edge_run edge_numbering::meet_at_full_list(unsigned from, unsigned to)
{
    const unsigned home = std::max(from, to);
    const unsigned key = key_of(home, std::min(from, to), from);
    unsigned length = 0;
    const unsigned k = search(home, key, length);
    if (k != NONE) return run_of(k, key);
    if (length >= LONGEST_LIST) return meet_in_table(from, to);
    const unsigned first = static_cast<unsigned>(next_id());
    add(home, key);
    return {first, false};
}

edge_run edge_numbering::meet_in_table(unsigned from, unsigned to)
{
    // Kept: an edge whose insertion is refused has no nodes until one succeeds, and the conversion
    // goes on.
    if (make_table() && table.prepare_insertion()) {
        const std::size_t before = table.count;
        const unsigned id = static_cast<unsigned>(next_id());
        const auto* const slot = table.find_or_insert({elfes::edge2{from, to}, id});
        if (table.count != before) {
            ++used;
            return {id, false};
        }
        if (same_edge(slot->first.first, from, to))
            return {slot->first.second, slot->first.first.a != from};
    }
    refused = true;
    return {UNSET_ID, false};
}

edge_run edge_numbering::find_refused(unsigned from, unsigned to)
{
    const auto* const slot = table.find({elfes::edge2{from, to}, 0});
    if (!slot) return {UNSET_ID, false};
    return {slot->first.second, slot->first.first.a != from};
}

} // namespace vorel::tessalo2d
