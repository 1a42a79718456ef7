// A small SVG writer: shapes in the plane, and surfaces in space seen from a side.
#pragma once

#include <vorel/tessalo2d.h>

#include <string>
#include <vector>

namespace pictures {

struct point {
    double x, y;
};

/// A colour between the ends of the scale of all pictures, for a value from 0 to 1.
std::string color(double value);

constexpr const char* INK = "#33415c";    ///< lines of meshes
constexpr const char* PALE = "#e9eef6";   ///< plain elements
constexpr const char* ACCENT = "#d9662b"; ///< what a call adds or marks
constexpr const char* SECOND = "#2f7f9f"; ///< what stands beside it

/// One picture. Coordinates are pixels from the upper left corner.
class canvas {
public:
    canvas(double width, double height);

    void polygon(const std::vector<point>& corners, const std::string& fill,
                 const std::string& stroke = INK, double width = 0.7);
    void path(const std::vector<point>& points, const std::string& stroke, double width,
              bool dashed = false);
    void dot(point center, double radius, const std::string& fill);
    void arrow(point from, point to, const std::string& stroke);
    void text(point at, const std::string& words, double size = 13,
              const std::string& anchor = "middle", const std::string& fill = INK);

    /// Writes the file; false when that fails.
    [[nodiscard]] bool save(const std::string& name) const;

private:
    void close_group();

    double width;
    double height;
    std::string body;
    std::string outline; ///< stroke of the group of polygons that is open
};

/// Fits what it is shown into a rectangle of the canvas, upright, from the direction that two
/// angles in degrees tell. A plane is seen from straight above.
class view {
public:
    view(const vorel::dense2D<double>& coords, point upper_left, point lower_right,
         double azimuth = 0.0, double elevation = 90.0);

    point operator()(const double* node) const;
    point operator()(double x, double y, double z = 0.0) const;
    double depth(const double* node) const; ///< the larger the nearer
    double scale() const { return factor; }

private:
    point flat(const double* node) const;

    std::size_t rows;
    double turn_cos, turn_sin, tilt_cos, tilt_sin;
    double factor = 1.0;
    point from = {0, 0};
    point to = {0, 0};
};

/// The corners of element e: 3 or 4 of a column of the linear or quadratic `connect`.
std::vector<unsigned> corners(const vorel::dense2D<unsigned>& connect, std::size_t e);

/// All elements, the far ones first; `value` has a number from 0 to 1 for each, or nothing. A
/// surface is shaded by its normals; of a closed one only what faces the viewer is drawn.
void draw_mesh(canvas& c, const view& v, const vorel::dense2D<double>& coords,
               const vorel::dense2D<unsigned>& connect, const std::vector<double>& value = {},
               double stroke = 0.7, bool closed = false);

/// The curve x'Mx = 1 around a node, `size` times as large, of a metric m00, m01, m11.
void draw_ellipse(canvas& c, const view& v, point center, double m00, double m01, double m11,
                  double size, const std::string& stroke, double width = 1.3);

/// Ends the program when a call of the library fails.
int require(int status, const char* call);

} // namespace pictures
