// Points that follow other points: links that begin, are handed over to another master, and end.
#include "derived_keys.h"

#include <algorithm>
#include <engine/stratum/shapes.h>
#include <limits>
#include <stratum/exception.h>
#include <utility>

namespace Stratum {

namespace {

constexpr double noEnd = std::numeric_limits<double>::infinity();

// Both sides of a link.
class Relink : public Change
{
public:
    Relink(PointModel& point, PointModel* master, MasterLink link)
        : m_point(point), m_master(master), m_link(std::move(link))
    {
        for (PointModel* end : {&point, master})
            if (end)
                end->makeLinks();
    }

    void make() override
    {
        PointModel* const former = m_point.masterModel();
        m_point.exchangeMaster(m_master, m_link);
        m_master = former;
    }
    void takeBack() override { make(); }

private:
    PointModel& m_point;
    PointModel* m_master;
    MasterLink m_link;
};

// Writes what the master adds into the point's own keyframes; from `end` on it stays what it is then.
void keepWhatMasterAdds(Edit& edit, PointModel& point, double end)
{
    const bool turns = point.link()->lockTangents;
    std::vector<PointField> fields;
    for (const PointField field : pointFields(point.contourModel().type())) {
        const MasterEffect effect = pointFieldTable[field].effect;
        if (effect != MasterEffect::None && (turns || effect != MasterEffect::Turns))
            fields.push_back(field);
    }
    const int hero = edit->settings.heroView;
    DerivedKeys keys(hero);
    keys.dependOn(point, fields, end);
    if (end != noEnd && end > beforeAllTimes)
        keys.addTime(end, hero);
    PointEdits edits;
    keys.write(edits, point, [&](double time, int view) {
        const Knob::Value moved = point.displacement(std::min(time, end), view);
        const double angle = point.turn(std::min(time, end), view);
        PointValues values;
        for (const PointField field : fields)
            values[field] = withMaster(field, point.ownValue(field, time, view), moved, angle);
        return values;
    });
    edits.perform(edit);
}

void endLink(Edit& edit, PointModel& point, double end)
{
    if (!point.masterModel())
        return;
    if (point.link()->time <= end)
        keepWhatMasterAdds(edit, point, end);
    edit.perform(std::make_unique<Relink>(point, nullptr, MasterLink()));
}

MasterLink linkTo(const PointModel& master, double time, bool lockTangents)
{
    const int hero = master.contourModel().project().settings.heroView;
    const auto angle = [&](double at, int view) {
        return Knob::Value{master.ownAngle(at, view) + master.turn(at, view), 0};
    };
    MasterLink link;
    link.time = time;
    link.lockTangents = lockTangents;
    constexpr double atRest = Knob::unanimated;
    link.position.setRest(master.position(atRest, hero));
    link.angle.setRest(angle(atRest, hero));
    DerivedKeys keys(hero);
    keys.dependOn(master, pointFields(master.contourModel().type()));
    for (const int view : keys.views()) {
        link.position.setKey(time, view, master.position(time, view));
        link.angle.setKey(time, view, angle(time, view));
    }
    return link;
}

} // namespace

void releaseFollowers(Edit& edit, PointModel& point, const std::function<bool(const PointModel&)>& leaves)
{
    if (!point.links())
        return;
    std::vector<PointModel*> staying;
    for (const PointModel::Links& follower : point.links()->followers)
        if (follower.point.present() && !leaves(follower.point))
            staying.push_back(&follower.point);
    for (PointModel* follower : staying)
        endLink(edit, *follower, noEnd);
}

void setMaster(Edit& edit, PointModel& point, PointModel* master, double time, bool lockTangents)
{
    for (const PointModel* link = master; link; link = link->masterModel()) {
        if (link == &point) {
            const QString message =
                QString::fromLatin1("master point %1: point %2 cannot follow itself, directly or not")
                    .arg(master->id())
                    .arg(point.id());
            throw STRM_BadArgument(__FILE__, __LINE__, message, message);
        }
    }
    if (!master) {
        endLink(edit, point, noEnd);
        return;
    }
    const double begin = Knob::isUnanimated(time) ? beforeAllTimes : time;
    const MasterLink* const former = point.link();
    if (point.masterModel() == master && former->lockTangents == lockTangents && former->time <= begin)
        return;
    endLink(edit, point, begin);
    edit.perform(std::make_unique<Relink>(point, master, linkTo(*master, begin, lockTangents)));
}

} // namespace Stratum
