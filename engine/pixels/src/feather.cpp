// The ramp is averaged over each pixel, not read at its centre: as the average of a straight ramp under the shadow that
// the pixel throws along the edge's normal, which is exact beside a straight edge.

#include "feather.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pixels {
namespace {

constexpr double narrowest = 1e-3; // below, an edge is hard

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
    Image matte;
    // Of the pixels that an outline passes through, to the nearest edge whose ramp lies on the other side of it.
    Image distance;
};

class EdgeRamp
{
public:
    EdgeRamp(const OutlineVertex& from, const OutlineVertex& to) : m_from(from), m_to(to)
    {
        m_dx = to.x - from.x;
        m_dy = to.y - from.y;
        m_squaredLength = m_dx * m_dx + m_dy * m_dy;
        m_reach = std::max(std::abs(from.edgeWidth), std::abs(to.edgeWidth)) + 1;
    }

    void draw(SoftMatte& soft, const Image& hard) const
    {
        const int top =
            int(std::clamp(std::floor(std::min(m_from.y, m_to.y) - m_reach), 0.0, double(hard.size.height)));
        const int bottom =
            int(std::clamp(std::ceil(std::max(m_from.y, m_to.y) + m_reach), 0.0, double(hard.size.height)));
        for (int y = top; y < bottom; ++y) {
            const auto [left, right] = columns(y + 0.5);
            const int end = int(std::clamp(std::ceil(right), 0.0, double(hard.size.width)));
            for (int x = int(std::clamp(std::floor(left), 0.0, double(hard.size.width))); x < end; ++x)
                drawPixel(*soft.matte.at(x, y), *soft.distance.at(x, y), *hard.at(x, y), x + 0.5, y + 0.5);
        }
    }

private:
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
        const double px = x - m_from.x, py = y - m_from.y;
        const double part = m_squaredLength > 0 ? std::clamp((px * m_dx + py * m_dy) / m_squaredLength, 0.0, 1.0) : 0;
        const double width = m_from.edgeWidth + part * (m_to.edgeWidth - m_from.edgeWidth);
        if (std::abs(width) < narrowest || (width > 0 ? hard >= 1 : hard <= 0))
            return;
        double nx = px - part * m_dx, ny = py - part * m_dy;
        const double distance = std::sqrt(nx * nx + ny * ny);
        if (distance > std::abs(width) + 1)
            return;
        if (distance > 1e-9) {
            nx /= distance;
            ny /= distance;
        } else {
            const double length = std::sqrt(std::max(m_squaredLength, 1e-18));
            nx = -m_dy / length;
            ny = m_dx / length;
        }
        const bool inside = hard > 0.5f;
        const Ramp ramp{width > 0 ? 0 : width, std::abs(width)};
        const auto value = float(ramp.mean(inside ? -distance : distance, nx, ny));
        // On the ramp's side of the outline the strongest edge counts. On the other side every edge but the nearest
        // would say that the ramp is far away.
        if (inside == (width > 0)) {
            if (float(distance) >= nearest)
                return;
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
    double m_reach;
};

} // namespace

bool hasFeather(const Outline& outline)
{
    return std::any_of(outline.begin(), outline.end(),
                       [](const OutlineVertex& vertex) { return std::abs(vertex.edgeWidth) >= narrowest; });
}

Image feathered(const Image& hard, const std::vector<Outline>& outlines)
{
    SoftMatte soft{hard, Image(hard.size, 1, std::numeric_limits<float>::max())};
    for (const Outline& outline : outlines) {
        if (!hasFeather(outline))
            continue;
        for (std::size_t i = 0; i < outline.size(); ++i)
            EdgeRamp(outline[i], outline[(i + 1) % outline.size()]).draw(soft, hard);
    }
    return std::move(soft.matte);
}

} // namespace pixels
