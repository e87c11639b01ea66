// A photograph that moves over another one by known homographies, as a camera would record it: with grain, changing
// light and JPEG's compression.
#pragma once

#include "../measure.h"

#include <opencv2/core.hpp>

enum class Motion { Scale, Rotation, Perspective, MotionBlur, Bar, Leaving, Together };

constexpr std::array<const char*, 7> motionNames = {"scale", "rotation", "perspective", "blur",
                                                    "bar",   "leaving",  "together"};

struct Photographs
{
    cv::Mat object, background, occluder; // of 8 bits, in three channels
};

// Reads a photograph, cut and scaled to `size` pixels. Throws pixels::FileError.
cv::Mat readPhotograph(const std::string& path, pixels::Size size);

class Sequence
{
public:
    // The object fills two fifths of the view's width and nine twentieths of its height, seen straight on. Of the bar,
    // `barWidth` is the share of the object's width.
    Sequence(const Photographs& photographs, Motion motion, unsigned seed, pixels::Size size, int frames,
             double barWidth);

    static pixels::Size objectSize(pixels::Size view); // at the fineness that frames are drawn in
    static pixels::Size viewSize(pixels::Size view);   // likewise

    int frames() const { return m_frames; }
    std::array<pixels::Point, 4> corners(int frame) const;
    double inView(int frame) const; // the object's share
    pixels::Image frame(int index) const;

private:
    pixels::Matrix placed(double time) const; // from the object, which is 1 wide, to the view
    void drawObject(cv::Mat& view, double time) const;
    void drawBar(cv::Mat& view, double time) const;

    Photographs m_photographs;
    Motion m_motion;
    unsigned m_seed;
    pixels::Size m_size;
    int m_frames;
    double m_barWidth;
    double m_direction;           // -1 or 1
    std::array<double, 6> m_some; // what the seed decides, from 0 to 1
    WorkFolder m_folder;
};
