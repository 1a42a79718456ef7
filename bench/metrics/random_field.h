// Metric fields to measure with: sizes between 0.1 and 1 along random directions.
#pragma once

#include <vorel/tessalo2d.h>

#include <cmath>
#include <random>

namespace bench {

/// 3 or 6 rows: L'L with a random lower triangle of positive diagonal, by a seeded draw.
inline vorel::dense2D<double> random_field(std::size_t rows, std::size_t nodes)
{
    const std::size_t d = rows == 3 ? 2 : 3;
    std::mt19937 draw(1);
    std::uniform_real_distribution<double> diagonal(1.0, 10.0);
    std::uniform_real_distribution<double> outer(-3.0, 3.0);
    vorel::dense2D<double> field(rows, nodes);
    for (std::size_t node = 0; node < nodes; ++node) {
        double l[3][3] = {};
        for (std::size_t i = 0; i < d; ++i)
            for (std::size_t j = 0; j <= i; ++j) l[i][j] = i == j ? diagonal(draw) : outer(draw);
        std::size_t k = 0;
        for (std::size_t j = 0; j < d; ++j)
            for (std::size_t i = 0; i <= j; ++i, ++k) {
                double sum = 0.0;
                for (std::size_t m = 0; m < d; ++m) sum += l[m][i] * l[m][j];
                field(k, node) = sum;
            }
    }
    return field;
}

} // namespace bench
