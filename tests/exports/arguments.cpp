#include "exports/arguments.h"

#include "support/matrices.h"

#include <stdexcept>

namespace exports {

namespace {

std::uint64_t bits_of(double x)
{
    return support::bits(x);
}
std::uint64_t bits_of(unsigned x)
{
    return x;
}

template <class T>
picture picture_of_matrix(const dense2D<T>& m)
{
    picture p{m.rows, m.cols, {}};
    p.bits.reserve(m.rows * m.cols);
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i) p.bits.push_back(bits_of(m(i, j)));
    return p;
}

template <class T>
picture picture_of_list(const dense1D<T, 8>& v)
{
    picture p{1, v.size, {}};
    for (std::size_t i = 0; i < v.size; ++i) p.bits.push_back(bits_of(v[i]));
    return p;
}

template <std::size_t N>
picture picture_of_vector(const vector_fixed<double, N>& v)
{
    picture p{N, 1, {}};
    for (std::size_t i = 0; i < N; ++i) p.bits.push_back(bits_of(v[i]));
    return p;
}

struct viewer {
    picture operator()(const reals& m) const { return picture_of_matrix(m); }
    picture operator()(const IDs& m) const { return picture_of_matrix(m); }
    picture operator()(const real_list& v) const { return picture_of_list(v); }
    picture operator()(const ID_list& v) const { return picture_of_list(v); }
    picture operator()(const vector2& v) const { return picture_of_vector(v); }
    picture operator()(const vector3& v) const { return picture_of_vector(v); }
    picture operator()(double x) const { return {1, 1, {bits_of(x)}}; }
    template <class T>
    picture operator()(T x) const
    {
        return {1, 1, {static_cast<std::uint64_t>(x)}};
    }
};

struct measurer {
    template <class T>
    extent operator()(const dense2D<T>& m) const
    {
        return {m.rows, m.cols};
    }
    template <class T>
    extent operator()(const dense1D<T, 8>& v) const
    {
        return {1, v.size};
    }
    template <class T>
    extent operator()(const T&) const
    {
        return {1, 1};
    }
};

struct copier {
    template <class T>
    value operator()(const dense2D<T>& m) const
    {
        return support::copy_of(m);
    }
    template <class T>
    value operator()(const dense1D<T, 8>& v) const
    {
        return support::placed_run(v, 0);
    }
    template <class T>
    value operator()(const T& x) const
    {
        return x;
    }
};

struct inspector {
    template <class T>
    bool operator()(const dense2D<T>& m) const
    {
        const std::size_t span = m.is_empty() ? 0 : m.offset + (m.cols - 1) * m.ld + m.rows;
        return span <= m.block->capacity && (m.is_empty() || m.ld >= m.rows);
    }
    template <class T>
    bool operator()(const dense1D<T, 8>& v) const
    {
        return v.size == 0 || v.offset + v.size <= v.block->capacity;
    }
    template <class T>
    bool operator()(const T&) const
    {
        return true;
    }
};

} // namespace

bool is_well_formed(const value& v)
{
    return std::visit(inspector(), v);
}

extent extent_of(const value& v)
{
    return std::visit(measurer(), v);
}

picture picture_of(const value& v)
{
    return std::visit(viewer(), v);
}

value copy_of(const value& v)
{
    return std::visit(copier(), v);
}

bool arguments::has(const std::string& name) const
{
    for (const slot& s : *slots)
        if (s.name == name) return true;
    return false;
}

std::size_t arguments::place(const std::string& name) const
{
    for (std::size_t k = 0; k < slots->size(); ++k)
        if ((*slots)[k].name == name) return k;
    throw std::logic_error("no argument " + name);
}

std::vector<picture> arguments::pictures() const
{
    std::vector<picture> all;
    for (const value& v : values) all.push_back(picture_of(v));
    return all;
}

} // namespace exports
