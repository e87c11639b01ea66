// Keyframes that follow from those of other values: a point that is put on a moving curve, a follower that keeps its
// place without its master. They are written wherever one of the others has a keyframe, and in between where the result
// is not linear.
#pragma once

#include "key_edits.h"

#include <engine/stratum/shapes.h>
#include <functional>
#include <map>
#include <set>

namespace Stratum {

// Writes values of points into key edits, and refuses those that a file could not hold: STRM_OutOfRange names the
// field.
class PointEdits
{
public:
    void set(PointModel& point, PointField field, double time, int view, const Knob::Value& value);
    void setRest(PointModel& point, PointField field, const Knob::Value& value);
    // All that have a value; as addValue().
    void write(PointModel& point, const PointValues& values, double time, int view);

    void perform(Edit& edit);

private:
    std::unique_ptr<KeyEdits> m_edits = std::make_unique<KeyEdits>();
};

class DerivedKeys
{
public:
    // The values at a time, or resting ones at the time that means "not animated".
    using Sample = std::function<PointValues(double time, int view)>;

    explicit DerivedKeys(int hero) : m_times{{hero, {}}}, m_hero(hero) {}

    // A value that the result depends on, up to a time.
    void dependOn(const Knob::Animation& animation, double until = unlimitedTime);
    // The same, of a value that is held between keyframes: the result jumps with it.
    void dependOnHeld(const Knob::Animation& animation);
    // The fields, and those of the point's masters that act on it, with the beginnings of its links.
    void dependOn(const PointModel& point, const std::vector<PointField>& fields, double until = unlimitedTime);
    void addTime(double time, int view) { m_times[view].insert(time); }

    // Those that have keyframes of their own for one of the values, and the hero view.
    std::vector<int> views() const;
    // The view that answers for another: itself when it has keyframes of its own, else the hero view.
    int answering(int view) const { return m_times.count(view) ? view : m_hero; }

    // A value that turns out to be the same everywhere gets a resting value and a keyframe at the given time only (none
    // at the time that means "not animated"). Otherwise what rests is changed in points that are seen at rest only.
    void write(PointEdits& edits, PointModel& point, const Sample& sample);
    void writeNew(PointEdits& edits, PointModel& point, const Sample& sample, double time, int view);

private:
    static constexpr double unlimitedTime = 1e300;

    struct Sampled
    {
        int view;
        double time;
        PointValues values;
    };
    void dependOnBeginning(const PointModel& point);
    std::vector<Sampled> sampled(const Sample& sample) const;
    void addBetween(const Sample& sample, const Sampled& from, const Sampled& to, int depth,
                    std::vector<Sampled>& found) const;

    std::map<int, std::set<double>> m_times; // by view; that of the hero is always there
    const int m_hero;
};

} // namespace Stratum
