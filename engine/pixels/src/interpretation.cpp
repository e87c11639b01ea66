// The log curves. A scan's code values stand for printing density, 0.002 per step of 1023, on a negative of gamma 0.6:
// G. Kennel, "Conversion of 10-bit log film data to 8-bit linear or video data for the Cineon digital film system",
// 1995, which also gives the soft clip. The curve of Panalog is the published one: 444 steps per decade, white at 681
// and black at 64.

#include "interpretation.h"

#include <algorithm>
#include <cmath>

namespace pixels {
namespace {

constexpr double highestCode = 1023;
constexpr double densityPerCode = 0.002;
constexpr double negativeGamma = 0.6;

double logToLinear(double value, const Interpretation& in)
{
    const double exponent = densityPerCode / negativeGamma * in.gamma;
    const double white = in.referenceWhite;
    const auto light = [&](double code) { return std::pow(10.0, (code - white) * exponent); };
    const double gain = 1 / (1 - light(in.referenceBlack));
    const auto straight = [&](double code) { return light(code) * gain - (gain - 1); };

    const double code = value * highestCode + in.offset;
    const double knee = white - in.softclip;
    if (in.softclip <= 0 || code <= knee)
        return straight(code);
    // Above the knee a power curve leads to 1 at five times the soft clip.
    const double power = in.softclip / 100.0;
    const double start = straight(knee);
    return start + std::pow((code - knee) / (5.0 * in.softclip), power) * (1 - start);
}

double panalogToLinear(double value)
{
    constexpr double white = 681, black = 64, codesPerDecade = 444;
    const double blackLight = std::pow(10.0, (black - white) / codesPerDecade);
    return (std::pow(10.0, (value * highestCode - white) / codesPerDecade) - blackLight) / (1 - blackLight);
}

float roundTo8Bit(float value) { return std::round(std::clamp(value, 0.0f, 1.0f) * 255.0f) / 255.0f; }

// Powers cost; the values of 8 and 16 bit files are few.
class Curve
{
public:
    Curve(const Interpretation& interpretation, std::size_t uses) : m_interpretation(interpretation)
    {
        if (uses < 2 * (highest + 1))
            return;
        m_table.resize(highest + 1);
        for (std::size_t i = 0; i <= highest; ++i)
            m_table[i] = compute(static_cast<float>(i) / highest);
    }

    float operator()(float value) const
    {
        if (!m_table.empty() && value >= 0 && value <= 1) {
            const auto index = static_cast<std::size_t>(value * highest + 0.5f);
            if (static_cast<float>(index) / highest == value)
                return m_table[index];
        }
        return compute(value);
    }

private:
    static constexpr std::size_t highest = 65535;

    float compute(float value) const
    {
        const auto linear = static_cast<float>(toLinear(value, m_interpretation));
        return m_interpretation.conversion == Conversion::EightBit ? roundTo8Bit(linear) : linear;
    }

    Interpretation m_interpretation;
    std::vector<float> m_table;
};

} // namespace

void check(const Interpretation& in)
{
    const float numbers[] = {in.offset, in.softclip, in.referenceWhite, in.referenceBlack, in.gamma};
    if (!std::all_of(std::begin(numbers), std::end(numbers), [](float number) { return std::isfinite(number); }))
        throw std::invalid_argument("a number of the colour parameters is not finite");
    if (in.colorspace != Colorspace::Log || in.conversion == Conversion::None)
        return;
    if (in.referenceWhite <= in.referenceBlack)
        throw std::invalid_argument("the reference white of the colour parameters is not above the reference black");
    if (in.gamma <= 0)
        throw std::invalid_argument("the gamma of the colour parameters is not above 0");
    if (in.softclip < 0)
        throw std::invalid_argument("the soft clip of the colour parameters is below 0");
}

double toLinear(double value, const Interpretation& interpretation)
{
    switch (interpretation.colorspace) {
    case Colorspace::Log:
        return logToLinear(value, interpretation);
    case Colorspace::Panalog:
        return panalogToLinear(value);
    case Colorspace::Linear:
        break;
    }
    return value;
}

void interpret(Image& image, const Interpretation& interpretation)
{
    if (interpretation.conversion == Conversion::None)
        return;
    if (interpretation.colorspace == Colorspace::Linear && interpretation.conversion == Conversion::Float)
        return;
    const Curve curve(interpretation, image.values.size());
    const int colors = std::min(image.channels, 3);
    for (auto pixel = image.values.begin(); pixel != image.values.end(); pixel += image.channels)
        std::transform(pixel, pixel + colors, pixel, curve);
}

} // namespace pixels
