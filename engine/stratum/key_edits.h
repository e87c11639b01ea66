// Changes of keyframes and resting values, as one invertible change of any number of parts.
#pragma once

#include <engine/knob/animation.h>
#include <engine/stratum/history.h>
#include <optional>
#include <utility>
#include <vector>

namespace Stratum {

class KeyEdits : public Change
{
public:
    // No value: the key is removed.
    void set(Knob::Animation& animation, double time, int view, std::optional<Knob::Value> value)
    {
        m_edits.push_back({&animation, time, view, value, false});
    }
    void setRest(Knob::Animation& animation, Knob::Value value) { m_edits.push_back({&animation, 0, 0, value, true}); }
    bool empty() const { return m_edits.empty(); }

    void make() override
    {
        for (Part& part : m_edits)
            exchange(part);
    }
    void takeBack() override
    {
        for (auto part = m_edits.rbegin(); part != m_edits.rend(); ++part)
            exchange(*part);
    }

private:
    struct Part
    {
        Knob::Animation* animation;
        double time;
        int view;
        std::optional<Knob::Value> value;
        bool rest;
    };

    static void exchange(Part& part)
    {
        if (part.rest) {
            const Knob::Value former = part.animation->rest();
            part.animation->setRest(*part.value);
            part.value = former;
        } else if (part.value) {
            part.value = part.animation->setKey(part.time, part.view, *part.value);
        } else {
            part.value = part.animation->removeKey(part.time, part.view);
        }
    }

    std::vector<Part> m_edits;
};

// At the time that means "not animated": the resting value, in place of the view's keyframes.
inline void addValue(KeyEdits& edits, Knob::Animation& animation, double time, int view, Knob::Value value)
{
    if (!Knob::isUnanimated(time)) {
        edits.set(animation, time, view, value);
        return;
    }
    for (const Knob::Key& key : animation.keys(view))
        edits.set(animation, key.time, view, std::nullopt);
    edits.setRest(animation, value);
}

} // namespace Stratum
