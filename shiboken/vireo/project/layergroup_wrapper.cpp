// LayerGroup: a handle on one group of layers of a project.
#include "defaults.h"

using namespace binding;

class LayerGroupWrapper : public NullDispatch<LayerGroup>
{
public:
    using NullDispatch::NullDispatch;
};

namespace {

using namespace vireo::defaults;

constexpr auto making = constructors(Form::CopyOnly, signature(constructs<LayerGroupWrapper, const LayerGroup&>));

constexpr auto members = memberTable(
    keywords("insert_child", operation<&LayerGroup::insert_child>, optional<Zero>("index")),
    one("find_layers", operation<&LayerGroup::find_layers>),
    noArguments("isNull", lockedOperation<&isNull<LayerGroup>>), one("parameter", operation<&LayerGroup::parameter>),
    keywords("parameter_set", operation<&LayerGroup::parameter_set>, optional<NoNames>("name_components")),

    property("name", operation<&LayerGroup::get_name>, operation<&LayerGroup::set_name>),
    property("layers", operation<&LayerGroup::get_layers>),
    property("visibility", operation<&LayerGroup::get_visibility>, operation<&LayerGroup::set_visibility>),
    property("matte_color", operation<&LayerGroup::get_matte_color>, operation<&LayerGroup::set_matte_color>),
    property("stroke_color", operation<&LayerGroup::get_stroke_color>, operation<&LayerGroup::set_stroke_color>),
    property("locked", operation<&LayerGroup::get_locked>, operation<&LayerGroup::set_locked>),
    property("z_order", operation<&LayerGroup::get_z_order>, operation<&LayerGroup::set_z_order>));

} // namespace

template <>
ClassTable vireo::tableOf<LayerGroup>()
{
    ClassTable group = handleClass<LayerGroup, LayerGroupWrapper, making, members>();
    group.compare = &ComparisonOf<LayerGroup, Equal>::compare;
    return group;
}
