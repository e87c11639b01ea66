// Other ways of following a plane, made of OpenCV's own calls as their documentation shows them. What the tracker is
// compared with.
#pragma once

#include <memory>
#include <optional>
#include <pixels_loader.h>
#include <string>

class Peer
{
public:
    virtual ~Peer() = default;

    // From the reference frame to this one; nothing where the peer itself says that it is lost.
    virtual std::optional<pixels::Matrix> advance(const pixels::Image& frame) = 0;
};

// Enhanced correlation coefficient: three levels, each frame started from the one before, the reference cut to the
// region's box.
std::unique_ptr<Peer> eccAlone(const pixels::Image& reference, const pixels::Image& region);

// SIFT features of the region found in each frame by the ratio test, and a homography by RANSAC.
std::unique_ptr<Peer> siftAlone(const pixels::Image& reference, const pixels::Image& region);

// Corners followed from frame to frame by pyramidal Lucas and Kanade, forwards and back, and a homography by RANSAC
// from where they were in the reference; new ones are taken up where they become few.
std::unique_ptr<Peer> kltAlone(const pixels::Image& reference, const pixels::Image& region);
