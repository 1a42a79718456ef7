// The quadtree: setting up, inserting one node, searching.
#include "interpolation/node_quadtree.h"

#include "foundation/prefetch.h"

#include <algorithm>
#include <cmath>

namespace vorel::tessalo2d {

namespace {

/// Adds an ID to a leaf that has room; the IDs stay ascending.
void put_in_order(unsigned* leaf, unsigned id)
{
    unsigned row = leaf[0];
    for (; row > 0 && leaf[row] > id; --row) leaf[row + 1] = leaf[row];
    leaf[row + 1] = id;
    ++leaf[0];
}

std::uint32_t with_bit(std::uint32_t word, unsigned bit, unsigned value)
{
    return (word & ~(1u << bit)) | (value << bit);
}

/// The corner of child `child` at `level` of the cell that `corner` belongs to, or of any cell
/// below it: the bits under the level are cleared.
integer_point corner_of(integer_point corner, unsigned level, unsigned child)
{
    if (level >= node_quadtree::ROOT_LEVEL) return {0, 0};
    const std::uint32_t kept = ~((1u << level) - 1u);
    return {with_bit(corner.x & kept, level, child & 1u),
            with_bit(corner.y & kept, level, child >> 1)};
}

unsigned highest_bit(std::uint32_t word)
{
    return 31u - static_cast<unsigned>(__builtin_clz(word));
}

} // namespace

void node_quadtree::reset()
{
    cells.clear();
    free_stack.size = 0;
    free_flags.size = 0;
    shortcuts.size = 0;
    count = 0;
    // A tree without cells stays without nodes.
    (void)append_cells(4);
}

void node_quadtree::set_box(const vec2& low, const vec2& high)
{
    reset();
    box_low = low;
    box_high = high;
    const double extent = std::max(high[0] - low[0], high[1] - low[1]);
    const double size = extent > 0.0 ? extent * 1.000000000001 : 1e-12;
    for (int i = 0; i < 2; ++i) origin[i] = (low[i] + high[i]) * 0.5 - size * 0.5;
    scale = 4294967295.0 / size;
}

void node_quadtree::descend(const integer_point& at, unsigned& cell, unsigned& level) const
{
    for (const unsigned* c = column(cell); !is_leaf(c); c = column(cell)) {
        --level;
        cell = c[child_at(at, level)];
    }
}

bool node_quadtree::insert_node(unsigned id)
{
    if (id >= coords.cols || cells.cols == 0 || !box_contains(node(id))) return false;
    unsigned cell = 0;
    unsigned level = ROOT_LEVEL;
    descend(quantized(id), cell, level);
    if (!add_to_leaf(cell, level, id)) return false;
    ++count;
    return true;
}

bool node_quadtree::add_to_leaf(unsigned cell, unsigned level, unsigned id)
{
    if (column(cell)[0] == 3) return split_leaf(cell, level, id);
    put_in_order(column(cell), id);
    return true;
}

bool node_quadtree::split_leaf(unsigned cell, unsigned level, unsigned id)
{
    // Leads to further splits below itself only, each a level further down; level 0 has none.
    if (level == 0) return false;
    unsigned children[4];
    for (unsigned& child : children)
        if (!allocate_cell(child)) return false;
    unsigned former[4];
    std::copy(column(cell), column(cell) + 4, former);
    std::copy(children, children + 4, column(cell));
    for (const unsigned node_id : {former[1], former[2], former[3], id}) {
        unsigned leaf = cell;
        unsigned leaf_level = level;
        descend(quantized(node_id), leaf, leaf_level);
        if (!add_to_leaf(leaf, leaf_level, node_id)) return false;
    }
    return true;
}

bool node_quadtree::allocate_cell(unsigned& cell)
{
    // Each time an entry is taken off the stack.
    while (free_stack.size > 0) {
        const std::uint64_t top = free_stack[--free_stack.size];
        if (top >= cells.cols) continue;
        cell = static_cast<unsigned>(top);
        if (cell / 32 < free_flags.size) free_flags[cell / 32] &= ~(1u << cell % 32);
        std::fill(column(cell), column(cell) + 4, 0u);
        return true;
    }
    cell = static_cast<unsigned>(cells.cols);
    return append_cells(1);
}

bool node_quadtree::append_cells(std::size_t n)
{
    const std::size_t total = cells.cols + n;
    if (total >= UNSET_ID) return false;
    const std::size_t room = cells.column_capacity();
    if (total > room && !cells.reserve(4, std::max<std::size_t>(2 * room, 8), 1)) return false;
    return cells.resize(4, total, 0u);
}

bool node_quadtree::scan_leaf(const unsigned* leaf, node_search& search,
                              const node_filter& filter) const
{
    const double* const points = coords.column(0);
    const std::size_t ld = coords.ld;
    const unsigned held = leaf[0];
    unsigned best = search.best;
    double distance2 = search.distance2;
    for (unsigned row = 1; row <= held; ++row) {
        const unsigned id = leaf[row];
        if (id == search.best || !filter.passes(id)) continue;
        const double d = squared_length(load<2>(points + id * ld) - search.point);
        // Selected, not branched on: which node is nearer is anybody's guess.
        const bool nearer = d < distance2;
        distance2 = nearer ? d : distance2;
        best = nearer ? id : best;
    }
    const bool fell = distance2 < search.distance2;
    search.best = best;
    search.distance2 = distance2;
    return fell;
}

void node_quadtree::search_cells(node_search& search, const cell_place& start, unsigned skip_cell,
                                 const node_filter& filter) const
{
    // At most three siblings a level are left behind on the way down 32 levels.
    struct {
        unsigned place; // level * 4 + child
        unsigned cell;
    } stack[128];
    unsigned top = 0;
    stack[top++] = {start.level * 4 + start.child, start.cell};
    integer_point corner = start.corner;
    while (top > 0) {
        if (search.distance2 == 0.0) return;
        const auto entry = stack[--top];
        const unsigned* const c = column(entry.cell);
        if (entry.cell == skip_cell || c[0] == 0) continue;
        const unsigned level = entry.place / 4;
        corner = corner_of(corner, level, entry.place % 4);
        if (!cell_meets_box(corner, level, search.low, search.high)) continue;
        if (!is_leaf(c)) {
            for (unsigned child = 4; child-- > 0;)
                stack[top++] = {(level - 1) * 4 + child, c[child]};
        } else if (scan_leaf(c, search, filter)) {
            box_from_radius(search.point, std::sqrt(search.distance2), search.low, search.high);
        }
    }
}

void node_quadtree::first_candidate(integer_point at, node_search& search,
                                    const node_filter& filter) const
{
    leaf_place place;
    // Each step goes down one of 32 levels.
    for (const unsigned* c = column(0); !is_leaf(c); c = column(place.leaf)) {
        --place.level;
        place.parent = place.leaf;
        place.leaf = c[child_at(at, place.level)];
    }
    candidate_around(place, at, search, filter);
}

void node_quadtree::candidate_around(const leaf_place& place, integer_point at, node_search& search,
                                     const node_filter& filter) const
{
    search.best = UNSET_ID;
    search.low = {0, 0};
    search.high = {0xFFFFFFFFu, 0xFFFFFFFFu};
    const unsigned* const leaf = column(place.leaf);
    if (leaf[0] > 0) {
        (void)scan_leaf(leaf, search, filter);
        search.done = search.distance2 == 0.0;
        search.last_cell = place.leaf;
        if (search.best != UNSET_ID) return;
    }

    cell_place parent;
    parent.cell = place.parent;
    if (place.level + 1 < ROOT_LEVEL) {
        parent.level = place.level + 1;
        parent.child = child_at(at, parent.level);
    }
    parent.corner = corner_of(at, parent.level, parent.child);
    search_cells(search, parent, place.leaf, filter);
    search.done = search.distance2 == 0.0;
    search.last_cell = place.parent;
    if (search.best != UNSET_ID) return;

    search_cells(search, cell_place(), place.parent, filter);
    search.done = search.best != UNSET_ID;
    search.last_cell = 0;
}

unsigned node_quadtree::approximate_node(const vec2& point, const node_filter& filter) const
{
    if (count == 0 || !box_contains(point)) return UNSET_ID;
    node_search search;
    search.point = point;
    search.distance2 = LARGEST;
    first_candidate(quantize(point[0], point[1]), search, filter);
    return search.best;
}

void node_quadtree::prefetch_nodes(const unsigned* leaf, const node_filter& filter) const
{
    for (unsigned row = 1; row <= leaf[0]; ++row) {
        prefetch(coords.column(leaf[row]));
        prefetch(filter.entry + leaf[row]);
    }
}

void node_quadtree::prefetch_leaf(const leaf_place& place, const node_filter& filter) const
{
    const unsigned* const leaf = column(place.leaf);
    if (leaf[0] > 0 || place.level == ROOT_LEVEL) {
        prefetch_nodes(leaf, filter);
        return;
    }
    // An empty leaf: the search goes on among its siblings, which stand beside it.
    const unsigned* const parent = column(place.parent);
    for (unsigned child = 0; child < 4; ++child) {
        const unsigned* const sibling = column(parent[child]);
        if (is_leaf(sibling))
            prefetch_nodes(sibling, filter);
        else
            prefetch(column(sibling[0]));
    }
}

void node_quadtree::approximate_nodes(const vec2* points, unsigned n, const node_filter& filter,
                                      unsigned* found) const
{
    leaf_place places[BLOCK];
    integer_point at[BLOCK];
    unsigned inside[BLOCK];
    unsigned searched = 0;
    for (unsigned i = 0; i < n; ++i) {
        found[i] = UNSET_ID;
        if (count == 0 || !box_contains(points[i])) continue;
        at[i] = quantize(points[i][0], points[i][1]);
        if (shortcuts.size > 0) prefetch(shortcut_at(at[i]));
        inside[searched++] = i;
    }
    if (shortcuts.size > 0)
        for (unsigned k = 0; k < searched; ++k) {
            const shortcut begin = *shortcut_at(at[inside[k]]);
            places[inside[k]] = {begin.cell, 0, begin.level};
            prefetch(column(begin.cell));
        }
    unsigned moving[BLOCK];
    std::copy(inside, inside + searched, moving);
    // Each round takes all that are on the way down one of 32 levels.
    for (unsigned on_the_way = searched; on_the_way > 0;) {
        unsigned left = 0;
        for (unsigned k = 0; k < on_the_way; ++k) {
            const unsigned i = moving[k];
            leaf_place& place = places[i];
            const unsigned* const c = column(place.leaf);
            if (is_leaf(c)) {
                prefetch_leaf(place, filter);
                continue;
            }
            --place.level;
            place.parent = place.leaf;
            place.leaf = c[child_at(at[i], place.level)];
            prefetch(column(place.leaf));
            moving[left++] = i;
        }
        on_the_way = left;
    }
    for (unsigned k = 0; k < searched; ++k) {
        const unsigned i = inside[k];
        node_search search;
        search.point = points[i];
        search.distance2 = LARGEST;
        candidate_around(places[i], at[i], search, filter);
        found[i] = search.best;
    }
}

unsigned node_quadtree::nearest_node(const vec2& point, double& distance2,
                                     const node_filter& filter) const
{
    if (count == 0 || !box_contains(point)) return UNSET_ID;
    node_search search;
    search.point = point;
    search.distance2 = distance2;
    first_candidate(quantize(point[0], point[1]), search, filter);
    if (search.best != UNSET_ID && !search.done) {
        if (search.low.x == 0 && search.low.y == 0)
            box_from_radius(point, std::sqrt(search.distance2), search.low, search.high);
        // The smallest cell that may hold the box of all nearer nodes.
        const std::uint32_t differing =
            (search.low.x ^ search.high.x) | (search.low.y ^ search.high.y);
        const unsigned target = differing ? highest_bit(differing) + 1 : 1;
        cell_place place;
        // Each step goes down one of 32 levels.
        for (const unsigned* c = column(0); !is_leaf(c) && place.level > target;
             c = column(place.cell)) {
            --place.level;
            place.child = child_at(search.low, place.level);
            place.corner = corner_of(search.low, place.level, place.child);
            place.cell = c[place.child];
        }
        search_cells(search, place, search.last_cell, filter);
    }
    distance2 = search.distance2;
    return search.best;
}

} // namespace vorel::tessalo2d
