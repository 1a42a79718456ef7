// Draws the pictures of the documentation: draw_pictures FOLDER.
#include "pictures.h"

#include <cstdio>

using namespace vorel;

namespace pictures {

/// How a matrix lies in its block: 3 rows, columns 5 elements apart, and a second view on it.
void draw_containers(canvas& c, point at)
{
    dense2D<double> matrix(5, 6);
    for (std::size_t k = 0; k < 30; ++k) matrix.block->data[k] = static_cast<double>(k);
    require(matrix.resize(3, 6) ? 0 : -199, "resize");
    dense2D<double> part = matrix;
    part.offset = 5 * 3 + 1;
    part.rows = 2;
    part.cols = 2;

    const auto is_in = [](const dense2D<double>& view, double number) {
        for (std::size_t j = 0; j < view.cols; ++j)
            for (std::size_t i = 0; i < view.rows; ++i)
                if (view(i, j) == number) return true;
        return false;
    };
    const auto cell = [&](double x, double y, double size, double number) {
        const char* const fill = is_in(part, number)     ? "#f6d9c8"
                                 : is_in(matrix, number) ? "#cfe3ec"
                                                         : "#f7f7f7";
        c.polygon({{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}}, fill);
        c.text({x + size / 2, y + size / 2 + 4}, std::to_string(static_cast<int>(number)), 11);
    };
    c.text({at.x + 30, at.y + 45}, "The block: one run of elements, shared by its views", 13,
           "start");
    for (std::size_t k = 0; k < 30; ++k)
        cell(at.x + 30 + 28 * static_cast<double>(k), at.y + 58, 28, matrix.block->data[k]);
    const auto table = [&](double x, const dense2D<double>& view, const char* name,
                           const std::string& shape) {
        c.text({at.x + x, at.y + 135}, name, 14, "start");
        c.text({at.x + x, at.y + 155}, shape, 12, "start");
        for (std::size_t j = 0; j < view.cols; ++j)
            for (std::size_t i = 0; i < view.rows; ++i)
                cell(at.x + x + 34 * static_cast<double>(j),
                     at.y + 168 + 34 * static_cast<double>(i), 34, view(i, j));
    };
    const auto shape = [](const dense2D<double>& m) {
        return "rows " + std::to_string(m.rows) + ", cols " + std::to_string(m.cols) + ", ld " +
               std::to_string(m.ld) + ", offset " + std::to_string(m.offset);
    };
    table(30, matrix, "a dense2D", shape(matrix));
    table(360, part, "another view on the same block", shape(part));
    c.text({at.x + 640, at.y + 180}, "Element (i, j) is", 13, "start");
    c.text({at.x + 640, at.y + 202}, "block-&gt;data[offset + j * ld + i]", 13, "start", ACCENT);
    c.text({at.x + 640, at.y + 224}, "A growth keeps ld and moves", 13, "start");
    c.text({at.x + 640, at.y + 246}, "the storage of all views.", 13, "start");
}

} // namespace pictures

int main(int argc, char** argv)
{
    using namespace pictures;
    if (argc != 2) {
        std::fprintf(stderr, "draw_pictures FOLDER\n");
        return 2;
    }
    const std::string folder = std::string(argv[1]) + "/";
    const struct {
        const char* name;
        void (*draw)(canvas&, point);
    } families[] = {{"containers", draw_containers}, {"conversion", draw_conversion},
                    {"extrusion", draw_extrusion},   {"structured", draw_structured},
                    {"measures", draw_measures},     {"interpolation", draw_interpolation},
                    {"metrics", draw_metrics},       {"curvature", draw_curvature}};
    bool saved = true;
    for (const auto& family : families) {
        canvas c(900, 300);
        family.draw(c, {0, 0});
        saved = saved && c.save(folder + family.name + ".svg");
    }
    canvas overview(900, 270);
    draw_airfoil_grid(overview, {15, 25}, 350, 220);
    draw_screw(overview, {370, 20}, 220, 230);
    draw_torus(overview, {590, 40}, 300, 195);
    saved = saved && overview.save(folder + "overview.svg");
    if (!saved) std::fprintf(stderr, "the pictures can't be written to %s\n", folder.c_str());
    return saved ? 0 : 1;
}
