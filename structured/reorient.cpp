// Reorientation of connected regions: the elements around a seed are visited breadth first, and
// each one that runs its common edge the same way as the element it was reached from is flipped.
//
// Where a side leads, in which corner an edge begins, which kind an element is: all of it is as
// good as random, and a branch on it costs more than the work. So the comparisons become bits that
// a table tells the meaning of, and only what is rare is branched on.
#include "foundation/prefetch.h"
#include "foundation/status.h"
#include "structured/corner_set.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace vorel::tessalo2d {

namespace {

/// How an element runs the edge that it shares with another one.
enum class course : unsigned char { same, opposite, conflict };

/// An edge in the direction in which an element runs it.
struct side {
    unsigned from;
    unsigned to;
};

/// The course of an edge in an element of so many corners, by the sets of corners that are its
/// nodes: bit k stands for corner k.
template <unsigned CORNERS>
struct course_table {
    static constexpr unsigned SETS = 1u << CORNERS;

    constexpr course_table() : entry()
    {
        for (unsigned to = 0; to < SETS; ++to)
            for (unsigned from = 0; from < SETS; ++from)
                entry[to * SETS + from] = compare(first_corner(from), first_corner(to));
    }

    course entry[SETS * SETS];

private:
    /// The corner after none wraps to 0, so an absent first node and a second one in corner 0 pass
    /// for an edge. Kept: callers rely on it.
    static constexpr unsigned next(unsigned corner)
    {
        return corner + 1u == CORNERS ? 0 : corner + 1u;
    }

    static constexpr course compare(unsigned from, unsigned to)
    {
        if (to == next(from)) return course::same;
        return from == next(to) ? course::opposite : course::conflict;
    }
};

inline constexpr course_table<3> TRIANGLE_COURSES;
inline constexpr course_table<4> QUAD_COURSES;

void swap_triangle(unsigned* column, unsigned* across)
{
    std::swap(column[0], column[2]);
    std::swap(across[0], across[2]);
}

/// Storage of triangles only.
struct T3_form {
    static constexpr std::size_t ROWS = 3;

    static void local_edges(const unsigned* column, side* edges)
    {
        edges[0] = {column[1], column[2]};
        edges[1] = {column[2], column[0]};
        edges[2] = {column[0], column[1]};
    }

    static course test(const unsigned* column, const side& edge)
    {
        const unsigned from = corner_set<3>(column, edge.from);
        const unsigned to = corner_set<3>(column, edge.to);
        return TRIANGLE_COURSES.entry[to * TRIANGLE_COURSES.SETS + from];
    }

    static void flip(unsigned* column, unsigned* across) { swap_triangle(column, across); }
};

/// Storage of quadrilaterals with triangles among them.
struct mixed_form {
    static constexpr std::size_t ROWS = 4;

    /// A triangle has no edge in row 3: unset nodes, which no element holds.
    static void local_edges(const unsigned* column, side* edges)
    {
        const unsigned quad = column[3] == UNSET_ID ? 0u : UNSET_ID;
        const auto pick = [&](unsigned a, unsigned b) { return b ^ ((a ^ b) & quad); };
        edges[0] = {pick(column[0], column[1]), pick(column[1], column[2])};
        edges[1] = {pick(column[1], column[2]), pick(column[2], column[0])};
        edges[2] = {pick(column[2], column[0]), pick(column[3], column[1])};
        edges[3] = {column[3], column[0] | ~quad};
    }

    /// The last corner of a triangle is unset and never compares equal to an edge's node; the
    /// unset nodes above are the exception, and conflict with every element.
    static course test(const unsigned* column, const side& edge)
    {
        const unsigned from = corner_set<4>(column, edge.from);
        const unsigned to = corner_set<4>(column, edge.to);
        const unsigned of_triangle = (to & 7u) * TRIANGLE_COURSES.SETS + (from & 7u);
        const course in_triangle = TRIANGLE_COURSES.entry[of_triangle];
        const course in_quad = QUAD_COURSES.entry[to * QUAD_COURSES.SETS + from];
        return column[3] == UNSET_ID ? in_triangle : in_quad;
    }

    static void flip(unsigned* column, unsigned* across)
    {
        if (column[3] == UNSET_ID) return swap_triangle(column, across);
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
          queue(new unsigned[elements + 1])
    {
    }

    /// Each round visits an element that was not visited before, the first one `seed`; the search
    /// for the next one goes on where the last one ended.
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

    /// Visits what hangs together with an element. Each round takes an element off the queue, which
    /// each enters once, whatever the neighbors say.
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
            side edges[Form::ROWS];
            Form::local_edges(columns + e * column_ld, edges);
            for (std::size_t r = 0; r < Form::ROWS; ++r) {
                // Where there is no neighbor the element itself takes its place: it is visited.
                const std::size_t b = neighbor(e, r);
                const bool open = !marks.is_visited(b);
                push(b);
                const course found = Form::test(columns + b * column_ld, edges[r]);
                if (open & (found != course::opposite)) settle(found, b);
                if (open & (flip_count < 0)) break;
            }
        }
    }

    /// The element across side `r`, or `e` itself.
    std::size_t neighbor(std::size_t e, std::size_t r) const
    {
        const std::size_t b = adjacency[e * adjacency_ld + r];
        return b < elements ? b : e;
    }

    void settle(course found, std::size_t b)
    {
        if (found == course::same) {
            Form::flip(columns + b * column_ld, adjacency + b * adjacency_ld);
            ++flip_count;
        } else {
            flip_count = -2;
        }
    }

    /// An element that waits already or is visited is not listed again: its first place decides.
    void push(std::size_t e)
    {
        queue[tail] = static_cast<unsigned>(e);
        tail += marks.enqueue(e);
    }

    /// A column may lie across two cache lines.
    [[gnu::always_inline]] static void fetch(const unsigned* column)
    {
        prefetch(column);
        prefetch(column + Form::ROWS - 1);
    }

    /// Has the columns brought in that the visit of an element needs. Inlined always: the calls
    /// would cost a tenth of the walk.
    [[gnu::always_inline]] void fetch_around(std::size_t e) const
    {
        for (std::size_t r = 0; r < Form::ROWS; ++r) {
            const std::size_t b = neighbor(e, r);
            fetch(columns + b * column_ld);
            fetch(adjacency + b * adjacency_ld);
        }
    }

    unsigned* columns;
    std::size_t column_ld;
    unsigned* adjacency;
    std::size_t adjacency_ld;
    /// Those that an ID can name.
    std::size_t elements;
    element_marks marks;
    /// Each element enters at most once, so the queue never turns round. Behind the last one there
    /// is room for one that is written and not counted.
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
