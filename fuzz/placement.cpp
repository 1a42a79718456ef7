#include "fuzz/placement.h"

#include <algorithm>
#include <cstring>

namespace fuzz {

namespace {

constexpr int PATTERN = 0x5A;

using foreign_memory = std::vector<std::unique_ptr<void, free_memory>>;

/// A block of `n` elements full of the pattern, and maybe a few more.
template <class T>
vorel::Ptr<vorel::vector_num<T, 8>> block_of(input& in, std::size_t n, foreign_memory& foreign)
{
    if (n > 0 && in.chance(60)) {
        // Ends with the last element, so that the sanitizer sees what goes beyond.
        void* const memory = std::malloc(n * sizeof(T));
        if (!memory) std::abort();
        std::memset(memory, PATTERN, n * sizeof(T));
        foreign.emplace_back(memory);
        return vorel::vector_num<T, 8>::wrap(static_cast<T*>(memory), n);
    }
    dense1D<T, 8> own(n + in.pick({0u, 0u, 3u, 40u, 400u}));
    if (own.size) std::memset(own.block->data, PATTERN, own.size * sizeof(T));
    return own.block;
}

template <class T>
void place(input& in, dense2D<T>& m, foreign_memory& foreign)
{
    const dense2D<T> entries = m;
    const std::size_t offset = in.pick({0u, 0u, 1u, 5u});
    m.ld = m.rows + in.pick({0u, 0u, 1u, 3u});
    m.size = shape_of(m).extent();
    m.block = block_of<T>(in, offset + m.size, foreign);
    m.offset = offset;
    if (m.is_empty()) return;
    for (std::size_t j = 0; j < m.cols; ++j)
        for (std::size_t i = 0; i < m.rows; ++i) m(i, j) = entries(i, j);
}

template <class T>
void place(input& in, dense1D<T, 8>& v, foreign_memory& foreign)
{
    const dense1D<T, 8> entries = v;
    const std::size_t offset = in.pick({0u, 0u, 1u, 5u});
    v.block = block_of<T>(in, offset + v.size, foreign);
    v.offset = offset;
    for (std::size_t i = 0; i < v.size; ++i) v[i] = entries[i];
}

} // namespace

placement::placement(input& in, const arguments& a) : placed(a)
{
    each_view(placed, [&](auto& v, view) { place(in, v, foreign); });
    each_view(placed, [&](auto& v, view) {
        using T = typename std::decay_t<decltype(v)>::value_type;
        const auto* const data = reinterpret_cast<const unsigned char*>(v.block->data);
        picture p{shape_of(v), shape_of(v), v.block.get(), v.block.get(), data, sizeof(T), {}};
        if (data) p.bytes.assign(data, data + v.block->capacity * sizeof(T));
        before.push_back(std::move(p));
    });
}

placement::picture placement::look_at(view wanted) const
{
    picture p = before[wanted];
    each_view(placed, [&](const auto& v, view k) {
        if (k != wanted) return;
        p.now = shape_of(v);
        p.block_now = v.block.get();
        p.data = reinterpret_cast<const unsigned char*>(v.block->data);
    });
    return p;
}

bool placement::is_untouched(view v) const
{
    const picture p = look_at(v);
    const bool same_view = p.block_now == p.block_before && p.data == before[v].data &&
                           p.now.rows == p.before.rows && p.now.cols == p.before.cols &&
                           p.now.ld == p.before.ld && p.now.offset == p.before.offset;
    return same_view &&
           (p.bytes.empty() || std::memcmp(p.data, p.bytes.data(), p.bytes.size()) == 0);
}

bool placement::has_kept_surroundings(view v, bool keeps_gaps) const
{
    const picture p = look_at(v);
    if (p.block_now != p.block_before || p.bytes.empty()) return true;
    const shape& s = p.before;
    const auto is_entry = [](const shape& t, std::size_t k) {
        return !t.is_empty() && k >= t.offset && k < t.offset + t.extent() &&
               (k - t.offset) % t.ld < t.rows;
    };
    // Columns that stand further apart than before have moved over their gaps.
    const bool watch_gaps = keeps_gaps && p.now.ld == s.ld;
    const std::size_t end = watch_gaps ? s.offset + s.extent() : s.offset;
    for (std::size_t k = 0; k < end; ++k) {
        if (k >= s.offset && (is_entry(s, k) || is_entry(p.now, k))) continue;
        if (std::memcmp(p.data + k * p.element, &p.bytes[k * p.element], p.element) != 0)
            return false;
    }
    return true;
}

namespace {

/// The views of one kind of entry, matrices and lists, in one block.
template <class T, class Matrices, class Lists>
void share_block(input& in, Matrices& matrices, Lists& lists)
{
    std::size_t longest = 0;
    for (const auto& m : matrices) longest = std::max(longest, m.rows * m.cols);
    for (const auto& l : lists) longest = std::max(longest, l.size);
    const std::size_t room = longest + in.below(64);
    const dense1D<T, 8> pool(room);
    for (std::size_t k = 0; k < room; ++k) pool.block->data[k] = static_cast<T>(k % 7);
    const auto start = [&](std::size_t extent) {
        const std::size_t last = room - extent;
        return in.chance(30) ? last : in.below(static_cast<unsigned>(last + 1));
    };
    for (auto& m : matrices) {
        if (in.chance(30)) continue;
        const dense2D<T> entries = m;
        m.block = pool.block;
        m.ld = m.rows;
        m.size = m.rows * m.cols;
        m.offset = start(m.size);
        if (m.is_empty()) continue;
        for (std::size_t j = 0; j < m.cols; ++j)
            for (std::size_t i = 0; i < m.rows; ++i) m(i, j) = entries(i, j);
    }
    for (auto& l : lists) {
        if (in.chance(30)) continue;
        const dense1D<T, 8> entries = l;
        l.block = pool.block;
        l.offset = start(l.size);
        for (std::size_t i = 0; i < l.size; ++i) l[i] = entries[i];
    }
}

} // namespace

void share(input& in, arguments& a)
{
    if (in.chance(70)) share_block<double>(in, a.reals, a.real_lists);
    if (in.chance(70)) share_block<unsigned>(in, a.ids, a.id_lists);
    for (auto& k : a.object)
        if (in.chance(15)) k = 0;
    // The one matrix of IDs that all of a kind stand for is any of them.
    if (in.chance(20)) std::swap(a.ids[0], a.ids[in.below(4)]);
    if (in.chance(20)) std::swap(a.reals[0], a.reals[in.below(3)]);
}

} // namespace fuzz
