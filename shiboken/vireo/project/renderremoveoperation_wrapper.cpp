// RenderRemoveOperation: fills what the layers cover from other frames.
#include "renderoperation_wrapper.h"

class RenderRemoveOperationWrapper : public binding::Wrapper<RenderRemoveOperation>
{};

template <>
binding::ClassTable vireo::tableOf<RenderRemoveOperation>()
{
    return renderOperationTable<RenderRemoveOperation, RenderRemoveOperationWrapper>();
}
