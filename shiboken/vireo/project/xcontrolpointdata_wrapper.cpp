// XControlPointData: the state of one control point of an X-spline contour.
#include "controlpointdata_wrapper.h"

using namespace binding;

class XControlPointDataWrapper : public Wrapper<XControlPointData>
{
public:
    using Wrapper::Wrapper;
};

namespace {

using namespace vireo::defaults;
typedef XControlPointData Data;
typedef boost::optional<bool> Bool;
typedef boost::optional<float> Float;

constexpr auto making =
    constructors(Form::AtMost,
                 signature(constructs<XControlPointDataWrapper, Bool, Bool, Float, Float, Float, Float, Float>,
                           optional<UnsetBool>("active"), optional<UnsetBool>("corner"), optional<UnsetFloat>("x"),
                           optional<UnsetFloat>("y"), optional<UnsetFloat>("weight"),
                           optional<UnsetFloat>("edge_width"), optional<UnsetFloat>("edge_angle_ratio")),
                 testedFirst(signature(constructs<XControlPointDataWrapper, const Data&>)));

constexpr auto members = memberTable(vireo::leadingFields<Data>,
                                     property("weight", operation<&Data::get_weight>, operation<&Data::set_weight>),
                                     vireo::edgeFields<Data>);

} // namespace

template <>
ClassTable vireo::tableOf<XControlPointData>()
{
    ClassTable data = valueClass<Data, XControlPointDataWrapper, making, members>();
    data.compare = &ComparisonOf<Data, Equal>::compare;
    return data;
}
