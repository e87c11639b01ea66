// What the render operations work on, and the sequence that they write: a snapshot of layers and footage, and a folder
// of its own below the project's output folder.
#pragma once

#include <engine/clips/footage.h>
#include <engine/operations/progress.h>
#include <engine/pixels/pixels.h>
#include <engine/stratum/snapshot.h>
#include <functional>
#include <memory>
#include <orrery/render_operation.h>
#include <vector>

namespace orrery {

// The project's "render" parameters at a frame.
struct RenderValues
{
    float insertOpacity = 1;
    int fillAlgorithm = 0;
    int removeSource = 0;
    int illumination = 0;
    int luminance = 0;
};

class RenderScene
{
public:
    // Frames `first` to `last` are rendered; with `around` the layers and the footage are there for the frames
    // before and after as well. STRM_BadState when no layer is given, no clip shows them, or there is no output folder.
    RenderScene(STRM_ProjectManager& manager, int first, int last, const QVector<Layer>& layers, View view,
                bool around);

    int first;
    int last;
    int view;
    int firstNumber; // that the file of frame 0 has
    int reachFirst;  // of layers and footage
    int reachLast;
    QString outputFolder;
    std::vector<Stratum::LayerSnapshot> layers; // bottom first
    using Planes = std::vector<Stratum::LayerSnapshot>;
    std::vector<Planes> planes; // with `around`: of each layer, what moves as the planes behind it do, nearest first
    std::vector<RenderValues> values; // from `first` on
    std::unique_ptr<const Footage> footage;

    unsigned int number(int frame) const { return static_cast<unsigned int>(frame + firstNumber); }
    const RenderValues& valuesAt(int frame) const { return values.at(static_cast<std::size_t>(frame - first)); }
};

// What onRender returns: the sequence, which is removed again unless it is kept.
class RenderedClip : public VX::IClip
{
public:
    RenderedClip(QString title, Stream stream, int first, int view, pixels::Size size, const ColorSettings& color)
        : title(std::move(title)), stream(std::move(stream)), first(first), view(view), size(size), color(color)
    {}
    ~RenderedClip() override;

    void keep() { m_kept = true; }

    const QString title;
    const Stream stream;
    const int first; // the frame that shows its first file
    const int view;
    const pixels::Size size;
    const ColorSettings color;

private:
    bool m_kept = false;
};

// For the operation that reports to the watcher: has every frame made, on all cores, and writes it in the footage's
// format and depth. `name` begins the names of the folder and the files.
VX::IClip* renderFrames(const RenderScene& scene, ProgressWatcher& watcher, const QString& title, const char* name,
                        const std::function<pixels::Image(int frame)>& make);

} // namespace orrery
