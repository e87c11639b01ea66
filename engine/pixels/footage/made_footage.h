// Footage made on the spot: a textured flat surface that moves, turns and tilts before a background, with the place of
// its corners known exactly in every frame. For tests, benchmarks and demonstrations.
#pragma once

#include <engine/pixels/pixels.h>

namespace pixels {

struct FootageOptions
{
    Size size{960, 540};
    int frames = 100;
    double noise = 0.01;     // standard deviation, of values from 0 to 1
    double blur = 0.7;       // of the lens, standard deviation in pixels
    double brightness = 0.2; // the light changes by this part of it from the first frame to the last
    double motion = 1;       // how far the surface moves, turns and tilts; 0: it stands still
    double leaving = 0;      // about this part of the surface leaves the view and comes back
    bool occluder = false;   // a bar passes in front of the surface
    unsigned seed = 1;
};

class MadeFootage
{
public:
    explicit MadeFootage(const FootageOptions& options); // throws std::invalid_argument

    const FootageOptions& options() const { return m_options; }

    // Frames count from 0.
    Image frame(int index) const;

    // Of the surface, clockwise from the top left.
    std::array<Point, 4> corners(int index) const;

    // From the first frame to another: what a tracker of the surface should find.
    Matrix motion(int index) const;

    // The occluding bar, for a mask of what hides the surface.
    Outline occluder(int index) const;

private:
    Matrix placed(int index) const; // from the surface (its own pixels) to the frame
    Image scene(int index) const;
    void coverWithBar(Image& image, int index) const;

    FootageOptions m_options;
    Size m_surface; // in pixels of a frame in which it is seen straight on
    Image m_texture;
    Image m_background;
};

} // namespace pixels
