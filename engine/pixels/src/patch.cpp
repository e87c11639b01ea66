// Coarser levels are added while enough pixels are left of the region to carry an alignment.

#include "patch.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

namespace pixels {
namespace {

constexpr std::size_t fewestPixels = 24;       // of a region
constexpr std::size_t fewestCoarsePixels = 80; // of a level other than the finest
constexpr float inRegion = 0.6f;               // from this share of a pixel on it is followed
constexpr double leastContrast = 1e-4;         // of luminance
constexpr double smallestBlock = 12;           // pixels
constexpr double blocksAlong = 16;             // the longer side of a region

// Along the edge of a surface the smoothing has mixed in what lies behind it, which moves otherwise. Where the region
// is so small that the edge is most of it, it is kept.
cv::Mat withoutEdge(const cv::Mat& region)
{
    constexpr int edge = 2;
    const cv::Mat inside = region >= inRegion;
    cv::Mat core, kept = cv::Mat::zeros(region.size(), CV_32F);
    cv::erode(inside, core, cv::Mat::ones(2 * edge + 1, 2 * edge + 1, CV_8U));
    if (2 * cv::countNonZero(core) < cv::countNonZero(inside))
        return region;
    region.copyTo(kept, core);
    return kept;
}

double contrast(const PatchLevel& level)
{
    cv::Scalar mean, deviation;
    cv::meanStdDev(level.value, mean, deviation);
    return deviation[0];
}

} // namespace

int parameterCount(MotionModel model)
{
    switch (model) {
    case MotionModel::Translation:
        return 2;
    case MotionModel::Affine:
        return 6;
    case MotionModel::Perspective:
        break;
    }
    return mostParameters;
}

int BlockGrid::at(double x, double y) const
{
    const auto index = [this](double distance, int count) { return std::clamp(int(distance / size), 0, count - 1); };
    return index(y - origin.y, rows) * columns + index(x - origin.x, columns);
}

Patch::Patch(const FramePyramid& frame, const Image& region)
{
    place(region);
    const std::vector<cv::Mat> regions = maskPyramid(region, frame.levels.size());
    for (std::size_t level = 0; level < frame.levels.size(); ++level) {
        PatchLevel made =
            makeLevel(frame.levels[level], level == 0 ? withoutEdge(regions[0]) : regions[level], int(level));
        if (made.size() < (level == 0 ? fewestPixels : fewestCoarsePixels))
            break;
        m_levels.push_back(std::move(made));
    }
    if (m_levels.empty())
        throw RegionError("the region covers too few pixels to be tracked");
    if (contrast(m_levels.front()) < leastContrast)
        throw RegionError("the region has nothing in it that could be followed");
}

void Patch::place(const Image& region)
{
    const cv::Rect box = cv::boundingRect(viewOf(region) >= inRegion);
    if (box.empty())
        throw RegionError("the region covers no pixel");
    const double width = box.width, height = box.height, extent = std::max(width, height) / 2;
    m_toReference = Matrix{{extent, 0, box.x + width / 2, 0, extent, box.y + height / 2, 0, 0, 1}};
    const double x = width / 2 / extent, y = height / 2 / extent;
    m_corners = {Point{-x, -y}, Point{x, -y}, Point{x, y}, Point{-x, y}};
    const double size = std::max(smallestBlock, 2 * extent / blocksAlong);
    const auto count = [size](double length) { return std::max(1, int(std::lround(length / size))); };
    m_blocks = {m_corners[0], 2 * x / count(width), count(width), count(height)};
}

PatchLevel Patch::makeLevel(const cv::Mat& luminance, const cv::Mat& region, int level) const
{
    cv::Mat acrossX, acrossY, depth;
    cv::Scharr(luminance, acrossX, CV_32F, 1, 0, 1 / 32.0);
    cv::Scharr(luminance, acrossY, CV_32F, 0, 1, 1 / 32.0);
    cv::distanceTransform(region >= inRegion, depth, cv::DIST_L2, cv::DIST_MASK_3);
    const double step = double(1 << level);
    const auto perUnit = float(extent() / step); // pixels of this level per unit of the patch's plane
    PatchLevel made;
    made.level = level;
    made.perUnit = perUnit;
    for (int row = 0; row < luminance.rows; ++row)
        for (int column = 0; column < luminance.cols; ++column) {
            const float weight = region.at<float>(row, column);
            if (!(weight >= inRegion))
                continue;
            const auto x = float((column * step + 0.5 - m_toReference(0, 2)) / extent());
            const auto y = float((row * step + 0.5 - m_toReference(1, 2)) / extent());
            const float gx = acrossX.at<float>(row, column) * perUnit, gy = acrossY.at<float>(row, column) * perUnit;
            const float along = gx * x + gy * y;
            const float changes[] = {gx, gy, gx * x, gx * y, gy * x, gy * y, -along * x, -along * y};
            made.x.push_back(x);
            made.y.push_back(y);
            made.depth.push_back(depth.at<float>(row, column) / perUnit);
            made.block.push_back(std::uint16_t(m_blocks.at(x, y)));
            made.value.push_back(luminance.at<float>(row, column));
            made.weight.push_back(std::min(weight, 1.0f));
            for (int i = 0; i < mostParameters; ++i)
                made.change[std::size_t(i)].push_back(changes[i]);
        }
    return made;
}

} // namespace pixels
