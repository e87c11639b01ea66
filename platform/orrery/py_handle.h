// The common part of the handle classes: values that refer to an engine object.
#ifndef ORRERY_PY_HANDLE_H
#define ORRERY_PY_HANDLE_H

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <knob/parameter_set.h>
#include <stratum/contour.h>
#include <stratum/layer_base.h>
#include <stratum/project_manager.h>

// Refers weakly to an engine object and to the manager of its project; keeps neither alive. A default-constructed
// handle refers to nothing. Copies refer to the same object.
//
// A handle whose object was removed, or whose project is gone, is null: isNull() of the handle class answers true and
// every other operation throws STRM_BadState "Invalid object". When undo brings the object back, its handles refer to
// it again.
template <class T>
class PyHandle
{
public:
    // The engine object. The pointer keeps the object and its project's manager alive. Throws STRM_BadState
    // "Invalid object" for a null handle; never returns an empty pointer.
    boost::shared_ptr<T> handledObject() const;

protected:
    PyHandle();
    PyHandle(boost::shared_ptr<T> object, boost::weak_ptr<STRM_ProjectManager> manager);
    PyHandle(const PyHandle&) = default;
    PyHandle& operator=(const PyHandle&) = default;
    ~PyHandle();

    // Whether both refer to the same engine object, which may be gone from memory meanwhile.
    bool refersToSame(const PyHandle& other) const;

    boost::weak_ptr<T> m_object;
    boost::weak_ptr<STRM_ProjectManager> m_manager;
    const void* m_identity = nullptr; // what handles compare and hash by; never followed
};

extern template class PyHandle<STRM_Layer>;
extern template class PyHandle<Stratum::LayerGroup>;
extern template class PyHandle<Stratum::Contour>;
extern template class PyHandle<Stratum::ControlPoint>;
extern template class PyHandle<Knob::ParameterSet>;

#endif
