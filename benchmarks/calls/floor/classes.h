// What the files of the hand-written module share: its types, and conversions of views.
#ifndef CALLS_FLOOR_CLASSES_H
#define CALLS_FLOOR_CLASSES_H

#include "object.h"

#include <orrery/view.h>

namespace calls {

// A view, or the number of one. False without an error for anything else.
bool viewFromPython(PyObject* object, View& view);

// The layers of a project of the floor's, as objects of the module's.
PyObject* wrappedLayers(PyObject*, PyObject* project);

// Enter the classes; false with an error.
bool addValues(PyObject* module);
bool addModel(PyObject* module);

} // namespace calls

#endif
