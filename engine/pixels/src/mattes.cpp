// Combines mattes, and lays paint over a picture through them.

#include "arguments.h"
#include "frame_pyramid.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

namespace pixels {

void Library::unite(Image& matte, const Image& other)
{
    if (matte.empty()) {
        matte = other;
        return;
    }
    checkMask(other, matte.size, "a matte");
    std::transform(matte.values.begin(), matte.values.end(), other.values.begin(), matte.values.begin(),
                   [](float a, float b) { return std::max(a, b); });
}

void Library::cutOut(Image& matte, const Image& hidden)
{
    if (hidden.empty())
        return;
    checkMask(hidden, matte.size, "a matte");
    std::transform(matte.values.begin(), matte.values.end(), hidden.values.begin(), matte.values.begin(),
                   [](float kept, float covered) { return kept * (1 - covered); });
}

Image Library::withMargin(const Image& matte, int margin)
{
    checkMask(matte, matte.size, "a matte");
    Image grown(matte.size, 1);
    cv::Mat touched, view = viewOf(grown);
    cv::Mat(viewOf(matte) > 0).convertTo(touched, CV_32F, 1 / 255.0);
    const cv::Size disc(2 * margin + 1, 2 * margin + 1);
    cv::dilate(touched, touched, cv::getStructuringElement(cv::MORPH_ELLIPSE, disc));
    cv::blur(touched, view, {3, 3});
    return grown;
}

void Library::blend(Image& picture, const Image& matte, const std::vector<float>& paint, float opacity, Blend mode)
{
    checkImage(picture, "the picture");
    checkMask(matte, picture.size, "the matte");
    const std::size_t channels = paint.size();
    if (channels != std::size_t(picture.channels))
        throw std::invalid_argument("the paint and the picture differ in their channels");
    float* out = picture.values.data();
    for (const float covered : matte.values) {
        const float part = covered * opacity;
        const float kept = mode == Blend::Intersect ? part : 1 - part;
        if (mode != Blend::Add) {
            for (std::size_t i = 0; i < channels; ++i)
                out[i] *= kept;
        } else if (part > 0) {
            for (std::size_t i = 0; i < channels; ++i)
                out[i] = out[i] * kept + paint[i] * part;
        }
        out += channels;
    }
}

} // namespace pixels
