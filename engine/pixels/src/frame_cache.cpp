// Least recently used frames go first; a frame being decoded is not counted and cannot go.

#include "frame_cache.h"

namespace pixels {

SharedImage FrameCache::get(const std::string& key, const std::function<Image()>& decode)
{
    std::promise<SharedImage> promise;
    std::shared_future<SharedImage> known;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        const auto [place, isNew] = m_entries.try_emplace(key);
        if (isNew) {
            place->second.frame = promise.get_future().share();
        } else {
            known = place->second.frame;
            ++m_statistics.reused;
            if (place->second.ready)
                m_uses.splice(m_uses.begin(), m_uses, place->second.use);
        }
    }
    if (known.valid())
        return known.get();

    try {
        auto frame = std::make_shared<const Image>(decode());
        keep(key, frame);
        promise.set_value(frame);
        return frame;
    } catch (...) {
        forget(key);
        promise.set_exception(std::current_exception());
        throw;
    }
}

void FrameCache::keep(const std::string& key, const SharedImage& frame)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    Entry& entry = m_entries.at(key);
    m_uses.push_front(key);
    entry.use = m_uses.begin();
    entry.bytes = frame->values.size() * sizeof(float);
    entry.ready = true;
    m_statistics.bytes += entry.bytes;
    ++m_statistics.decoded;
    shrink();
}

void FrameCache::forget(const std::string& key)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto place = m_entries.find(key);
    if (place != m_entries.end() && !place->second.ready)
        m_entries.erase(place);
}

void FrameCache::shrink()
{
    while (m_statistics.bytes > m_statistics.limit && !m_uses.empty()) {
        const auto oldest = m_entries.find(m_uses.back());
        m_statistics.bytes -= oldest->second.bytes;
        m_entries.erase(oldest);
        m_uses.pop_back();
    }
}

void FrameCache::setLimit(std::size_t bytes)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_statistics.limit = bytes;
    shrink();
}

CacheStatistics FrameCache::statistics() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_statistics;
}

} // namespace pixels
