// RenderOperation: the base of the render operations, which scripts cannot make.
#include "module.h"

using namespace binding;

class RenderOperationWrapper : public Wrapper<RenderOperation>
{};

namespace {

constexpr auto members =
    classTable(property("progress_watcher", operation<&RenderOperation::get_progress_watcher, ReleasedResult>));

} // namespace

void vireo::registerRenderOperation(PyObject* module)
{
    ClassTable base = abstractClass<RenderOperation, RenderOperationWrapper, members>();
    registerClass(module, base);
}
