// RenderOperation: the base of the render operations, which scripts cannot make.
#include "module.h"

using namespace binding;

class RenderOperationWrapper : public Wrapper<RenderOperation>
{};

namespace {

constexpr auto methods =
    methodTable(noArguments("get_progress_watcher", operation<&RenderOperation::get_progress_watcher, ReleasedResult>));

constexpr Property properties[] = {readOnly("progress_watcher", "get_progress_watcher")};

} // namespace

void vireo::registerRenderOperation(PyObject* module)
{
    ClassTable base = abstractClass<RenderOperation, RenderOperationWrapper, methods>();
    setProperties(base, properties);
    registerClass(module, base);
}
