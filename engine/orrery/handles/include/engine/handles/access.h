// Looking up the engine objects that handles, views and parameter paths refer to.
#pragma once

#include <QString>
#include <QStringList>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <engine/errors/arguments.h>
#include <engine/knob/parameter_tree.h>
#include <engine/stratum/manager.h>
#include <engine/stratum/shapes.h>
#include <engine/stratum/tree.h>
#include <orrery/parameter.h>
#include <orrery/py_handle.h>
#include <orrery/view.h>

namespace orrery {

// Locks the weak pointer. STRM_BadState "Invalid object" when the manager is gone or its project closed.
boost::shared_ptr<STRM_ProjectManager> openManager(const boost::weak_ptr<STRM_ProjectManager>& manager);

// What a new handle refers to. Changes through the handle take the lock for it anew.
template <class Object>
Object& referred(const Object& object)
{
    return const_cast<Object&>(object);
}

inline int idOf(const View& view) { return static_cast<int>(view.get_id()); }
// The id of the view that is meant. STRM_OutOfRange for one that the project does not have.
inline int resolveView(const Stratum::Model& project, const View& view) { return project.resolveView(idOf(view)); }

// The parameter or set at a path below the branch; a null handle when there is none.
Parameter parameterAt(Knob::Branch& branch, STRM_ProjectManager& manager, const QStringList& path);
ParameterSet parameterSetAt(Knob::Branch& branch, STRM_ProjectManager& manager, const QStringList& path);

} // namespace orrery
