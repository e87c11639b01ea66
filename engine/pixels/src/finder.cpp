// Features are SIFT's (D. Lowe, "Distinctive image features from scale-invariant keypoints", IJCV 60(2), 2004), and
// those that agree are told by MAGSAC++ (D. Barath et al., CVPR 2020). Both come from OpenCV and give the same for the
// same frames.

#include "finder.h"

#include <algorithm>
#include <opencv2/calib3d.hpp>
#include <opencv2/features2d.hpp>
#include <opencv2/imgproc.hpp>

namespace pixels {
namespace {

constexpr int widestLevel = 1400; // a frame that is wider is looked at in a coarser level
constexpr int mostOfRegion = 800, mostOfFrame = 2500;
constexpr double leastContrast =
    0.015;                       // of a feature; SIFT's usual one is 0.04, for more texture than some regions have
constexpr float distinct = 0.8f; // how much nearer the best match must be than the next
constexpr double distance = 2.5; // of features that agree, in pixels of the level
constexpr int fewestAgreeing = 10;

cv::Matx33d projective(const cv::Mat& affine)
{
    cv::Matx33d matrix = cv::Matx33d::eye();
    for (int i = 0; i < 6; ++i)
        matrix(i / 3, i % 3) = affine.at<double>(i / 3, i % 3);
    return matrix;
}

// The median shift, and which points share it.
cv::Mat shiftOf(const std::vector<cv::Point2f>& from, const std::vector<cv::Point2f>& to, double reach,
                std::vector<unsigned char>& agreeing)
{
    const auto median = [&](auto along) {
        std::vector<float> values;
        for (std::size_t i = 0; i < from.size(); ++i)
            values.push_back(along(to[i] - from[i]));
        const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    };
    const cv::Point2f shift(median([](cv::Point2f p) { return p.x; }), median([](cv::Point2f p) { return p.y; }));
    for (std::size_t i = 0; i < from.size(); ++i)
        agreeing.push_back(cv::norm(to[i] - from[i] - shift) < reach);
    return (cv::Mat_<double>(2, 3) << 1, 0, shift.x, 0, 1, shift.y);
}

} // namespace

Finder::Finder(std::shared_ptr<const FramePyramid> reference, const Image& region, MotionModel model)
    : m_reference(std::move(reference)), m_mask(viewOf(region) > 0.5), m_model(model), m_level(0)
{
    while (m_level + 1 < m_reference->levels.size() && m_reference->levels[m_level].cols > widestLevel)
        ++m_level;
}

Finder::Features Finder::featuresOf(const FramePyramid& frame, const cv::Mat& mask, int most) const
{
    cv::Mat bytes, small;
    frame.levels[m_level].convertTo(bytes, CV_8U, 255);
    if (!mask.empty())
        cv::resize(mask, small, bytes.size(), 0, 0, cv::INTER_NEAREST);
    std::vector<cv::KeyPoint> found;
    Features features;
    cv::SIFT::create(most, 3, leastContrast)->detectAndCompute(bytes, small, found, features.descriptors);
    const auto scale = float(1 << m_level);
    for (const cv::KeyPoint& point : found)
        features.points.emplace_back(scale * point.pt.x + 0.5f, scale * point.pt.y + 0.5f);
    return features;
}

std::optional<Matrix> Finder::placeOf(const std::vector<cv::Point2f>& from, const std::vector<cv::Point2f>& to) const
{
    if (int(from.size()) < fewestAgreeing)
        return {};
    const double reach = distance * double(1 << m_level);
    std::vector<unsigned char> agreeing;
    cv::Mat place;
    if (m_model == MotionModel::Perspective)
        place = cv::findHomography(from, to, cv::USAC_MAGSAC, reach, agreeing);
    else if (m_model == MotionModel::Affine)
        place = cv::estimateAffine2D(from, to, agreeing, cv::RANSAC, reach);
    else
        place = shiftOf(from, to, reach, agreeing);
    if (place.empty() || cv::countNonZero(agreeing) < fewestAgreeing)
        return {};
    const cv::Matx33d matrix = place.rows == 3 ? cv::Matx33d(place) : projective(place);
    Matrix result;
    std::copy_n(matrix.val, 9, result.values.begin());
    return result;
}

std::optional<Matrix> Finder::find(const FramePyramid& frame, const Image& excluded) const
{
    if (!m_features)
        m_features = featuresOf(*m_reference, m_mask, mostOfRegion);
    if (int(m_features->points.size()) < fewestAgreeing)
        return {};
    const cv::Mat shown = excluded.empty() ? cv::Mat() : cv::Mat(viewOf(excluded) < 0.5);
    const Features seen = featuresOf(frame, shown, mostOfFrame);
    if (seen.points.size() < 2)
        return {};
    std::vector<std::vector<cv::DMatch>> matches;
    cv::BFMatcher().knnMatch(m_features->descriptors, seen.descriptors, matches, 2);
    std::vector<cv::Point2f> from, to;
    for (const std::vector<cv::DMatch>& match : matches)
        if (match[0].distance < distinct * match[1].distance) {
            from.push_back(m_features->points[std::size_t(match[0].queryIdx)]);
            to.push_back(seen.points[std::size_t(match[0].trainIdx)]);
        }
    return placeOf(from, to);
}

} // namespace pixels
