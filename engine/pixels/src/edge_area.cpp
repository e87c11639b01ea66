// Areas of trapezoids between an edge and the right side of a row.

#include "edge_area.h"

#include <algorithm>
#include <cmath>

namespace pixels {
namespace {

Point between(Point from, Point to, double part)
{
    return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

double covered(double winding, FillRule rule)
{
    // Away from all edges the sum is a whole number but for rounding, and a matte is to be exactly 0 or 1 there.
    constexpr double rounding = 1e-5;
    winding = std::abs(winding);
    if (const double whole = std::round(winding); std::abs(winding - whole) < rounding)
        winding = whole;
    if (rule == FillRule::NonZero)
        return std::min(winding, 1.0);
    const double rest = winding - 2 * std::floor(winding / 2);
    return rest > 1 ? 2 - rest : rest;
}

} // namespace

EdgeArea::EdgeArea(const Window& window)
    : m_window(window), m_width(window.right - window.left + 1),
      m_differences(std::size_t(m_width) * std::size_t(window.bottom - window.top))
{}

void EdgeArea::addEdge(Point from, Point to)
{
    if (from.y == to.y)
        return;
    const double direction = from.y < to.y ? 1 : -1;
    if (direction < 0)
        std::swap(from, to);
    const double top = m_window.top, bottom = m_window.bottom;
    if (to.y <= top || from.y >= bottom)
        return;
    const double height = to.y - from.y;
    const Point first = from.y < top ? Point{between(from, to, (top - from.y) / height).x, top} : from;
    const Point last = to.y > bottom ? Point{between(from, to, (bottom - from.y) / height).x, bottom} : to;

    // What lies beside the window counts as lying on its side, so the edge is cut where it crosses one.
    double cuts[] = {0, 0, 0, 1};
    int count = 1;
    for (const double side : {double(m_window.left), double(m_window.right)})
        if ((first.x - side) * (last.x - side) < 0)
            cuts[count++] = (side - first.x) / (last.x - first.x);
    if (count == 3 && cuts[2] < cuts[1])
        std::swap(cuts[1], cuts[2]);
    cuts[count] = 1;
    for (int i = 0; i < count; ++i)
        addInside(between(first, last, cuts[i]), between(first, last, cuts[i + 1]), direction);
}

// Within the window's rows, and on one side of each of its sides.
void EdgeArea::addInside(Point from, Point to, double direction)
{
    const double left = m_window.left, right = m_window.right;
    const double slope = to.y > from.y ? (to.x - from.x) / (to.y - from.y) : 0;
    const int lastRow = std::min(int(std::ceil(to.y)), m_window.bottom);
    for (int row = std::max(int(std::floor(from.y)), m_window.top); row < lastRow; ++row) {
        const double y0 = std::max(from.y, double(row)), y1 = std::min(to.y, row + 1.0);
        if (y1 <= y0)
            continue;
        const double x0 = std::clamp(from.x + (y0 - from.y) * slope, left, right) - left;
        const double x1 = std::clamp(from.x + (y1 - from.y) * slope, left, right) - left;
        addInRow(row - m_window.top, direction * (y1 - y0), std::min(x0, x1), std::max(x0, x1));
    }
}

// A piece of an edge from x0 to x1 of the given (signed) height within one row.
void EdgeArea::addInRow(int row, double height, double x0, double x1)
{
    float* differences = m_differences.data() + std::size_t(row) * std::size_t(m_width);
    const int first = std::min(int(x0), m_width - 1), last = std::min(int(x1), m_width - 1);
    if (first == last) {
        const double besideLeft = (x0 + x1) / 2 - first;
        differences[first] += float(height * (1 - besideLeft));
        if (first + 1 < m_width)
            differences[first + 1] += float(height * besideLeft);
        return;
    }
    const double perPixel = height / (x1 - x0);
    double entered = 0;
    for (int x = first; x <= last; ++x) {
        const double enter = std::max(x0, double(x)), leave = std::min(x1, x + 1.0);
        const double area = (enter - x0) * perPixel + (leave - enter) * perPixel * (x + 1 - (enter + leave) / 2);
        differences[x] += float(area - entered);
        entered = area;
    }
    if (last + 1 < m_width)
        differences[last + 1] += float(height - entered);
}

void EdgeArea::resolve(FillRule rule, Image& matte) const
{
    for (int y = m_window.top; y < m_window.bottom; ++y) {
        const float* differences = m_differences.data() + std::size_t(y - m_window.top) * std::size_t(m_width);
        float* pixel = matte.at(m_window.left, y);
        double winding = 0;
        float value = 0;
        for (int x = m_window.left; x < m_window.right; ++x, ++differences, ++pixel) {
            if (*differences != 0) {
                winding += double(*differences);
                value = float(covered(winding, rule));
            }
            *pixel = value;
        }
    }
}

} // namespace pixels
