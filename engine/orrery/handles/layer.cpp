// Layer: its shapes, its track, its place in the project and its settings.
#include "point_data.h"

#include <cmath>
#include <engine/handles/layer_items.h>
#include <orrery/layer.h>

using namespace orrery;

Layer::Layer() = default;
Layer::Layer(const Layer& other) = default;
Layer::Layer(boost::shared_ptr<STRM_Layer> layer, boost::weak_ptr<STRM_ProjectManager> manager)
    : PyHandle(layer, manager)
{}
Layer& Layer::operator=(const Layer& other) = default;
Layer::~Layer() = default;

bool Layer::isNull() const { return isGone(m_object, m_manager); }

boost::weak_ptr<STRM_ProjectManager> Layer::projectManager() const { return m_manager; }

// ---- Shapes ----

namespace {

template <class Record>
boost::shared_ptr<Stratum::Contour> addContour(const boost::shared_ptr<STRM_Layer>& layer, int type, float time,
                                               const QVector<Record>& records, const View& view)
{
    const double at = requireTime(time);
    std::vector<Stratum::PointValues> points;
    for (const Record& record : records) {
        points.push_back(valuesOf(record));
        Stratum::checkPointValues(type, points.back());
    }
    Stratum::LayerModel& model = Stratum::model(*layer);
    Stratum::Edit edit(model.manager());
    edit.of(model).requireUnlocked();
    const int id = resolveView(*edit, view);
    const auto contour = Stratum::addContour(edit, model, type, points, at, id).shared_from_this();
    edit.commit();
    return contour;
}

} // namespace

BezierContour Layer::add_bezier_contour(float time, const QVector<BezierControlPointData>& points, View view)
{
    return BezierContour(addContour(handledObject(), VX_CONTOUR_BEZIER, time, points, view), m_manager);
}

XSplineContour Layer::add_xspline_contour(float time, const QVector<XControlPointData>& points, View view)
{
    return XSplineContour(addContour(handledObject(), VX_CONTOUR_XSPLINE, time, points, view), m_manager);
}

QList<boost::shared_ptr<Stratum::Contour>> Layer::getAllContours() const
{
    // Sharing the ownership of `object`, each pointer keeps the project's manager alive too.
    const boost::shared_ptr<STRM_Layer> object = handledObject();
    const LockedItem<Stratum::LayerModel> layer(object);
    QList<boost::shared_ptr<Stratum::Contour>> contours;
    for (const Stratum::ContourModel& contour : layer->contours)
        contours.append(boost::shared_ptr<Stratum::Contour>(object, &referred(contour)));
    return contours;
}

// ---- The track ----

QList<float> Layer::get_surface_position(unsigned int corner, float time, View view)
{
    const double at = requireTime(time);
    if (corner > 3)
        raise<STRM_OutOfRange>(QString::fromLatin1("corner: %1 is not from 0 to 3").arg(corner));
    const LockedItem<Stratum::LayerModel> layer(handledObject());
    const int id = layer.resolve(view);
    const Knob::Value place = layer->surface(id)[corner];
    const Lum_Matrix33 transform = layer->transform(at, id);
    const double* m = transform.values;
    const double w = m[6] * place.x + m[7] * place.y + m[8];
    return {static_cast<float>((m[0] * place.x + m[1] * place.y + m[2]) / w),
            static_cast<float>((m[3] * place.x + m[4] * place.y + m[5]) / w)};
}

Lum_Matrix33 Layer::get_transform_matrix(float time, View view)
{
    const double at = requireTime(time);
    const LockedItem<Stratum::LayerModel> layer(handledObject());
    return layer->transform(at, layer.resolve(view));
}

unsigned int Layer::in_point(View view) const
{
    const LockedItem<Stratum::LayerModel> layer(handledObject());
    layer.resolve(view);
    return layer->inPoint();
}

unsigned int Layer::out_point(View view) const
{
    const LockedItem<Stratum::LayerModel> layer(handledObject());
    layer.resolve(view);
    return layer->outPoint();
}

boost::optional<Layer> Layer::get_link_to_track()
{
    const LockedItem<Stratum::LayerModel> layer(handledObject());
    if (!layer->trackedWith())
        return boost::none;
    return Layer(boost::static_pointer_cast<STRM_Layer>(layer->trackedWith()->shared_from_this()), m_manager);
}

void Layer::set_link_to_track(const boost::optional<Layer>& layer)
{
    const boost::shared_ptr<STRM_Layer> self = handledObject();
    Stratum::LayerModel& model = Stratum::model(*self);
    const bool follows = layer && *layer != Layer();
    const boost::shared_ptr<STRM_Layer> followed =
        follows ? argumentObject<STRM_Layer>("link_to_track", *layer) : boost::shared_ptr<STRM_Layer>();
    Stratum::LayerModel* const other = followed ? &Stratum::model(*followed) : nullptr;
    if (other)
        requireSameProject("link_to_track", *other, model.manager());
    ItemEdit edit(model);
    if (other)
        edit.of(*other);
    Stratum::linkToTrack(edit, model, other);
    edit.commit();
}

// ---- The tree ----

void Layer::remove()
{
    const boost::shared_ptr<STRM_Layer> self = handledObject();
    ItemEdit edit(Stratum::model(*self));
    Stratum::removeLayer(edit, Stratum::model(*self));
    edit.commit();
}

Parameter Layer::parameter(const QStringList& name_components)
{
    const boost::shared_ptr<STRM_Layer> self = handledObject();
    return parameterAt(Stratum::model(*self), Stratum::model(*self).manager(), name_components);
}

ParameterSet Layer::parameter_set(const QStringList& name_components)
{
    const boost::shared_ptr<STRM_Layer> self = handledObject();
    return parameterSetAt(Stratum::model(*self), Stratum::model(*self).manager(), name_components);
}

// ---- Settings ----

QString Layer::get_name() { return LockedItem<Stratum::LayerModel>(handledObject())->name; }
void Layer::set_name(const QString& name) { setName(handledObject(), name); }
bool Layer::get_visibility() const { return LockedItem<Stratum::LayerModel>(handledObject())->visible; }
void Layer::set_visibility(bool visible) { assign<&Stratum::ItemSettings::visible>(handledObject(), visible); }
Fundo::Colour3<float> Layer::get_matte_color() { return LockedItem<Stratum::LayerModel>(handledObject())->matteColor; }
void Layer::set_matte_color(Fundo::Colour3<float> color)
{
    assign<&Stratum::ItemSettings::matteColor>(handledObject(), color);
}
Fundo::Colour3<float> Layer::get_stroke_color()
{
    return LockedItem<Stratum::LayerModel>(handledObject())->strokeColor;
}
void Layer::set_stroke_color(Fundo::Colour3<float> color)
{
    assign<&Stratum::ItemSettings::strokeColor>(handledObject(), color);
}
bool Layer::get_locked() const { return LockedItem<Stratum::LayerModel>(handledObject())->locked; }
void Layer::set_locked(bool locked) { assign<&Stratum::ItemSettings::locked>(handledObject(), locked); }
int Layer::get_z_order() const { return zOrder(handledObject()); }
void Layer::set_z_order(int z_order) { setZOrder(handledObject(), z_order); }
bool Layer::get_selected() const { return LockedItem<Stratum::LayerModel>(handledObject())->selected; }
void Layer::set_selected(bool selected) { assign<&Stratum::LayerSettings::selected>(handledObject(), selected); }

bool Layer::operator==(const Layer& other) const { return refersToSame(other); }

bool Layer::operator!=(const Layer& other) const { return !(*this == other); }

unsigned int qHash(const Layer& layer) { return hashOf(layer); }
