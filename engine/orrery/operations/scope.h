// What tracking, rendering and exporting a project have in common: only one of them runs at a time, and each selects
// its layers, views and footage alike.
#pragma once

#include <QVector>
#include <engine/clips/model.h>
#include <engine/project/data.h>
#include <engine/stratum/snapshot.h>
#include <orrery/layer.h>
#include <vector>

namespace orrery {

// While one exists, constructing another for the same project throws STRM_OperationInProgress.
class BusyProject
{
public:
    explicit BusyProject(Project::Data& project);
    BusyProject(const BusyProject&) = delete;
    BusyProject& operator=(const BusyProject&) = delete;
    ~BusyProject() { *m_busy = false; }

private:
    const std::shared_ptr<std::atomic<bool>> m_busy;
};

// STRM_BadState when the project is gone, as it may be after a report.
void requireOpen(const STRM_ProjectManager& manager);

// The given layers, each once, from the bottom of the drawing order to its top; when none are given, all that are
// visible. STRM_BadArgument for a null handle and for a layer of another project. With the lock held, which keeps them
// present.
std::vector<const Stratum::LayerModel*> selectLayers(const Stratum::Model& project, const QVector<Layer>& layers);

// The same as snapshots over the frames in a view. Takes the lock.
std::vector<Stratum::LayerSnapshot> snapshotLayers(STRM_ProjectManager& manager, const QVector<Layer>& layers,
                                                   int first, int last, int view);

// Each once, in the given order; with the lock held. STRM_OutOfRange.
std::vector<int> resolveViews(const Stratum::Model& project, const QVector<View>& views);

// The model of the project's clip with that id, or null, as of footageClip().
ClipModel* clipModel(const Stratum::Model& project, unsigned int id);

// The clip that the first of the layers is tracked on that has one, else the project's default trackable clip: it tells
// the size of a frame. Null when there is none. With the lock held; the model stays good without it.
ClipModel* footageClip(const Stratum::Model& project, const std::vector<const Stratum::LayerModel*>& layers);

} // namespace orrery
