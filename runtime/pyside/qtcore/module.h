// What the start of PySide.QtCore enters into the module beside its classes. Each gives false with an error.
#ifndef MODULE_H
#define MODULE_H

#include "qt_types.h"

#include <enumeration.h>

namespace QtCore {

bool registerEventTypes(PyObject* module);
bool registerEnumerations(PyObject* module);

} // namespace QtCore

#endif
