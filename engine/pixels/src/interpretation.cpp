// The log curves. A scan's code values stand for printing density, 0.002 per step of 1023, on a negative of gamma 0.6:
// G. Kennel, "Conversion of 10-bit log film data to 8-bit linear or video data for the Cineon digital film system",
// 1995, which also gives the soft clip. The curve of Panalog is the published one: 444 steps per decade, white at 681
// and black at 64.

#include "interpretation.h"

#include "light.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace pixels {
namespace {

constexpr double highestCode = 1023;
constexpr double densityPerCode = 0.002;
constexpr double negativeGamma = 0.6;

// std::pow is many times as slow where its base is 10.
double powerOfTen(double exponent) { return std::exp(exponent * 2.302585092994045684); }

class LogCurve
{
public:
    explicit LogCurve(const Interpretation& in)
        : m_offset(in.offset), m_white(in.referenceWhite), m_exponent(densityPerCode / negativeGamma * in.gamma),
          m_gain(1 / (1 - powerOfTen((in.referenceBlack - m_white) * m_exponent))), m_softclip(in.softclip),
          m_knee(m_white - in.softclip), m_light(straight(m_knee))
    {}

    double operator()(double value) const
    {
        const double code = value * highestCode;
        if (m_softclip <= 0 || code <= m_knee)
            return straight(code) + m_offset;
        // Above the knee a power curve leads to 1 at five times the soft clip.
        return m_light + std::pow((code - m_knee) / (5.0 * m_softclip), m_softclip / 100) * (1 - m_light) + m_offset;
    }

    // The value that the curve takes to `value`, or the nearest that a file can hold.
    double inverse(double value) const
    {
        const double light = value - m_offset;
        if (m_softclip > 0 && light > m_light)
            return (m_knee + 5.0 * m_softclip * std::pow((light - m_light) / (1 - m_light), 100 / m_softclip)) /
                   highestCode;
        const double power = std::max((light + m_gain - 1) / m_gain, powerOfTen(-m_white * m_exponent));
        return (m_white + std::log10(power) / m_exponent) / highestCode;
    }

private:
    double straight(double code) const { return powerOfTen((code - m_white) * m_exponent) * m_gain - (m_gain - 1); }

    double m_offset, m_white, m_exponent, m_gain, m_softclip, m_knee;
    double m_light; // at the knee
};

class PanalogCurve
{
public:
    double operator()(double value) const
    {
        return (powerOfTen((value * highestCode - white) / codesPerDecade) - m_black) / (1 - m_black);
    }
    double inverse(double value) const
    {
        const double power = std::max(value * (1 - m_black) + m_black, powerOfTen(-white / codesPerDecade));
        return (white + std::log10(power) * codesPerDecade) / highestCode;
    }

private:
    static constexpr double white = 681, black = 64, codesPerDecade = 444;
    double m_black = powerOfTen((black - white) / codesPerDecade);
};

float roundTo8Bit(float value) { return std::round(std::clamp(value, 0.0f, 1.0f) * 255.0f) / 255.0f; }

std::function<double(double)> curveOf(const Interpretation& in)
{
    if (in.colorspace == Colorspace::Log)
        return LogCurve(in);
    if (in.colorspace == Colorspace::Panalog)
        return PanalogCurve();
    return [](double value) { return value; };
}

// Of a large frame, read from a table: between its entries, as close as the values of a 16 bit file, the curve is as
// good as straight.
class Conversions
{
public:
    Conversions(const Interpretation& in, std::size_t uses)
        : m_curve(curveOf(in)), m_to8Bit(in.conversion == Conversion::EightBit)
    {
        if (uses < 2 * highest)
            return;
        m_table.resize(highest + 2);
        for (std::size_t i = 0; i < m_table.size(); ++i)
            m_table[i] = float(m_curve(double(i) / highest));
    }

    float operator()(float value) const
    {
        const float linear = m_table.empty() || !(value >= 0 && value <= 1) ? float(m_curve(value)) : tabled(value);
        return m_to8Bit ? roundTo8Bit(linear) : linear;
    }

private:
    static constexpr std::size_t highest = 65535;

    float tabled(float value) const
    {
        const float place = value * highest;
        const auto index = std::size_t(place);
        return m_table[index] + (place - float(index)) * (m_table[index + 1] - m_table[index]);
    }

    std::function<double(double)> m_curve;
    bool m_to8Bit;
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
    if (in.softclip < 0 || in.softclip >= in.referenceWhite - in.referenceBlack)
        throw std::invalid_argument(
            "the soft clip of the colour parameters is not between 0 and the distance from black to white");
}

void interpret(Image& image, const Interpretation& interpretation)
{
    if (interpretation.conversion == Conversion::None)
        return;
    if (interpretation.colorspace == Colorspace::Linear && interpretation.conversion == Conversion::Float)
        return;
    const Conversions conversions(interpretation, image.values.size());
    mapColors(image, std::cref(conversions));
}

void encode(Image& image, const Interpretation& interpretation)
{
    if (interpretation.conversion == Conversion::None || interpretation.colorspace == Colorspace::Linear)
        return;
    const auto through = [&image](const auto& curve) {
        mapColors(image, [&curve](float value) { return float(curve.inverse(value)); });
    };
    if (interpretation.colorspace == Colorspace::Log)
        through(LogCurve(interpretation));
    else
        through(PanalogCurve());
}

} // namespace pixels
