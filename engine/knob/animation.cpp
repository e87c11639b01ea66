// Keyframes in order. Many keys are kept in chunks of bounded size, so that a change in the middle of a hundred
// thousand moves a few hundred of them at most.
#include <algorithm>
#include <atomic>
#include <cassert>
#include <engine/knob/animation.h>
#include <limits>
#include <utility>

namespace Knob {

namespace {

constexpr std::size_t chunkSize = 512;

Key place(double time, int view)
{
    Key key;
    key.time = time;
    key.view = view;
    return key;
}

bool samePlace(const Key& a, const Key& b) { return a.view == b.view && a.time == b.time; }

// What it points to, as its only owner may change it. A last other owner may have read it in another thread.
template <class T>
T& own(std::shared_ptr<T>& shared)
{
    if (shared.use_count() > 1)
        shared = std::make_shared<T>(*shared);
    else
        std::atomic_thread_fence(std::memory_order_acquire);
    return *shared;
}

Value between(const Key& before, const Key& after, double time)
{
    assert(before.view == after.view && before.time < after.time);
    const double part = (time - before.time) / (after.time - before.time);
    return {before.value.x + (after.value.x - before.value.x) * part,
            before.value.y + (after.value.y - before.value.y) * part};
}

} // namespace

bool operator<(const Key& a, const Key& b) { return a.view != b.view ? a.view < b.view : a.time < b.time; }

bool isUnanimated(double time) { return time == unanimated || time == unanimated + 1; }

std::size_t Animation::keyCount() const
{
    std::size_t count = m_single ? 1 : 0;
    if (m_chunks)
        for (const auto& chunk : *m_chunks)
            count += chunk->size();
    return count;
}

bool Animation::animated(int view) const
{
    if (m_single)
        return m_single->view == view;
    if (!m_chunks)
        return false;
    const Key* first = neighbours(place(-std::numeric_limits<double>::infinity(), view)).after;
    return first && first->view == view;
}

// The chunk that holds the place, or would: the last that does not begin after it, or the first.
std::size_t Animation::chunkFor(const Key& place) const
{
    assert(m_chunks && !m_chunks->empty());
    const auto after =
        std::upper_bound(m_chunks->begin(), m_chunks->end(), place,
                         [](const Key& key, const std::shared_ptr<Chunk>& chunk) { return key < chunk->front(); });
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(1, after - m_chunks->begin()) - 1);
}

Animation::Neighbours Animation::neighbours(const Key& place) const
{
    assert(!m_single || !m_chunks); // keys are kept in one form at a time
    Neighbours found;
    if (m_single)
        (place < *m_single ? found.after : found.before) = &*m_single;
    if (!m_chunks)
        return found;
    const std::size_t number = chunkFor(place);
    const Chunk& chunk = *(*m_chunks)[number];
    const auto after = std::upper_bound(chunk.begin(), chunk.end(), place);
    if (after != chunk.begin())
        found.before = &*(after - 1);
    if (after != chunk.end())
        found.after = &*after;
    else if (number + 1 < m_chunks->size())
        found.after = &(*m_chunks)[number + 1]->front();
    return found;
}

Value Animation::at(double time, int view, int hero, bool interpolated) const
{
    if (!animated() || isUnanimated(time))
        return m_rest;
    Neighbours found = neighbours(place(time, view));
    if (found.before && found.before->view != view)
        found.before = nullptr;
    if (found.after && found.after->view != view)
        found.after = nullptr;
    if (!found.before && !found.after)
        return view == hero ? m_rest : at(time, hero, hero, interpolated);
    if (!found.before)
        return found.after->value;
    if (!found.after || !interpolated)
        return found.before->value;
    return between(*found.before, *found.after, time);
}

const Key* Animation::key(double time, int view) const
{
    const Key wanted = place(time, view);
    const Key* found = neighbours(wanted).before;
    return found && samePlace(*found, wanted) ? found : nullptr;
}

std::optional<Value> Animation::setKey(double time, int view, Value value)
{
    Key added = place(time, view);
    added.value = value;
    if (!animated()) {
        m_single = added;
        return std::nullopt;
    }
    if (m_single && samePlace(*m_single, added))
        return std::exchange(m_single->value, value);
    if (!m_chunks) {
        m_chunks = std::make_shared<Chunks>(1, std::make_shared<Chunk>(1, *m_single));
        m_single.reset();
    }
    Chunks& chunks = own(m_chunks);
    const auto number = static_cast<std::ptrdiff_t>(chunkFor(added));
    Chunk& chunk = own(chunks[static_cast<std::size_t>(number)]);
    const auto known = std::lower_bound(chunk.begin(), chunk.end(), added);
    if (known != chunk.end() && samePlace(*known, added))
        return std::exchange(known->value, value);
    chunk.insert(known, added);
    if (chunk.size() > chunkSize) {
        // Keys mostly come in order: a full chunk at the end is left full, and the next begins with its last key.
        const bool atEnd = number + 1 == static_cast<std::ptrdiff_t>(chunks.size()) && !(added < chunk.back());
        const auto middle = atEnd ? chunk.end() - 1 : chunk.begin() + static_cast<std::ptrdiff_t>(chunk.size() / 2);
        auto rest = std::make_shared<Chunk>(middle, chunk.end());
        chunk.erase(middle, chunk.end());
        chunks.insert(chunks.begin() + number + 1, std::move(rest));
    }
    return std::nullopt;
}

std::optional<Value> Animation::removeKey(double time, int view)
{
    const Key* const found = key(time, view);
    if (!found)
        return std::nullopt;
    const Key removed = *found;
    if (m_single) {
        m_single.reset();
        return removed.value;
    }
    Chunks& chunks = own(m_chunks);
    const auto chunk = chunks.begin() + static_cast<std::ptrdiff_t>(chunkFor(removed));
    Chunk& keys = own(*chunk);
    keys.erase(std::lower_bound(keys.begin(), keys.end(), removed));
    if (keys.empty())
        chunks.erase(chunk);
    assert(!chunks.empty()); // a last key would be the single one
    if (chunks.size() == 1 && chunks.front()->size() == 1) {
        m_single = chunks.front()->front();
        m_chunks.reset();
    }
    return removed.value;
}

std::vector<Key> Animation::keys(int view) const
{
    std::vector<Key> found;
    forEachKey([&](const Key& key) {
        if (key.view == view)
            found.push_back(key);
    });
    return found;
}

} // namespace Knob
