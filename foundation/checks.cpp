// The mesh checks: one pass over the entries that collects violations without leaving early, so
// that it runs at the speed of memory.
#include <vorel/checks.h>

#include <cstdint>
#include <cstring>

namespace vorel::tessalo {

namespace {

using four_IDs = std::uint32_t __attribute__((vector_size(16)));
using four_flags = std::int32_t __attribute__((vector_size(16)));

/// The test of an entry in each of four places: it passes when, raised by `raise`, it is at most
/// `most`. A raise by one makes `UNSET_ID` the smallest number.
struct four_bounds {
    four_IDs raise;
    four_IDs most;
};

/// Every entry below `n`, which is not 0.
four_bounds strict(unsigned n)
{
    return {four_IDs{0, 0, 0, 0}, four_IDs{n - 1, n - 1, n - 1, n - 1}};
}

/// Every entry below `n` or unset.
four_bounds or_unset(unsigned n)
{
    return {four_IDs{1, 1, 1, 1}, four_IDs{n, n, n, n}};
}

/// Rows 0 to 2 below `n`, which is not 0, row 3 below `n` or unset.
four_bounds mixed(unsigned n)
{
    return {four_IDs{0, 0, 0, 1}, four_IDs{n - 1, n - 1, n - 1, n}};
}

/// Flags in the places of entries that fail. The bias carries the order of unsigned numbers over to
/// the signed comparison, which is the one that every machine has.
inline four_flags failures(const four_bounds& bounds, const unsigned* entry)
{
    constexpr std::uint32_t BIAS = 0x80000000u;
    four_IDs ids;
    std::memcpy(&ids, entry, sizeof ids);
    return reinterpret_cast<four_flags>(ids + (bounds.raise + BIAS)) >
           reinterpret_cast<four_flags>(bounds.most + BIAS);
}

inline bool any(const four_flags& flags)
{
    return (flags[0] | flags[1] | flags[2] | flags[3]) != 0;
}

/// True if `count` entries in a row pass, the first one in place 0.
bool pass(const four_bounds& bounds, const unsigned* entry, std::size_t count)
{
    four_flags found[4] = {};
    std::size_t i = 0;
    for (; i + 16 <= count; i += 16)
        for (std::size_t k = 0; k < 4; ++k) found[k] |= failures(bounds, entry + i + 4 * k);
    for (; i + 4 <= count; i += 4) found[0] |= failures(bounds, entry + i);
    unsigned failed = 0;
    for (std::size_t k = 0; i < count; ++i, ++k)
        failed |= entry[i] + bounds.raise[k] > bounds.most[k];
    return failed == 0 && !any((found[0] | found[1]) | (found[2] | found[3]));
}

/// As above for columns of which `rows` entries count. `ROWS` is their number where it is known.
template <std::size_t ROWS>
bool pass_columns(const four_bounds& bounds, const unsigned* column, std::size_t rows,
                  std::size_t ld, std::size_t cols)
{
    const std::size_t n = ROWS ? ROWS : rows;
    four_flags found = {};
    unsigned failed = 0;
    for (std::size_t j = 0; j < cols; ++j, column += ld) {
        std::size_t i = 0;
        for (; i + 4 <= n; i += 4) found |= failures(bounds, column + i);
        for (std::size_t k = 0; i < n; ++i, ++k)
            failed |= column[i] + bounds.raise[k] > bounds.most[k];
    }
    return failed == 0 && !any(found);
}

bool pass(const four_bounds& bounds, const dense2D<unsigned>& m)
{
    const unsigned* const first = m.column(0);
    if (m.ld == m.rows) return pass(bounds, first, m.rows * m.cols);
    switch (m.rows) {
    case 2:
        return pass_columns<2>(bounds, first, 2, m.ld, m.cols);
    case 3:
        return pass_columns<3>(bounds, first, 3, m.ld, m.cols);
    case 4:
        return pass_columns<4>(bounds, first, 4, m.ld, m.cols);
    default:
        return pass_columns<0>(bounds, first, m.rows, m.ld, m.cols);
    }
}

} // namespace

bool check_IDs(const dense2D<unsigned>& connect, element_type type, unsigned n)
{
    if (connect.is_empty()) return true;
    const bool is_mixed = type == ELEMENT_ANY_FACE && connect.rows == 4;
    const std::size_t nodes = type == ELEMENT_ANY_FACE ? 3 : element_node_count(type);
    if (!is_mixed && connect.rows != nodes) return false;
    if (n == 0) return false;
    return pass(is_mixed ? mixed(n) : strict(n), connect);
}

bool check_IDs(const dense2D<unsigned>& m, unsigned n)
{
    return m.is_empty() || pass(or_unset(n), m);
}

bool check_IDs(const dense1D<unsigned, 8>& v, unsigned n)
{
    if (v.is_empty()) return true;
    return n != 0 && pass(strict(n), v.begin(), v.size);
}

} // namespace vorel::tessalo
