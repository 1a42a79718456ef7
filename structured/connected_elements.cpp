// The elements around each node, in order around it.
//
// A walk around one node is a chain of dependent loads: the next element is known only when the
// present one has been read. So the nodes are taken in batches whose walks advance in turns, and
// the memory is busy with all of them. What the batch can't finish, a node on the boundary above
// all, is done again by the walk and the flood for a single node.
#include "foundation/status.h"
#include "structured/node_fan.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <vector>

namespace vorel::tessalo2d {

namespace {

/// A set of elements that is emptied in no time: an element is in it if its entry is the present
/// stamp.
class stamped_set {
public:
    /// False when there is no storage. The entries are not touched before the first `clear`.
    [[nodiscard]] bool init(std::size_t elements) { return entries.resize(elements); }

    void clear()
    {
        if (stamp == UNSET_ID) {
            std::fill(entries.begin(), entries.end(), 0u);
            stamp = 0;
        }
        ++stamp;
    }

    /// True if the element was not in the set.
    bool insert(unsigned e)
    {
        const bool fresh = entries[e] != stamp;
        entries[e] = stamp;
        return fresh;
    }

private:
    dense1D<unsigned, 8> entries;
    unsigned stamp = UNSET_ID;
};

/// The fan of one node at a time.
template <class Form>
class single_walk {
public:
    single_walk(const fan_mesh<Form>& reader, stamped_set& marks) : mesh(reader), marked(marks) {}

    /// Fills `ring` with the elements around the node in the direction of the walk. False when an
    /// element on the way does not hold the node; `ring` has what was met until then.
    bool collect(unsigned start, unsigned node)
    {
        bool closed = false;
        bool found = walk_ring(start, node, closed);
        if (found && !closed) {
            const unsigned last = ring.back();
            found = flood_ring(last, node);
            std::reverse(ring.begin(), ring.end());
        }
        return found;
    }

    std::vector<unsigned> ring;

private:
    /// Steps from element to element across the side that runs into the node, until the start comes
    /// back (`closed`) or the boundary does.
    bool walk_ring(unsigned start, unsigned node, bool& closed)
    {
        ring.clear();
        unsigned e = start;
        do {
            // More steps than elements: a circle that the start is not on.
            if (ring.size() == mesh.elements) return false;
            ring.push_back(e);
            const unsigned side = mesh.sides(e, node).into;
            if (side == node_side_table::NONE) return false;
            e = mesh.across(e, side);
            closed = mesh.is_element(e);
        } while (closed && e != start);
        return true;
    }

    /// Collects what can be reached from `last` across sides that touch the node. The side that
    /// runs into the node is followed first. An element is pushed at most once: when it is marked.
    bool flood_ring(unsigned last, unsigned node)
    {
        ring.clear();
        stack.clear();
        marked.clear();
        push(last);
        while (!stack.empty()) {
            const unsigned e = stack.back();
            stack.pop_back();
            const node_sides sides = mesh.sides(e, node);
            if (sides.into == node_side_table::NONE) return false;
            ring.push_back(e);
            push(mesh.across(e, sides.out_of));
            push(mesh.across(e, sides.into));
        }
        return true;
    }

    void push(unsigned e)
    {
        if (mesh.is_element(e) && marked.insert(e)) stack.push_back(e);
    }

    const fan_mesh<Form>& mesh;
    stamped_set& marked;
    std::vector<unsigned> stack;
};

/// Walks around several nodes at once.
template <class Form>
class batched_walk {
public:
    static constexpr std::size_t NODES = 32;
    /// Longer fans are left to the single walk.
    static constexpr std::size_t LONGEST = 16;

    explicit batched_walk(const fan_mesh<Form>& reader) : mesh(reader) {}

    /// Walks around the nodes `first` up to `first + count` from the elements that `starts` lists.
    void run(unsigned first, std::size_t count, const unsigned* starts)
    {
        unsigned active[NODES];
        std::size_t running = 0;
        for (unsigned w = 0; w < count; ++w) {
            start[w] = starts[w];
            size[w] = 0;
            present[w] = start[w];
            active[running] = w;
            const bool runs = mesh.is_element(start[w]);
            if (runs) mesh.fetch(start[w]);
            running += runs;
        }
        for (std::size_t length = 0; running != 0 && length < LONGEST; ++length) {
            std::size_t remaining = 0;
            for (std::size_t a = 0; a < running; ++a) {
                const unsigned w = active[a];
                active[remaining] = w;
                remaining += step(w, first + w, length);
            }
            running = remaining;
        }
    }

    /// The fan of walk `w` if it has come back to its start.
    const unsigned* ring(std::size_t w) const { return rings[w]; }
    unsigned start_of(std::size_t w) const { return start[w]; }
    bool is_closed(std::size_t w) const { return size[w] != 0 && present[w] == start[w]; }
    std::size_t ring_size(std::size_t w) const { return size[w]; }

private:
    /// Takes one element in. True if there is another one to go to.
    bool step(unsigned w, unsigned node, std::size_t length)
    {
        const unsigned e = present[w];
        rings[w][length] = e;
        size[w] = static_cast<unsigned>(length) + 1;
        const unsigned side = mesh.sides(e, node).into;
        const bool found = side != node_side_table::NONE;
        const unsigned following = mesh.across(e, found ? side : 0);
        const bool go_on = found & mesh.is_element(following) & (following != start[w]);
        present[w] = found ? following : UNSET_ID;
        mesh.fetch(go_on ? following : e);
        return go_on;
    }

    const fan_mesh<Form>& mesh;
    unsigned start[NODES];
    unsigned present[NODES];
    unsigned size[NODES];
    unsigned rings[NODES][LONGEST];
};

/// Appends a list, at least doubling the storage when it is used up. False when there is none, or
/// when its end could not be told as an offset.
bool append(dense1D<unsigned, 8>& elements, const unsigned* list, std::size_t count)
{
    const std::size_t size = elements.size + count;
    if (size > UNSET_ID || !elements.reserve(size, 2)) return false;
    std::copy_n(list, count, elements.end());
    elements.size = size;
    return true;
}

/// Lists the elements around all nodes. A list that can't be made or stored ends the run with the
/// lists so far. Kept: callers tell by the number of offsets.
template <class Form>
void list_fans(const dense2D<unsigned>& connect, const dense2D<unsigned>& neighbors,
               const dense1D<unsigned, 8>& node_element, stamped_set& marks,
               dense1D<unsigned, 8>& offsets, dense1D<unsigned, 8>& elements)
{
    const std::size_t nodes = node_element.size;
    const fan_mesh<Form> mesh{connect.block->data + connect.offset, connect.ld,
                              neighbors.block->data + neighbors.offset, neighbors.ld,
                              std::min<std::size_t>(connect.cols, UNSET_ID)};
    batched_walk<Form> batch(mesh);
    single_walk<Form> single(mesh, marks);
    constexpr std::size_t NODES = batched_walk<Form>::NODES;
    bool complete = true;
    for (std::size_t first = 0; complete && first < nodes; first += NODES) {
        const std::size_t count = std::min(NODES, nodes - first);
        batch.run(static_cast<unsigned>(first), count, node_element.begin() + first);
        for (std::size_t w = 0; complete && w < count; ++w) {
            offsets.append(static_cast<unsigned>(elements.size));
            if (batch.is_closed(w)) {
                complete = append(elements, batch.ring(w), batch.ring_size(w));
            } else if (mesh.is_element(batch.start_of(w))) {
                complete = single.collect(batch.start_of(w), static_cast<unsigned>(first + w));
                complete &= append(elements, single.ring.data(), single.ring.size());
            }
        }
    }
    offsets.append(static_cast<unsigned>(elements.size));
}

/// True if every entry is below `n` or `UNSET_ID`, which one more wraps to 0.
bool are_IDs_or_unset(const dense1D<unsigned, 8>& entries, unsigned n)
{
    const unsigned* const first = entries.begin();
    const std::size_t size = entries.size;
    unsigned violations = 0;
    for (std::size_t i = 0; i < size; ++i) violations |= first[i] + 1u > n;
    return violations == 0;
}

} // namespace

int get_connected_elements(const dense2D<unsigned>& connect, const dense2D<unsigned>& neighbors,
                           const dense1D<unsigned, 8>& node_element, dense1D<unsigned, 8>& offsets,
                           dense1D<unsigned, 8>& elements)
{
    offsets.size = 0;
    elements.size = 0;
    if (!has_rows(connect, 3, 4)) return bad_argument(1);
    if (neighbors.rows != connect.rows || neighbors.cols != connect.cols) return bad_argument(2);
    const std::size_t named = std::min<std::size_t>(connect.cols, UNSET_ID);
    if (!are_IDs_or_unset(node_element, static_cast<unsigned>(named))) return bad_argument(3);

    // Growing a block that the inputs share would take their entries away.
    if (shares_block(offsets, connect, neighbors, node_element)) offsets = dense1D<unsigned, 8>();
    if (shares_block(elements, connect, neighbors, node_element, offsets))
        elements = dense1D<unsigned, 8>();

    const std::size_t nodes = node_element.size;
    stamped_set marks;
    if (nodes >= UNSET_ID || !offsets.reserve(nodes + 1, 1) || !elements.reserve(6 * nodes, 1) ||
        !marks.init(named))
        return out_of_memory;
    if (connect.rows == 3)
        list_fans<T3_fan>(connect, neighbors, node_element, marks, offsets, elements);
    else
        list_fans<mixed_fan>(connect, neighbors, node_element, marks, offsets, elements);
    return success;
}

} // namespace vorel::tessalo2d
