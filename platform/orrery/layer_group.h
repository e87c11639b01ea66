// A handle on one group of layers of a project.
#ifndef ORRERY_LAYER_GROUP_H
#define ORRERY_LAYER_GROUP_H

#include <orrery/layer.h>

// Errors as of Layer.
class LayerGroup : public PyHandle<Stratum::LayerGroup>
{
public:
    LayerGroup();
    LayerGroup(const LayerGroup& other);
    LayerGroup(boost::shared_ptr<Stratum::LayerGroup> group, boost::weak_ptr<STRM_ProjectManager> manager);
    LayerGroup& operator=(const LayerGroup& other);
    // Whether the handle refers to nothing, or to nothing any more. Never throws.
    virtual bool isNull() const;
    virtual ~LayerGroup();

    // Moves a layer of the same project into the group at that place; past the end: at its end.
    void insert_child(Layer layer, unsigned int index);

    // The group's layers whose name contains the text, in any case; all for an empty text.
    QVector<Layer> find_layers(const QString& text);

    // What can be animated, by its path: {"opacity"}. A path that leads nowhere gives a null handle.
    Parameter parameter(const QStringList& name_components);
    // The set of parameters that the path leads to, an empty path to the group's own; a null handle where it leads
    // nowhere.
    ParameterSet parameter_set(const QStringList& name_components);

    // 1 to 65535 characters; several groups may have the same.
    QString get_name();
    void set_name(const QString& name);
    // From the bottom of the drawing order to its top.
    QVector<Layer> get_layers();
    // An invisible group hides its layers.
    bool get_visibility() const;
    void set_visibility(bool visible);
    // Red, green and blue from 0 to 1 each, else STRM_OutOfRange. Layers are drawn in their own.
    Fundo::Colour3<float> get_matte_color();
    void set_matte_color(Fundo::Colour3<float> color);
    // What an application draws the group in: red, green and blue from 0 to 1 each, else STRM_OutOfRange.
    Fundo::Colour3<float> get_stroke_color();
    void set_stroke_color(Fundo::Colour3<float> color);
    // A locked group's layers refuse changes of their shapes (STRM_BadState).
    bool get_locked() const;
    void set_locked(bool locked);
    // The place in the drawing order of its siblings, 0 at the bottom; past the ends: at the end.
    int get_z_order() const;
    void set_z_order(int z_order);

    bool operator==(const LayerGroup& other) const;
};

#endif
