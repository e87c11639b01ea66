// A handle on one layer of a project.
#ifndef ORRERY_LAYER_H
#define ORRERY_LAYER_H

#include <QList>
#include <QString>
#include <QVector>
#include <boost/optional.hpp>
#include <fundo/colour.h>
#include <fundo/lum_matrix33.h>
#include <orrery/bezier_contour.h>
#include <orrery/x_spline_contour.h>

class Clip;
class LayerGroup;

// Errors of every operation but isNull(), ==, != and qHash: STRM_BadState for a null handle, STRM_BadArgument for a
// time or coordinate that is not a finite number and for a handle of another project, STRM_OutOfRange for an index or
// a view that is not there.
class Layer : public PyHandle<STRM_Layer>
{
public:
    Layer();
    Layer(const Layer& other);
    Layer(boost::shared_ptr<STRM_Layer> layer, boost::weak_ptr<STRM_ProjectManager> manager);
    Layer& operator=(const Layer& other);
    // Whether the handle refers to nothing, or to nothing any more. Never throws.
    virtual bool isNull() const;
    virtual ~Layer();

    boost::weak_ptr<STRM_ProjectManager> projectManager() const;

    // Adds a closed contour whose points have their first keyframe at `time` in `view`, in frames. Unset fields of the
    // records take their initial values.
    BezierContour add_bezier_contour(float time, const QVector<BezierControlPointData>& points, View view);
    // The same for an X-spline.
    XSplineContour add_xspline_contour(float time, const QVector<XControlPointData>& points, View view);

    // In the order in which they were added.
    QList<boost::shared_ptr<Stratum::Contour>> getAllContours() const;

    // Where the track has carried a corner of the layer's surface: {x, y} in pixels. Corners 0 to 3 are top left, top
    // right, bottom right, bottom left of the rectangle around the layer's contours at its in point.
    QList<float> get_surface_position(unsigned int corner, float time, View view);

    // The track's transform from the layer's in point to `time`; the identity where the layer is not tracked.
    Lum_Matrix33 get_transform_matrix(float time, View view);

    // The first frame (an index of the project) in which the layer is there, and the one that it is tracked from.
    unsigned int in_point(View view) const;
    // The last frame (an index of the project) in which the layer is there.
    unsigned int out_point(View view) const;

    // What can be animated, by its path: {"opacity"}, {"transform", "corner0_x"}. A path that leads nowhere gives a
    // null handle.
    Parameter parameter(const QStringList& name_components);
    // The set of parameters that the path leads to, an empty path to the layer's own; a null handle where it leads
    // nowhere.
    ParameterSet parameter_set(const QStringList& name_components);

    // Takes the layer out of the project; links to it are cleared, its handles become null.
    void remove();

    // Moves the layer into a group at that place (past the end: at its end), or to the top of the project for null.
    void set_parent(LayerGroup* group, unsigned int index);

    // The clip that the layer is tracked on: its own, or with `use_linked_layer` that of the layer it is linked to.
    // Null when there is none. Owned by the project.
    Clip* tracking_input_clip(bool use_linked_layer);

    // 1 to 65535 characters; several layers may have the same.
    QString get_name();
    void set_name(const QString& name);
    // A layer that is not visible is drawn and tracked only where it is named.
    bool get_visibility() const;
    void set_visibility(bool visible);
    // What mattes by colour and inserts are drawn in: red, green and blue, linear light, from 0 to 1 each, else
    // STRM_OutOfRange; STRM_BadArgument for a NaN.
    Fundo::Colour3<float> get_matte_color();
    void set_matte_color(Fundo::Colour3<float> color);
    // What an application draws the outline in: red, green and blue from 0 to 1 each, else STRM_OutOfRange.
    Fundo::Colour3<float> get_stroke_color();
    void set_stroke_color(Fundo::Colour3<float> color);
    // A locked layer refuses changes of its shapes (STRM_BadState).
    bool get_locked() const;
    void set_locked(bool locked);

    // The layer whose track this one follows. A handle that never referred to a layer sets none, like an empty value;
    // that of a layer that is gone throws STRM_BadArgument, and so does a layer that follows this one, directly or not.
    boost::optional<Layer> get_link_to_track();
    void set_link_to_track(const boost::optional<Layer>& layer);

    // The place in the drawing order of its siblings, 0 at the bottom; past the ends: at the end.
    int get_z_order() const;
    void set_z_order(int z_order);
    // Whether the layer is selected in an application.
    bool get_selected() const;
    void set_selected(bool selected);

    bool operator==(const Layer& other) const;
    bool operator!=(const Layer& other) const;
};

unsigned int qHash(const Layer& layer);

#endif
