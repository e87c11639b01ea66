// Whether engine objects are still part of their project, and the identity by which handles are compared and hashed. No
// lock is taken: comparison, hash and the test for null may be called by whoever holds an interpreter's lock.
#pragma once

#include <QHash>
#include <engine/handles/access.h>

namespace orrery {

inline bool isPresent(const STRM_Layer& layer) { return layer.parentGroup() != nullptr; }
inline bool isPresent(const Stratum::LayerGroup& group) { return group.parentGroup() != nullptr; }
inline bool isPresent(const Stratum::Contour& contour)
{
    return static_cast<const Stratum::ContourModel&>(contour).present();
}
inline bool isPresent(const Stratum::ControlPoint& point)
{
    return static_cast<const Stratum::PointModel&>(point).present();
}
inline bool isPresent(const Knob::ParameterSet& node) { return node.present(); }

template <class T>
bool isGone(const boost::weak_ptr<T>& object, const boost::weak_ptr<STRM_ProjectManager>& manager)
{
    const boost::shared_ptr<STRM_ProjectManager> open = manager.lock();
    const boost::shared_ptr<T> found = object.lock();
    return !open || !open->isOpen() || !found || !isPresent(*found);
}

template <class T>
const void* identity(const T& object)
{
    return &object;
}
inline const void* identity(const Knob::ParameterSet& node) { return node.target(); }

// The hash of a handle, for the free functions beside the classes: the same for equal handles, and for good.
template <class Handle>
struct HandleAccess : Handle
{
    static const void* identity(const Handle& handle) { return handle.*(&HandleAccess::m_identity); }
};
template <class Handle>
unsigned int hashOf(const Handle& handle)
{
    return static_cast<unsigned int>(::qHash(reinterpret_cast<quintptr>(HandleAccess<Handle>::identity(handle))));
}

} // namespace orrery
