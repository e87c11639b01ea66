#include "sample.h"

#include <QDir>
#include <climits>
#include <engine/document/document.h>
#include <orrery/clip.h>
#include <orrery/point_constraint.h>
#include <ostream>

namespace {

QString text(const QVariant& value)
{
    if (value.userType() == QMetaType::QVariantList) {
        QStringList items;
        for (const QVariant& item : value.toList())
            items << text(item);
        return QLatin1Char('[') + items.join(QLatin1String(", ")) + QLatin1Char(']');
    }
    if (value.userType() >= QMetaType::User)
        return QString::fromLatin1("%1(%2)")
            .arg(QLatin1String(value.typeName()))
            .arg(*static_cast<const int*>(value.constData()));
    const bool real = value.userType() == QMetaType::Double || value.userType() == QMetaType::Float;
    return real ? QString::number(value.toDouble(), 'g', 17) : value.toString();
}

QString text(const Fundo::Colour3<float>& color) { return text(QVariantList{color.red, color.green, color.blue}); }

const float times[] = {-3, 0, 2.5f, 10, 17, 50};

class Description
{
public:
    explicit Description(Project& project) : m_project(project) {}

    QStringList all()
    {
        settings();
        for (Layer layer : m_project.get_layers())
            add(layer);
        for (LayerGroup group : m_project.get_groups()) {
            addItem("group", group);
            for (Layer layer : group.get_layers())
                say({"member", layer.get_name()});
        }
        add(m_project.parameter_set(QStringList()));
        return m_lines;
    }

private:
    void say(const QVariantList& values) { m_lines << text(values); }

    void settings()
    {
        say({"rate", m_project.get_frame_rate(), m_project.get_first_frame_offset(), m_project.get_interlace_mode()});
        say({"length", m_project.get_length(), m_project.get_in_out_range().first,
             m_project.get_in_out_range().second});
        say({"playback", m_project.get_playback_in_point(), m_project.get_playback_out_point()});
        say({"notes", m_project.get_notes()});
        say({"output_dir", m_project.get_output_dir()});
        say({"hero", m_project.get_default_hero_view().__repr__()});
        for (const ViewInfo& view : m_project.get_views())
            say({"view", view.__repr__()});
        QStringList clips = m_project.get_clips().keys();
        clips.sort();
        for (const QString& name : clips) {
            Clip* clip = m_project.get_clips()[name];
            say({"clip", name, clip->get_name(), clip->get_frame_rate(), clip->get_frame_size().first});
        }
    }

    template <class Item>
    void addItem(const char* kind, Item& item)
    {
        say({kind, item.get_name(), item.get_z_order(), item.get_visibility(), item.get_locked(),
             text(item.get_matte_color()), text(item.get_stroke_color())});
    }

    void add(Layer& layer)
    {
        addItem("layer", layer);
        const boost::optional<Layer> link = layer.get_link_to_track();
        Clip* clip = layer.tracking_input_clip(false);
        say({layer.get_selected(), layer.in_point(View()), layer.out_point(View()),
             link ? Layer(*link).get_name() : "no link", clip ? clip->get_name() : "no clip"});
        for (const float time : times) {
            for (const double value : layer.get_transform_matrix(time, View()).values)
                say({"matrix", value});
            say({"corner", layer.get_surface_position(2, time, View())[0]});
        }
        for (const auto& contour : layer.getAllContours()) {
            if (contour->type() == 1)
                addContour(BezierContour(contour, layer.projectManager()));
            else
                addContour(XSplineContour(contour, layer.projectManager()));
        }
    }

    template <class Contour>
    void addContour(Contour contour)
    {
        for (const float time : times) {
            for (const float side : contour.get_bounding_rect(time, View()))
                say({"bounds", side});
            for (auto point : contour.get_control_points())
                addRecord(point.get_point_data(time, View()));
        }
        for (auto point : contour.get_control_points()) {
            const auto engine = point.handledObject();
            say({"master", engine->master() ? int(engine->master()->id()) : -1});
        }
    }

    template <class Record>
    void addRecord(const Record& record)
    {
        say({"point", *record.get_x(), *record.get_y(), *record.get_edge_width(), *record.get_active(),
             *record.get_corner(), *record.get_edge_angle_ratio()});
    }

    void add(ParameterSet set)
    {
        const QString path = set.get_name_components().join('/');
        say({"set", path, set.get_display_name(), set.get_script_name()});
        for (Parameter parameter : set.get_parameters()) {
            say({path, parameter.get_name_components().last(), text(parameter.get(UINT_MAX, View()))});
            for (const auto& key : parameter.get_keyframes())
                say({"key", key.first.get_id(), key.second, text(parameter.get(key.second, key.first))});
        }
        for (ParameterSet subset : set.get_subsets())
            add(subset);
    }

    Project& m_project;
    QStringList m_lines;
};

} // namespace

QStringList describe(Project& project) { return Description(project).all(); }

std::string documentOf(Project& project) { return orrery::writeProject(project.data(), QString()); }

BezierControlPointData bezierPoint(float x, float y)
{
    return BezierControlPointData(true, false, x, y, 0.f, 0.f, QPointF(-3.3, 1), QPointF(4, -1.25));
}

XControlPointData xPoint(float x, float y, float weight)
{
    return XControlPointData(true, false, x, y, weight, 1.5f, 0.5f);
}

std::unique_ptr<Project> emptyProject() { return std::make_unique<Project>(QString(), nullptr); }

void fill(Project& project)
{
    project.set_views({ViewInfo("Left", "L", {1, 0, 0}), ViewInfo(QString::fromUtf8("R\xc3\xa9"), "R", {0, 0.1f, 1})});
    project.set_default_hero_view(View(1));
    project.set_frame_rate(23.976f);
    project.set_first_frame_offset(-7);
    project.set_length(60);
    project.set_in_out_range(qMakePair(3u, 50u));
    project.set_playback_out_point(44);
    project.set_notes(QString::fromUtf8("line\n\"quoted\" \xf0\x9f\x8e\xac \xe4\xb8\xad ") + QString(50, 'n'));
    project.set_output_dir("/somewhere/else", false);
    Clip clip(QString(), "plate", false, 64, 48, 60, nullptr);
    project.add_clip(&clip, "plate");
    project.add_clip(&clip, "plate");

    Layer back = project.add_layer(nullptr, "back", 2, 1);
    Layer front = project.add_layer(project.get_clips()["plate 2"], "front", 0, 0);
    Layer third = project.add_layer(nullptr, "third \xe2\x82\xac", 10, 0);
    LayerGroup group = project.add_group("group", {third, back});
    group.set_matte_color({0.1f, 0.2f, 0.3f});
    back.set_link_to_track(front);
    front.set_stroke_color({0.5f, 0, 1});
    front.set_selected(true);
    third.set_visibility(false);

    BezierContour outline = front.add_bezier_contour(
        2, {bezierPoint(10, 10.1f), bezierPoint(40, 12), bezierPoint(38, 33.3f), bezierPoint(9, 30)}, View(0));
    XSplineContour loop =
        back.add_xspline_contour(0, {xPoint(5, 5, -0.5f), xPoint(25, 6, 1), xPoint(20, 30), xPoint(2, 28, -1)}, View());
    BezierControlPointData moved;
    moved.set_x(14.7f);
    moved.set_edge_width(2.f);
    outline.control_point(1).update_point_data(17, moved, View(0));
    outline.control_point(1).update_point_data(12.25f, moved, View(1));
    outline.insert_point(2, BezierControlPointData(), 2, View(0));
    loop.insert_point(0, xPoint(22, 15), UINT_MAX, View());
    loop.control_point(1).remove();
    const auto master = outline.control_point(1).handledObject(), follower = loop.control_point(0).handledObject();
    Python::setPointConstraint(master, follower, front.projectManager().lock().get(), {3, 0, 3}, true);

    front.parameter({"opacity"}).set(0.25, 5, View(0));
    front.parameter({"blend_mode"}).set(1, 7, View());
    for (int corner = 0; corner < 4; ++corner) {
        const QString name = QString::fromLatin1("corner%1_").arg(corner);
        const double x = corner == 1 || corner == 2 ? 40 : 10, y = corner > 1 ? 33 : 10;
        for (const double time : {0.0, 20.0}) {
            front.parameter({"transform", name + "x"}).set(x + time * (1 + corner * 0.1), time, View(0));
            front.parameter({"transform", name + "y"}).set(y - time / 3, time, View(0));
        }
    }
    project.parameter({"render", "insert_opacity"}).set(0.75, 4294967295.0, View());
    project.set_views(project.get_views() << ViewInfo("Third", "T", {0, 0, 0}));
}

std::unique_ptr<Project> sampleProject()
{
    auto project = emptyProject();
    fill(*project);
    return project;
}

std::ostream& operator<<(std::ostream& stream, const QPointF& point) { return stream << point.x() << ' ' << point.y(); }
