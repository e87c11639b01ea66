// XControlPointData: the state of one control point of an X-spline contour.
#include "controlpointdata_wrapper.h"

using namespace binding;

class XControlPointDataWrapper : public Wrapper<XControlPointData>
{
public:
    using Wrapper::Wrapper;
};

namespace {

typedef XControlPointData Data;
using vireo::defaults::UnsetFloat;

constexpr auto fields = vireo::recordFields<Data>(
    vireo::field<UnsetFloat>("weight", operation<&Data::get_weight>, operation<&Data::set_weight>), std::tuple());

} // namespace

template <>
ClassTable vireo::tableOf<XControlPointData>()
{
    return recordTable<Data, XControlPointDataWrapper, fields>();
}
