// The exact area that polygons cover of each pixel of a window, gathered edge by edge: an edge enters, per row, the
// area to its right as a difference between neighbouring pixels, and a running sum along the row gives the coverage.
#pragma once

#include "window.h"

namespace pixels {

class EdgeArea
{
public:
    explicit EdgeArea(const Window& window);

    void addEdge(Point from, Point to);

    // Writes the coverage into the window's part of `matte`.
    void resolve(FillRule rule, Image& matte) const;

private:
    void addInside(Point from, Point to, double direction);
    void addInRow(int row, double height, double x0, double x1);

    Window m_window;
    int m_width;                      // one column more than the window: what lies to its right ends there
    std::vector<float> m_differences; // of coverage, between a pixel and its left neighbour
};

} // namespace pixels
