// Which element of a background mesh holds a point.
#pragma once

#include "interpolation/ball.h"
#include "interpolation/node_quadtree.h"
#include "interpolation/walk.h"

namespace vorel::tessalo2d {

/// Locates points in a plane background mesh of form F: a tree of the nodes gives an element near
/// the point, a random walk leads on from there, and where it fails it is repeated from every
/// element around the nearest node. Holds references to the arguments of one call.
template <mesh_form F>
class background_locator {
public:
    /// The tree is empty until `fill_tree`, so that no point is located.
    background_locator(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                       const dense2D<unsigned>& neighbors,
                       const dense1D<unsigned, 8>& node_element);

    /// Puts the nodes that elements use into the tree. Returns how many it took; 0, and no change,
    /// when there is no storage for their list.
    std::size_t fill_tree();

    /// Finds the element that holds the point, starting at `element`, or near the point when that
    /// is `UNSET_ID`. Returns whether one was found; `element` is `UNSET_ID` otherwise. A walk over
    /// an improper element ends the search, also when another element holds the point. Allocates in
    /// the fallback only, in containers that are kept. One walk, and in the fallback one more for
    /// each element of the ball of a node: whatever the neighbors say, at most
    /// (1 + elements of the ball) * (elements + 1) steps.
    bool locate_element(const vec2& point, unsigned& element, double tolerance, bool allow_fallback,
                        side_draw& draw, const known_tests& known = known_tests());

    /// What can be found out about up to `node_quadtree::BLOCK` points without a draw: the element
    /// at which `locate_element` starts and tests that its walk is likely to need. All steps are
    /// made for all points in turn, so that their cache misses overlap.
    void approach(const vec2* points, unsigned n, double tolerance, unsigned* starts,
                  known_tests* known) const;

    /// The nearest node with an element, or `UNSET_ID`; none for a point outside the nodes' box.
    unsigned nearest_node(const vec2& point) const;

    const background_mesh& mesh() const { return elements; }
    const node_quadtree& nodes() const { return tree; }

private:
    /// An element of the node to start a walk at. An entry that names no element counts as none.
    unsigned start_element(unsigned node) const
    {
        const unsigned element = filter.entry[node];
        return element < elements.elements ? element : UNSET_ID;
    }

    bool used_nodes(dense1D<unsigned, 8>& ids) const;

    const dense2D<double>& coords;
    const dense2D<unsigned>& connect;
    background_mesh elements;
    node_quadtree tree;
    node_filter filter;
    dense1D<unsigned, 8> ball;
    dense1D<unsigned, 8> stack;
    element_set visited;
};

extern template class background_locator<mesh_form::T3>;
extern template class background_locator<mesh_form::Q4>;
extern template class background_locator<mesh_form::mixed>;

} // namespace vorel::tessalo2d
