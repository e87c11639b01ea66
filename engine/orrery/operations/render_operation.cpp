// RenderOperation: the base of the render operations, with the watcher that each of them owns.

#include <engine/handles/destruction_hook.h>
#include <orrery/progress_watcher.h>
#include <orrery/render_operation.h>

RenderOperation::RenderOperation() : m_progress_watcher(new ProgressWatcher(nullptr)) {}

RenderOperation::~RenderOperation()
{
    orrery::tellDestruction(this);
    delete m_progress_watcher.data();
}

ProgressWatcher* RenderOperation::get_progress_watcher() const { return m_progress_watcher; }

RenderInsertOperation::RenderInsertOperation() = default;
RenderInsertOperation::~RenderInsertOperation() { orrery::tellDestruction(this); }

RenderRemoveOperation::RenderRemoveOperation() = default;
RenderRemoveOperation::~RenderRemoveOperation() { orrery::tellDestruction(this); }

RenderStabilizeOperation::RenderStabilizeOperation() = default;
RenderStabilizeOperation::~RenderStabilizeOperation() { orrery::tellDestruction(this); }
