// BezierControlPointData: the state of one control point of a Bezier contour.
#include "controlpointdata_wrapper.h"

using namespace binding;

class BezierControlPointDataWrapper : public Wrapper<BezierControlPointData>
{
public:
    using Wrapper::Wrapper;
};

namespace {

typedef BezierControlPointData Data;
using vireo::field;
using vireo::defaults::UnsetPoint;

constexpr auto fields = vireo::recordFields<Data>(
    std::tuple(),
    std::tuple_cat(field<UnsetPoint>("handle_offset_backward", operation<&Data::get_handle_offset_backward>,
                                     operation<&Data::set_handle_offset_backward>),
                   field<UnsetPoint>("handle_offset_forward", operation<&Data::get_handle_offset_forward>,
                                     operation<&Data::set_handle_offset_forward>)));

} // namespace

template <>
ClassTable vireo::tableOf<BezierControlPointData>()
{
    return recordTable<Data, BezierControlPointDataWrapper, fields>();
}
