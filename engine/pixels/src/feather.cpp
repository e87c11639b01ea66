// The ramp is averaged over each pixel, not read at its centre: as the average of a straight ramp under the shadow that
// the pixel throws along the edge's normal, which is exact beside a straight edge.

#include "feather.h"

#include "window.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace pixels {
namespace {

constexpr double narrowest = 1e-3;      // below, an edge is hard
constexpr double halfDiagonal = 0.7072; // of a pixel

// 1 up to `start`, 0 from `start + width` on, and its first and second integrals.
struct Ramp
{
    double start;
    double width;

    double value(double s) const { return std::clamp(1 - (s - start) / width, 0.0, 1.0); }
    double secondIntegral(double s) const
    {
        const double t = s - start;
        if (t <= 0)
            return t * t / 2;
        if (t <= width)
            return t * t / 2 - t * t * t / (6 * width);
        return width * width / 3 + (t - width) * width / 2;
    }

    // The mean over a pixel whose centre lies at the distance s, the normal being (x, y).
    double mean(double s, double x, double y) const
    {
        constexpr double thinnest = 1e-3;
        const double a = std::max(std::abs(x), thinnest), b = std::max(std::abs(y), thinnest);
        const double reach = (a + b) / 2, inner = (a - b) / 2;
        if ((s - reach >= start && s + reach <= start + width) || s + reach <= start || s - reach >= start + width)
            return value(s);
        const auto f = [this](double at) { return secondIntegral(at); };
        return std::clamp((f(s + reach) - f(s + inner) - f(s - inner) + f(s - reach)) / (a * b), 0.0, 1.0);
    }
};

struct SoftMatte
{
    Image& matte;
    Window window; // of the matte, in which there is feather
    Image hard;    // the window as it was
    Image
        distance; // of the pixels that an outline passes through, to the nearest edge with its ramp on their other side
};

// How far beyond an end of an edge its ramp can count: it does in the wedge where the outline turns, and where the edge
// that follows narrows so fast that the wider end is the stronger one. Elsewhere a neighbour is nearer.
double shareOfReach(const OutlineVertex& before, const OutlineVertex& at, const OutlineVertex& after)
{
    const double ax = at.x - before.x, ay = at.y - before.y, bx = after.x - at.x, by = after.y - at.y;
    const double a = std::hypot(ax, ay), b = std::hypot(bx, by);
    if (a == 0 || b == 0)
        return 1;
    const double slope =
        std::max(std::abs(at.edgeWidth - before.edgeWidth) / a, std::abs(after.edgeWidth - at.edgeWidth) / b);
    const double angle = std::atan2(std::abs(ax * by - ay * bx), ax * bx + ay * by) + 2 * std::atan(slope);
    return std::sin(std::min(angle, M_PI / 2));
}

class EdgeRamp
{
public:
    EdgeRamp(const OutlineVertex& from, const OutlineVertex& to) : m_from(from), m_to(to)
    {
        m_dx = to.x - from.x;
        m_dy = to.y - from.y;
        m_squaredLength = m_dx * m_dx + m_dy * m_dy;
        m_perSquare = m_squaredLength > 0 ? 1 / m_squaredLength : 0;
        m_reach = std::max(std::abs(from.edgeWidth), std::abs(to.edgeWidth)) + 1;
        m_onlyOutside = from.edgeWidth >= 0 && to.edgeWidth >= 0;
        m_onlyInside = from.edgeWidth <= 0 && to.edgeWidth <= 0;
    }

    // The shares are those of the reach that counts beyond either end.
    void draw(SoftMatte& soft, double shareBefore, double shareAfter) const
    {
        const Window& window = soft.window;
        const std::array<Point, 4> area = reached(shareBefore, shareAfter);
        const auto [top, bottom] =
            std::minmax_element(area.begin(), area.end(), [](Point a, Point b) { return a.y < b.y; });
        const int end = pixelFrom(bottom->y, window.top, window.bottom);
        for (int y = pixelFrom(top->y, window.top, window.bottom); y < end; ++y) {
            const auto [left, right] = columns(area, y + 0.5);
            const int first = pixelFrom(left, window.left, window.right);
            const int last = pixelFrom(right, window.left, window.right);
            float* pixel = soft.matte.row(y);
            float* nearest = soft.distance.row(y - window.top) - window.left;
            const float* hard = soft.hard.row(y - window.top) - window.left;
            for (int x = first; x < last; ++x)
                drawPixel(pixel[x], nearest[x], hard[x], x + 0.5, y + 0.5);
        }
    }

private:
    // The first pixel whose centre does not lie before the position.
    static int pixelFrom(double position, int first, int last)
    {
        return int(std::ceil(std::clamp(position - 0.5, double(first), double(last))));
    }

    // The rectangle along the edge in which it can count.
    std::array<Point, 4> reached(double shareBefore, double shareAfter) const
    {
        constexpr double rounding = 1e-3; // no pixel is to fall between two edges
        const double length = std::sqrt(m_squaredLength), x = m_dx / length, y = m_dy / length;
        const double before = m_reach * shareBefore + rounding, after = m_reach * shareAfter + rounding;
        const Point from{m_from.x - before * x, m_from.y - before * y}, to{m_to.x + after * x, m_to.y + after * y};
        const double nx = -m_reach * y, ny = m_reach * x;
        return {
            {{from.x + nx, from.y + ny}, {to.x + nx, to.y + ny}, {to.x - nx, to.y - ny}, {from.x - nx, from.y - ny}}};
    }

    // Where a convex area crosses a row.
    static std::pair<double, double> columns(const std::array<Point, 4>& area, double y)
    {
        double first = std::numeric_limits<double>::max(), last = -first;
        for (std::size_t i = 0; i < area.size(); ++i) {
            const Point a = area[i], b = area[(i + 1) % area.size()];
            if ((a.y <= y) == (b.y <= y))
                continue;
            const double x = a.x + (y - a.y) * (b.x - a.x) / (b.y - a.y);
            first = std::min(first, x);
            last = std::max(last, x);
        }
        return {first, last};
    }

    void drawPixel(float& pixel, float& nearest, float hard, double x, double y) const
    {
        if ((m_onlyOutside && hard >= 1) || (m_onlyInside && hard <= 0))
            return;
        const double px = x - m_from.x, py = y - m_from.y;
        const double part = std::clamp((px * m_dx + py * m_dy) * m_perSquare, 0.0, 1.0);
        const double width = m_from.edgeWidth + part * (m_to.edgeWidth - m_from.edgeWidth);
        if (std::abs(width) < narrowest || (width > 0 ? hard >= 1 : hard <= 0))
            return;
        // On the ramp's side of the outline the strongest edge counts. On the other side every edge but the nearest
        // would say that the ramp is far away.
        const bool inside = hard > 0.5f, across = inside == (width > 0);
        const double left = width > 0 ? 1 - pixel : pixel;
        const double furthest = across ? nearest : left * std::abs(width) + halfDiagonal;
        double nx = px - part * m_dx, ny = py - part * m_dy;
        const double squared = nx * nx + ny * ny;
        if (squared >= furthest * furthest)
            return;
        const double distance = std::sqrt(squared);
        if (distance > 1e-9) {
            nx /= distance;
            ny /= distance;
        } else {
            const double length = std::sqrt(std::max(m_squaredLength, 1e-18));
            nx = -m_dy / length;
            ny = m_dx / length;
        }
        const Ramp ramp{width > 0 ? 0 : width, std::abs(width)};
        const auto value = float(ramp.mean(inside ? -distance : distance, nx, ny));
        if (across) {
            nearest = float(distance);
            pixel = hard;
        }
        pixel = width > 0 ? std::max(pixel, value) : std::min(pixel, value);
    }

    OutlineVertex m_from;
    OutlineVertex m_to;
    double m_dx;
    double m_dy;
    double m_squaredLength;
    double m_perSquare; // 0 where the edge is a point
    double m_reach;
    bool m_onlyOutside;
    bool m_onlyInside;
};

double reachOf(const std::vector<Outline>& outlines)
{
    double reach = 0;
    for (const Outline& outline : outlines)
        for (const OutlineVertex& vertex : outline)
            reach = std::max(reach, std::abs(vertex.edgeWidth));
    return reach;
}

Image part(const Image& image, const Window& window)
{
    Image part(window.size(), 1);
    for (int y = window.top; y < window.bottom; ++y)
        std::copy_n(image.at(window.left, y), part.size.width, part.row(y - window.top));
    return part;
}

void featherAlong(const Outline& outline, SoftMatte& soft)
{
    const std::size_t count = outline.size();
    const auto vertex = [&](std::size_t i) -> const OutlineVertex& { return outline[i % count]; };
    const auto shareAt = [&](std::size_t i) { return shareOfReach(vertex(i + count - 1), vertex(i), vertex(i + 1)); };
    double before = shareAt(0);
    for (std::size_t i = 0; i < count; ++i) {
        const OutlineVertex &from = vertex(i), &to = vertex(i + 1);
        const double after = shareAt(i + 1);
        const bool soften = std::abs(from.edgeWidth) >= narrowest || std::abs(to.edgeWidth) >= narrowest;
        if (soften && (from.x != to.x || from.y != to.y))
            EdgeRamp(from, to).draw(soft, before, after);
        before = after;
    }
}

} // namespace

void feather(Image& matte, const std::vector<Outline>& outlines)
{
    const double reach = reachOf(outlines);
    if (reach < narrowest)
        return;
    const Window window = windowAround(outlines, matte.size, reach + 1);
    if (window.empty())
        return;
    SoftMatte soft{matte, window, part(matte, window), Image(window.size(), 1, std::numeric_limits<float>::max())};
    for (const Outline& outline : outlines)
        featherAlong(outline, soft);
}

} // namespace pixels
