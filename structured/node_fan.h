// Steps from element to element around a node.
#pragma once

#include "foundation/prefetch.h"
#include "structured/corner_set.h"

#include <vorel/element_type.h>

#include <cstddef>

namespace vorel::tessalo2d {

/// The two local edges of an element that touch a node.
struct node_sides {
    /// The one that the element runs into the node: in an anticlockwise mesh the way across it
    /// leads anticlockwise around the node.
    unsigned char into;
    unsigned char out_of;
};

/// The sides for each set of corners that are the node, of which the first one counts, in a
/// triangle and in a quadrilateral.
struct node_side_table {
    /// Of an element that does not hold the node.
    static constexpr unsigned char NONE = 4;
    /// Added to the set of corners of a quadrilateral.
    static constexpr unsigned QUAD = 16;

    constexpr node_side_table() : entry()
    {
        for (unsigned equal = 0; equal < 32; ++equal) {
            const unsigned k = first_corner(equal);
            if (k == NO_CORNER)
                entry[equal] = {NONE, NONE};
            else if (equal >= QUAD)
                entry[equal] = {cut((k + 3) % 4), cut(k)};
            else
                entry[equal] = {cut((k + 1) % 3), cut((k + 2) % 3)};
        }
    }

    node_sides entry[32];

private:
    static constexpr unsigned char cut(unsigned side) { return static_cast<unsigned char>(side); }
};

inline constexpr node_side_table NODE_SIDES;

/// Storage of triangles only.
struct T3_fan {
    static constexpr std::size_t ROWS = 3;

    static node_sides sides(const unsigned* column, unsigned node)
    {
        return NODE_SIDES.entry[corner_set<3>(column, node)];
    }
};

/// Storage of quadrilaterals with triangles among them, whose row 3 holds no node's ID.
struct mixed_fan {
    static constexpr std::size_t ROWS = 4;

    static node_sides sides(const unsigned* column, unsigned node)
    {
        const unsigned kind = unsigned(column[3] != UNSET_ID) * node_side_table::QUAD;
        return NODE_SIDES.entry[kind + corner_set<4>(column, node)];
    }
};

/// Reads the mesh that the fans are in.
template <class Form>
struct fan_mesh {
    node_sides sides(unsigned e, unsigned node) const
    {
        return Form::sides(columns + e * column_ld, node);
    }

    /// What lies across a side; no element where `is_element` says so.
    unsigned across(unsigned e, unsigned side) const { return adjacency[e * adjacency_ld + side]; }

    bool is_element(unsigned e) const { return e < elements; }

    /// Has both columns brought in; one of three rows may lie across two cache lines.
    [[gnu::always_inline]] void fetch(unsigned e) const
    {
        prefetch(columns + e * column_ld);
        prefetch(adjacency + e * adjacency_ld);
        if constexpr (Form::ROWS == 3) {
            prefetch(columns + e * column_ld + 2);
            prefetch(adjacency + e * adjacency_ld + 2);
        }
    }

    const unsigned* columns;
    std::size_t column_ld;
    const unsigned* adjacency;
    std::size_t adjacency_ld;
    /// Number of elements that an ID can name.
    std::size_t elements;
};

} // namespace vorel::tessalo2d
