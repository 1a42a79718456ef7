#include "fuzz/input.h"

#include <vorel/element_type.h>

#include <limits>

namespace fuzz {

using vorel::UNSET_ID;

input::input(const std::uint8_t* bytes, std::size_t count)
    : next(bytes), end(bytes + count), state(0x9E3779B97F4A7C15u)
{
    // The tail hangs on the first bytes only, so that a change further behind leaves it alone.
    for (std::size_t k = 0; k < count && k < 4; ++k) state = (state ^ bytes[k]) * 0x100000001B3u;
    id_mood = read_mood();
    real_mood = read_mood();
    switch (below(16)) {
    case 0:
        scale = 1e-160;
        break; // squares underflow
    case 1:
        scale = 1e150;
        break; // fourth powers overflow
    case 2:
        scale = 1e300;
        break;
    case 3:
        scale = 4e-320;
        break; // denormal
    case 4:
        scale = 1e-25;
        break;
    case 5:
        scale = 0.1;
        break;
    case 6:
        spread = 1e-9;
        break; // needles and nearly coincident points
    case 7:
        spread = 0.3;
        break;
    default:
        break;
    }
    exact = scale == 1.0 && spread == 0.0;
}

input::mood input::read_mood()
{
    const std::uint8_t b = byte();
    return b < 160 ? mood::tame : b < 232 ? mood::some : mood::many;
}

std::uint8_t input::byte()
{
    if (next != end) return *next++;
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<std::uint8_t>(state >> 32);
}

std::uint32_t input::word()
{
    std::uint32_t value = 0;
    for (int k = 0; k < 4; ++k) value = value << 8 | byte();
    return value;
}

unsigned input::below(unsigned n)
{
    if (n < 2) return 0;
    return (n <= 256 ? byte() : word()) % n;
}

bool input::wild(mood m)
{
    return m != mood::tame && chance(m == mood::some ? 4 : 50);
}

unsigned input::id(std::size_t bound)
{
    if (wild(id_mood)) return wild_id(bound);
    return bound == 0 ? 0 : below(static_cast<unsigned>(bound));
}

unsigned input::wild_id(std::size_t bound)
{
    const unsigned n = static_cast<unsigned>(bound);
    return pick(
        {n, n + 1, n - 1, 0u, UNSET_ID, UNSET_ID - 1, UNSET_ID - 2, 0x80000000u, 0x7FFFFFFFu});
}

double input::real_at(int point)
{
    if (wild(real_mood)) return wild_real();
    const double off = spread == 0.0 ? 0.0 : spread * (static_cast<double>(below(9)) - 4.0);
    return scale * (point + off);
}

double input::wild_real()
{
    using limits = std::numeric_limits<double>;
    return pick({0.0,
                 -0.0,
                 limits::quiet_NaN(),
                 limits::infinity(),
                 -limits::infinity(),
                 limits::max(),
                 -limits::max(),
                 1e308,
                 1e200,
                 -1e160,
                 1e154,
                 1e-154,
                 1e-200,
                 limits::min(),
                 limits::denorm_min(),
                 -limits::denorm_min(),
                 1e19,
                 1e15,
                 1e-15,
                 4294967296.0,
                 -2147483649.0,
                 1.0 + limits::epsilon(),
                 1.0 / 3.0,
                 -1.0});
}

double input::small_real(unsigned wild_percent)
{
    if (chance(wild_percent)) return wild_real();
    return 0.25 * (static_cast<double>(below(24)) - 8.0);
}

unsigned input::count(unsigned usual)
{
    if (!chance(12)) return below(usual + 1);
    return pick({UNSET_ID, UNSET_ID - 1, 0x80000000u, 0x7FFFFFFFu, 0x40000000u, 0xFFFE0001u, 65536u,
                 65535u, 100000u, 300u});
}

std::size_t input::rows(std::initializer_list<std::size_t> usual)
{
    return chance(4) ? below(11) : pick(usual);
}

} // namespace fuzz
