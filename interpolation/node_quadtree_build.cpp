// Building the quadtree from many nodes at once.
//
// Which cells a tree has depends on its nodes alone: a cell is divided exactly if four or more
// nodes were offered to it. So the nodes are sorted along the space-filling curve that the child
// order defines (the bits of y and x interleaved), in which every cell is a run, and the cells are
// laid down run by run. Cells near in space become near in memory, and no cell is written twice.
#include "interpolation/node_quadtree.h"

#include <algorithm>

namespace vorel::tessalo2d {

namespace {

struct curve_node {
    /// Bits 2L + 1 and 2L are bit L of y and of x.
    std::uint64_t key;
    unsigned id;
    /// Place in the list; of more than three nodes at one place the first three are kept.
    unsigned rank;
};

bool before(const curve_node& a, const curve_node& b)
{
    return a.key < b.key || (a.key == b.key && a.rank < b.rank);
}

std::uint64_t with_gaps(std::uint32_t word)
{
    std::uint64_t w = word;
    w = (w | w << 16) & 0x0000FFFF0000FFFFu;
    w = (w | w << 8) & 0x00FF00FF00FF00FFu;
    w = (w | w << 4) & 0x0F0F0F0F0F0F0F0Fu;
    w = (w | w << 2) & 0x3333333333333333u;
    return (w | w << 1) & 0x5555555555555555u;
}

/// Number of levels below the root on which two nodes share their cell, 0 to 32.
unsigned shared_levels(const curve_node& a, const curve_node& b)
{
    const std::uint64_t differing = a.key ^ b.key;
    return differing ? static_cast<unsigned>(__builtin_clzll(differing)) / 2 : 32u;
}

/// Sorts by key and rank; the list comes in by rank. Two stable distributions on the leading bits,
/// to a second array and back, then each run of equal leading bits by itself: nodes that fill the
/// plane have runs of one or two. False, and no change, when there is no second array.
bool sort_along_curve(curve_node* nodes, std::size_t n)
{
    constexpr unsigned BITS = 11;
    constexpr std::size_t BUCKETS = std::size_t(1) << BITS;
    if (n < BUCKETS) {
        std::sort(nodes, nodes + n, before);
        return true;
    }
    dense1D<curve_node, 8> second;
    if (!second.resize(n)) return false;
    curve_node* other = second.begin();
    const unsigned shifts[] = {64 - 2 * BITS, 64 - BITS};
    std::size_t next[2][BUCKETS] = {};
    for (std::size_t i = 0; i < n; ++i)
        for (int pass = 0; pass < 2; ++pass)
            ++next[pass][nodes[i].key >> shifts[pass] & (BUCKETS - 1)];
    for (int pass = 0; pass < 2; ++pass) {
        std::size_t sum = 0;
        for (std::size_t& entry : next[pass]) {
            const std::size_t size = entry;
            entry = sum;
            sum += size;
        }
        for (std::size_t i = 0; i < n; ++i)
            other[next[pass][nodes[i].key >> shifts[pass] & (BUCKETS - 1)]++] = nodes[i];
        std::swap(nodes, other);
    }
    for (std::size_t first = 0; first < n;) {
        std::size_t last = first + 1;
        while (last < n && nodes[last].key >> shifts[0] == nodes[first].key >> shifts[0]) ++last;
        if (last - first > 1) std::sort(nodes + first, nodes + last, before);
        first = last;
    }
    return true;
}

/// Number of cells that are divided. Such a cell holds four nodes in a row; each is counted at the
/// first four that it holds.
std::size_t divided_cells(const curve_node* nodes, std::size_t n)
{
    constexpr unsigned DEEPEST = 31;
    std::size_t cells = 0;
    for (std::size_t i = 0; i + 3 < n; ++i) {
        const unsigned deepest = std::min(shared_levels(nodes[i], nodes[i + 3]), DEEPEST);
        if (i == 0)
            cells += deepest + 1;
        else
            cells += deepest - std::min(shared_levels(nodes[i - 1], nodes[i + 3]), deepest);
    }
    return cells;
}

/// Lays the cells of runs of sorted nodes down, a divided cell before its children.
struct cell_writer {
    /// The cell with the ID `cell` takes the nodes from `first` to before `last`. Calls itself for
    /// levels below its own, so 32 deep at most.
    void write(unsigned cell, unsigned level, const curve_node* first, const curve_node* last)
    {
        unsigned* const column = cells + std::size_t(cell) * 4;
        if (last - first <= 3 || level == 0) {
            write_leaf(column, first, last);
            return;
        }
        const unsigned children = next_cell;
        next_cell += 4;
        const unsigned shift = 2 * (level - 1);
        for (unsigned child = 0; child < 4; ++child) {
            column[child] = children + child;
            const curve_node* const end =
                child < 3 ? end_of_child(first, last, shift, child) : last;
            write(children + child, level - 1, first, end);
            first = end;
        }
    }

    static const curve_node* end_of_child(const curve_node* first, const curve_node* last,
                                          unsigned shift, unsigned child)
    {
        const auto inside = [=](const curve_node& node) {
            return (node.key >> shift & 3u) <= child;
        };
        if (last - first > 32) return std::partition_point(first, last, inside);
        while (first != last && inside(*first)) ++first;
        return first;
    }

    void write_leaf(unsigned* column, const curve_node* first, const curve_node* last)
    {
        const unsigned held = static_cast<unsigned>(std::min<std::ptrdiff_t>(last - first, 3));
        column[0] = held;
        for (unsigned i = 0; i < 3; ++i) column[1 + i] = i < held ? first[i].id : 0;
        std::sort(column + 1, column + 1 + held);
        stored += held;
    }

    unsigned* cells;
    unsigned next_cell = 4;
    std::size_t stored = 0;
};

} // namespace

std::size_t node_quadtree::insert_nodes(const dense1D<unsigned, 8>& ids)
{
    const bool empty = count == 0 && cells.cols == 4;
    if (empty && ids.size >= 4 && ids.size < UNSET_ID && insert_sorted(ids)) return count;
    std::size_t stored = 0;
    for (std::size_t k = 0; k < ids.size; ++k) stored += insert_node(ids[k]);
    return stored;
}

bool node_quadtree::insert_sorted(const dense1D<unsigned, 8>& ids)
{
    dense1D<curve_node, 8> nodes;
    if (!nodes.resize(ids.size)) return false;

    curve_node* const sorted = nodes.begin();
    std::size_t n = 0;
    for (std::size_t k = 0; k < ids.size; ++k) {
        const unsigned id = ids[k];
        if (id >= coords.cols) continue;
        const vec2 p = node(id);
        if (!box_contains(p)) continue;
        const integer_point at = quantize(p[0], p[1]);
        sorted[n++] = {with_gaps(at.y) << 1 | with_gaps(at.x), id, static_cast<unsigned>(k)};
    }
    if (!sort_along_curve(sorted, n)) return false;
    if (!resize_cells(4 + 4 * divided_cells(sorted, n))) return false;

    cell_writer writer{cells.column(0)};
    writer.write(0, ROOT_LEVEL, sorted, sorted + n);
    count = writer.stored;
    make_shortcuts(n);
    return true;
}

void node_quadtree::make_shortcuts(std::size_t nodes)
{
    // One for 4 to 16 nodes, so that the grid ends a little above the leaves of evenly spread ones.
    shortcut_bits = 0;
    while (shortcut_bits < 16 && std::size_t(16) << 2 * shortcut_bits <= nodes) ++shortcut_bits;
    // Few nodes have few levels, and every descent can begin at the root as well.
    if (shortcut_bits == 0 || is_leaf(column(0))) return;
    if (!shortcuts.resize(std::size_t(1) << 2 * shortcut_bits)) return;
    fill_shortcuts({0, ROOT_LEVEL}, 0, 0);
}

void node_quadtree::fill_shortcuts(const shortcut& divided, std::size_t x, std::size_t y)
{
    const unsigned levels_above_grid = divided.level + shortcut_bits - ROOT_LEVEL;
    if (levels_above_grid == 0) {
        shortcuts[(y << shortcut_bits) + x] = divided;
        return;
    }
    const std::size_t side = std::size_t(1) << (levels_above_grid - 1);
    for (unsigned child = 0; child < 4; ++child) {
        const std::size_t child_x = x + (child & 1u) * side;
        const std::size_t child_y = y + (child >> 1) * side;
        const unsigned id = column(divided.cell)[child];
        if (!is_leaf(column(id))) {
            fill_shortcuts({id, divided.level - 1}, child_x, child_y);
            continue;
        }
        for (std::size_t row = child_y; row < child_y + side; ++row) {
            shortcut* const square = shortcuts.begin() + (row << shortcut_bits) + child_x;
            std::fill(square, square + side, divided);
        }
    }
}

bool node_quadtree::resize_cells(std::size_t total)
{
    if (total >= UNSET_ID) return false;
    // Four children fill a cache line of 64 bytes when the storage begins on one.
    constexpr std::size_t LINE = 64 / sizeof(unsigned);
    dense2D<unsigned> aligned;
    if (!aligned.reserve(4, total + LINE / 4, 1)) return false;
    const auto address = reinterpret_cast<std::uintptr_t>(aligned.block->data) / sizeof(unsigned);
    aligned.offset = (LINE - address % LINE) % LINE;
    if (!aligned.resize(4, total)) return false;
    std::fill(aligned.column(0), aligned.column(0) + 16, 0u);
    cells.swap(aligned);
    return true;
}

} // namespace vorel::tessalo2d
