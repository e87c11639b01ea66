// RenderStabilizeOperation.
#include "renderoperation_wrapper.h"

class RenderStabilizeOperationWrapper : public binding::Wrapper<RenderStabilizeOperation>
{};

void vireo::registerRenderStabilizeOperation(PyObject* module)
{
    registerRenderOperationKind<RenderStabilizeOperation, RenderStabilizeOperationWrapper>(module);
}
