// The region that a tracker follows, as it looks in the reference frame: at each level of detail its pixels, and how
// their values change with each parameter of a small motion.
#pragma once

#include "frame_pyramid.h"

namespace pixels {

// A small motion of the patch's own plane, in which the region fills about -1 to 1:
// shift x, shift y, then what x and y add to x, what they add to y, and the two perspective parameters. A model uses
// the first 2, 6 or all of them.
constexpr int mostParameters = 8;

int parameterCount(MotionModel model);

// Squares that the region is judged in.
struct BlockGrid
{
    Point origin; // in the patch's plane, as the size
    double size = 1;
    int columns = 1;
    int rows = 1;

    std::size_t count() const { return std::size_t(columns * rows); }
    int at(double x, double y) const;
};

struct PatchLevel
{
    int level = 0; // of the frame's pyramid
    // One entry per pixel of the region.
    std::vector<float> x, y;   // in the patch's plane
    std::vector<float> value;  // luminance
    std::vector<float> weight; // how far the pixel belongs to the region
    std::vector<float> depth;  // distance from the region's edge, in the patch's plane
    std::vector<std::uint16_t> block;
    std::array<std::vector<float>, mostParameters> change;
    float perUnit = 1; // pixels of the level per unit of the patch's plane

    std::size_t size() const { return value.size(); }
};

class Patch
{
public:
    // Throws RegionError where the region is empty or has nothing in it to follow.
    Patch(const FramePyramid& frame, const Image& region);

    const std::vector<PatchLevel>& levels() const { return m_levels; } // the finest first

    // From the patch's plane to the pixels of the reference frame.
    const Matrix& toReference() const { return m_toReference; }
    double extent() const { return m_toReference(0, 0); }             // half the size of the region's box, in pixels
    const std::array<Point, 4>& corners() const { return m_corners; } // of the region's box, in the patch's plane
    const BlockGrid& blocks() const { return m_blocks; }

private:
    void place(const Image& region);
    PatchLevel makeLevel(const cv::Mat& luminance, const cv::Mat& region, int level) const;

    Matrix m_toReference;
    std::array<Point, 4> m_corners;
    BlockGrid m_blocks;
    std::vector<PatchLevel> m_levels;
};

} // namespace pixels
