// Inserting: the layers' matte colours over the footage.

#include "render_scene.h"
#include "shape_rendering.h"

#include <engine/errors/message.h>

namespace orrery {
namespace {

// Lays a picture of colour times coverage and coverage over an image of one, three or four channels.
void layOver(pixels::Image& image, const pixels::Image& picture, float opacity)
{
    float* out = image.values.data();
    for (const float* in = picture.values.data(); in != picture.values.data() + picture.values.size(); in += 4) {
        const float covered = in[3] * opacity;
        const float grey = 0.2126f * in[0] + 0.7152f * in[1] + 0.0722f * in[2];
        const float over[] = {image.channels == 1 ? grey : in[0], in[1], in[2], in[3]};
        for (int channel = 0; channel < image.channels; ++channel)
            out[channel] = out[channel] * (1 - covered) + over[channel] * opacity;
        out += image.channels;
    }
}

} // namespace
} // namespace orrery

using namespace orrery;

VX::IClip* RenderInsertOperation::onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers,
                                           View view)
{
    const RenderScene scene(manager, first, last, layers, view, false);
    return renderFrames(
        scene, presentWatcher(get_progress_watcher()), text("Inserting"), "insert", [&scene](int frame) {
            pixels::Image image = *scene.footage->read(frame);
            layOver(image, colorPicture(scene.layers, frame, image.size), scene.valuesAt(frame).insertOpacity);
            return image;
        });
}
