// What can be animated of the project, its groups, layers, contours and points: the tables, and the branches by which
// the tree reaches them.
#include <QCoreApplication>
#include <engine/stratum/shapes.h>
#include <engine/stratum/tree.h>
#include <stratum/enumerations.h>

namespace Stratum {

namespace {

using Knob::coordinate;
using Knob::Description;
using Knob::Kind;
using Knob::Member;
using Knob::number;

constexpr Description choice(const char* name, const char* displayName, const char* enumeration, int initial, int last)
{
    return {name, displayName, Kind::Enumeration, {double(initial), 0}, 0, double(last), enumeration, true};
}

constexpr Description readOnly(Description description)
{
    description.writable = false;
    return description;
}

constexpr Description layerTable[] = {
    number("opacity", QT_TRANSLATE_NOOP("Parameter", "Opacity"), 1, 0, 1),
    choice("blend_mode", QT_TRANSLATE_NOOP("Parameter", "Blend mode"), "VX_BlendMode", VX_BlendAdd, VX_BlendIntersect),
    choice("motion_model", QT_TRANSLATE_NOOP("Parameter", "Motion model"), "TrackModel", TrackPerspective,
           TrackPerspective),
};

// What the track says of itself, keyed in every frame that was found.
constexpr Description trackTable[] = {
    number("quality", QT_TRANSLATE_NOOP("Parameter", "Quality"), 0, 0, 1),
    number("visible", QT_TRANSLATE_NOOP("Parameter", "Visible share"), 0, 0, 1),
};

constexpr Description cornerTable[] = {
    coordinate("corner0_x", QT_TRANSLATE_NOOP("Parameter", "Top left x"), 0),
    coordinate("corner0_y", QT_TRANSLATE_NOOP("Parameter", "Top left y"), 0),
    coordinate("corner1_x", QT_TRANSLATE_NOOP("Parameter", "Top right x"), 1),
    coordinate("corner1_y", QT_TRANSLATE_NOOP("Parameter", "Top right y"), 0),
    coordinate("corner2_x", QT_TRANSLATE_NOOP("Parameter", "Bottom right x"), 1),
    coordinate("corner2_y", QT_TRANSLATE_NOOP("Parameter", "Bottom right y"), 1),
    coordinate("corner3_x", QT_TRANSLATE_NOOP("Parameter", "Bottom left x"), 0),
    coordinate("corner3_y", QT_TRANSLATE_NOOP("Parameter", "Bottom left y"), 1),
};

constexpr Description groupOpacity = number("opacity", QT_TRANSLATE_NOOP("Parameter", "Opacity"), 1, 0, 1);

constexpr Description renderTable[] = {
    number("insert_opacity", QT_TRANSLATE_NOOP("Parameter", "Insert opacity"), 1, 0, 1),
    choice("fill_algorithm", QT_TRANSLATE_NOOP("Parameter", "Fill algorithm"), "VX_FILL_ALGORITHM",
           VX_FILL_NEAREST_FRAME, VX_FILL_BLEND_FRAMES),
    choice("remove_source", QT_TRANSLATE_NOOP("Parameter", "Remove source"), "VX_REMOVESOURCE_MODE",
           VX_REMOVESOURCE_BOTH, VX_REMOVESOURCE_BOTH),
    choice("illumination_model", QT_TRANSLATE_NOOP("Parameter", "Illumination model"), "VX_ILLUMINATION_MODEL",
           VX_ILLUMINATION_NONE, VX_ILLUMINATION_GAIN_OFFSET),
    choice("luminance_model", QT_TRANSLATE_NOOP("Parameter", "Luminance model"), "VX_LUMINANCE_MODEL",
           VX_LUMINANCE_REC709, VX_LUMINANCE_MAXIMUM),
};

constexpr Description contourTable[] = {
    readOnly(choice("type", QT_TRANSLATE_NOOP("Parameter", "Type"), "VX_CONTOUR_TYPE", 0, VX_CONTOUR_BEZIER)),
    coordinate("edge_width", QT_TRANSLATE_NOOP("Parameter", "Edge width"), 0),
};

Member leaf(const Description& description, Knob::Animation& animation)
{
    return {QString::fromLatin1(description.name), nullptr, &animation, &description};
}

Member set(const QString& name, Knob::Branch& branch) { return {name, &branch, nullptr, nullptr}; }

Member set(unsigned int id, Knob::Branch& branch) { return set(QString::number(id), branch); }

// A number as names have it: without a sign, a blank or a leading zero.
bool isId(const QString& name, unsigned int& id)
{
    bool valid = false;
    id = name.toUInt(&valid);
    return valid && QString::number(id) == name;
}

// Objects of one class, each named by its number.
template <class Owner, class Object>
class ObjectsBranch : public Knob::NamedBranch
{
public:
    using List = std::vector<const Object*> (*)(Owner&);
    using Find = Object* (*)(Owner&, unsigned int id); // null for one that is not there now

    ObjectsBranch(const Branch& parent, const char* displayName, Owner& owner, List list, Find find)
        : NamedBranch(parent, displayName), m_owner(owner), m_list(list), m_find(find)
    {}

    std::vector<Member> members() override
    {
        std::vector<Member> members;
        for (const Object* object : m_list(m_owner)) // what a branch leads to is changed by edits only
            members.push_back(set(object->id(), const_cast<Object&>(*object)));
        return members;
    }
    Member member(const QString& name) override
    {
        unsigned int id;
        Object* const object = isId(name, id) ? m_find(m_owner, id) : nullptr;
        return object ? set(name, *object) : Member();
    }

private:
    Owner& m_owner;
    const List m_list;
    const Find m_find;
};

using ContoursBranch = ObjectsBranch<LayerModel, ContourModel>;
using LayersBranch = ObjectsBranch<const Model, LayerModel>;
using GroupsBranch = ObjectsBranch<const Model, GroupModel>;

std::vector<const ContourModel*> contoursOf(LayerModel& layer)
{
    std::vector<const ContourModel*> contours;
    for (ContourModel& contour : layer.contours)
        contours.push_back(&contour);
    return contours;
}

ContourModel* contourWithId(LayerModel& layer, unsigned int id)
{
    ContourModel* const contour = layer.findContour(id);
    return contour && contour->present() ? contour : nullptr;
}

} // namespace

const Description& description(LayerValue value)
{
    return value < LayerTrackQuality ? layerTable[value] : trackTable[value - LayerTrackQuality];
}

const Description& cornerDescription(std::size_t index) { return cornerTable[index]; }

const Description& groupOpacityDescription() { return groupOpacity; }

const std::vector<PointField>& pointFields(int contourType)
{
    const auto select = [](bool PointFieldRow::*has) {
        std::vector<PointField> fields;
        for (std::size_t i = 0; i < PointFieldCount; ++i)
            if (pointFieldTable[i].*has)
                fields.push_back(static_cast<PointField>(i));
        return fields;
    };
    static const std::vector<PointField> bezier = select(&PointFieldRow::bezier),
                                         xSpline = select(&PointFieldRow::xSpline);
    return contourType == VX_CONTOUR_BEZIER ? bezier : xSpline;
}

const Description& contourDescription(std::size_t index) { return contourTable[index]; }

// ---- Layers and groups ----

LayerAnimations::LayerAnimations(LayerModel& layer)
    : transform(layer, QT_TRANSLATE_NOOP("Parameter", "Transform"), cornerTable, corners.data()),
      track(layer, QT_TRANSLATE_NOOP("Parameter", "Track"), trackTable, values.data() + LayerTrackQuality),
      contours(std::make_unique<ContoursBranch>(layer, QT_TRANSLATE_NOOP("Parameter", "Contours"), layer, contoursOf,
                                                contourWithId))
{
    Knob::setInitialValues(layerTable, LayerTrackQuality, values.data());
    Knob::setInitialValues(trackTable, 2, values.data() + LayerTrackQuality);
    Knob::setInitialValues(cornerTable, corners.size(), corners.data());
}

std::vector<Member> LayerModel::members()
{
    LayerAnimations& all = animations();
    std::vector<Member> members = Knob::tableMembers(layerTable, LayerTrackQuality, all.values.data());
    members.push_back(set(QString::fromLatin1("transform"), all.transform));
    members.push_back(set(QString::fromLatin1("track"), all.track));
    members.push_back(set(QString::fromLatin1("contours"), *all.contours));
    return members;
}

QString LayerModel::scriptName() const { return QString::fromLatin1("layer_%1").arg(id()); }

QString LayerModel::displayName() const
{
    const Reading lock(manager());
    return name;
}

std::vector<Member> GroupModel::members() { return {leaf(groupOpacity, opacityAnimation())}; }

QString GroupModel::scriptName() const { return QString::fromLatin1("group_%1").arg(id()); }

QString GroupModel::displayName() const
{
    const Reading lock(manager());
    return name;
}

// ---- Contours and points ----

std::vector<Member> ContourModel::members()
{
    std::vector<Member> members = Knob::tableMembers(contourTable, settings.size(), settings.data());
    for (PointModel& point : points)
        members.push_back(set(point.id(), point));
    return members;
}

Member ContourModel::member(const QString& name)
{
    for (std::size_t i = 0; i < settings.size(); ++i)
        if (name == QLatin1String(contourTable[i].name))
            return leaf(contourTable[i], settings[i]);
    unsigned int id;
    PointModel* point = isId(name, id) ? find(id) : nullptr;
    return point && point->present() ? set(name, *point) : Member();
}

QString ContourModel::scriptName() const { return QString::fromLatin1("contour_%1").arg(id()); }

QString ContourModel::displayName() const
{
    return Knob::translated(type() == VX_CONTOUR_BEZIER ? QT_TRANSLATE_NOOP("Parameter", "Bezier contour")
                                                        : QT_TRANSLATE_NOOP("Parameter", "X-spline contour"));
}

std::vector<Member> PointModel::members()
{
    std::vector<Member> members;
    for (const PointField field : pointFields(contourModel().type()))
        members.push_back(leaf(Stratum::description(field), fields[field]));
    return members;
}

QString PointModel::scriptName() const { return QString::fromLatin1("point_%1").arg(id()); }

QString PointModel::displayName() const
{
    return Knob::translated(QT_TRANSLATE_NOOP("Parameter", "Point %1")).arg(id());
}

// ---- The project ----

struct ProjectParameters::Branches
{
    Branches(const Model& project, const ProjectParameters& owner)
        : project(project), render(owner, QT_TRANSLATE_NOOP("Parameter", "Render"), renderTable, renderValues.data()),
          layers(owner, QT_TRANSLATE_NOOP("Parameter", "Layers"), project, allLayers,
                 [](const Model& project, unsigned int id) { return project.findLayer(id); }),
          groups(owner, QT_TRANSLATE_NOOP("Parameter", "Groups"), project, allGroups,
                 [](const Model& project, unsigned int id) { return project.findGroup(id); })
    {
        Knob::setInitialValues(renderTable, renderValues.size(), renderValues.data());
    }

    const Model& project;
    std::array<Knob::Animation, RenderValueCount> renderValues;
    Knob::TableBranch render;
    LayersBranch layers;
    GroupsBranch groups;
    std::vector<Member> further;
};

ProjectParameters::ProjectParameters(Model& project) : m_branches(std::make_unique<Branches>(project, *this)) {}

ProjectParameters::~ProjectParameters() = default;

bool ProjectParameters::present() const { return m_branches->project.manager().isOpen(); }

QString ProjectParameters::scriptName() const { return QString::fromLatin1("project"); }

QString ProjectParameters::displayName() const { return Knob::translated(QT_TRANSLATE_NOOP("Parameter", "Project")); }

std::vector<Member> ProjectParameters::members()
{
    std::vector<Member> members{set(QString::fromLatin1("render"), m_branches->render),
                                set(QString::fromLatin1("layers"), m_branches->layers),
                                set(QString::fromLatin1("groups"), m_branches->groups)};
    members.insert(members.end(), m_branches->further.begin(), m_branches->further.end());
    return members;
}

void ProjectParameters::addBranch(const QString& name, Knob::Branch* branch)
{
    m_branches->further.push_back(set(name, *branch));
}

Knob::Value ProjectParameters::render(RenderValue value, double time, int view) const
{
    return m_branches->renderValues[value].at(time, view, m_branches->project.settings.heroView,
                                              renderTable[value].interpolated());
}

const Description& ProjectParameters::description(RenderValue value) { return renderTable[value]; }

const Knob::Animation& ProjectParameters::animation(RenderValue value) const { return m_branches->renderValues[value]; }

Knob::Animation& ProjectParameters::animation(RenderValue value) { return m_branches->renderValues[value]; }

} // namespace Stratum
