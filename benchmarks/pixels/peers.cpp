#include "peers.h"

#include <opencv2/calib3d.hpp>
#include <opencv2/features2d.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/video/tracking.hpp>

using namespace pixels;

namespace {

constexpr double ransacDistance = 3;
constexpr int fewestInliers = 10;

cv::Mat viewOf(const Image& image)
{
    return {image.size.height, image.size.width, CV_32FC(image.channels), const_cast<float*>(image.values.data())};
}

cv::Mat grey(const Image& image)
{
    cv::Mat luminance;
    cv::cvtColor(viewOf(image), luminance, cv::COLOR_RGB2GRAY);
    return luminance;
}

cv::Mat greyBytes(const Image& image)
{
    cv::Mat bytes;
    grey(image).convertTo(bytes, CV_8U, 255);
    return bytes;
}

cv::Mat bytesOf(const Image& region)
{
    cv::Mat mask = viewOf(region) > 0.5;
    return mask;
}

// OpenCV's pixels have their centres at whole numbers.
Matrix fromOpenCv(const cv::Mat& homography)
{
    Matrix matrix;
    for (int i = 0; i < 9; ++i)
        matrix(i / 3, i % 3) = homography.at<double>(i / 3, i % 3);
    return Matrix::translation(0.5, 0.5) * matrix * Matrix::translation(-0.5, -0.5);
}

// Empty where too few points agree.
cv::Mat robustHomography(const std::vector<cv::Point2f>& from, const std::vector<cv::Point2f>& to,
                         std::vector<unsigned char>& inliers)
{
    if (from.size() < fewestInliers)
        return {};
    const cv::Mat homography = cv::findHomography(from, to, cv::RANSAC, ransacDistance, inliers);
    return homography.empty() || cv::countNonZero(inliers) < fewestInliers ? cv::Mat() : homography;
}

class EccAlone final : public Peer
{
public:
    EccAlone(const Image& reference, const Image& region)
    {
        m_box = cv::boundingRect(bytesOf(region));
        m_box.width -= m_box.width % 4;
        m_box.height -= m_box.height % 4;
        m_reference = pyramid(grey(reference)(m_box).clone());
        m_warp = cv::Mat::eye(3, 3, CV_32F);
        m_warp.at<float>(0, 2) = float(m_box.x);
        m_warp.at<float>(1, 2) = float(m_box.y);
    }

    std::optional<Matrix> advance(const Image& frame) override
    {
        const std::vector<cv::Mat> levels = pyramid(grey(frame));
        const cv::TermCriteria criteria(cv::TermCriteria::COUNT + cv::TermCriteria::EPS, 50, 1e-5);
        cv::Mat warp = scaled(m_warp, 0.25f);
        try {
            for (std::size_t level = levels.size(); level-- > 0;) {
                cv::findTransformECC(m_reference[level], levels[level], warp, cv::MOTION_HOMOGRAPHY, criteria,
                                     cv::noArray(), 5);
                if (level > 0)
                    warp = scaled(warp, 2);
            }
        } catch (const cv::Exception&) {
            return {};
        }
        m_warp = warp;
        cv::Mat fromBox;
        m_warp.convertTo(fromBox, CV_64F);
        return fromOpenCv(fromBox) * Matrix::translation(-m_box.x, -m_box.y);
    }

private:
    static std::vector<cv::Mat> pyramid(const cv::Mat& image)
    {
        std::vector<cv::Mat> levels{image};
        while (levels.size() < 3) {
            cv::Mat half;
            cv::pyrDown(levels.back(), half);
            levels.push_back(half);
        }
        return levels;
    }

    static cv::Mat scaled(const cv::Mat& warp, float by)
    {
        const cv::Mat scale = (cv::Mat_<float>(3, 3) << by, 0, 0, 0, by, 0, 0, 0, 1);
        return scale * warp * scale.inv();
    }

    cv::Rect m_box;
    std::vector<cv::Mat> m_reference;
    cv::Mat m_warp;
};

class SiftAlone final : public Peer
{
public:
    SiftAlone(const Image& reference, const Image& region)
    {
        m_sift->detectAndCompute(greyBytes(reference), bytesOf(region), m_points, m_descriptors);
    }

    std::optional<Matrix> advance(const Image& frame) override
    {
        std::vector<cv::KeyPoint> points;
        cv::Mat descriptors;
        m_sift->detectAndCompute(greyBytes(frame), {}, points, descriptors);
        std::vector<std::vector<cv::DMatch>> matches;
        if (points.size() >= 2 && !m_points.empty())
            cv::BFMatcher().knnMatch(m_descriptors, descriptors, matches, 2);
        std::vector<cv::Point2f> from, to;
        for (const std::vector<cv::DMatch>& match : matches)
            if (match[0].distance < 0.8f * match[1].distance) {
                from.push_back(m_points[std::size_t(match[0].queryIdx)].pt);
                to.push_back(points[std::size_t(match[0].trainIdx)].pt);
            }
        std::vector<unsigned char> inliers;
        const cv::Mat homography = robustHomography(from, to, inliers);
        if (homography.empty())
            return {};
        return fromOpenCv(homography);
    }

private:
    const cv::Ptr<cv::SIFT> m_sift = cv::SIFT::create();
    std::vector<cv::KeyPoint> m_points;
    cv::Mat m_descriptors;
};

class KltAlone final : public Peer
{
public:
    KltAlone(const Image& reference, const Image& region) : m_before(greyBytes(reference)), m_region(bytesOf(region))
    {
        takeUp(cv::Mat::eye(3, 3, CV_64F));
    }

    std::optional<Matrix> advance(const Image& frame) override
    {
        const cv::Mat now = greyBytes(frame);
        follow(now);
        std::vector<unsigned char> inliers;
        const cv::Mat homography = robustHomography(m_reference, m_points, inliers);
        m_before = now;
        if (homography.empty()) {
            m_reference.clear();
            m_points.clear();
            return {};
        }
        keep(inliers);
        if (m_points.size() < m_taken / 2)
            takeUp(homography);
        return fromOpenCv(homography);
    }

private:
    static constexpr int mostPoints = 400;

    void follow(const cv::Mat& now)
    {
        if (m_points.empty())
            return;
        std::vector<cv::Point2f> there, back;
        std::vector<unsigned char> found, foundBack;
        const cv::Size window(21, 21);
        cv::calcOpticalFlowPyrLK(m_before, now, m_points, there, found, cv::noArray(), window, 3);
        cv::calcOpticalFlowPyrLK(now, m_before, there, back, foundBack, cv::noArray(), window, 3);
        for (std::size_t i = 0; i < found.size(); ++i)
            found[i] = found[i] && foundBack[i] && cv::norm(back[i] - m_points[i]) < 1;
        m_points = there;
        keep(found);
    }

    void keep(const std::vector<unsigned char>& which)
    {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < which.size(); ++i)
            if (which[i]) {
                m_reference[kept] = m_reference[i];
                m_points[kept++] = m_points[i];
            }
        m_reference.resize(kept);
        m_points.resize(kept);
    }

    void takeUp(const cv::Mat& homography)
    {
        cv::Mat region;
        cv::warpPerspective(m_region, region, homography, m_before.size(), cv::INTER_NEAREST);
        std::vector<cv::Point2f> reference, points;
        cv::goodFeaturesToTrack(m_before, points, mostPoints, 0.01, 5, region);
        if (points.empty())
            return;
        cv::perspectiveTransform(points, reference, homography.inv());
        m_points = points;
        m_reference = reference;
        m_taken = points.size();
    }

    cv::Mat m_before, m_region;
    std::vector<cv::Point2f> m_reference, m_points;
    std::size_t m_taken = 0;
};

} // namespace

std::unique_ptr<Peer> eccAlone(const Image& reference, const Image& region)
{
    return std::make_unique<EccAlone>(reference, region);
}

std::unique_ptr<Peer> siftAlone(const Image& reference, const Image& region)
{
    return std::make_unique<SiftAlone>(reference, region);
}

std::unique_ptr<Peer> kltAlone(const Image& reference, const Image& region)
{
    return std::make_unique<KltAlone>(reference, region);
}
