// RenderInsertOperation.
#include "renderoperation_wrapper.h"

class RenderInsertOperationWrapper : public binding::Wrapper<RenderInsertOperation>
{};

void vireo::registerRenderInsertOperation(PyObject* module)
{
    registerRenderOperationKind<RenderInsertOperation, RenderInsertOperationWrapper>(module);
}
