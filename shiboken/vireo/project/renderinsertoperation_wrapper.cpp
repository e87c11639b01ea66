// RenderInsertOperation: lays the layers' matte colours over the footage.
#include "renderoperation_wrapper.h"

class RenderInsertOperationWrapper : public binding::Wrapper<RenderInsertOperation>
{};

template <>
binding::ClassTable vireo::tableOf<RenderInsertOperation>()
{
    return renderOperationTable<RenderInsertOperation, RenderInsertOperationWrapper>();
}
