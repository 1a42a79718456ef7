#include "fuzz/arguments.h"

#include <cstdlib>
#include <cstring>

namespace fuzz {

const char* name_of(view v)
{
    static const char* const names[VIEWS] = {
        "coords", "field",       "real_result", "connect",      "neighbors", "edges",    "result",
        "values", "more_values", "nodes",       "node_element", "list",      "more_list"};
    return names[v];
}

bool same(double a, double b)
{
    return (a != a && b != b) || std::memcmp(&a, &b, sizeof a) == 0;
}

namespace {

template <class T>
void make_dense(dense2D<T>& m)
{
    dense2D<T> fresh;
    if (!fresh.copy(m)) std::abort();
    fresh.rows = m.rows;
    fresh.cols = m.cols;
    m = fresh;
}

template <class T>
void make_dense(dense1D<T, 8>& v)
{
    dense1D<T, 8> fresh;
    if (!fresh.copy(v)) std::abort();
    v = fresh;
}

} // namespace

arguments dense_copy(const arguments& a)
{
    arguments copy = a;
    each_view(copy, [](auto& v, view) { make_dense(v); });
    return copy;
}

} // namespace fuzz
