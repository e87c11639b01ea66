// Where derived values need keyframes, and the limits of what is written.
#include "derived_keys.h"

#include <algorithm>
#include <cmath>
#include <knob/time.h>

namespace Stratum {

namespace {

// What rounding makes of a value at the limit is brought back; anything beyond is refused.
Knob::Value withinLimits(PointField field, Knob::Value value)
{
    const Knob::Description& limits = description(field);
    const auto bringBack = [&limits](double& part) {
        const double nearest = std::clamp(part, limits.lowest, limits.highest);
        if (std::fabs(part - nearest) <= 1e-9 * std::max(std::fabs(nearest), 1.0))
            part = nearest;
    };
    bringBack(value.x);
    bringBack(value.y);
    checkValue(limits, value);
    return value;
}

// How far a value lies from the straight line between two others, in pixels; 0 for what is held.
double bend(const PointValues& from, const PointValues& middle, const PointValues& to, double part)
{
    double furthest = 0;
    for (std::size_t i = 0; i < PointFieldCount; ++i) {
        if (!middle[i] || !pointFieldTable[i].description.interpolated())
            continue;
        const double x = from[i]->x + (to[i]->x - from[i]->x) * part, y = from[i]->y + (to[i]->y - from[i]->y) * part;
        furthest = std::max(furthest, std::hypot(middle[i]->x - x, middle[i]->y - y));
    }
    return furthest;
}

} // namespace

// ---- Writing ----

void PointEdits::set(PointModel& point, PointField field, double time, int view, const Knob::Value& value)
{
    m_edits->set(point.fields[field], time, view, withinLimits(field, value));
}

void PointEdits::setRest(PointModel& point, PointField field, const Knob::Value& value)
{
    m_edits->setRest(point.fields[field], withinLimits(field, value));
}

void PointEdits::write(PointModel& point, const PointValues& values, double time, int view)
{
    for (const PointField field : pointFields(point.contourModel().type()))
        if (values[field])
            addValue(*m_edits, point.fields[field], time, view, withinLimits(field, *values[field]));
}

void PointEdits::perform(Edit& edit)
{
    if (!m_edits->empty())
        edit.perform(std::move(m_edits));
}

// ---- Times ----

void DerivedKeys::dependOn(const Knob::Animation& animation, double until)
{
    animation.forEachKey([&](const Knob::Key& key) {
        std::set<double>& times = m_times[key.view]; // a later keyframe makes the view differ from the hero's, too
        if (key.time <= until)
            times.insert(key.time);
    });
}

void DerivedKeys::dependOnHeld(const Knob::Animation& animation)
{
    std::optional<Knob::Key> last;
    animation.forEachKey([&](const Knob::Key& key) {
        std::set<double>& times = m_times[key.view];
        const bool first = !last || last->view != key.view;
        if (first && key.view != m_hero)
            times.insert(key.time); // also a view in which nothing ever changes differs from the hero's
        else if (!first && last->value != key.value)
            times.insert({Knob::timeBefore(key.time), key.time});
        last = key;
    });
}

void DerivedKeys::dependOn(const PointModel& point, const std::vector<PointField>& fields, double until)
{
    for (const PointField field : fields)
        dependOn(point.fields[field]);
    for (const PointModel* part = &point; part->masterModel(); part = part->masterModel()) {
        const PointModel& master = *part->masterModel();
        for (const PointField field : pointFields(master.contourModel().type()))
            if (pointFieldTable[field].effect != MasterEffect::None)
                dependOn(master.fields[field], until);
    }
    for (const PointModel* part = &point; part->masterModel(); part = part->masterModel())
        if (part->link()->time > beforeAllTimes && part->link()->time <= until)
            dependOnBeginning(*part);
}

// Where the master was moved since the link was made, the point jumps when the link begins.
void DerivedKeys::dependOnBeginning(const PointModel& point)
{
    const MasterLink& link = *point.link();
    const PointModel& master = *point.masterModel();
    for (auto& [view, times] : m_times) {
        times.insert(link.time);
        const double angle = master.ownAngle(link.time, view) + master.turn(link.time, view);
        if (master.position(link.time, view) != link.position.at(link.time, view, m_hero, false) ||
            (link.lockTangents && angle != link.angle.at(link.time, view, m_hero, false).x))
            times.insert(Knob::timeBefore(link.time));
    }
}

std::vector<int> DerivedKeys::views() const
{
    std::vector<int> views;
    for (const auto& [view, times] : m_times)
        views.push_back(view);
    return views;
}

// ---- Values ----

void DerivedKeys::addBetween(const Sample& sample, const Sampled& from, const Sampled& to, int depth,
                             std::vector<Sampled>& found) const
{
    const double time = Knob::Time::fromDouble((from.time + to.time) / 2);
    if (depth == 0 || to.time - from.time <= 0.5 || time <= from.time || time >= to.time)
        return;
    const Sampled middle{from.view, time, sample(time, from.view)};
    const double quarter = Knob::Time::fromDouble(from.time + (to.time - from.time) / 4);
    const auto bendAt = [&](double at, const PointValues& values) {
        return bend(from.values, values, to.values, (at - from.time) / (to.time - from.time));
    };
    if (bendAt(time, middle.values) <= flatteningTolerance &&
        bendAt(quarter, sample(quarter, from.view)) <= flatteningTolerance)
        return;
    addBetween(sample, from, middle, depth - 1, found);
    found.push_back(middle);
    addBetween(sample, middle, to, depth - 1, found);
}

// A view with a keyframe of one of several values answers the hero's for the others: it is sampled at the hero's times
// as well.
std::vector<DerivedKeys::Sampled> DerivedKeys::sampled(const Sample& sample) const
{
    constexpr int deepest = 10;
    std::vector<Sampled> found;
    for (const auto& [view, own] : m_times) {
        std::set<double> times = own;
        times.insert(m_times.at(m_hero).begin(), m_times.at(m_hero).end());
        std::optional<Sampled> last;
        for (const double time : times) {
            Sampled next{view, time, sample(time, view)};
            if (last)
                addBetween(sample, *last, next, deepest, found);
            found.push_back(next);
            last = std::move(next);
        }
    }
    return found;
}

void DerivedKeys::write(PointEdits& edits, PointModel& point, const Sample& sample)
{
    const std::vector<Sampled> all = sampled(sample);
    for (const PointField field : pointFields(point.contourModel().type())) {
        for (const Sampled& one : all)
            if (one.values[field])
                edits.set(point, field, one.time, one.view, *one.values[field]);
    }
    // Nothing moves in the hero view: there, any time tells what rests.
    if (m_times.at(m_hero).empty()) {
        const PointValues still = sample(0, m_hero);
        for (const PointField field : pointFields(point.contourModel().type()))
            if (still[field])
                edits.setRest(point, field, *still[field]);
    }
}

void DerivedKeys::writeNew(PointEdits& edits, PointModel& point, const Sample& sample, double time, int view)
{
    view = answering(view);
    if (!Knob::isUnanimated(time))
        addTime(time, view);
    const std::vector<Sampled> all = sampled(sample);
    const PointValues rest = sample(Knob::unanimated, m_hero);
    for (const PointField field : pointFields(point.contourModel().type())) {
        edits.setRest(point, field, *rest[field]);
        const bool still =
            std::all_of(all.begin(), all.end(), [&](const Sampled& one) { return *one.values[field] == *rest[field]; });
        for (const Sampled& one : all)
            if (!still || (one.time == time && one.view == view))
                edits.set(point, field, one.time, one.view, *one.values[field]);
    }
}

} // namespace Stratum
