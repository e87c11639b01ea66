// What long operations work on while the model goes on changing: the shapes and tracks of layers over a run of frames,
// taken under the lock and read without it.
#pragma once

#include <QString>
#include <engine/stratum/curve.h>
#include <engine/stratum/tree.h>
#include <fundo/colour.h>
#include <fundo/lum_matrix33.h>
#include <memory>
#include <vector>

namespace Stratum {

// A layer at one frame. Curves that are the same as in the frame before are shared with it.
struct LayerFrame
{
    std::vector<std::shared_ptr<const Curve>> contours; // as drawn: not moved by the track
    Lum_Matrix33 transform;                             // from the in point to this frame
    double opacity = 1;                                 // the group's included
    int blendMode = 0;                                  // VX_BlendMode
};

struct LayerSnapshot
{
    const LayerModel* layer = nullptr; // lives as long as the manager; to be read under the lock only
    unsigned int id = 0;
    QString name;
    Fundo::Colour3<float> matteColor{1, 1, 1};
    bool shown = true; // visible, and not hidden by its group
    unsigned int inPoint = 0;
    unsigned int outPoint = 0;
    int motionModel = 0; // TrackModel, at the in point
    unsigned int clip = 0;
    bool linked = false; // follows another layer's track
    int firstFrame = 0;
    std::vector<LayerFrame> frames; // firstFrame and on

    const LayerFrame& frame(int number) const { return frames.at(static_cast<std::size_t>(number - firstFrame)); }
};

// The lock is held. The view is resolved; frames are indexes of the project, both included.
LayerSnapshot snapshot(const LayerModel& layer, int firstFrame, int lastFrame, int view);

// The shape of a layer at one frame as polygons, not moved by the track.
std::vector<std::vector<CurveVertex>> outlines(const LayerFrame& frame, double tolerance = flatteningTolerance);

} // namespace Stratum
