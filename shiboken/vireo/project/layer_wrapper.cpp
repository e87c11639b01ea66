// Layer: a handle on one layer of a project.
#include "defaults.h"

using namespace binding;

class LayerWrapper : public NullDispatch<Layer>
{
public:
    using NullDispatch::NullDispatch;
};

namespace {

using namespace vireo::defaults;

typedef boost::shared_ptr<Stratum::Contour> EngineContour;

// A Python contour of the class that the engine's contour has; null, without an error, for a kind that scripts do not
// know.
PyObject* contourToPython(const EngineContour& contour, const Layer& layer)
{
    switch (contour->type()) {
    case 0:
        return Converter<XSplineContour>::toPython(XSplineContour(contour, layer.projectManager()));
    case 1:
        return Converter<BezierContour>::toPython(BezierContour(contour, layer.projectManager()));
    default:
        return nullptr;
    }
}

// Works with the lock held throughout.
PyObject* contours(PyObject*, Layer& layer)
{
    Reference list(PyList_New(0));
    const QList<EngineContour> all = layer.getAllContours();
    for (int i = 0; list && i < all.size(); ++i) {
        const Reference contour(contourToPython(all[i], layer));
        if (errorPending() || (contour && PyList_Append(list.get(), contour.get()) < 0))
            return nullptr;
    }
    return list.release();
}

// The group that holds the layer, None at the top of the project.
PyObject* parentGroup(PyObject*, Layer& layer)
{
    boost::optional<LayerGroup> parent;
    {
        const Unlocked unlocked;
        const boost::shared_ptr<STRM_Layer> self = layer.handledObject();
        Stratum::LayerGroup* const group = self->parentGroup();
        if (group && !dynamic_cast<Stratum::LayerRoot*>(group))
            parent = LayerGroup(boost::static_pointer_cast<Stratum::LayerGroup>(
                                    static_cast<Stratum::LayerBase*>(group)->shared_from_this()),
                                layer.projectManager());
    }
    return parent ? Converter<LayerGroup>::toPython(*parent) : none();
}

void setParentGroup(Layer& layer, LayerGroup* group) { layer.set_parent(group, 0); }

constexpr auto making = constructors(Form::CopyOnly, signature(constructs<LayerWrapper, const Layer&>));

constexpr auto methods = methodTable(
    keywords("add_bezier_contour", operation<&Layer::add_bezier_contour>, optional<LibraryView>("view")),
    keywords("add_xspline_contour", operation<&Layer::add_xspline_contour>, optional<LibraryView>("view")),
    keywords("get_surface_position", operation<&Layer::get_surface_position>, optional<FirstView>("view")),
    keywords("get_transform_matrix", operation<&Layer::get_transform_matrix>, optional<LibraryView>("view")),
    keywords("in_point", operation<&Layer::in_point>, optional<FirstView>("view")),
    keywords("out_point", operation<&Layer::out_point>, optional<FirstView>("view")),
    noArguments("isNull", lockedOperation<&isNull<Layer>>), one("parameter", operation<&Layer::parameter>),
    keywords("parameter_set", operation<&Layer::parameter_set>, optional<NoNames>("name_components")),
    noArguments("remove", operation<&Layer::remove>),
    keywords("set_parent", operation<&Layer::set_parent>, optional<Zero>("index")),
    keywords("tracking_input_clip", operation<&Layer::tracking_input_clip>, optional<False>("use_linked_layer")),

    noArguments("get_name", operation<&Layer::get_name>), one("set_name", operation<&Layer::set_name>),
    noArguments("get_contours", lockedOperation<&contours>),
    noArguments("get_parent_group", lockedOperation<&parentGroup>), one("set_parent_group", operation<&setParentGroup>),
    noArguments("get_visibility", operation<&Layer::get_visibility>),
    one("set_visibility", operation<&Layer::set_visibility>),
    noArguments("get_matte_color", operation<&Layer::get_matte_color>),
    one("set_matte_color", operation<&Layer::set_matte_color>),
    noArguments("get_stroke_color", operation<&Layer::get_stroke_color>),
    one("set_stroke_color", operation<&Layer::set_stroke_color>),
    noArguments("get_locked", operation<&Layer::get_locked>), one("set_locked", operation<&Layer::set_locked>),
    noArguments("get_link_to_track", operation<&Layer::get_link_to_track>),
    one("set_link_to_track", operation<&Layer::set_link_to_track>),
    noArguments("get_z_order", operation<&Layer::get_z_order>), one("set_z_order", operation<&Layer::set_z_order>),
    noArguments("get_selected", operation<&Layer::get_selected>), one("set_selected", operation<&Layer::set_selected>));

constexpr Property properties[] = {
    writable("name", "get_name", "set_name"),
    readOnly("contours", "get_contours"),
    writable("parent", "get_parent_group", "set_parent_group"),
    writable("visibility", "get_visibility", "set_visibility"),
    writable("matte_color", "get_matte_color", "set_matte_color"),
    writable("stroke_color", "get_stroke_color", "set_stroke_color"),
    writable("locked", "get_locked", "set_locked"),
    writable("link_to_track", "get_link_to_track", "set_link_to_track"),
    writable("z_order", "get_z_order", "set_z_order"),
    writable("selected", "get_selected", "set_selected"),
};

} // namespace

void vireo::registerLayer(PyObject* module)
{
    ClassTable layer = handleClass<Layer, LayerWrapper, making, methods>();
    layer.compare = &ComparisonOf<Layer, Equal | NotEqual>::compare;
    layer.hash = &hash<Layer>;
    setProperties(layer, properties);
    registerClass(module, layer);
}
