// A pinhole camera looks at a plane. Every pixel is the mean of sixteen samples of a texture four times as fine, so
// that the picture owes nothing to the filters that a tracker uses.

#include "made_footage.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

namespace pixels {
namespace {

constexpr int fineness = 4; // texels, and samples, per pixel and direction
constexpr double pi = 3.14159265358979323846;

cv::Scalar randomColor(cv::RNG& random, double darkest, double brightest)
{
    return {random.uniform(darkest, brightest), random.uniform(darkest, brightest), random.uniform(darkest, brightest)};
}

// Clouds of several sizes, with patches, discs and lines of plain colours over them.
Image paintedTexture(Size size, unsigned seed, int shapes, double contrast)
{
    cv::RNG random(seed);
    cv::Mat painted(size.height, size.width, CV_32FC3, cv::Scalar::all(0.4));
    for (int cell = std::max(size.width / 4, 8); cell >= 2 * fineness; cell /= 2) {
        const cv::Size coarse(size.width / cell + 3, size.height / cell + 3);
        cv::Mat light(coarse, CV_32F), hue(coarse, CV_32FC3), cloud;
        random.fill(light, cv::RNG::UNIFORM, -0.08 * contrast, 0.08 * contrast);
        random.fill(hue, cv::RNG::UNIFORM, -0.02 * contrast, 0.02 * contrast);
        cv::cvtColor(light, cloud, cv::COLOR_GRAY2RGB);
        cv::resize(cloud + hue, cloud, painted.size(), 0, 0, cv::INTER_CUBIC);
        painted += cloud;
    }
    for (int i = 0; i < shapes; ++i) {
        const cv::Point at(random.uniform(0, size.width), random.uniform(0, size.height));
        const int extent = random.uniform(size.width / 60 + 4, size.width / 14 + 8);
        const cv::Scalar color = randomColor(random, 0.42 - 0.36 * contrast, 0.42 + 0.36 * contrast);
        if (i % 3 == 0)
            cv::rectangle(painted, {at.x, at.y, extent, extent * 2 / 3 + 1}, color, cv::FILLED);
        else if (i % 3 == 1)
            cv::circle(painted, at, extent / 2, color, cv::FILLED);
        else
            cv::line(painted, at, at + cv::Point(extent, random.uniform(-extent, extent)), color, fineness + 2);
    }
    cv::min(cv::max(painted, 0.03), 0.8, painted);
    Image texture(size, 3);
    std::copy_n(painted.ptr<float>(), texture.values.size(), texture.values.begin());
    return texture;
}

// A frame round the surface's edge, for the eye.
void paintBorder(Image& texture)
{
    cv::Mat view(texture.size.height, texture.size.width, CV_32FC3, texture.values.data());
    const int width = texture.size.width / 40 + 1;
    cv::rectangle(view, {width / 2, width / 2, view.cols - width, view.rows - width}, {0.78, 0.72, 0.6}, width);
}

void addSample(float* sum, const Image& texture, double x, double y)
{
    x = std::clamp(x - 0.5, 0.0, texture.size.width - 1.001);
    y = std::clamp(y - 0.5, 0.0, texture.size.height - 1.001);
    const auto left = int(x), top = int(y);
    const auto right = float(x - left), below = float(y - top);
    const float *a = texture.at(left, top), *b = texture.at(left, top + 1);
    for (int channel = 0; channel < 3; ++channel)
        sum[channel] += (a[channel] * (1 - right) + a[channel + 3] * right) * (1 - below) +
                        (b[channel] * (1 - right) + b[channel + 3] * right) * below;
}

struct Box
{
    double left, top, right, bottom;

    bool touches(int x, int y) const { return x + 1 >= left && x <= right && y + 1 >= top && y <= bottom; }
};

Box boxAround(const std::array<Point, 4>& corners)
{
    Box box{corners[0].x, corners[0].y, corners[0].x, corners[0].y};
    for (const Point corner : corners)
        box = {std::min(box.left, corner.x), std::min(box.top, corner.y), std::max(box.right, corner.x),
               std::max(box.bottom, corner.y)};
    return box;
}

Matrix rotation(double yaw, double pitch, double roll)
{
    const double a = std::cos(yaw), b = std::sin(yaw), c = std::cos(pitch), d = std::sin(pitch), e = std::cos(roll),
                 f = std::sin(roll);
    const Matrix aboutY{{a, 0, b, 0, 1, 0, -b, 0, a}}, aboutX{{1, 0, 0, 0, c, -d, 0, d, c}},
        aboutZ{{e, -f, 0, f, e, 0, 0, 0, 1}};
    return aboutZ * aboutX * aboutY;
}

} // namespace

MadeFootage::MadeFootage(const FootageOptions& options) : m_options(options)
{
    if (options.size.width < 16 || options.size.height < 16)
        throw std::invalid_argument("footage must be at least 16 x 16 pixels large");
    if (options.frames < 1)
        throw std::invalid_argument("footage must have at least one frame");
    if (!(options.noise >= 0 && options.blur >= 0 && std::isfinite(options.noise) && options.blur < 100 &&
          std::isfinite(options.brightness) && std::isfinite(options.motion) && std::isfinite(options.leaving)))
        throw std::invalid_argument("noise and blur must not be below 0, and all options must be finite");
    m_surface = {options.size.width * 2 / 5, options.size.height * 9 / 20};
    m_texture = paintedTexture({m_surface.width * fineness, m_surface.height * fineness}, options.seed * 2 + 1, 130, 1);
    paintBorder(m_texture);
    m_background =
        paintedTexture({options.size.width * 3 / 2, options.size.height * 3 / 2}, options.seed * 2 + 2, 60, 0.6);
}

Matrix MadeFootage::placed(int index) const
{
    const double t = m_options.frames > 1 ? double(index) / (m_options.frames - 1) : 0, go = m_options.motion;
    const double width = m_options.size.width, height = m_options.size.height, focal = 1.1 * width;
    const double yaw = go * 0.75 * std::sin(2 * pi * t), pitch = go * 0.4 * std::sin(3 * pi * t),
                 roll = go * 0.5 * std::sin(1.5 * pi * t);
    const double away = 0.28 * m_options.leaving * go * (1 - std::cos(2 * pi * t));
    const double x = width * (go * 0.16 * std::sin(2 * pi * t + 0.5) - away);
    const double y = height * go * 0.12 * std::sin(4 * pi * t);
    const double z = focal * (1 + go * 0.18 * std::sin(2.5 * pi * t));

    const Matrix turn = rotation(yaw, pitch, roll);
    const Matrix camera{{focal, 0, width / 2, 0, focal, height / 2, 0, 0, 1}};
    const Matrix pose{{turn(0, 0), turn(0, 1), x, turn(1, 0), turn(1, 1), y, turn(2, 0), turn(2, 1), z}};
    Matrix whole = camera * pose * Matrix::translation(-m_surface.width / 2.0, -m_surface.height / 2.0);
    for (double& value : whole.values)
        value /= z;
    return whole;
}

std::array<Point, 4> MadeFootage::corners(int index) const
{
    const Matrix toFrame = placed(index);
    const double right = m_surface.width, bottom = m_surface.height;
    return {toFrame.map({0, 0}), toFrame.map({right, 0}), toFrame.map({right, bottom}), toFrame.map({0, bottom})};
}

Matrix MadeFootage::motion(int index) const { return placed(index) * placed(0).inverse(); }

Outline MadeFootage::occluder(int index) const
{
    const double t = m_options.frames > 1 ? double(index) / (m_options.frames - 1) : 0;
    const double width = m_options.size.width, height = m_options.size.height;
    const double left = width * (0.05 + 0.9 * t), right = left + width * 0.06;
    return {{left, height * 0.2, 0}, {right, height * 0.2, 0}, {right, height, 0}, {left, height, 0}};
}

// What the lens sees, before it blurs.
Image MadeFootage::scene(int index) const
{
    const Size size = m_options.size;
    const Matrix toSurface = placed(index).inverse();
    const double drift = m_options.motion * 0.25 * size.width * index / std::max(m_options.frames - 1, 1);
    const Box box = boxAround(corners(index));
    Image image(size, 3);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            float* pixel = image.at(x, y);
            if (!box.touches(x, y)) {
                addSample(pixel, m_background, x + 0.5 + drift, y + 0.5);
                continue;
            }
            for (int sample = 0; sample < fineness * fineness; ++sample) {
                const double sx = x + (sample % fineness + 0.5) / fineness;
                const double sy = y + (double(sample / fineness) + 0.5) / fineness;
                const Point at = toSurface.map({sx, sy});
                if (at.x >= 0 && at.y >= 0 && at.x < m_surface.width && at.y < m_surface.height)
                    addSample(pixel, m_texture, at.x * fineness, at.y * fineness);
                else
                    addSample(pixel, m_background, sx + drift, sy);
            }
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] /= fineness * fineness;
        }
    return image;
}

void MadeFootage::coverWithBar(Image& image, int index) const
{
    const Outline bar = occluder(index);
    const auto column = [&](double x) { return std::clamp(int(std::lround(x)), 0, image.size.width); };
    for (int y = int(std::lround(bar[0].y)); y < image.size.height; ++y)
        std::fill(image.at(column(bar[0].x), y), image.at(column(bar[1].x), y), 0.3f + 0.2f * float((y / 16) % 2));
}

Image MadeFootage::frame(int index) const
{
    Image image = scene(index);
    if (m_options.occluder)
        coverWithBar(image, index);
    cv::Mat view(image.size.height, image.size.width, CV_32FC3, image.values.data());
    if (m_options.blur > 0)
        cv::GaussianBlur(view, view, {}, m_options.blur);
    view *= 1 + m_options.brightness * index / std::max(m_options.frames - 1, 1);
    if (m_options.noise > 0) {
        cv::RNG random(m_options.seed * 7919u + unsigned(index) + 1);
        cv::Mat grain(view.size(), view.type());
        random.fill(grain, cv::RNG::NORMAL, 0, m_options.noise);
        view += grain;
    }
    cv::min(cv::max(view, 0), 1, view);
    return image;
}

} // namespace pixels
