// What the tests of the pixel library share: a folder that goes with the test, and pictures to put into it.
#pragma once

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <pixels_loader.h>
#include <random>

class Folder
{
public:
    Folder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "pixels-XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string operator/(const std::string& name) const { return (m_path / name).string(); }
    const std::filesystem::path& path() const { return m_path; }
    std::size_t fileCount() const
    {
        return std::size_t(std::distance(std::filesystem::directory_iterator(m_path), {}));
    }

private:
    std::filesystem::path m_path;
};

// Smooth, different in every pixel and channel, within 0 to 1.
inline pixels::Image gradient(pixels::Size size, int channels, double phase = 0)
{
    pixels::Image image(size, channels);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            for (int channel = 0; channel < channels; ++channel)
                image.at(x, y)[channel] =
                    float(0.5 + 0.4 * std::sin(0.11 * x + 0.07 * y * (channel + 1) + channel + phase));
    return image;
}

// Grain that no compression makes small.
inline pixels::Image grain(pixels::Size size, int channels, unsigned seed = 1)
{
    std::mt19937 random(seed);
    pixels::Image image(size, channels);
    for (float& value : image.values)
        value = float(random() % 256) / 255.0f;
    return image;
}

inline double largestDifference(const pixels::Image& a, const pixels::Image& b)
{
    if (a.size != b.size || a.channels != b.channels)
        return INFINITY;
    double largest = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        largest = std::max(largest, double(std::abs(a.values[i] - b.values[i])));
    return largest;
}

// The text of the Error that `action` throws, or nothing.
template <class Error, class Action>
std::string errorOf(const Action& action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return "";
}

// Use with EXPECT_TRUE.
inline testing::AssertionResult contains(const std::string& text, const std::string& part)
{
    if (text.find(part) != std::string::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "'" << part << "' is not in '" << text << "'";
}
