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
    virtual bool isNull() const;
    virtual ~LayerGroup();

    // Moves a layer of the same project into the group at that place; past the end: at its end.
    void insert_child(Layer layer, unsigned int index);

    // The group's layers whose name contains the text, in any case; all for an empty text.
    QVector<Layer> find_layers(const QString& text);

    Parameter parameter(const QStringList& name_components);
    ParameterSet parameter_set(const QStringList& name_components);

    QString get_name();
    void set_name(const QString& name);
    // From the bottom of the drawing order to its top.
    QVector<Layer> get_layers();
    // An invisible group hides its layers.
    bool get_visibility() const;
    void set_visibility(bool visible);
    Fundo::Colour3<float> get_matte_color();
    void set_matte_color(Fundo::Colour3<float> color);
    Fundo::Colour3<float> get_stroke_color();
    void set_stroke_color(Fundo::Colour3<float> color);
    bool get_locked() const;
    void set_locked(bool locked);
    int get_z_order() const;
    void set_z_order(int z_order);

    bool operator==(const LayerGroup& other) const;
};

#endif
