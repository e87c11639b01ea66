// Removing: what the layers cover is filled with what other frames show there, seen as the plane behind the layer
// moves; and where no frame shows it, with its surroundings.

#include "render_scene.h"
#include "shape_rendering.h"

#include <algorithm>
#include <engine/errors/message.h>
#include <engine/sequences/pixel_access.h>
#include <stratum/enumerations.h>

namespace orrery {
namespace {

constexpr double enough = 1e-6; // of the region may stay to be filled from around
constexpr std::size_t blended = 8;
constexpr int margin = 2; // pixels around a shape that show the object's edge as well

static_assert(static_cast<int>(pixels::LightModel::GainAndOffset) == VX_ILLUMINATION_GAIN_OFFSET &&
                  static_cast<int>(pixels::Luminance::Maximum) == VX_LUMINANCE_MAXIMUM,
              "one enumeration is cast to the other");

pixels::Image matteIn(const Stratum::LayerSnapshot& layer, int frame, pixels::Size size)
{
    return isDrawn(layer, frame) ? matteOf(layer.frame(frame), size) : pixels::Image(size, 1);
}

// What all the layers cover in a frame.
pixels::Image coveredBy(const RenderScene& scene, int frame, pixels::Size size, pixels::Library& library)
{
    pixels::Image covered(size, 1);
    for (const Stratum::LayerSnapshot& layer : scene.layers)
        if (isDrawn(layer, frame))
            library.unite(covered, library.withMargin(matteOf(layer.frame(frame), size), margin));
    return covered;
}

// Frames to fill from, nearest first: every one close by, and further away ever fewer, since what a frame does not show
// its neighbours rarely do.
std::vector<int> sources(const RenderScene& scene, int frame)
{
    const int mode = scene.valuesAt(frame).removeSource;
    std::vector<int> frames;
    for (int distance = 1; distance <= scene.reachLast - scene.reachFirst; distance += std::max(1, distance / 4))
        for (const int source : {frame - distance, frame + distance}) {
            const bool wanted = mode == VX_REMOVESOURCE_BOTH || (source < frame) == (mode == VX_REMOVESOURCE_BEFORE);
            if (wanted && source >= scene.reachFirst && source <= scene.reachLast && scene.footage->has(source))
                frames.push_back(source);
        }
    return frames;
}

// A source frame, brought in line with the frame that is filled.
struct Source
{
    pixels::Image image;
    pixels::Image valid;
    pixels::Matrix transform; // from the source to the frame
};

// Fills one frame; used for one frame only.
class Removal
{
public:
    Removal(const RenderScene& scene, int frame, pixels::Library& library)
        : m_scene(scene), m_frame(frame), m_library(library), m_image(*scene.footage->read(frame)),
          m_covered(coveredBy(scene, frame, m_image.size, library))
    {}

    pixels::Image run()
    {
        for (std::size_t i = 0; i < m_scene.layers.size(); ++i)
            if (isDrawn(m_scene.layers[i], m_frame))
                fill(m_scene.layers[i], m_scene.planes[i]);
        return std::move(m_image);
    }

private:
    // Through the nearest plane, and where only one further away is seen, which the shapes say, through that. Where
    // they meet, the further one is laid over the nearest.
    void fill(const Stratum::LayerSnapshot& layer, const RenderScene::Planes& planes)
    {
        const pixels::Image missing = m_library.withMargin(matteOf(layer.frame(m_frame), m_image.size), margin);
        pixels::Image left = missing, nearer(m_image.size, 1);
        std::vector<pixels::Image> seen(planes.size());
        for (std::size_t i = 1; i < planes.size(); ++i) {
            m_library.unite(nearer, matteIn(planes[i - 1], m_frame, m_image.size));
            seen[i] = matteIn(planes[i], m_frame, m_image.size);
            pixels::Image alone = seen[i];
            m_library.cutOut(alone, m_library.withMargin(nearer, 1));
            m_library.cutOut(left, alone);
            m_library.cutOut(seen[i], nearer);
        }
        fillThrough(planes, 0, left);
        for (std::size_t i = 1; i < planes.size(); ++i) {
            pixels::Image here = missing;
            m_library.blend(here, seen[i], {1}, 1, pixels::Blend::Intersect);
            m_library.cutOut(left, here);
            fillThrough(planes, i, here);
            m_library.unite(left, here);
        }
        m_library.fillFromSurroundings(m_image, left);
    }

    // What no frame shows stays in `missing`.
    void fillThrough(const RenderScene::Planes& planes, std::size_t plane, pixels::Image& missing)
    {
        if (m_scene.valuesAt(m_frame).fillAlgorithm == VX_FILL_BLEND_FRAMES)
            return fillWithMean(planes, plane, missing);
        for (const int source : sources(m_scene, m_frame)) {
            const Source from = sourceAt(planes, plane, source);
            if (m_library.fill(m_image, missing, from.image, from.transform, from.valid) < enough)
                break;
        }
    }

    // The mean of what the nearest frames that show a pixel show there.
    void fillWithMean(const RenderScene::Planes& planes, std::size_t plane, pixels::Image& missing)
    {
        pixels::Image sum(m_image.size, m_image.channels), count(m_image.size, 1);
        std::size_t used = 0;
        for (const int source : sources(m_scene, m_frame)) {
            const Source from = sourceAt(planes, plane, source);
            if (m_library.gather(sum, count, missing, from.image, from.transform, from.valid) && ++used == blended)
                break;
        }
        m_library.fillWithMean(m_image, missing, sum, count);
    }

    // A source shows a plane where neither a layer that is removed nor a nearer plane is before it.
    Source sourceAt(const RenderScene::Planes& planes, std::size_t which, int frame)
    {
        const Stratum::LayerSnapshot& plane = planes[which];
        Source source{m_library.withChannels(*m_scene.footage->read(frame), m_image.channels), {}, {}};
        source.valid = pixels::Image(source.image.size, 1, 1);
        m_library.cutOut(source.valid, coveredBy(m_scene, frame, source.image.size, m_library));
        for (std::size_t i = 0; i < which; ++i)
            m_library.cutOut(source.valid, m_library.withMargin(matteIn(planes[i], frame, source.image.size), margin));
        source.transform = matrixOf(plane.frame(m_frame).transform) * matrixOf(plane.frame(frame).transform).inverse();
        const RenderValues& values = m_scene.valuesAt(m_frame);
        m_library.matchLight(source.image, source.valid, source.transform, m_image, m_covered,
                             static_cast<pixels::LightModel>(values.illumination),
                             static_cast<pixels::Luminance>(values.luminance));
        return source;
    }

    const RenderScene& m_scene;
    const int m_frame;
    pixels::Library& m_library;
    pixels::Image m_image;
    const pixels::Image m_covered;
};

} // namespace
} // namespace orrery

using namespace orrery;

VX::IClip* RenderRemoveOperation::onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers,
                                           View view)
{
    const RenderScene scene(manager, first, last, layers, view, true);
    return renderFrames(scene, presentWatcher(get_progress_watcher()), text("Removing"), "remove", [&scene](int frame) {
        return withPixels(text("Frame %1", frame),
                          [&](pixels::Library& library) { return Removal(scene, frame, library).run(); });
    });
}
