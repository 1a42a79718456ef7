#include "canvas.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>

namespace pictures {

namespace {

/// One digit behind the point, and no minus sign at zero.
std::string number(double x)
{
    char text[32];
    const double rounded = std::round(10.0 * x) / 10.0;
    std::snprintf(text, sizeof text, "%.1f", rounded == 0.0 ? 0.0 : rounded);
    std::string result = text;
    if (result.size() > 2 && result.substr(result.size() - 2) == ".0")
        result.resize(result.size() - 2);
    return result;
}

std::string steps(const std::vector<point>& points)
{
    std::string d;
    for (const point& p : points) d += (d.empty() ? "M" : "L") + number(p.x) + " " + number(p.y);
    return d;
}

std::string hex(const double (&rgb)[3])
{
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", static_cast<unsigned>(rgb[0]),
                  static_cast<unsigned>(rgb[1]), static_cast<unsigned>(rgb[2]));
    return text;
}

/// A colour darkened to that part of its light.
std::string shaded(const std::string& name, double light)
{
    double rgb[3];
    for (std::size_t i = 0; i < 3; ++i)
        rgb[i] = std::min(255.0, light * std::stoi(name.substr(1 + 2 * i, 2), nullptr, 16));
    return hex(rgb);
}

} // namespace

std::string color(double value)
{
    constexpr double stops[5][3] = {
        {52, 78, 130}, {64, 143, 170}, {150, 205, 175}, {246, 226, 155}, {224, 122, 63}};
    const double t = std::clamp(value, 0.0, 1.0) * 4.0;
    const auto k = std::min<std::size_t>(3, static_cast<std::size_t>(t));
    double rgb[3];
    for (std::size_t i = 0; i < 3; ++i)
        rgb[i] = stops[k][i] + (t - static_cast<double>(k)) * (stops[k + 1][i] - stops[k][i]);
    return hex(rgb);
}

canvas::canvas(double width_, double height_) : width(width_), height(height_) {}

void canvas::polygon(const std::vector<point>& corners, const std::string& fill,
                     const std::string& stroke, double width_)
{
    // Neighbours have the same stroke: it is told once for all of them.
    const std::string wanted =
        "<g stroke=\"" + stroke + "\" stroke-width=\"" + number(width_) + "\">\n";
    if (wanted != outline) {
        body += (outline.empty() ? "" : "</g>\n") + wanted;
        outline = wanted;
    }
    body += "<path d=\"" + steps(corners) + "z\" fill=\"" + fill + "\"/>\n";
}

/// Ends a group of polygons.
void canvas::close_group()
{
    if (!outline.empty()) body += "</g>\n";
    outline.clear();
}

void canvas::path(const std::vector<point>& points, const std::string& stroke, double width_,
                  bool dashed)
{
    close_group();
    body += "<path d=\"" + steps(points) + "\" fill=\"none\" stroke=\"" + stroke +
            "\" stroke-width=\"" + number(width_) + (dashed ? "\" stroke-dasharray=\"4 3" : "") +
            "\"/>\n";
}

void canvas::dot(point center, double radius, const std::string& fill)
{
    close_group();
    body += "<circle cx=\"" + number(center.x) + "\" cy=\"" + number(center.y) + "\" r=\"" +
            number(radius) + "\" fill=\"" + fill + "\"/>\n";
}

void canvas::arrow(point from, point to, const std::string& stroke)
{
    path({from, to}, stroke, 1.4);
    const double length =
        std::sqrt((to.x - from.x) * (to.x - from.x) + (to.y - from.y) * (to.y - from.y));
    if (length < 3.0) return;
    const point d = {(to.x - from.x) / length, (to.y - from.y) / length};
    polygon({{to.x + 2 * d.x, to.y + 2 * d.y},
             {to.x - 4 * d.x + 2.5 * d.y, to.y - 4 * d.y - 2.5 * d.x},
             {to.x - 4 * d.x - 2.5 * d.y, to.y - 4 * d.y + 2.5 * d.x}},
            stroke, "none", 0);
}

void canvas::text(point at, const std::string& words, double size, const std::string& anchor,
                  const std::string& fill)
{
    close_group();
    body += "<text x=\"" + number(at.x) + "\" y=\"" + number(at.y) + "\" font-size=\"" +
            number(size) + "\" text-anchor=\"" + anchor + "\" fill=\"" + fill + "\">" + words +
            "</text>\n";
}

bool canvas::save(const std::string& name) const
{
    std::FILE* const file = std::fopen(name.c_str(), "w");
    if (!file) return false;
    const std::string w = number(width);
    const std::string h = number(height);
    std::fprintf(file,
                 "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %s %s\" width=\"%s\" "
                 "height=\"%s\" font-family=\"Helvetica, Arial, sans-serif\" "
                 "stroke-linejoin=\"round\">\n<rect width=\"%s\" height=\"%s\" rx=\"8\" "
                 "fill=\"#fff\"/>\n%s%s</svg>\n",
                 w.c_str(), h.c_str(), w.c_str(), h.c_str(), w.c_str(), h.c_str(), body.c_str(),
                 outline.empty() ? "" : "</g>\n");
    return std::fclose(file) == 0;
}

view::view(const vorel::dense2D<double>& coords, point upper_left, point lower_right,
           double azimuth, double elevation)
    : rows(coords.rows)
{
    const double degree = std::acos(-1.0) / 180.0;
    turn_cos = std::cos(azimuth * degree);
    turn_sin = std::sin(azimuth * degree);
    tilt_cos = std::cos(elevation * degree);
    tilt_sin = std::sin(elevation * degree);
    point low = {1e300, 1e300};
    point high = {-1e300, -1e300};
    for (std::size_t n = 0; n < coords.cols; ++n) {
        const point p = flat(coords.column(n));
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    factor = std::min((lower_right.x - upper_left.x) / (high.x - low.x),
                      (lower_right.y - upper_left.y) / (high.y - low.y));
    from = {0.5 * (low.x + high.x), 0.5 * (low.y + high.y)};
    to = {0.5 * (upper_left.x + lower_right.x), 0.5 * (upper_left.y + lower_right.y)};
}

point view::flat(const double* node) const
{
    const double across = turn_cos * node[0] - turn_sin * node[1];
    const double away = turn_sin * node[0] + turn_cos * node[1];
    return {across, tilt_sin * away + (rows > 2 ? tilt_cos * node[2] : 0.0)};
}

double view::depth(const double* node) const
{
    const double away = turn_sin * node[0] + turn_cos * node[1];
    return (rows > 2 ? tilt_sin * node[2] : 0.0) - tilt_cos * away;
}

point view::operator()(const double* node) const
{
    const point p = flat(node);
    return {to.x + factor * (p.x - from.x), to.y - factor * (p.y - from.y)};
}

point view::operator()(double x, double y, double z) const
{
    const double node[3] = {x, y, z};
    return (*this)(node);
}

std::vector<unsigned> corners(const vorel::dense2D<unsigned>& connect, std::size_t e)
{
    const bool quadratic = connect.rows >= 6;
    bool triangle = connect.rows == 3 || connect.rows == 6;
    if (!triangle) triangle = connect(quadratic ? 6 : 3, e) == vorel::UNSET_ID;
    const unsigned* const column = connect.column(e);
    return {column, column + (triangle ? 3 : 4)};
}

void draw_mesh(canvas& c, const view& v, const vorel::dense2D<double>& coords,
               const vorel::dense2D<unsigned>& connect, const std::vector<double>& value,
               double stroke, bool closed)
{
    vorel::dense2D<double> normals;
    if (coords.rows == 3)
        require(vorel::tessalo2d::normals(coords, connect, true, normals), "normals");
    std::vector<double> depth(connect.cols, 0.0);
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const std::vector<unsigned> ring = corners(connect, e);
        for (const unsigned n : ring)
            depth[e] += v.depth(coords.column(n)) / static_cast<double>(ring.size());
    }
    std::vector<std::size_t> order(connect.cols);
    std::iota(order.begin(), order.end(), std::size_t(0));
    // To a thousandth: rounding must not decide what is drawn first.
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return std::floor(1000.0 * depth[a]) < std::floor(1000.0 * depth[b]);
    });
    const double origin[3] = {0, 0, 0};
    for (const std::size_t e : order) {
        if (closed && v.depth(normals.column(e)) < v.depth(origin)) continue;
        std::vector<point> ring;
        for (const unsigned n : corners(connect, e)) ring.push_back(v(coords.column(n)));
        std::string fill = value.empty() ? PALE : color(value[e]);
        if (coords.rows == 3) {
            const double* const n = normals.column(e);
            const double light = std::fabs(0.3 * n[0] - 0.55 * n[1] + 0.75 * n[2]);
            fill = shaded(fill, 0.62 + 0.4 * light);
        }
        c.polygon(ring, fill, INK, stroke);
    }
}

void draw_ellipse(canvas& c, const view& v, point center, double m00, double m01, double m11,
                  double size, const std::string& stroke, double width)
{
    // M = L L': the points L'^-1 u of the unit circle.
    const double l00 = std::sqrt(m00);
    const double l10 = m01 / l00;
    const double l11 = std::sqrt(m11 - l10 * l10);
    std::vector<point> ring;
    for (int k = 0; k <= 36; ++k) {
        const double angle = k * std::acos(-1.0) / 18.0;
        const double y = std::sin(angle) / l11;
        const double x = (std::cos(angle) - l10 * y) / l00;
        ring.push_back(v(center.x + size * x, center.y + size * y));
    }
    c.path(ring, stroke, width);
}

int require(int status, const char* call)
{
    if (status >= 0) return status;
    std::fprintf(stderr, "%s: status %d\n", call, status);
    std::exit(EXIT_FAILURE);
}

} // namespace pictures
