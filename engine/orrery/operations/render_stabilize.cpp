// Stabilizing: the motion of one layer undone.

#include "render_scene.h"
#include "shape_rendering.h"

#include <engine/errors/message.h>
#include <engine/sequences/pixel_access.h>

using namespace orrery;

VX::IClip* RenderStabilizeOperation::onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers,
                                              View view)
{
    // The first of those that were given, which is not the lowest of them.
    const RenderScene scene(manager, first, last, layers.mid(0, 1), view, false);
    const Stratum::LayerSnapshot& layer = scene.layers.front();
    return renderFrames(scene, presentWatcher(get_progress_watcher()), text("Stabilizing"), "stabilize",
                        [&](int frame) {
                            const pixels::SharedImage image = scene.footage->read(frame);
                            const pixels::Matrix motion = matrixOf(layer.frame(frame).transform);
                            return withPixels(text("Frame %1", frame), [&](pixels::Library& library) {
                                return library.warp(*image, motion.inverse(), image->size);
                            });
                        });
}
