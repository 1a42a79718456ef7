#include "exports/breakage.h"

#include <gtest/gtest.h>

#include <limits>

namespace exports {

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double TINY = std::numeric_limits<double>::denorm_min();

/// The matrix in another shape; entries that it did not have are those of its first rows and
/// columns again.
template <class T>
dense2D<T> reshaped(const dense2D<T>& m, std::size_t rows, std::size_t cols)
{
    dense2D<T> other;
    EXPECT_TRUE(other.resize(rows, cols, T()));
    if (m.is_empty()) return other;
    for (std::size_t j = 0; j < cols && rows > 0; ++j)
        for (std::size_t i = 0; i < rows; ++i) other(i, j) = m(i % m.rows, j % m.cols);
    return other;
}

/// Collects the breakages of one slot.
class collector {
public:
    collector(const exported& e, std::size_t k, std::vector<breakage>& all)
        : about(e.slots[k]), place(k), found(all)
    {
    }

    template <class T>
    void operator()(const dense2D<T>& m)
    {
        for (std::size_t r = 0; r <= 10; ++r)
            change<dense2D<T>>("with " + std::to_string(r) + " rows",
                               [r](auto& x, const auto&) { x = reshaped(x, r, x.cols); });
        change<dense2D<T>>("without columns",
                           [](auto& x, const auto&) { x = reshaped(x, x.rows, 0); });
        change<dense2D<T>>("of no rows and columns",
                           [](auto& x, const auto&) { x = dense2D<T>(); });
        change<dense2D<T>>("a column shorter", [](auto& x, const auto&) {
            x = reshaped(x, x.rows, x.cols > 0 ? x.cols - 1 : 0);
        });
        change<dense2D<T>>("a column longer",
                           [](auto& x, const auto&) { x = reshaped(x, x.rows, x.cols + 1); });
        for (std::size_t i = 0; i < m.rows; ++i) entries<dense2D<T>>(i);
    }

    template <class T>
    void operator()(const dense1D<T, 8>&)
    {
        using list = dense1D<T, 8>;
        change<list>("empty", [](auto& x, const auto&) { x.size = 0; });
        change<list>("an entry shorter", [](auto& x, const auto&) { x.size -= x.size > 0; });
        change<list>("an entry longer", [](auto& x, const auto&) { x.append(T()); });
        entries<list>(0);
    }

    void operator()(const vector2&) { vectors<vector2>(); }
    void operator()(const vector3&) { vectors<vector3>(); }

    void operator()(double)
    {
        numbers({0.0, -0.0, -1.0, NaN, 2.5}, false);
        numbers({INF, -INF, 1e300, 1e-300, TINY}, true);
    }

    void operator()(unsigned)
    {
        numbers({0u, 1u, 2u, 3u, 4u, 5u, 7u}, false);
        numbers({0x40000000u, 0x7FFFFFFFu, 0x80000000u, U_LARGEST - 1, U_LARGEST}, true);
    }

    void operator()(int)
    {
        numbers({-1, 0, 1, 2, 3, 4, 5, 6, 7, std::numeric_limits<int>::min(),
                 std::numeric_limits<int>::max()},
                false);
    }

    void operator()(bool) { numbers({false, true}, false); }

    void operator()(element_type)
    {
        for (int code = 0; code <= 23; ++code) numbers({static_cast<element_type>(code)}, false);
        numbers({static_cast<element_type>(0x7FFFFFFF)}, false);
    }

private:
    static constexpr unsigned U_LARGEST = 0xFFFFFFFFu;

    template <class T, class F>
    void change(const std::string& how, F how_to, bool wild = false)
    {
        found.push_back({place, about.name + " " + how,
                         [name = about.name, s = &about, how_to](arguments& a) {
                             how_to(a.get<T>(name), bound_of(a, *s));
                         },
                         wild});
    }

    template <class T>
    void numbers(std::initializer_list<T> values, bool wild)
    {
        for (const T v : values)
            change<T>(
                "= " + std::to_string(v), [v](auto& x, const auto&) { x = v; }, wild);
    }

    template <class V>
    void vectors()
    {
        for (const double v : {0.0, NaN, INF, 1e300, 1e-300})
            change<V>(
                "all " + std::to_string(v),
                [v](auto& x, const auto&) {
                    for (std::size_t i = 0; i < V::size; ++i) x[i] = v;
                },
                true);
    }

    static unsigned* entry(IDs& m, std::size_t i, bool last)
    {
        return i < m.rows && m.cols > 0 ? &m(i, last ? m.cols - 1 : 0) : nullptr;
    }
    static double* entry(reals& m, std::size_t i, bool last)
    {
        return i < m.rows && m.cols > 0 ? &m(i, last ? m.cols - 1 : 0) : nullptr;
    }
    template <class T>
    static T* entry(dense1D<T, 8>& v, std::size_t, bool last)
    {
        return v.size > 0 ? &v[last ? v.size - 1 : 0] : nullptr;
    }

    /// Breaks row `i` of the first or the last column.
    template <class C>
    void entries(std::size_t i)
    {
        const auto put = [&](const std::string& what, bool last, auto what_of) {
            change<C>(what + " in row " + std::to_string(i) + (last ? " at the end" : ""),
                      [=](auto& x, unsigned bound) {
                          if (auto* const e = entry(x, i, last)) *e = what_of(bound);
                      });
        };
        if constexpr (std::is_same_v<typename C::value_type, unsigned>) {
            put("unset", false, [](unsigned) { return U_LARGEST; });
            put("unset", true, [](unsigned) { return U_LARGEST; });
            put("the bound", true, [](unsigned bound) { return bound; });
            put("the last ID", true, [](unsigned bound) { return bound - 1; });
        } else {
            put("NaN", false, [](unsigned) { return NaN; });
            put("infinite", true, [](unsigned) { return INF; });
        }
    }

    const slot& about;
    std::size_t place;
    std::vector<breakage>& found;
};

} // namespace

unsigned bound_of(const arguments& a, const slot& s)
{
    if (s.what == kind::elements)
        return a.has("connect") ? static_cast<unsigned>(a.cols("connect")) : 0;
    for (const kind counted : {kind::coordinates, kind::field})
        for (std::size_t k = 0; k < a.count(); ++k)
            if (a.about(k).what == counted) return static_cast<unsigned>(extent_of(a[k]).cols);
    return 6;
}

std::vector<breakage> breakages(const exported& e)
{
    std::vector<breakage> all;
    for (std::size_t k = 0; k < e.slots.size(); ++k) {
        collector collect(e, k, all);
        std::visit(collect, e.slots[k].valid);
    }
    return all;
}

void keep_one_element(arguments& a)
{
    // Of a loop are left the corners of the rectangle.
    for (const auto& [loop, cells] : {std::pair("boundary", "N"), std::pair("ids", "count")}) {
        if (!a.has(loop)) continue;
        a[loop] = ID_list{0, 3, 5, 8, 0};
        a[cells] = 1u;
    }
    if (!a.has("connect")) return;
    IDs& connect = a.get<IDs>("connect");
    connect = reshaped(connect, connect.rows, 1);
    if (a.has("neighbors")) a["neighbors"] = IDs(a.rows("neighbors"), 1, UNSET_ID);
    if (!a.has("node_element")) return;
    ID_list& holder = a.get<ID_list>("node_element");
    for (std::size_t n = 0; n < holder.size; ++n) {
        holder[n] = UNSET_ID;
        for (std::size_t i = 0; i < connect.rows; ++i)
            if (connect(i, 0) == n) holder[n] = 0;
    }
}

void empty_all(arguments& a, bool keep_rows)
{
    const auto emptied = [keep_rows](auto& x) {
        using T = std::decay_t<decltype(x)>;
        if constexpr (std::is_same_v<T, reals> || std::is_same_v<T, IDs>)
            x = reshaped(x, keep_rows ? x.rows : 0, 0);
        else if constexpr (std::is_same_v<T, real_list> || std::is_same_v<T, ID_list>)
            x.size = 0;
    };
    for (std::size_t k = 0; k < a.count(); ++k) std::visit(emptied, a[k]);
}

} // namespace exports
