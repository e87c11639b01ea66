// The Qt meta-objects of Python classes.
#ifndef CLASS_META_H
#define CLASS_META_H

#include "dynamic_meta_object.h"
#include "python_scopes.h"

namespace PySide {

// The meta-object that Qt sees for objects of that Python class: null for a wrapped class itself, which has its own.
std::shared_ptr<const DynamicMetaObject> classMetaObject(PyTypeObject* type);

// Lets Qt see that of an object whose C++ class knows nothing of Python classes.
void addPythonMetaObject(QObject* object, PyTypeObject* type);

} // namespace PySide

#endif
