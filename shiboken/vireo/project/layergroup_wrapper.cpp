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

constexpr auto methods = methodTable(
    keywords("insert_child", operation<&LayerGroup::insert_child>, optional<Zero>("index")),
    one("find_layers", operation<&LayerGroup::find_layers>),
    noArguments("isNull", lockedOperation<&isNull<LayerGroup>>), one("parameter", operation<&LayerGroup::parameter>),
    keywords("parameter_set", operation<&LayerGroup::parameter_set>, optional<NoNames>("name_components")),

    noArguments("get_name", operation<&LayerGroup::get_name>), one("set_name", operation<&LayerGroup::set_name>),
    noArguments("get_layers", operation<&LayerGroup::get_layers>),
    noArguments("get_visibility", operation<&LayerGroup::get_visibility>),
    one("set_visibility", operation<&LayerGroup::set_visibility>),
    noArguments("get_matte_color", operation<&LayerGroup::get_matte_color>),
    one("set_matte_color", operation<&LayerGroup::set_matte_color>),
    noArguments("get_stroke_color", operation<&LayerGroup::get_stroke_color>),
    one("set_stroke_color", operation<&LayerGroup::set_stroke_color>),
    noArguments("get_locked", operation<&LayerGroup::get_locked>),
    one("set_locked", operation<&LayerGroup::set_locked>),
    noArguments("get_z_order", operation<&LayerGroup::get_z_order>),
    one("set_z_order", operation<&LayerGroup::set_z_order>));

constexpr Property properties[] = {
    writable("name", "get_name", "set_name"),
    readOnly("layers", "get_layers"),
    writable("visibility", "get_visibility", "set_visibility"),
    writable("matte_color", "get_matte_color", "set_matte_color"),
    writable("stroke_color", "get_stroke_color", "set_stroke_color"),
    writable("locked", "get_locked", "set_locked"),
    writable("z_order", "get_z_order", "set_z_order"),
};

} // namespace

void vireo::registerLayerGroup(PyObject* module)
{
    ClassTable group = handleClass<LayerGroup, LayerGroupWrapper, making, methods>();
    group.compare = &ComparisonOf<LayerGroup, Equal>::compare;
    setProperties(group, properties);
    registerClass(module, group);
}
