// Enumerations in Python: a type per enumeration, an item per name, which count as their integer value.
#ifndef SBKENUM_H
#define SBKENUM_H

#include "sbkpython.h"
#include "shibokenmacros.h"

struct SbkConverter;
struct SbkObjectType;

extern "C" {
/// The metatype of all enumerations.
extern LIBSHIBOKEN_API PyTypeObject SbkEnumType_Type;
}

namespace Shiboken {
namespace Enum {

/// True for an item.
inline bool check(PyObject* object) { return Py_TYPE(Py_TYPE(object)) == &SbkEnumType_Type; }

/// Creates an enumeration and enters it as `name` into a module. `fullName` is the dotted Python name. Null with the
/// error set on failure; otherwise the type lives as long as the process. `flagsType` gives its items' operators.
LIBSHIBOKEN_API PyTypeObject* createGlobalEnum(PyObject* module, const char* name, const char* fullName,
                                               const char* cppName, PyTypeObject* flagsType = nullptr);
/// The same inside a class.
LIBSHIBOKEN_API PyTypeObject* createScopedEnum(SbkObjectType* scope, const char* name, const char* fullName,
                                               const char* cppName, PyTypeObject* flagsType = nullptr);

/// Creates an item and enters it into its enumeration and the module or class around it.
LIBSHIBOKEN_API bool createGlobalEnumItem(PyTypeObject* enumType, PyObject* module, const char* itemName,
                                          long itemValue);
LIBSHIBOKEN_API bool createScopedEnumItem(PyTypeObject* enumType, SbkObjectType* scope, const char* itemName,
                                          long itemValue);
LIBSHIBOKEN_API bool createScopedEnumItem(PyTypeObject* enumType, PyTypeObject* scope, const char* itemName,
                                          long itemValue);

/// With a name: a new item, entered into its enumeration. Without: the registered item of that value, or a nameless
/// one.
LIBSHIBOKEN_API PyObject* newItem(PyTypeObject* enumType, long itemValue, const char* itemName = nullptr);

/// A type that is entered nowhere yet.
LIBSHIBOKEN_API PyTypeObject* newTypeWithName(const char* name, const char* cppName);
LIBSHIBOKEN_API const char* getCppName(PyTypeObject* enumType);

LIBSHIBOKEN_API long getValue(PyObject* enumItem);

/// The registered item of a value as a new reference, or null without an error.
LIBSHIBOKEN_API PyObject* getEnumItemFromValue(PyTypeObject* enumType, long itemValue);

LIBSHIBOKEN_API void setTypeConverter(PyTypeObject* enumType, SbkConverter* converter);
LIBSHIBOKEN_API SbkConverter* getTypeConverter(PyTypeObject* enumType);

} // namespace Enum
} // namespace Shiboken

#endif
