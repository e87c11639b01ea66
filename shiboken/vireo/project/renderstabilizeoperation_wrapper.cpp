// RenderStabilizeOperation: undoes the motion of a layer.
#include "renderoperation_wrapper.h"

class RenderStabilizeOperationWrapper : public binding::Wrapper<RenderStabilizeOperation>
{};

template <>
binding::ClassTable vireo::tableOf<RenderStabilizeOperation>()
{
    return renderOperationTable<RenderStabilizeOperation, RenderStabilizeOperationWrapper>();
}
