// The ramp is averaged over each pixel, not read at its centre: as the average of a straight ramp under the shadow that
// the pixel throws along the edge's normal, which is exact beside a straight edge.

#include "feather.h"

#include "window.h"

#include <algorithm>
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

    void draw(SoftMatte& soft) const
    {
        const Window& window = soft.window;
        const int top = within(std::floor(std::min(m_from.y, m_to.y) - m_reach), window.top, window.bottom);
        const int bottom = within(std::ceil(std::max(m_from.y, m_to.y) + m_reach), window.top, window.bottom);
        for (int y = top; y < bottom; ++y) {
            const auto [left, right] = columns(y + 0.5);
            const int begin = within(std::floor(left), window.left, window.right);
            const int end = within(std::ceil(right), window.left, window.right);
            float* pixel = soft.matte.row(y);
            float* nearest = soft.distance.row(y - window.top) - window.left;
            const float* hard = soft.hard.row(y - window.top) - window.left;
            for (int x = begin; x < end; ++x)
                drawPixel(pixel[x], nearest[x], hard[x], x + 0.5, y + 0.5);
        }
    }

private:
    static int within(double position, int first, int last)
    {
        return int(std::clamp(position, double(first), double(last)));
    }

    // Where along a row the edge can reach.
    std::pair<double, double> columns(double y) const
    {
        double first = 0, last = 1;
        if (m_dy != 0) {
            const double a = (y - m_reach - m_from.y) / m_dy, b = (y + m_reach - m_from.y) / m_dy;
            first = std::clamp(std::min(a, b), 0.0, 1.0);
            last = std::clamp(std::max(a, b), 0.0, 1.0);
        }
        const double x0 = m_from.x + first * m_dx, x1 = m_from.x + last * m_dx;
        return {std::min(x0, x1) - m_reach, std::max(x0, x1) + m_reach};
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
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const OutlineVertex &from = outline[i], &to = outline[(i + 1) % outline.size()];
            if (std::abs(from.edgeWidth) >= narrowest || std::abs(to.edgeWidth) >= narrowest)
                EdgeRamp(from, to).draw(soft);
        }
}

} // namespace pixels
