// PyHandle, for each of the object types that it is used with.
#include <engine/handles/presence.h>
#include <orrery/py_handle.h>

template <class T>
PyHandle<T>::PyHandle() = default;

template <class T>
PyHandle<T>::PyHandle(boost::shared_ptr<T> object, boost::weak_ptr<STRM_ProjectManager> manager)
    : m_object(object), m_manager(manager), m_identity(object ? orrery::identity(*object) : nullptr)
{}

template <class T>
PyHandle<T>::~PyHandle() = default;

// An address may be used again once its object is gone: by another project, or by a newer object of the same.
template <class T>
bool PyHandle<T>::refersToSame(const PyHandle& other) const
{
    const bool isSameProject = !m_manager.owner_before(other.m_manager) && !other.m_manager.owner_before(m_manager);
    return m_identity == other.m_identity && isSameProject && m_object.expired() == other.m_object.expired();
}

template <class T>
boost::shared_ptr<T> PyHandle<T>::handledObject() const
{
    const boost::shared_ptr<STRM_ProjectManager> manager = orrery::openManager(m_manager);
    const boost::shared_ptr<T> object = m_object.lock();
    if (!object || !orrery::isPresent(*object))
        Stratum::throwInvalidObject();
    return boost::shared_ptr<T>(manager, object.get());
}

template class PyHandle<STRM_Layer>;
template class PyHandle<Stratum::LayerGroup>;
template class PyHandle<Stratum::Contour>;
template class PyHandle<Stratum::ControlPoint>;
template class PyHandle<Knob::ParameterSet>;
