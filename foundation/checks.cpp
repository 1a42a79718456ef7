// The mesh checks: one pass over the entries that collects violations without leaving early, so
// that it runs at the speed of memory.
#include <vorel/checks.h>

namespace vorel::tessalo {

namespace {

/// Number of entries that are not below `n`, as far as it matters: 0 or not 0.
unsigned violations(const unsigned* entry, std::size_t count, unsigned n)
{
    unsigned found = 0;
    for (std::size_t i = 0; i < count; ++i) found |= entry[i] >= n;
    return found;
}

/// As above, with `UNSET_ID` allowed: one more than an entry wraps it to 0.
unsigned violations_but_unset(const unsigned* entry, std::size_t count, unsigned n)
{
    unsigned found = 0;
    for (std::size_t i = 0; i < count; ++i) found |= entry[i] + 1u > n;
    return found;
}

/// As above for columns of four of which only the last may be `UNSET_ID`.
unsigned violations_in_mixed(const unsigned* column, std::size_t ld, std::size_t cols, unsigned n)
{
    unsigned found = 0;
    for (std::size_t j = 0; j < cols; ++j, column += ld) {
        found |= column[0] >= n;
        found |= column[1] >= n;
        found |= column[2] >= n;
        found |= column[3] + 1u > n;
    }
    return found;
}

} // namespace

bool check_IDs(const dense2D<unsigned>& connect, element_type type, unsigned n)
{
    if (connect.is_empty()) return true;
    const unsigned* const first = connect.column(0);
    if (type == ELEMENT_ANY_FACE && connect.rows == 4)
        return violations_in_mixed(first, connect.ld, connect.cols, n) == 0;
    const std::size_t nodes = type == ELEMENT_ANY_FACE ? 3 : element_node_count(type);
    if (connect.rows != nodes) return false;
    if (connect.ld == connect.rows) return violations(first, connect.rows * connect.cols, n) == 0;
    unsigned found = 0;
    for (std::size_t j = 0; j < connect.cols; ++j)
        found |= violations(first + j * connect.ld, connect.rows, n);
    return found == 0;
}

bool check_IDs(const dense2D<unsigned>& m, unsigned n)
{
    if (m.is_empty()) return true;
    const unsigned* const first = m.column(0);
    if (m.ld == m.rows) return violations_but_unset(first, m.rows * m.cols, n) == 0;
    unsigned found = 0;
    for (std::size_t j = 0; j < m.cols; ++j)
        found |= violations_but_unset(first + j * m.ld, m.rows, n);
    return found == 0;
}

bool check_IDs(const dense1D<unsigned, 8>& v, unsigned n)
{
    if (v.size == 0) return true;
    return violations(v.begin(), v.size, n) == 0;
}

} // namespace vorel::tessalo
