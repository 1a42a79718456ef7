// All that exports take, under one roof: a call picks what it needs, and everything can be copied,
// placed in memory, compared and watched alike.
#pragma once

#include <vorel/tessalo2d.h>

#include <array>
#include <cstdint>

namespace fuzz {

using vorel::dense1D;
using vorel::dense2D;
using vorel::UNSET_ID;

using ids = dense2D<unsigned>;

/// The views, in the order in which `each_view` visits them.
enum view : std::uint8_t {
    COORDS,
    FIELD,
    REAL_RESULT,
    CONNECT,
    NEIGHBORS,
    EDGES,
    RESULT,
    VALUES,
    MORE_VALUES,
    NODES,
    NODE_ELEMENT,
    LIST,
    MORE_LIST,
    VIEWS
};

struct arguments {
    std::array<dense2D<double>, 3> reals;
    std::array<dense2D<unsigned>, 4> ids;
    std::array<dense1D<double, 8>, 2> real_lists;
    std::array<dense1D<unsigned, 8>, 4> id_lists;

    /// Which object of its array a name stands for; two names of one kind may share an object.
    std::array<std::uint8_t, VIEWS> object{0, 1, 2, 0, 1, 2, 3, 0, 1, 0, 1, 2, 3};

    /// Numbers by position, as each family needs them.
    double real[12] = {};
    unsigned count[3] = {};
    int choice = 0;
    bool flag = false;
    double real_out = 77.0;

    /// True when the coordinates are exact small multiples of one unit.
    bool tame = false;

    dense2D<double>& coords() { return reals[object[COORDS]]; }
    dense2D<double>& field() { return reals[object[FIELD]]; }
    dense2D<double>& real_result() { return reals[object[REAL_RESULT]]; }
    dense2D<unsigned>& connect() { return ids[object[CONNECT]]; }
    dense2D<unsigned>& neighbors() { return ids[object[NEIGHBORS]]; }
    dense2D<unsigned>& edges() { return ids[object[EDGES]]; }
    dense2D<unsigned>& result() { return ids[object[RESULT]]; }
    dense1D<double, 8>& values() { return real_lists[object[VALUES]]; }
    dense1D<double, 8>& more_values() { return real_lists[object[MORE_VALUES]]; }
    dense1D<unsigned, 8>& nodes() { return id_lists[object[NODES]]; }
    dense1D<unsigned, 8>& node_element() { return id_lists[object[NODE_ELEMENT]]; }
    dense1D<unsigned, 8>& list() { return id_lists[object[LIST]]; }
    dense1D<unsigned, 8>& more_list() { return id_lists[object[MORE_LIST]]; }

    const dense2D<double>& coords() const { return reals[object[COORDS]]; }
    const dense2D<double>& field() const { return reals[object[FIELD]]; }
    const dense2D<double>& real_result() const { return reals[object[REAL_RESULT]]; }
    const dense2D<unsigned>& connect() const { return ids[object[CONNECT]]; }
    const dense2D<unsigned>& neighbors() const { return ids[object[NEIGHBORS]]; }
    const dense2D<unsigned>& edges() const { return ids[object[EDGES]]; }
    const dense2D<unsigned>& result() const { return ids[object[RESULT]]; }
    const dense1D<double, 8>& values() const { return real_lists[object[VALUES]]; }
    const dense1D<double, 8>& more_values() const { return real_lists[object[MORE_VALUES]]; }
    const dense1D<unsigned, 8>& nodes() const { return id_lists[object[NODES]]; }
    const dense1D<unsigned, 8>& node_element() const { return id_lists[object[NODE_ELEMENT]]; }
    const dense1D<unsigned, 8>& list() const { return id_lists[object[LIST]]; }
    const dense1D<unsigned, 8>& more_list() const { return id_lists[object[MORE_LIST]]; }

    vorel::vector_fixed<double, 2> plane(std::size_t k) const { return {{real[k], real[k + 1]}}; }
    vorel::vector_fixed<double, 3> space(std::size_t k) const
    {
        return {{real[k], real[k + 1], real[k + 2]}};
    }
};

/// Calls `visit(v, k)` with each view of `a` and its number. `A` may be constant.
template <class A, class Visit>
void each_view(A& a, Visit visit)
{
    unsigned k = 0;
    for (auto& v : a.reals) visit(v, view(k++));
    for (auto& v : a.ids) visit(v, view(k++));
    for (auto& v : a.real_lists) visit(v, view(k++));
    for (auto& v : a.id_lists) visit(v, view(k++));
}

/// As above with the views of two sets side by side.
template <class A, class B, class Visit>
void each_pair(A& a, B& b, Visit visit)
{
    unsigned k = 0;
    for (std::size_t i = 0; i < a.reals.size(); ++i) visit(a.reals[i], b.reals[i], view(k++));
    for (std::size_t i = 0; i < a.ids.size(); ++i) visit(a.ids[i], b.ids[i], view(k++));
    for (std::size_t i = 0; i < a.real_lists.size(); ++i)
        visit(a.real_lists[i], b.real_lists[i], view(k++));
    for (std::size_t i = 0; i < a.id_lists.size(); ++i)
        visit(a.id_lists[i], b.id_lists[i], view(k++));
}

const char* name_of(view v);

/// The shape that matrices and lists share: a list is a row.
struct shape {
    std::size_t rows, cols, ld, offset;
    bool is_empty() const { return rows == 0 || cols == 0; }
    std::size_t extent() const { return is_empty() ? 0 : (cols - 1) * ld + rows; }
};
template <class T>
shape shape_of(const dense2D<T>& m)
{
    return {m.rows, m.cols, m.ld, m.offset};
}
template <class T>
shape shape_of(const dense1D<T, 8>& v)
{
    return {1, v.size, 1, v.offset};
}

/// The same bits; all NaN count as one, since the payload follows the operand that a compiler puts
/// first.
bool same(double a, double b);
inline bool same(unsigned a, unsigned b)
{
    return a == b;
}

/// The same number of rows and of columns.
template <class View>
bool same_shape(const View& a, const View& b)
{
    const shape s = shape_of(a);
    const shape t = shape_of(b);
    return s.rows == t.rows && s.cols == t.cols;
}

/// The same shape and the same entries, wherever they stand.
template <class View>
bool same_entries(const View& a, const View& b)
{
    if (!same_shape(a, b)) return false;
    const shape s = shape_of(a);
    const shape t = shape_of(b);
    if (s.is_empty()) return true;
    const auto* const p = a.block->data + s.offset;
    const auto* const q = b.block->data + t.offset;
    for (std::size_t j = 0; j < s.cols; ++j)
        for (std::size_t i = 0; i < s.rows; ++i)
            if (!same(p[j * s.ld + i], q[j * t.ld + i])) return false;
    return true;
}

/// The columns of `before` stand at the front of `after`, in as many rows as both have.
template <class View>
bool begins_with(const View& after, const View& before)
{
    const shape s = shape_of(before);
    const shape t = shape_of(after);
    if (s.is_empty()) return true;
    if (t.cols < s.cols || t.rows == 0) return false;
    const auto* const p = before.block->data + s.offset;
    const auto* const q = after.block->data + t.offset;
    for (std::size_t j = 0; j < s.cols; ++j)
        for (std::size_t i = 0; i < s.rows && i < t.rows; ++i)
            if (!same(p[j * s.ld + i], q[j * t.ld + i])) return false;
    return true;
}

/// A deep copy of every view, each in a block of its own, columns one behind the other. Row and
/// column counts of empty matrices are kept.
arguments dense_copy(const arguments& a);

} // namespace fuzz
