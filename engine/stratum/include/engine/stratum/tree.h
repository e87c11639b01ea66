// The engine's layers and groups behind the platform's base classes. Everything but ids, addresses and presence is read
// and written with the manager's lock held; writes go through an Edit.
#pragma once

#include <QString>
#include <array>
#include <boost/shared_ptr.hpp>
#include <engine/knob/parameter_tree.h>
#include <engine/stratum/followers.h>
#include <engine/stratum/manager.h>
#include <engine/stratum/ordered_items.h>
#include <fundo/colour.h>
#include <fundo/lum_matrix33.h>
#include <memory>
#include <stratum/layer_base.h>
#include <vector>

namespace Stratum {

class ContourModel;
class GroupModel;
class LayerModel;

// What layers and groups have in common.
class TreeItem : public OrderedItem, public Knob::Branch, public ItemSettings
{
public:
    TreeItem(Model& project, unsigned int id, std::uint32_t weight);

    STRM_ProjectManager& manager() const { return m_project.manager(); }
    const Model& project() const { return m_project; }
    unsigned int id() const { return m_id; } // never used again in its project

private:
    const Model& m_project;
    const unsigned int m_id;
};

// The parameters of a layer beside its transform.
// `track` holds the last two of them.
enum LayerValue {
    LayerOpacity,
    LayerBlendMode,
    LayerMotionModel,
    LayerTrackQuality,
    LayerTrackVisible,
    LayerValueCount
};

// Where the track has carried the surface: top left, top right, bottom right, bottom left.
using Corners = std::array<Knob::Value, 4>;

// One frame of a track.
struct TrackKey
{
    double time;
    Corners corners;
    double quality; // 0 to 1, as what is visible
    double visible;
};

// What can be animated of a layer, and the branches below its own.
struct LayerAnimations
{
    explicit LayerAnimations(LayerModel& layer);

    std::array<Knob::Animation, LayerValueCount> values;
    std::array<Knob::Animation, 8> corners; // corner0_x, corner0_y, corner1_x ...
    Knob::TableBranch transform;
    Knob::TableBranch track;
    std::unique_ptr<Knob::Branch> contours;
};

// What the tables say of each.
const Knob::Description& description(LayerValue value);
const Knob::Description& cornerDescription(std::size_t index);
const Knob::Description& groupOpacityDescription();

class LayerModel : public STRM_Layer, public TreeItem, public LayerSettings, public Follower<LayerModel>
{
public:
    LayerModel(Model& project, unsigned int id);
    ~LayerModel() override;

    bool present() const override { return parentGroup() != nullptr; }
    void setParentGroup(LayerGroup* group) { m_parentGroup.store(group, std::memory_order_release); }

    // For changes of its shapes: STRM_BadState when the layer, or the group that holds it, is locked.
    void requireUnlocked() const;
    // The group that holds it; null at the top of the project.
    GroupModel* group() const;
    // Visible, and not hidden by its group.
    bool shown() const;

    unsigned int clip = 0; // the id (Clip::get_id) of the clip it is tracked on; 0 for none
    unsigned int inPoint() const;
    unsigned int outPoint() const;

    // The layer whose track this one follows.
    LayerModel* trackedWith() const { return m_trackedWith; }
    void setTrackedWith(LayerModel* followed);
    Followers<LayerModel> followers;
    // The end of the chain of links: whose track counts.
    const LayerModel& trackSource() const;

    // In the order in which they were added. Removed ones are in allContours only, which is ordered by id.
    Ordered<ContourModel> contours;
    std::vector<boost::shared_ptr<ContourModel>> allContours;
    unsigned int nextContourId = 0;
    // Not in the layer yet. Null for an id that does not come after those that were used.
    ContourModel* makeContour(int type, unsigned int id);
    ContourModel* findContour(unsigned int id) const; // null when the layer never had it

    // Null until it is first asked for: until then everything has its initial value.
    const LayerAnimations* animationsIfAny() const { return m_animations.get(); }
    LayerAnimations& animations();

    Knob::Value value(LayerValue which, double time, int view) const;
    bool tracked(int view) const; // by keyframes of its own
    Corners corners(double time, int view) const;

    // From the in point to the time, through the layer's own track or the one it is linked to.
    Lum_Matrix33 transform(double time, int view) const;
    // The rectangle around the contours at the in point.
    Corners surface(int view) const;

    QString displayName() const override;
    QString scriptName() const override;
    std::vector<Knob::Member> members() override;

private:
    LayerModel* m_trackedWith = nullptr;
    std::unique_ptr<LayerAnimations> m_animations;
};

class GroupModel : public LayerGroup, public TreeItem
{
public:
    GroupModel(Model& project, unsigned int id);
    ~GroupModel() override;

    bool present() const override { return parentGroup() != nullptr; }
    void setParentGroup(LayerGroup* group) { m_parentGroup.store(group, std::memory_order_release); }

    // From the bottom of the drawing order to its top.
    Ordered<LayerModel> layers;

    Knob::Value opacity(double time, int view) const;

    Knob::Animation& opacityAnimation(); // made when it is first asked for
    const Knob::Animation* opacityIfAny() const { return m_opacity.get(); }

    QString displayName() const override;
    QString scriptName() const override;
    std::vector<Knob::Member> members() override;

private:
    std::unique_ptr<Knob::Animation> m_opacity;
};

// Layers and groups at the top, from the bottom of the drawing order to its top. A group weighs what it holds.
class RootModel : public LayerRoot
{
public:
    RootModel();
    ~RootModel() override;

    Ordered<TreeItem> items;
};

// What can be animated of the project itself, and the branches for all that it contains.
class ProjectParameters : public Knob::Branch
{
public:
    explicit ProjectParameters(Model& project);
    ~ProjectParameters() override;

    bool present() const override;
    QString displayName() const override;
    QString scriptName() const override;
    std::vector<Knob::Member> members() override;

    // A further branch, for what the project holds beside layers (its clips). Once, when the project is made.
    void addBranch(const QString& name, Knob::Branch* branch);

    // What Project::render works by, as the set "render".
    enum RenderValue { InsertOpacity, FillAlgorithm, RemoveSource, Illumination, Luminance, RenderValueCount };
    Knob::Value render(RenderValue value, double time, int view) const;
    static const Knob::Description& description(RenderValue value);
    Knob::Animation& animation(RenderValue value);
    const Knob::Animation& animation(RenderValue value) const;

private:
    struct Branches;
    const std::unique_ptr<Branches> m_branches;
};

// ---- The model's objects behind the platform's; the casts cannot fail ----

inline LayerModel& model(STRM_Layer& layer) { return static_cast<LayerModel&>(layer); }
inline GroupModel& model(LayerGroup& group) { return static_cast<GroupModel&>(group); }

// ---- Reading the tree ----

// All layers, bottom first, whatever group they are in.
std::vector<const LayerModel*> allLayers(const Model& project);
std::vector<const GroupModel*> allGroups(const Model& project);
const LayerModel* layerAt(const Model& project, std::size_t index); // null past the end

// ---- Changing it ----

// Puts a layer that has no place yet at the top.
void addLayer(Edit& edit, LayerModel& layer);
void addGroup(Edit& edit, GroupModel& group);
// Null: to the top of the project. Past the end: at the end.
void moveLayer(Edit& edit, LayerModel& layer, GroupModel* group, std::size_t index);
void reorder(Edit& edit, TreeItem& item, int place);
// Takes a layer to which nothing is linked out of the project.
void takeOut(Edit& edit, LayerModel& layer);
// STRM_BadArgument for a circle.
void linkToTrack(Edit& edit, LayerModel& layer, LayerModel* followed);

// Writes a track: replaces the keyframes of the layer's corners in the view between the first and the last of the keys'
// times (the whole track with `replaceAll`). One change, in whichever edit it is made.
void writeTrack(Edit& edit, LayerModel& layer, int view, const std::vector<TrackKey>& keys, bool replaceAll);

} // namespace Stratum
