// Lines are mattes of thin outlines, words are mattes of OpenCV's stroke font: both are laid over like any matte.

#include "arguments.h"
#include "frame_pyramid.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

namespace pixels {

Image Library::resize(const Image& image, Size size)
{
    checkImage(image, "the image");
    checkSize(size, "the resized image");
    Image result(size, image.channels);
    cv::Mat view = viewOf(result);
    const bool smaller = size.width < image.size.width || size.height < image.size.height;
    cv::resize(viewOf(image), view, view.size(), 0, 0, smaller ? cv::INTER_AREA : cv::INTER_CUBIC);
    return result;
}

Image Library::withChannels(const Image& image, int channels)
{
    checkImage(image, "the image");
    if (channels == image.channels)
        return image;
    if (channels == 1)
        return luminance(image, Luminance::Rec709);
    Image result(image.size, channels);
    checkImage(result, "an image");
    constexpr int codes[5][5] = {{},
                                 {0, 0, 0, cv::COLOR_GRAY2RGB, cv::COLOR_GRAY2RGBA},
                                 {},
                                 {0, 0, 0, 0, cv::COLOR_RGB2RGBA},
                                 {0, 0, 0, cv::COLOR_RGBA2RGB, 0}};
    cv::Mat view = viewOf(result);
    cv::cvtColor(viewOf(image), view, codes[image.channels][channels]);
    return result;
}

void Library::place(Image& target, const Image& image, int x, int y)
{
    checkImage(target, "the target");
    const Image fitting = withChannels(image, target.channels);
    const cv::Rect whole(0, 0, target.size.width, target.size.height);
    const cv::Rect there = whole & cv::Rect(x, y, image.size.width, image.size.height);
    if (there.empty())
        return;
    cv::Mat view = viewOf(target);
    viewOf(fitting)(there - cv::Point(x, y)).copyTo(view(there));
}

void Library::drawOutline(Image& image, const std::vector<Point>& points, Color color, double width)
{
    checkImage(image, "the image");
    std::vector<Outline> strokes;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point from = points[i], to = points[(i + 1) % points.size()];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        if (!(length > 0))
            continue;
        // Longer by half the width at each end, so that corners are closed.
        const double x = (to.x - from.x) / length * width / 2, y = (to.y - from.y) / length * width / 2;
        strokes.push_back({{from.x - x - y, from.y - y + x, 0},
                           {to.x + x - y, to.y + y + x, 0},
                           {to.x + x + y, to.y + y - x, 0},
                           {from.x - x + y, from.y - y - x, 0}});
    }
    insert(image, coverage(strokes, image.size, {}, FillRule::NonZero), color);
}

void Library::drawText(Image& image, const std::string& text, Point baseline, double height, Color color)
{
    checkImage(image, "the image");
    constexpr int font = cv::FONT_HERSHEY_SIMPLEX;
    int below = 0;
    const cv::Size plain = cv::getTextSize(text, font, 1, 1, &below);
    const double scale = height / plain.height;
    cv::Mat drawn = cv::Mat::zeros(image.size.height, image.size.width, CV_8U);
    cv::putText(drawn, text, {int(std::lround(baseline.x)), int(std::lround(baseline.y))}, font, scale, 255,
                std::max(1, int(std::lround(scale * 1.6))), cv::LINE_AA);
    Image matte(image.size, 1);
    cv::Mat view = viewOf(matte);
    drawn.convertTo(view, CV_32F, 1 / 255.0);
    insert(image, matte, color);
}

} // namespace pixels
