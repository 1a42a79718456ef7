// The ball of a node, depth first over the sides that touch the node.
#include "interpolation/ball.h"

namespace vorel::tessalo2d {

namespace {

/// Row of the node in a column; the number of rows that count when it is missing.
unsigned row_of(unsigned node, const unsigned* column, unsigned corners)
{
    unsigned row = 0;
    while (row < corners && column[row] != node) ++row;
    return row;
}

} // namespace

template <mesh_form F>
int collect_ball(unsigned node, unsigned element, const background_mesh& mesh,
                 dense1D<unsigned, 8>& list, bool& closed, dense1D<unsigned, 8>& stack,
                 element_set& visited)
{
    stack.size = 0;
    closed = false;
    if (element == UNSET_ID) return 0;
    closed = true;
    (void)visited.insert(element);
    stack.append(element);
    while (stack.size > 0) {
        const unsigned e = stack[--stack.size];
        const bool quad = is_quad<F>(mesh.column(e));
        const unsigned corners = quad ? 4 : 3;
        const unsigned row = row_of(node, mesh.column(e), corners);
        if (row == corners) return -1;
        list.append(e);
        // Side k of a quadrilateral starts at corner k, that of a triangle lies opposite to it.
        const unsigned before = row == 0 ? corners - 1 : row - 1;
        const unsigned after = row + 1 == corners ? 0 : row + 1;
        const unsigned touching[] = {quad ? row : before, quad ? before : after};
        for (const unsigned side : touching) {
            const unsigned next = mesh.neighbors(e)[side];
            if (next == UNSET_ID)
                closed = false;
            else if (!visited.find(next) && visited.insert(next))
                stack.append(next);
        }
    }
    return 0;
}

template int collect_ball<mesh_form::T3>(unsigned, unsigned, const background_mesh&,
                                         dense1D<unsigned, 8>&, bool&, dense1D<unsigned, 8>&,
                                         element_set&);
template int collect_ball<mesh_form::Q4>(unsigned, unsigned, const background_mesh&,
                                         dense1D<unsigned, 8>&, bool&, dense1D<unsigned, 8>&,
                                         element_set&);
template int collect_ball<mesh_form::mixed>(unsigned, unsigned, const background_mesh&,
                                            dense1D<unsigned, 8>&, bool&, dense1D<unsigned, 8>&,
                                            element_set&);

} // namespace vorel::tessalo2d
