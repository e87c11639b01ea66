// Brings outlines into the image's plane and draws them: first hard, then the feather of those that have one.

#include "arguments.h"
#include "edge_area.h"
#include "feather.h"

#include <algorithm>
#include <cmath>

namespace pixels {
namespace {

struct Homogeneous
{
    double x, y, w;
    double edgeWidth;
};

// What a projective transform takes behind the viewer has no image; an outline is cut before it gets there.
constexpr double nearest = 1e-6;

Homogeneous cut(const Homogeneous& a, const Homogeneous& b)
{
    const double t = (nearest - a.w) / (b.w - a.w);
    return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), nearest, a.edgeWidth + t * (b.edgeWidth - a.edgeWidth)};
}

std::vector<Homogeneous> inFront(const std::vector<Homogeneous>& polygon)
{
    std::vector<Homogeneous> kept;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Homogeneous& from = polygon[i];
        const Homogeneous& to = polygon[(i + 1) % polygon.size()];
        if (from.w >= nearest)
            kept.push_back(from);
        if ((from.w >= nearest) != (to.w >= nearest))
            kept.push_back(cut(from, to));
    }
    return kept;
}

double determinant(const Matrix& m)
{
    return m(0, 0) * (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) - m(0, 1) * (m(1, 0) * m(2, 2) - m(1, 2) * m(2, 0)) +
           m(0, 2) * (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0));
}

Outline moved(const Outline& outline, const Matrix& m)
{
    std::vector<Homogeneous> polygon;
    polygon.reserve(outline.size());
    for (const OutlineVertex& vertex : outline) {
        if (!std::isfinite(vertex.x) || !std::isfinite(vertex.y) || !std::isfinite(vertex.edgeWidth))
            throw std::invalid_argument("a vertex of an outline is not finite");
        polygon.push_back({m(0, 0) * vertex.x + m(0, 1) * vertex.y + m(0, 2),
                           m(1, 0) * vertex.x + m(1, 1) * vertex.y + m(1, 2),
                           m(2, 0) * vertex.x + m(2, 1) * vertex.y + m(2, 2), vertex.edgeWidth});
    }
    const double area = std::abs(determinant(m));
    Outline result;
    for (const Homogeneous& corner : inFront(polygon)) {
        // Of a vertex near the horizon the widened edge would be wider than any image.
        const double scale = std::min(std::sqrt(area / (corner.w * corner.w * corner.w)), 1e4);
        result.push_back({corner.x / corner.w, corner.y / corner.w, corner.edgeWidth * scale});
    }
    return result;
}

} // namespace

Window windowAround(const std::vector<Outline>& outlines, Size size, double reach)
{
    double left = size.width, top = size.height, right = 0, bottom = 0;
    for (const Outline& outline : outlines)
        for (const OutlineVertex& vertex : outline) {
            left = std::min(left, vertex.x - reach);
            right = std::max(right, vertex.x + reach);
            top = std::min(top, vertex.y - reach);
            bottom = std::max(bottom, vertex.y + reach);
        }
    return {int(std::floor(std::max(left, 0.0))), int(std::floor(std::max(top, 0.0))),
            int(std::ceil(std::min(right, double(size.width)))), int(std::ceil(std::min(bottom, double(size.height))))};
}

Image Library::coverage(const std::vector<Outline>& outlines, Size size, const Matrix& transform, FillRule rule)
{
    checkSize(size, "a matte");
    checkTransform(transform, "the transform of an outline");

    std::vector<Outline> drawn;
    for (const Outline& outline : outlines)
        if (Outline polygon = moved(outline, transform); polygon.size() >= 3)
            drawn.push_back(std::move(polygon));

    Image matte(size, 1);
    if (const Window window = windowAround(drawn, size, 0); !window.empty()) {
        EdgeArea area(window);
        for (const Outline& outline : drawn)
            for (std::size_t i = 0; i < outline.size(); ++i) {
                const OutlineVertex &from = outline[i], &to = outline[(i + 1) % outline.size()];
                area.addEdge({from.x, from.y}, {to.x, to.y});
            }
        area.resolve(rule, matte);
    }
    feather(matte, drawn);
    return matte;
}

} // namespace pixels
