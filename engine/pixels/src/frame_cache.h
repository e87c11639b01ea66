// Keeps the frames that were decoded last, up to a number of bytes, so that several layers and operations that look at
// the same frame share its decoding.
#pragma once

#include <engine/pixels/pixels.h>
#include <functional>
#include <future>
#include <list>
#include <mutex>
#include <unordered_map>

namespace pixels {

class FrameCache
{
public:
    explicit FrameCache(std::size_t limit) { m_statistics.limit = limit; }

    // The frame known under the key, or what `decode` makes. `decode` runs without the lock; threads that ask for a key
    // that is being decoded wait for it, and get its exception when it throws one.
    SharedImage get(const std::string& key, const std::function<Image()>& decode);

    void setLimit(std::size_t bytes);
    CacheStatistics statistics() const;

private:
    struct Entry
    {
        std::shared_future<SharedImage> frame;
        std::size_t bytes = 0;
        bool ready = false;
        std::list<std::string>::iterator use;
    };

    void keep(const std::string& key, const SharedImage& frame);
    void forget(const std::string& key);
    void shrink();

    mutable std::mutex m_mutex;
    std::unordered_map<std::string, Entry> m_entries;
    std::list<std::string> m_uses; // of the frames that are ready, the latest use first
    CacheStatistics m_statistics;
};

} // namespace pixels
