// BezierControlPointData: the state of one control point of a Bezier contour.
#include "controlpointdata_wrapper.h"

using namespace binding;

class BezierControlPointDataWrapper : public Wrapper<BezierControlPointData>
{
public:
    using Wrapper::Wrapper;
};

namespace {

using namespace vireo::defaults;
typedef BezierControlPointData Data;
typedef boost::optional<bool> Bool;
typedef boost::optional<float> Float;
typedef boost::optional<QPointF> Point;

constexpr auto making = constructors(
    Form::AtMost,
    signature(constructs<BezierControlPointDataWrapper, Bool, Bool, Float, Float, Float, Float, Point, Point>,
              optional<UnsetBool>("active"), optional<UnsetBool>("corner"), optional<UnsetFloat>("x"),
              optional<UnsetFloat>("y"), optional<UnsetFloat>("edge_width"), optional<UnsetFloat>("edge_angle_ratio"),
              optional<UnsetPoint>("handle_offset_backward"), optional<UnsetPoint>("handle_offset_forward")),
    testedFirst(signature(constructs<BezierControlPointDataWrapper, const Data&>)));

constexpr auto members = memberTable(vireo::leadingFields<Data>, vireo::edgeFields<Data>,
                                     property("handle_offset_backward", operation<&Data::get_handle_offset_backward>,
                                              operation<&Data::set_handle_offset_backward>),
                                     property("handle_offset_forward", operation<&Data::get_handle_offset_forward>,
                                              operation<&Data::set_handle_offset_forward>));

} // namespace

template <>
ClassTable vireo::tableOf<BezierControlPointData>()
{
    ClassTable data = valueClass<Data, BezierControlPointDataWrapper, making, members>();
    data.compare = &ComparisonOf<Data, Equal>::compare;
    return data;
}
