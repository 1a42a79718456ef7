// Point quadtree over nodes of the plane: a node near a point, and the nearest one.
//
// The tree holds node IDs only. All descent and pruning works on 32-bit integer coordinates of a
// square that covers the nodes, so a cell is a prefix of bits and no comparison of doubles is made
// above the leaves.
#pragma once

#include "foundation/vec.h"

#include <vorel/dense2D.h>
#include <vorel/element_type.h>

#include <cstdint>

namespace vorel::tessalo2d {

struct integer_point {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
};

/// Which nodes a search may report: those below the size of the run whose entry is not `UNSET_ID`.
struct node_filter {
    node_filter(const dense1D<unsigned, 8>& run) : entry(run.begin()), size(run.size) {}

    bool passes(unsigned id) const { return id < size && entry[id] != UNSET_ID; }

    const unsigned* entry;
    std::size_t size;
};

/// The state of one search: what is sought, the best node so far, and the integer box that can
/// still hold a better one.
struct node_search {
    vec2 point;
    /// Squared distance of `best`, or the one to beat.
    double distance2;
    unsigned best = UNSET_ID;
    integer_point low;
    integer_point high{0xFFFFFFFFu, 0xFFFFFFFFu};
    /// What `first_candidate` has searched last, and whether nothing better can follow.
    unsigned last_cell = 0;
    bool done = false;
};

/// A cell on the way down: its ID, its level, which child of its parent it is, its lower corner.
struct cell_place {
    unsigned cell = 0;
    unsigned level = 32;
    unsigned child = 0;
    integer_point corner;
};

/// A leaf, its level, and its parent; the root is its own parent.
struct leaf_place {
    unsigned leaf = 0;
    unsigned parent = 0;
    unsigned level = 32;
};

/// Where a descent may begin: a divided cell and its level.
struct shortcut {
    unsigned cell;
    unsigned level;
};

struct node_quadtree {
    static constexpr unsigned ROOT_LEVEL = 32;
    static constexpr double LARGEST = 1.7976931348623157e308;
    /// The most points of one call of `approximate_nodes`.
    static constexpr unsigned BLOCK = 32;

    /// An empty tree over the first two rows of `coords_`, without cells: `set_box` makes it
    /// usable.
    explicit node_quadtree(const dense2D<double>& coords_) : coords(coords_) {}

    /// Empties the tree: the root, and three idle cells so that no child has an ID below 4.
    void reset();

    /// Empties the tree and sets the box of nodes and points that it accepts. The root cell is a
    /// square on the centre of the box, a hair larger than its longer side.
    void set_box(const vec2& low, const vec2& high);

    /// The box is closed; a NaN is outside.
    bool box_contains(const vec2& p) const
    {
        return p[0] >= box_low[0] && !(p[0] > box_high[0]) && p[1] >= box_low[1] &&
               !(p[1] > box_high[1]);
    }

    /// Integer coordinates, cut to the square. A NaN becomes 0.
    integer_point quantize(double x, double y) const
    {
        return {quantize_axis(x, origin[0]), quantize_axis(y, origin[1])};
    }

    /// True if the node was stored. A node outside the box is not, nor a fourth one at the same
    /// integer coordinates, nor one that no cells can be had for.
    bool insert_node(unsigned id);

    /// As `insert_node` for each ID of the list in its order; returns how many were stored. In an
    /// empty tree the cells are the same, but numbered along a space-filling curve. O(n log n), 32
    /// bytes a node while they are sorted; without that storage they go in one by one.
    std::size_t insert_nodes(const dense1D<unsigned, 8>& ids);

    /// A node near the point, not always the nearest, or `UNSET_ID`. Points outside the box have
    /// none, however near.
    unsigned approximate_node(const vec2& point, const node_filter& filter) const;

    /// As `approximate_node` for each of up to `BLOCK` points. They descend side by side, so that
    /// their cache misses overlap.
    void approximate_nodes(const vec2* points, unsigned n, const node_filter& filter,
                           unsigned* found) const;

    /// The nearest node, or `UNSET_ID` when none is nearer than `distance2` on entry. Of nodes at
    /// equal distance the one that the traversal meets first. `distance2` becomes the squared
    /// distance found. Points outside the box have none.
    unsigned nearest_node(const vec2& point, double& distance2, const node_filter& filter) const;

    // ----------------------------------------------------------------- steps of the operations

    /// Replaces a full leaf by an internal cell and distributes its nodes and `id`. False when `id`
    /// found no place; the others always do.
    bool split_leaf(unsigned cell, unsigned level, unsigned id);

    /// A cheap first answer: from the leaf of the point, else from its parent, else from anywhere.
    void first_candidate(integer_point at, node_search& search, const node_filter& filter) const;

    /// As above for a point whose leaf has been found.
    void candidate_around(const leaf_place& place, integer_point at, node_search& search,
                          const node_filter& filter) const;

    /// Depth first through the cells below `start` that meet the search's box, which shrinks with
    /// each better node. `skip_cell` is left out. No cell is met twice, each has one parent:
    /// a step takes an entry off the stack, and there is at most one entry for each cell.
    void search_cells(node_search& search, const cell_place& start, unsigned skip_cell,
                      const node_filter& filter) const;

    /// Offers the nodes of a leaf to the search. True when one was better.
    bool scan_leaf(const unsigned* leaf, node_search& search, const node_filter& filter) const;

    /// The integer box of the square of half side `r` around a point.
    void box_from_radius(const vec2& point, double r, integer_point& low, integer_point& high) const
    {
        low = quantize(point[0] - r, point[1] - r);
        high = quantize(point[0] + r, point[1] + r);
    }

    /// Whether a cell and the closed box from `low` to `high` have a point in common. The cell's
    /// upper corner is the lower one of its diagonal neighbour.
    static bool cell_meets_box(const integer_point& corner, unsigned level,
                               const integer_point& low, const integer_point& high)
    {
        const integer_point upper{upper_end(corner.x, level), upper_end(corner.y, level)};
        return corner.x <= high.x && corner.y <= high.y && low.x <= upper.x && low.y <= upper.y;
    }

    /// Which child of a cell of level `level` + 1 holds the point.
    static unsigned child_at(const integer_point& p, unsigned level)
    {
        return ((p.y >> level) & 1u) * 2 + ((p.x >> level) & 1u);
    }

    // ------------------------------------------------------------------------------------- data

    const dense2D<double>& coords;
    vec2 box_low{{0.0, 0.0}};
    vec2 box_high{{0.0, 0.0}};
    /// Lower corner of the root cell.
    vec2 origin{{0.0, 0.0}};
    /// Integer units per unit of the coordinates.
    double scale = 0.0;
    /// One column a cell. Row 0 below 4: a leaf with that many nodes, their IDs ascending in the
    /// rows below. Otherwise rows 0 to 3 are the children, indexed by 2 * (y bit) + (x bit).
    dense2D<unsigned> cells;
    /// One bit a cell, 32 a word: the cell is free.
    dense1D<std::uint32_t, 8> free_flags;
    /// Cells that are free for use again.
    dense1D<std::uint64_t, 8> free_stack;
    /// Nodes held.
    std::uint64_t count = 0;
    /// For each square of a grid of 2^shortcut_bits by 2^shortcut_bits over the root, rows by y, a
    /// divided cell that holds it, as deep as the grid is fine. Empty, or one entry a square.
    dense1D<shortcut, 8> shortcuts;
    unsigned shortcut_bits = 0;

private:
    std::uint32_t quantize_axis(double x, double from) const
    {
        const double t = (x - from) * scale;
        if (!(t >= 0.0)) return 0;
        if (t > 4294967295.0) return 0xFFFFFFFFu;
        return static_cast<std::uint32_t>(t);
    }

    static std::uint32_t upper_end(std::uint32_t corner, unsigned level)
    {
        const std::uint32_t end = level < 32 ? corner + (1u << level) : 0u;
        return end == 0 ? 0xFFFFFFFFu : end;
    }

    /// The column of a cell; valid until cells are allocated.
    unsigned* column(unsigned cell) { return cells.column(cell); }
    const unsigned* column(unsigned cell) const { return cells.column(cell); }

    static bool is_leaf(const unsigned* cell) { return cell[0] < 4; }

    vec2 node(unsigned id) const { return load<2>(coords.column(id)); }

    integer_point quantized(unsigned id) const
    {
        const vec2 p = node(id);
        return quantize(p[0], p[1]);
    }

    /// From `cell` at `level` down to the leaf that holds the point; both are moved. At most
    /// `level` steps: cells at level 0 are leaves.
    void descend(const integer_point& at, unsigned& cell, unsigned& level) const;

    /// Where the descent to the leaf of a point begins.
    const shortcut* shortcut_at(const integer_point& p) const
    {
        const unsigned unused = 32 - shortcut_bits;
        return shortcuts.begin() +
               ((std::size_t(p.y >> unused) << shortcut_bits) + (p.x >> unused));
    }
    /// Lays the cells of all listed nodes down in an empty tree. False, no change and no storage
    /// held, when there is no room to sort or for the cells.
    bool insert_sorted(const dense1D<unsigned, 8>& ids);
    void make_shortcuts(std::size_t nodes);
    /// `x` and `y` are the square of the grid at the lower corner of the cell.
    void fill_shortcuts(const shortcut& divided, std::size_t x, std::size_t y);
    void prefetch_leaf(const leaf_place& place, const node_filter& filter) const;
    void prefetch_nodes(const unsigned* leaf, const node_filter& filter) const;

    bool add_to_leaf(unsigned cell, unsigned level, unsigned id);
    bool allocate_cell(unsigned& cell);
    bool append_cells(std::size_t n);
    bool resize_cells(std::size_t total);
};

} // namespace vorel::tessalo2d
