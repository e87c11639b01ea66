// What Project::render makes of a project's layers.
#ifndef ORRERY_RENDER_OPERATION_H
#define ORRERY_RENDER_OPERATION_H

#include <QPointer>
#include <QVector>
#include <orrery/layer.h>
#include <orrery/sbk_cleaner.h>
#include <orrery/view.h>
#include <stratum/vx_clip.h>

class ProgressWatcher;

class RenderOperation : private SbkCleaner
{
public:
    virtual ~RenderOperation();

    // Reports the renders that use this operation; owned by the operation.
    ProgressWatcher* get_progress_watcher() const;

protected:
    RenderOperation();

    // Renders the frames from `first` to `last` (indexes of the project, both included) of one view. The layers are
    // those to work on; the caller owns the result. Errors as of Project::render.
    virtual VX::IClip* onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers,
                                View view) = 0;

private:
    friend class Project;
    RenderOperation(const RenderOperation&) = delete;
    RenderOperation& operator=(const RenderOperation&) = delete;

    QPointer<ProgressWatcher> m_progress_watcher;
};

// Puts the layers' matte colour over the footage, in the layers' z order.
class RenderInsertOperation : public RenderOperation
{
public:
    RenderInsertOperation();
    ~RenderInsertOperation() override;

protected:
    VX::IClip* onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers, View view) override;
};

// Fills the region under the layers from other frames of the sequence, through the track.
class RenderRemoveOperation : public RenderOperation
{
public:
    RenderRemoveOperation();
    ~RenderRemoveOperation() override;

protected:
    VX::IClip* onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers, View view) override;
};

// Undoes the motion of the first layer, so that it stands still where it was at its in point.
class RenderStabilizeOperation : public RenderOperation
{
public:
    RenderStabilizeOperation();
    ~RenderStabilizeOperation() override;

protected:
    VX::IClip* onRender(STRM_ProjectManager& manager, int first, int last, QVector<Layer> layers, View view) override;
};

#endif
