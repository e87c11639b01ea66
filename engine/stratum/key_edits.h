// Changes of keyframes and resting values, as one invertible change of any number of parts.
#pragma once

#include <engine/knob/animation.h>
#include <engine/stratum/history.h>
#include <map>
#include <optional>
#include <type_traits>
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
        run([](State& next) {
            for (Part& part : next.parts)
                exchange(next.animations.at(part.animation), part);
        });
    }
    void takeBack() override
    {
        run([](State& next) {
            for (auto part = next.parts.rbegin(); part != next.parts.rend(); ++part)
                exchange(next.animations.at(part->animation), *part);
        });
    }
    void settle() noexcept override { m_former.reset(); }

private:
    struct Part
    {
        Knob::Animation* animation;
        double time;
        int view;
        std::optional<Knob::Value> value;
        bool rest;
    };
    struct State
    {
        std::vector<Part> parts;
        std::map<Knob::Animation*, Knob::Animation> animations;
    };

    // Changes copies and puts them in place as a whole; the originals wait for the way back until it is settled.
    template <class Function>
    void run(Function exchangeParts)
    {
        if (!m_former) {
            State next{m_edits, {}};
            for (const Part& part : m_edits)
                next.animations.emplace(part.animation, *part.animation);
            exchangeParts(next);
            m_former = std::move(next);
            swapWithFormer();
        } else {
            swapWithFormer();
            m_former.reset();
        }
    }
    void swapWithFormer() noexcept
    {
        static_assert(std::is_nothrow_swappable_v<Knob::Animation>);
        m_edits.swap(m_former->parts);
        for (auto& [animation, other] : m_former->animations)
            std::swap(*animation, other);
    }

    static void exchange(Knob::Animation& animation, Part& part)
    {
        if (part.rest) {
            const Knob::Value former = animation.rest();
            animation.setRest(*part.value);
            part.value = former;
        } else if (part.value) {
            part.value = animation.setKey(part.time, part.view, *part.value);
        } else {
            part.value = animation.removeKey(part.time, part.view);
        }
    }

    std::vector<Part> m_edits;
    std::optional<State> m_former;
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
