// Inserting: the layers' matte colours over the footage.

#include "render_scene.h"
#include "shape_rendering.h"

#include <engine/errors/message.h>
#include <engine/sequences/pixel_access.h>

using namespace orrery;

VX::IClip* RenderInsertOperation::onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers,
                                           View view)
{
    const RenderScene scene(manager, first, last, layers, view, false);
    return renderFrames(scene, presentWatcher(get_progress_watcher()), text("Inserting"), "insert",
                        [&scene](int frame) {
                            pixels::Image image = *scene.footage->read(frame);
                            const pixels::Image picture = colorPicture(scene.layers, frame, image.size);
                            withPixels(text("Frame %1", frame), [&](pixels::Library& library) {
                                library.layOver(image, picture, scene.valuesAt(frame).insertOpacity);
                            });
                            return image;
                        });
}
