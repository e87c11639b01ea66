// The engine's contours and control points behind the platform's base classes. The rules of tree.h hold for them.
#pragma once

#include <array>
#include <atomic>
#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <engine/knob/parameter_tree.h>
#include <engine/stratum/curve.h>
#include <engine/stratum/tree.h>
#include <functional>
#include <memory>
#include <stratum/contour.h>
#include <stratum/enumerations.h>
#include <vector>

namespace Stratum {

class ContourModel;

// How a point follows its master: where the master was when the link was made is taken from where it is.
struct MasterLink
{
    double time = 0; // from which on it holds
    bool lockTangents = false;
    // The master's position, and the direction of its tangents in radians, when the link was made. Kept as keyframes,
    // since a view in which the master had none is one in which it was where the hero view has it.
    Knob::Animation position;
    Knob::Animation angle;
};

// A field of a point once a master has moved and turned it; with both negated, what it was before.
Knob::Value withMaster(PointField field, const Knob::Value& own, const Knob::Value& moved, double angle);

// Holds for all times: links that are made at no time begin here.
constexpr double beforeAllTimes = -4294967295.0;

class PointModel : public ControlPoint,
                   public Knob::Branch,
                   public OrderedItem,
                   public boost::enable_shared_from_this<PointModel>
{
public:
    PointModel(ContourModel& contour, unsigned int id);
    ~PointModel() override;

    ContourModel& contourModel() const;
    PointModel* masterModel() const { return static_cast<PointModel*>(master()); }

    bool present() const override;
    void setPresent(bool present) { m_present.store(present, std::memory_order_release); }
    void requireWritable() const override;

    std::array<Knob::Animation, PointFieldCount> fields; // of both kinds; those of the other kind are not used

    // A field as its keyframes say it, and as it is moved with the master.
    Knob::Value ownValue(PointField field, double time, int view) const;
    Knob::Value position(double time, int view) const;
    // How far the master moves the point.
    Knob::Value displacement(double time, int view) const;
    // The direction of the point's tangents before a master turns them; 0 without tangents.
    double ownAngle(double time, int view) const;
    // By how much the master turns the tangents, in radians; without tangents, by how much it would.
    double turn(double time, int view) const;
    PointState state(double time, int view) const;

    QString displayName() const override;
    QString scriptName() const override;
    std::vector<Knob::Member> members() override;

    // How it follows its master; null when it never had one.
    const MasterLink* link() const { return m_links ? &m_links->link : nullptr; }
    // The former link is put into `link`. Both points have links.
    void exchangeMaster(PointModel* master, MasterLink& link) noexcept;

    struct Links : Follower<Links>
    {
        explicit Links(PointModel& point) : point(point) {}

        PointModel& point;
        MasterLink link;
        Followers<Links> followers;
    };
    // Null for a point that neither has nor is a master and never was.
    const Links* links() const { return m_links.get(); }
    Links& makeLinks();

private:
    std::atomic<bool> m_present{true};
    std::unique_ptr<Links> m_links;
};

class ContourModel : public Contour,
                     public Knob::Branch,
                     public OrderedItem,
                     public boost::enable_shared_from_this<ContourModel>
{
public:
    ContourModel(LayerModel& layer, int type, unsigned int id);
    ~ContourModel() override;

    LayerModel& layer() const { return m_layer; }
    unsigned int id() const { return m_id; } // within its layer
    STRM_ProjectManager& manager() const { return m_layer.manager(); }
    const Model& project() const { return m_layer.project(); }

    bool present() const override { return m_present.load(std::memory_order_acquire) && m_layer.present(); }
    void setPresent(bool present) { m_present.store(present, std::memory_order_release); }
    void requireWritable() const override { m_layer.requireUnlocked(); }

    // Takes the lock.
    boost::shared_ptr<ControlPoint> pointByID(unsigned int id) override;
    PointModel* find(unsigned int id) const; // null when the contour never had it

    // In the order of the outline; removed ones are in allPoints only, which is ordered by id.
    Ordered<PointModel> points;
    std::vector<boost::shared_ptr<PointModel>> allPoints;
    unsigned int nextPointId = 0;
    PointModel& makePoint(unsigned int id);

    // The active points, in order, with the contour's edge width added to theirs.
    Curve curve(double time, int view) const;

    QString displayName() const override;
    QString scriptName() const override;
    std::vector<Knob::Member> members() override;
    Knob::Member member(const QString& name) override;

    // "type", "edge_width"
    std::array<Knob::Animation, 2> settings;

private:
    LayerModel& m_layer;
    const unsigned int m_id;
    std::atomic<bool> m_present{true};
};

inline ContourModel& model(Contour& contour) { return static_cast<ContourModel&>(contour); }
inline PointModel& model(ControlPoint& point) { return static_cast<PointModel&>(point); }

// The tables of what contours and points have.
const Knob::Description& contourDescription(std::size_t index);

// ---- Changing shapes; the checks of presence and of locked layers have been made ----
//
// All of these throw STRM_OutOfRange that names the field, and change nothing, when a value that follows from others (a
// follower's place without its master, a point on a curve) would pass the limits of its field.

// Throws STRM_OutOfRange or STRM_BadArgument that names the field.
void checkPointValues(int contourType, const PointValues& values);
// With the initial values of the fields that have none.
PointValues completed(int contourType, PointValues values);

ContourModel& addContour(Edit& edit, LayerModel& layer, int type, const std::vector<PointValues>& points, double time,
                         int view);
void removeContour(Edit& edit, ContourModel& contour);
// Clears the links to the layer; points elsewhere that follow its points keep their position.
void removeLayer(Edit& edit, LayerModel& layer);
PointModel& insertPoint(Edit& edit, ContourModel& contour, const PointValues& values, std::size_t index, double time,
                        int view);
void removePoint(Edit& edit, PointModel& point);
// `whole`: fields without a value take their initial value; else they stay as they are.
void writePoint(Edit& edit, PointModel& point, PointValues values, bool whole, double time, int view);
// Ends the links of all that follow the point, but for followers that leave with it; they stay where they are.
void releaseFollowers(Edit& edit, PointModel& point, const std::function<bool(const PointModel&)>& leaves);
// Null ends the link and leaves the point where it is at all times. Another master takes over from the time on. Nothing
// changes when the point follows the master in the same way at that time already.
void setMaster(Edit& edit, PointModel& point, PointModel* master, double time, bool lockTangents);

// ---- Changing single values ----

// Throws as checkPointValues().
void checkValue(const Knob::Description& description, const Knob::Value& value);
// At the time that means "not animated": sets the resting value and removes the view's keyframes.
void setValue(Edit& edit, Knob::Animation& animation, Knob::Value value, double time, int view);
// The last keyframe of the hero view leaves its value as the resting value.
void removeKey(Edit& edit, Knob::Animation& animation, double time, int view);

} // namespace Stratum
