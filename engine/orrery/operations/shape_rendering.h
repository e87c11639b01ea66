// Draws the shapes of layers: mattes of single layers, and pictures of several in their drawing order.
#pragma once

#include <engine/pixels/pixels.h>
#include <engine/stratum/snapshot.h>
#include <orrery/enumerations.h>
#include <vector>

namespace orrery {

pixels::Matrix matrixOf(const Lum_Matrix33& matrix);

// Whether the layer is drawn in that frame: it has shapes there and its in point is not later.
bool isDrawn(const Stratum::LayerSnapshot& layer, int frame);

// The part of each pixel that the layer covers, opacity left out. A contour inside another cuts a hole.
pixels::Image matteOf(const Stratum::LayerFrame& frame, pixels::Size size);

// The same moved by another transform than the layer's own.
pixels::Image matteOf(const Stratum::LayerFrame& frame, pixels::Size size, const Lum_Matrix33& transform);

// The layers, bottom first, laid over one another: red, green, blue times coverage, and coverage. A layer that is
// blended by subtraction takes away from what is below, one that intersects leaves of it only what it covers itself.
pixels::Image colorPicture(const std::vector<Stratum::LayerSnapshot>& layers, int frame, pixels::Size size);

// As an export writes it: one channel of coverage or of a grey per layer, or three of colour.
pixels::Image shapePicture(const std::vector<Stratum::LayerSnapshot>& layers, int frame, pixels::Size size,
                           ColorizeOutput colorize);

} // namespace orrery
