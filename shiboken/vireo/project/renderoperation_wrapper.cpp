// RenderOperation: the base of the render operations, which scripts cannot make.
#include "module.h"

using namespace binding;

class RenderOperationWrapper : public Wrapper<RenderOperation>
{};

namespace {

constexpr auto members =
    memberTable(property("progress_watcher", operation<&RenderOperation::get_progress_watcher, ReleasedResult>));

} // namespace

template <>
ClassTable vireo::tableOf<RenderOperation>()
{
    ClassTable base = abstractClass<RenderOperation, RenderOperationWrapper, members>();
    return base;
}
