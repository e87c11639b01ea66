// Coarser levels are added while enough pixels are left of the region to carry an alignment.

#include "patch.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

namespace pixels {
namespace {

constexpr std::size_t fewestPixels = 24;       // of a region
constexpr std::size_t fewestCoarsePixels = 80; // of a level other than the finest
constexpr float inRegion = 0.6f;               // from this share of a pixel on it is followed
constexpr double leastContrast = 1e-4;         // of luminance

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
}

PatchLevel Patch::makeLevel(const cv::Mat& luminance, const cv::Mat& region, int level) const
{
    cv::Mat acrossX, acrossY;
    cv::Scharr(luminance, acrossX, CV_32F, 1, 0, 1 / 32.0);
    cv::Scharr(luminance, acrossY, CV_32F, 0, 1, 1 / 32.0);
    const double step = double(1 << level);
    const auto perUnit = float(extent() / step); // pixels of this level per unit of the patch's plane
    PatchLevel made;
    made.level = level;
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
            made.value.push_back(luminance.at<float>(row, column));
            made.weight.push_back(std::min(weight, 1.0f));
            for (int i = 0; i < mostParameters; ++i)
                made.change[std::size_t(i)].push_back(changes[i]);
        }
    return made;
}

} // namespace pixels
