// Frames are drawn at twice the size and brought down, and are written and read as JPEG files. All that differs between
// two sequences of the same motion comes from the seed.

#include "sequence.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

using namespace pixels;

namespace {

constexpr int fineness = 2;
constexpr double objectWidth = 0.4, objectHeight = 0.45; // of the view
constexpr double grain = 0.012;
constexpr int jpegQuality = 88;
constexpr int exposures = 8; // that make a blurred picture
constexpr double shutter = 0.6;
constexpr double pi = 3.14159265358979323846;

double wave(double time, double turns, double phase) { return std::sin(2 * pi * (turns * time + phase)); }

// From 0 to 1, slowly at both ends.
double eased(double time) { return time * time * (3 - 2 * time); }

Matrix turned(double yaw, double pitch, double roll, double focal)
{
    const double a = std::cos(yaw), b = std::sin(yaw), c = std::cos(pitch), d = std::sin(pitch), e = std::cos(roll),
                 f = std::sin(roll);
    const Matrix aboutZ{{e, -f, 0, f, e, 0, 0, 0, 1}};
    const Matrix tilted{{a, b * d, 0, 0, c, 0, -b / focal, a * d / focal, 1}};
    return tilted * aboutZ;
}

cv::Matx33d matrixOf(const Matrix& matrix)
{
    cv::Matx33d result;
    std::copy(matrix.values.begin(), matrix.values.end(), result.val);
    return result;
}

} // namespace

cv::Mat readPhotograph(const std::string& path, Size size)
{
    const SharedImage image = library().readFrame(path);
    cv::Mat view(image->size.height, image->size.width, CV_32FC(image->channels),
                 const_cast<float*>(image->values.data()));
    const double scale = std::min(double(view.cols) / size.width, double(view.rows) / size.height);
    const cv::Size part(int(size.width * scale), int(size.height * scale));
    view = view(cv::Rect((view.cols - part.width) / 2, (view.rows - part.height) / 2, part.width, part.height));
    cv::Mat scaled, colored, photograph;
    cv::resize(view, scaled, {size.width, size.height}, 0, 0, scale > 1 ? cv::INTER_AREA : cv::INTER_CUBIC);
    if (image->channels == 3)
        colored = scaled;
    else
        cv::cvtColor(scaled, colored, image->channels == 1 ? cv::COLOR_GRAY2RGB : cv::COLOR_RGBA2RGB);
    colored.convertTo(photograph, CV_8UC3, 255);
    return photograph;
}

Size Sequence::objectSize(Size view)
{
    return {int(fineness * objectWidth * view.width), int(fineness * objectHeight * view.height)};
}

Size Sequence::viewSize(Size view) { return {fineness * view.width * 5 / 4, fineness * view.height * 5 / 4}; }

Sequence::Sequence(const Photographs& photographs, Motion motion, unsigned seed, Size size, int frames, double barWidth)
    : m_photographs(photographs), m_motion(motion), m_seed(seed), m_size(size), m_frames(frames), m_barWidth(barWidth)
{
    cv::RNG random(seed * 7919u + unsigned(motion) * 104729u + 1);
    m_direction = random.uniform(0, 2) ? 1 : -1;
    for (double& value : m_some)
        value = random.uniform(0.0, 1.0);
}

Matrix Sequence::placed(double time) const
{
    const double width = m_size.width, height = m_size.height, aspect = objectHeight * height / (objectWidth * width);
    const double go = m_direction;
    // Something of every motion is in all of them.
    double x = 0.03 * wave(time, 1.3, m_some[0]), y = 0.04 * wave(time, 0.9, m_some[1]);
    double scale = 1 + 0.05 * wave(time, 0.8, m_some[2]);
    double roll = 0.1 * go * wave(time, 1.1, m_some[3]), yaw = 0.15 * wave(time, 1, m_some[4]), pitch = 0.1 * go * yaw;
    const double strength = 0.8 + 0.4 * m_some[5];
    switch (m_motion) {
    case Motion::Scale:
        scale = std::exp(strength * 0.5 * go * std::sin(2 * pi * time));
        break;
    case Motion::Rotation:
        roll = go * strength * 4.6 * eased(time);
        break;
    case Motion::Perspective:
        yaw = go * strength * 0.85 * std::sin(2 * pi * time);
        pitch = strength * 0.5 * std::sin(3 * pi * time);
        break;
    case Motion::MotionBlur:
        x = 0.2 * strength * std::sin(6 * pi * time);
        y = 0.12 * std::sin(8 * pi * time);
        break;
    case Motion::Bar:
        break;
    case Motion::Leaving:
        x += go * (0.3 + objectWidth * (0.35 + 0.75 * m_some[5])) * std::pow(std::sin(pi * time), 2);
        break;
    case Motion::Together:
        x += 0.1 * strength * std::sin(4 * pi * time);
        scale = std::exp(0.3 * go * std::sin(2 * pi * time));
        roll = go * strength * 1.2 * std::sin(2.5 * pi * time);
        yaw = 0.5 * std::sin(3 * pi * time);
        pitch = 0.3 * std::sin(4 * pi * time);
        break;
    }
    const double size = objectWidth * width * scale;
    return Matrix::translation(width * (0.5 + x), height * (0.5 + y)) * turned(yaw, pitch, roll, 1.6 * width) *
           Matrix::scale(size, size) * Matrix::translation(-0.5, -0.5 * aspect);
}

std::array<Point, 4> Sequence::corners(int frame) const
{
    const Matrix toView = placed(double(frame) / (m_frames - 1));
    const double bottom = objectHeight * m_size.height / (objectWidth * m_size.width);
    return {toView.map({0, 0}), toView.map({1, 0}), toView.map({1, bottom}), toView.map({0, bottom})};
}

double Sequence::inView(int frame) const
{
    std::vector<cv::Point2f> object, common;
    for (const Point corner : corners(frame))
        object.emplace_back(float(corner.x), float(corner.y));
    const auto width = float(m_size.width), height = float(m_size.height);
    const std::vector<cv::Point2f> view = {{0, 0}, {width, 0}, {width, height}, {0, height}};
    return cv::intersectConvexConvex(object, view, common) / std::abs(cv::contourArea(object));
}

void Sequence::drawObject(cv::Mat& view, double time) const
{
    const cv::Mat& object = m_photographs.object;
    // Whole pixels of both have their centre at half of one.
    const Matrix toView = Matrix::translation(-0.5, -0.5) * Matrix::scale(fineness, fineness) * placed(time) *
                          Matrix::scale(1.0 / object.cols, 1.0 / object.cols) * Matrix::translation(0.5, 0.5);
    cv::Mat drawn;
    cv::warpPerspective(object, drawn, matrixOf(toView), view.size(), cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    std::vector<cv::Point> outline;
    constexpr int shift = 8;
    for (const Point corner : {Point{-0.5, -0.5}, Point{object.cols - 0.5, -0.5},
                               Point{object.cols - 0.5, object.rows - 0.5}, Point{-0.5, object.rows - 0.5}}) {
        const Point at = toView.map(corner);
        outline.emplace_back(int(std::lround(at.x * (1 << shift))), int(std::lround(at.y * (1 << shift))));
    }
    cv::Mat mask = cv::Mat::zeros(view.size(), CV_8U);
    cv::fillConvexPoly(mask, outline, 255, cv::LINE_8, shift);
    drawn.copyTo(view, mask);
}

void Sequence::drawBar(cv::Mat& view, double time) const
{
    const double width = objectWidth * m_size.width, bar = m_barWidth * width;
    // Over the object's whole width and back to where nothing is hidden.
    const double way = (time - 0.1) / 0.8, from = 0.5 * m_size.width - 0.7 * width - bar;
    const double left = from + (1.4 * width + bar) * (m_direction > 0 ? way : 1 - way);
    const double lean = (m_some[4] - 0.5) * 0.4 * m_size.height;
    const auto point = [](double x, double y) { return cv::Point(int(fineness * x), int(fineness * y)); };
    cv::Mat mask = cv::Mat::zeros(view.size(), CV_8U);
    cv::fillConvexPoly(mask,
                       std::vector<cv::Point>{point(left + lean, 0), point(left + bar + lean, 0),
                                              point(left + bar - lean, m_size.height),
                                              point(left - lean, m_size.height)},
                       255);
    if (m_some[5] < 0.3) // a plain one
        view.setTo(cv::Scalar(90 + 60 * m_some[3], 90, 80), mask);
    else {
        // Its own picture moves along with it.
        cv::Mat moved;
        const cv::Matx23d shift(1, 0, fineness * (left - 0.5 * m_size.width), 0, 1, 0);
        cv::warpAffine(m_photographs.occluder, moved, shift, view.size(), cv::INTER_LINEAR, cv::BORDER_REFLECT);
        moved.copyTo(view, mask);
    }
}

Image Sequence::frame(int index) const
{
    const double step = 1.0 / (m_frames - 1), time = index * step;
    const cv::Size whole(fineness * m_size.width, fineness * m_size.height);
    const int room = m_photographs.background.cols - whole.width;
    const cv::Mat background = m_photographs.background(
        {cv::Point(int(std::lround(room * (0.5 + 0.4 * wave(time, 0.5, m_some[1])))), 0), whole});
    const int count = m_motion == Motion::MotionBlur || m_motion == Motion::Together ? exposures : 1;
    cv::Mat sum;
    for (int i = 0; i < count; ++i) {
        cv::Mat view = background.clone(), small;
        const double now = time + shutter * step * ((i + 0.5) / count - 0.5);
        drawObject(view, now);
        if (m_motion == Motion::Bar)
            drawBar(view, now);
        cv::resize(view, small, {m_size.width, m_size.height}, 0, 0, cv::INTER_AREA);
        small.convertTo(small, CV_32FC3, 1.0 / (255 * count));
        sum = sum.empty() ? small : sum + small;
    }
    sum *= 1 + 0.2 * wave(time, 1.3, m_some[2]);
    cv::RNG random(m_seed * 1009u + unsigned(index) * 31u + 7);
    cv::Mat noise(sum.size(), sum.type());
    random.fill(noise, cv::RNG::NORMAL, 0.03 * wave(time, 0.7, m_some[3]), grain);
    sum += noise;

    Image image(m_size, 3);
    std::copy_n(sum.ptr<float>(), image.values.size(), image.values.begin());
    const std::string path = m_folder / ("frame." + std::to_string(index) + ".jpg");
    WriteOptions options;
    options.jpegQuality = jpegQuality;
    library().writeFrame(path, image, options);
    Image recorded = *library().readFrame(path);
    std::filesystem::remove(path);
    return recorded;
}
