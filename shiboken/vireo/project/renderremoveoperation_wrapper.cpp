// RenderRemoveOperation.
#include "renderoperation_wrapper.h"

class RenderRemoveOperationWrapper : public binding::Wrapper<RenderRemoveOperation>
{};

void vireo::registerRenderRemoveOperation(PyObject* module)
{
    registerRenderOperationKind<RenderRemoveOperation, RenderRemoveOperationWrapper>(module);
}
