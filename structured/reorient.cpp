// Reorientation of connected regions: the elements around a seed are visited breadth first, and
// each one that runs its common edge the same way as the element it was reached from is flipped.
#include "foundation/status.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace vorel::tessalo2d {

namespace {

/// Position of a node that a column does not hold. One more than it wraps to 0, so an absent first
/// node of an edge and a second one in row 0 pass for an edge. Kept: callers rely on it.
constexpr unsigned ABSENT = 0xFFFFFFFFu;

/// How an element runs the edge that it shares with another one.
enum class course { same, opposite, conflict };

/// An edge in the direction in which an element runs it.
struct side {
    unsigned from;
    unsigned to;
};

/// First position of the node among the corners.
template <unsigned CORNERS>
unsigned position(const unsigned* column, unsigned node)
{
    unsigned at = ABSENT;
    for (unsigned i = CORNERS; i-- > 0;) at = column[i] == node ? i : at;
    return at;
}

template <unsigned CORNERS>
unsigned next(unsigned at)
{
    const unsigned following = at + 1u;
    return following == CORNERS ? 0 : following;
}

template <unsigned CORNERS>
course compare(const unsigned* column, const side& edge)
{
    const unsigned at_from = position<CORNERS>(column, edge.from);
    const unsigned at_to = position<CORNERS>(column, edge.to);
    if (at_to == next<CORNERS>(at_from)) return course::same;
    return at_from == next<CORNERS>(at_to) ? course::opposite : course::conflict;
}

/// Storage of triangles only.
struct T3_form {
    static constexpr std::size_t ROWS = 3;

    static side local_edge(const unsigned* column, std::size_t r)
    {
        constexpr unsigned char FROM[] = {1, 2, 0};
        constexpr unsigned char TO[] = {2, 0, 1};
        return {column[FROM[r]], column[TO[r]]};
    }

    static course test(const unsigned* column, const side& edge)
    {
        return compare<3>(column, edge);
    }

    static void flip(unsigned* column, unsigned* across)
    {
        std::swap(column[0], column[2]);
        std::swap(across[0], across[2]);
    }
};

/// Storage of quadrilaterals with triangles among them.
struct mixed_form {
    static constexpr std::size_t ROWS = 4;

    static bool is_triangle(const unsigned* column) { return column[3] == UNSET_ID; }

    /// A triangle has no edge in row 3.
    static side local_edge(const unsigned* column, std::size_t r)
    {
        if (!is_triangle(column)) return {column[r], column[(r + 1) & 3]};
        return r < 3 ? T3_form::local_edge(column, r) : side{UNSET_ID, UNSET_ID};
    }

    static course test(const unsigned* column, const side& edge)
    {
        return is_triangle(column) ? compare<3>(column, edge) : compare<4>(column, edge);
    }

    static void flip(unsigned* column, unsigned* across)
    {
        if (is_triangle(column)) return T3_form::flip(column, across);
        std::swap(column[0], column[2]);
        std::swap(across[0], across[1]);
        std::swap(across[2], across[3]);
    }
};

/// Two bits for each element: it has been visited; it has been in the queue.
class element_marks {
public:
    explicit element_marks(std::size_t elements) : words(elements / PER_WORD + 1, 0) {}

    bool is_visited(std::size_t e) const { return (word(e) >> shift(e)) & 1u; }
    void set_visited(std::size_t e) { word(e) |= 1u << shift(e); }

    bool is_enqueued(std::size_t e) const { return (word(e) >> shift(e)) & 2u; }
    /// True the first time.
    bool enqueue(std::size_t e)
    {
        std::uint32_t& w = word(e);
        const std::uint32_t bit = 2u << shift(e);
        const bool first = (w & bit) == 0;
        w |= bit;
        return first;
    }

private:
    static constexpr std::size_t PER_WORD = 16;

    static unsigned shift(std::size_t e) { return static_cast<unsigned>(e % PER_WORD) * 2; }
    std::uint32_t& word(std::size_t e) { return words[e / PER_WORD]; }
    const std::uint32_t& word(std::size_t e) const { return words[e / PER_WORD]; }

    std::vector<std::uint32_t> words;
};

template <class Form>
class reorientation {
public:
    reorientation(dense2D<unsigned>& connect, dense2D<unsigned>& neighbors)
        : columns(connect.column(0)),
          column_ld(connect.ld),
          adjacency(neighbors.column(0)),
          adjacency_ld(neighbors.ld),
          elements(std::min<std::size_t>(connect.cols, UNSET_ID)),
          marks(elements),
          queue(new unsigned[elements])
    {
    }

    int sweep(std::size_t seed, bool all_regions)
    {
        std::size_t e = seed;
        do {
            while (e < elements && marks.is_visited(e)) ++e;
            if (e < elements) traverse(e);
        } while (all_regions && e < elements);
        return static_cast<int>(flip_count);
    }

private:
    /// Places in the queue between an element whose surroundings are fetched and the visited one.
    static constexpr std::size_t AHEAD = 8;

    void traverse(std::size_t start)
    {
        push(start);
        while (head != tail) {
            if (tail - head > 2 * AHEAD) {
                fetch(adjacency + queue[head + 2 * AHEAD] * adjacency_ld);
                fetch_around(queue[head + AHEAD]);
            }
            const std::size_t e = queue[head++];
            marks.set_visited(e);
            const unsigned* const column = columns + e * column_ld;
            const unsigned* const across = adjacency + e * adjacency_ld;
            for (std::size_t r = 0; r < Form::ROWS; ++r) {
                const std::size_t b = across[r];
                if (b >= elements || marks.is_visited(b)) continue;
                const bool go_on = agree(Form::local_edge(column, r), b);
                push(b);
                if (!go_on) break;
            }
        }
    }

    /// A column may lie across two cache lines.
    [[gnu::always_inline]] static void fetch(const unsigned* column)
    {
        __builtin_prefetch(column);
        __builtin_prefetch(column + Form::ROWS - 1);
    }

    /// Has the columns brought in that the visit of an element needs. Inlined always: a function
    /// without an effect that the compiler knows is a function that it drops.
    [[gnu::always_inline]] void fetch_around(std::size_t e) const
    {
        const unsigned* const across = adjacency + e * adjacency_ld;
        for (std::size_t r = 0; r < Form::ROWS; ++r) {
            const std::size_t b = across[r];
            if (b >= elements || marks.is_enqueued(b)) continue;
            const unsigned* const first = columns + b * column_ld;
            const unsigned* const side = adjacency + b * adjacency_ld;
            fetch(first);
            fetch(side);
        }
    }

    /// Flips `b` if it runs the edge in the given direction. False while a conflict counts.
    bool agree(const side& edge, std::size_t b)
    {
        unsigned* const column = columns + b * column_ld;
        const course found = Form::test(column, edge);
        if (found == course::same) {
            Form::flip(column, adjacency + b * adjacency_ld);
            ++flip_count;
        } else if (found == course::conflict) {
            flip_count = -2;
        }
        return flip_count >= 0;
    }

    /// An element that waits already is not listed again: its first place decides.
    void push(std::size_t e)
    {
        if (marks.enqueue(e)) queue[tail++] = static_cast<unsigned>(e);
    }

    unsigned* columns;
    std::size_t column_ld;
    unsigned* adjacency;
    std::size_t adjacency_ld;
    /// Those that an ID can name.
    std::size_t elements;
    element_marks marks;
    /// Each element enters at most once, so the queue never turns round.
    std::unique_ptr<unsigned[]> queue;
    std::size_t head = 0;
    std::size_t tail = 0;
    /// Carries the mark of a conflict, -2, from which later flips count on. Wider than the result:
    /// an element may be flipped once for each of its sides.
    std::int64_t flip_count = 0;
};

} // namespace

int mesh_reorient(dense2D<unsigned>& connect, dense2D<unsigned>& neighbors, unsigned seed,
                  int all_regions)
{
    if (connect.cols == 0) return success;
    if (!tessalo::check_IDs(connect, ELEMENT_ANY_FACE, UNSET_ID)) return bad_argument(1);
    if (neighbors.rows != connect.rows || neighbors.cols != connect.cols) return bad_argument(2);
    if (seed >= connect.cols) return bad_argument(3);
    // Columns without rows pass the check and have no edges.
    if (is_empty(connect)) return success;

    const bool all = all_regions != 0;
    if (connect.rows == 3) return reorientation<T3_form>(connect, neighbors).sweep(seed, all);
    return reorientation<mixed_form>(connect, neighbors).sweep(seed, all);
}

} // namespace vorel::tessalo2d
