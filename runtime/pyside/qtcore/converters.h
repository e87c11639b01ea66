// Entering this module's converters into its table.
#ifndef CONVERTERS_H
#define CONVERTERS_H

#include "qt_types.h"

namespace QtCore {

// Text as Qt and Python have it, nothing lost either way. None is the null string.
QString textFromPython(PyObject* text);
PyObject* textToPython(const QString& text);
// str, unicode or None.
bool isText(PyObject* object);
bool hasOnlyTextKeys(PyObject* dictionary);

void registerTextConverters();   // QString, QStringList
void registerVariantConverter(); // QVariant
void registerListConverters();   // lists and maps of these, of QObjects and of byte arrays
void registerPrimitiveNames();   // Qt's names of numbers

// A variant for any Python object; an error may be pending afterwards.
QVariant variantFromPython(PyObject* object);
PyObject* variantToPython(const QVariant& variant);

} // namespace QtCore

#endif
