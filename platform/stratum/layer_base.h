// The engine's tree of layers and groups, as far as it is read directly.
//
// An engine object lives as long as its project's STRM_ProjectManager, also after it was removed. A shared pointer from
// a handle's handledObject() keeps the manager alive too, so that what the object points to may be followed.
#ifndef STRATUM_LAYER_BASE_H
#define STRATUM_LAYER_BASE_H

#include <atomic>
#include <boost/enable_shared_from_this.hpp>

namespace Stratum {

class LayerGroup;

// A layer or a group.
class LayerBase : public boost::enable_shared_from_this<LayerBase>
{
public:
    LayerBase(const LayerBase&) = delete;
    LayerBase& operator=(const LayerBase&) = delete;
    virtual ~LayerBase();

    // The group that holds this object: the project's LayerRoot at the top, null for the root itself and for an object
    // that was removed. Safe to read from any thread.
    LayerGroup* parentGroup() const { return m_parentGroup.load(std::memory_order_acquire); }

protected:
    LayerBase();

    std::atomic<LayerGroup*> m_parentGroup;
};

// An ordered group of layers.
class LayerGroup : public LayerBase
{
public:
    ~LayerGroup() override;

protected:
    LayerGroup();
};

// The project's top group. A layer in it has no parent group for scripts.
class LayerRoot : public LayerGroup
{
public:
    ~LayerRoot() override;

protected:
    LayerRoot();
};

} // namespace Stratum

// A layer.
class STRM_Layer : public Stratum::LayerBase
{
public:
    ~STRM_Layer() override;

protected:
    STRM_Layer();
};

#endif
