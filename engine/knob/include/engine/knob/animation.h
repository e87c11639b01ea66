// The values of one parameter over time: a resting value and keyframes per view. Most parameters have no keyframe or
// one, some have a hundred thousand: the first two need no memory of their own, the last stay quick to change anywhere.
//
// A copy shares its keyframes with the original until one of the two changes, and then all but those around the change:
// copies are cheap, under a lock as well.
//
// Nothing here locks: an animation is guarded by the lock of the model that it belongs to. A copy needs none.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace Knob {

// A number, a flag (0 or 1), an enumerator or, with y, a point. The parameter's description says which.
struct Value
{
    double x = 0;
    double y = 0;

    bool operator==(const Value& other) const { return x == other.x && y == other.y; }
    bool operator!=(const Value& other) const { return !(*this == other); }
};

struct Key
{
    double time = 0;
    Value value;
    int view = 0;
};

// Ordered by view, then by time.
bool operator<(const Key& a, const Key& b);

// The time that stands for "not animated". So does what becomes of it in single precision.
constexpr double unanimated = 4294967295.0;
bool isUnanimated(double time);

// The last time before another that a keyframe can have.
double timeBefore(double time);

class Animation
{
public:
    Animation() = default;
    explicit Animation(Value rest) : m_rest(rest) {}
    // The value where there are no keyframes.
    const Value& rest() const { return m_rest; }
    void setRest(Value rest) { m_rest = rest; }

    std::size_t keyCount() const;
    bool animated() const { return m_single || m_chunks; }
    bool animated(int view) const;

    // The value in a view at a time, or the resting value at the time that means "not animated". A view without
    // keyframes of its own answers the hero view's.
    Value at(double time, int view, int hero, bool interpolated) const;

    // The keyframe at exactly that time; null when there is none. Good until the next change.
    const Key* key(double time, int view) const;

    // Both return the value of the keyframe that was there.
    std::optional<Value> setKey(double time, int view, Value value);
    std::optional<Value> removeKey(double time, int view);

    // By view, then by time.
    template <class Function>
    void forEachKey(Function function) const
    {
        if (m_single)
            function(*m_single);
        if (m_chunks)
            for (const auto& chunk : *m_chunks)
                for (const Key& key : *chunk)
                    function(key);
    }
    std::vector<Key> keys(int view) const;

private:
    using Chunk = std::vector<Key>;
    using Chunks = std::vector<std::shared_ptr<Chunk>>;

    // The last key that is not after the place, and the first that is after it; null where there is none.
    struct Neighbours
    {
        const Key* before = nullptr;
        const Key* after = nullptr;
    };
    Neighbours neighbours(const Key& place) const;
    std::size_t chunkFor(const Key& place) const;

    Value m_rest;
    std::optional<Key> m_single;      // exactly one key
    std::shared_ptr<Chunks> m_chunks; // two or more, in chunks of bounded size, none empty; shared with copies
};

} // namespace Knob
