// Localisation written a second time, from sets of nodes and without any regard for time: the
// reference that the library's tree, walk and loop are held against.
#pragma once

#include <vorel/tessalo2d.h>

#include <array>
#include <cstdint>
#include <random>
#include <set>
#include <vector>

namespace plain {

using point = std::array<double, 2>;

/// The quadtree as the set of its nodes: a cell is the subset with a common prefix of bits.
class tree {
public:
    tree(const vorel::dense2D<double>& coords, point low, point high);

    /// As an insertion of each in this order. Returns how many a tree of three nodes a leaf takes.
    std::size_t insert(const std::vector<unsigned>& ids);

    unsigned approximate(point p, const vorel::dense1D<unsigned, 8>& filter) const;
    unsigned nearest(point p, double& distance2, const vorel::dense1D<unsigned, 8>& filter) const;

    std::array<std::uint32_t, 2> integers(point p) const;

    /// Level of the leaf that holds the point.
    int leaf_level(point p) const;

    /// The stored nodes in the order in which a search meets them: children 0 to 3, in a leaf by
    /// ID.
    std::vector<unsigned> traversal;

private:
    struct entry {
        unsigned id;
        std::array<std::uint32_t, 2> at;
    };

    bool in_box(point p) const;
    point node(unsigned id) const { return {coords(0, id), coords(1, id)}; }
    static bool in_cell(const std::array<std::uint32_t, 2>& a,
                        const std::array<std::uint32_t, 2>& b, int level);
    void order(const std::vector<entry>& offered_here, int level);
    unsigned first(point p, double& distance2, const vorel::dense1D<unsigned, 8>& filter) const;
    void offer(unsigned id, point p, const vorel::dense1D<unsigned, 8>& filter, unsigned& best,
               double& distance2) const;

    const vorel::dense2D<double>& coords;
    point low, high, origin;
    double scale;
    /// A cell is divided also for a node that is then refused.
    std::vector<entry> offered;
    std::set<unsigned> stored;
};

/// Two bits at a time from the low end of each word.
class draws {
public:
    unsigned next()
    {
        if (left == 0) {
            word = static_cast<std::uint32_t>(twister());
            left = 16;
        }
        const unsigned two = word & 3;
        word >>= 2;
        --left;
        ++taken;
        return two;
    }
    std::size_t taken = 0;

private:
    std::mt19937 twister{1};
    std::uint32_t word = 0;
    int left = 0;
};

struct mesh {
    const vorel::dense2D<double>& coords;
    const vorel::dense2D<unsigned>& connect;
    const vorel::dense2D<unsigned>& neighbors;
    const vorel::dense1D<unsigned, 8>& node_element;

    unsigned corners(unsigned element) const;
};

int side_outside(const mesh& m, point p, unsigned element, double tolerance, int start);

int walk(const mesh& m, point p, unsigned& element, double tolerance, std::size_t& steps, draws& d);

int ball(const mesh& m, unsigned node, unsigned element, std::vector<unsigned>& list, bool& closed);

/// The tree of the nodes that elements use, in order of first sight.
tree filled(const mesh& m);

bool locate(const mesh& m, const tree& t, point p, unsigned& element, draws& d);

/// The element that holds a target, or `UNSET_ID` and the nearest node, or `UNSET_ID` twice.
struct place {
    unsigned element;
    unsigned nearest;
};
place place_of(const mesh& m, const tree& t, unsigned node, draws& d);

/// The place of each listed node in turn. Not a target: both 0xFFFFFFFE.
std::vector<place> places(const mesh& m, const vorel::dense1D<unsigned, 8>& nodes, draws& d);

} // namespace plain
