// What the overloads of the extrusion family do not share, side by side. Everything else is one
// frame, in frame.h.
#pragma once

#include <cstddef>

namespace vorel::tessalo2d {

enum class swept_element { Q4, T3 };

/// Row count of `coords` after a growth that failed half way.
enum class restored_rows { AT_ENTRY, TWO };

/// What callers rely on in one overload, kept as it is. Arguments are numbered from 1 as the status
/// reports them; 0 means that the overload makes no such check.
struct extrusion_contract {
    swept_element element;
    /// `coords` may have 2 rows, and up to this many.
    std::size_t most_rows;
    int bad_connect;
    int bad_h0;
    int bad_h1;
    int bad_pattern;
    /// Row count that an output with entries must have, which is not always that of the element.
    std::size_t output_rows;
    int bad_output;
    /// `coords` gets a third row before anything else grows.
    bool widens;
    /// The number of layers from sizes is raised to this.
    unsigned fewest_layers;
    restored_rows restored;
};

namespace contracts {

inline constexpr swept_element Q4 = swept_element::Q4;
inline constexpr swept_element T3 = swept_element::T3;
inline constexpr restored_rows ENTRY = restored_rows::AT_ENTRY;
inline constexpr restored_rows TWO = restored_rows::TWO;

// Kept, since callers rely on them: the code 3 and the 3 rows of an output of quadrilaterals in
// space (its old columns then become triangles of mixed storage), the code 1 for node IDs, the code
// 4 for h1, the widening of plane coordinates that are narrowed again, the lost third row after a
// failure, and that most rotations take any pattern.
//
// clang-format off
//                          element coords reported argument    output    widens fewest restored
//                                   rows   connect h0 h1 pattern rows code       layers rows
inline constexpr extrusion_contract
    TRANSLATE_Q4_PLANE_FIXED{Q4,     2,     2,      0, 0, 0,      4,  5,       false, 0,     ENTRY},
    TRANSLATE_Q4_PLANE_SIZED{Q4,     2,     2,      4, 5, 0,      4,  7,       false, 1,     ENTRY},
    TRANSLATE_Q4_SPACE_FIXED{Q4,     3,     2,      0, 0, 0,      4,  5,       true,  0,     ENTRY},
    TRANSLATE_Q4_SPACE_SIZED{Q4,     3,     2,      4, 5, 0,      4,  7,       true,  1,     ENTRY},
    TRANSLATE_T3_PLANE_FIXED{T3,     2,     2,      0, 0, 5,      3,  6,       false, 0,     ENTRY},
    TRANSLATE_T3_PLANE_SIZED{T3,     2,     2,      4, 5, 6,      3,  8,       true,  1,     ENTRY},
    TRANSLATE_T3_SPACE_FIXED{T3,     3,     2,      0, 0, 5,      3,  6,       true,  0,     ENTRY},
    TRANSLATE_T3_SPACE_SIZED{T3,     3,     2,      4, 5, 6,      3,  8,       true,  1,     ENTRY},

    ROTATE_Q4_PLANE_FIXED   {Q4,     3,     2,      0, 0, 0,      4,  6,       false, 0,     TWO},
    ROTATE_Q4_PLANE_SIZED   {Q4,     3,     2,      5, 6, 0,      4,  8,       false, 1,     ENTRY},
    ROTATE_Q4_SPACE_FIXED   {Q4,     3,     2,      0, 0, 0,      3,  3,       true,  0,     ENTRY},
    ROTATE_Q4_SPACE_SIZED   {Q4,     3,     2,      5, 6, 0,      3,  8,       true,  1,     ENTRY},
    ROTATE_T3_PLANE_FIXED   {T3,     3,     2,      0, 0, 0,      3,  7,       false, 0,     TWO},
    ROTATE_T3_PLANE_SIZED   {T3,     3,     2,      5, 6, 7,      3,  9,       false, 1,     TWO},
    ROTATE_T3_SPACE_FIXED   {T3,     3,     2,      0, 0, 0,      3,  7,       true,  0,     ENTRY},
    ROTATE_T3_SPACE_SIZED   {T3,     3,     1,      5, 6, 0,      3,  9,       true,  1,     ENTRY},

    SPIRAL_Q4               {Q4,     3,     2,      6, 7, 0,      4,  9,       false, 0,     TWO},
    SPIRAL_T3               {T3,     3,     2,      6, 4, 0,      3,  10,      false, 0,     TWO};
// clang-format on

} // namespace contracts

} // namespace vorel::tessalo2d
