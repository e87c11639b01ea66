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

constexpr auto members = memberTable(
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

    property("name", operation<&Layer::get_name>, operation<&Layer::set_name>),
    property("contours", lockedOperation<&contours>),
    property("parent", "parent_group", lockedOperation<&parentGroup>, operation<&setParentGroup>),
    property("visibility", operation<&Layer::get_visibility>, operation<&Layer::set_visibility>),
    property("matte_color", operation<&Layer::get_matte_color>, operation<&Layer::set_matte_color>),
    property("stroke_color", operation<&Layer::get_stroke_color>, operation<&Layer::set_stroke_color>),
    property("locked", operation<&Layer::get_locked>, operation<&Layer::set_locked>),
    property("link_to_track", operation<&Layer::get_link_to_track>, operation<&Layer::set_link_to_track>),
    property("z_order", operation<&Layer::get_z_order>, operation<&Layer::set_z_order>),
    property("selected", operation<&Layer::get_selected>, operation<&Layer::set_selected>));

} // namespace

template <>
ClassTable vireo::tableOf<Layer>()
{
    ClassTable layer = handleClass<Layer, LayerWrapper, making, members>();
    layer.compare = &ComparisonOf<Layer, Equal | NotEqual>::compare;
    layer.hash = &hash<Layer>;
    return layer;
}
