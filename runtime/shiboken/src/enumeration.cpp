// Enumerations: their types, their items, and what items do where a number is expected.
#include "sbkenum.h"
#include "wrapper_data.h"

#include <string>
#include <unordered_map>

extern "C" {

/// The items are held by the type's dictionary, and by this one, which scripts cannot change.
struct SbkEnumTypePrivate
{
    std::string fullName;
    std::string cppName;
    SbkConverter* converter = nullptr;
    PyObject* values = nullptr;
    PyTypeObject* scope = nullptr; // null for an enumeration of a module
    std::unordered_map<long, PyObject*> items = {};
};

struct SbkEnumType
{
    PyHeapTypeObject super;
    SbkEnumTypePrivate* d;
};

struct SbkEnumObject
{
    PyObject_HEAD long value;
    PyObject* name;
};
}

namespace Shiboken {
namespace Enum {

namespace {

SbkEnumTypePrivate& dataOf(PyTypeObject* enumType) { return *reinterpret_cast<SbkEnumType*>(enumType)->d; }

PyObject* nameOf(PyObject* item) { return reinterpret_cast<SbkEnumObject*>(item)->name; }

/// A new object that is entered nowhere.
PyObject* makeItem(PyTypeObject* enumType, long value, PyObject* name)
{
    SbkEnumObject* const item = PyObject_New(SbkEnumObject, enumType);
    if (!item)
        return nullptr;
    item->value = value;
    item->name = name;
    Py_XINCREF(name);
    return reinterpret_cast<PyObject*>(item);
}

void deallocateItem(PyObject* item)
{
    Py_XDECREF(nameOf(item));
    PyObject_Del(item);
}

PyObject* represent(PyObject* item)
{
    const char* const type = Py_TYPE(item)->tp_name;
    if (nameOf(item))
        return PyString_FromFormat("%s.%s", type, PyString_AS_STRING(nameOf(item)));
    return PyString_FromFormat("%s(%ld)", type, getValue(item));
}

long hashItem(PyObject* item)
{
    const long value = getValue(item);
    return value == -1 ? -2 : value;
}

PyObject* getItemName(PyObject* item, void*)
{
    PyObject* const name = nameOf(item) ? nameOf(item) : Py_None;
    Py_INCREF(name);
    return name;
}

/// Items never change: a copy is the item.
PyObject* copyItem(PyObject* item, PyObject*)
{
    Py_INCREF(item);
    return item;
}

/// For pickle: a named item is found again where it is an attribute, any other is made anew.
PyObject* reduceItem(PyObject* item, PyObject*)
{
    PyTypeObject* const scope = dataOf(Py_TYPE(item)).scope;
    if (!nameOf(item))
        return Py_BuildValue("(O(l))", Py_TYPE(item), getValue(item));
    PyObject* const getAttribute = PyDict_GetItemString(PyEval_GetBuiltins(), "getattr");
    return Py_BuildValue("(O(OO))", getAttribute, scope ? scope : Py_TYPE(item), nameOf(item));
}

/// The same for the types of items: a scoped one is an attribute of its scope.
PyObject* reduceType(PyObject*, PyObject* type)
{
    PyTypeObject* const scope = dataOf(reinterpret_cast<PyTypeObject*>(type)).scope;
    const AutoDecRef name(PyObject_GetAttrString(type, "__name__"));
    if (name.isNull() || !scope) {
        Py_XINCREF(name.object());
        return name.object();
    }
    return Py_BuildValue("(O(OO))", PyDict_GetItemString(PyEval_GetBuiltins(), "getattr"), scope, name.object());
}

PyObject* createItem(PyTypeObject* enumType, PyObject* arguments, PyObject*)
{
    long value = 0;
    if (!PyArg_ParseTuple(arguments, "|l:__new__", &value))
        return nullptr;
    const AutoDecRef known(getEnumItemFromValue(enumType, value));
    return makeItem(enumType, value, known.isNull() ? nullptr : nameOf(known));
}

// ---- Items as numbers
// ------------------------------------------------------------------------------------------------

PyObject* asInt(PyObject* item) { return PyInt_FromLong(getValue(item)); }

PyObject* asLong(PyObject* item) { return PyLong_FromLong(getValue(item)); }

int isPositive(PyObject* item) { return getValue(item) > 0; }

PyObject* notImplemented()
{
    Py_INCREF(Py_NotImplemented);
    return Py_NotImplemented;
}

/// An operand as a Python integer: floats are truncated where they are allowed. Null without an error for what is none.
PyObject* asInteger(PyObject* operand, bool allowsFloat)
{
    if (check(operand))
        return asInt(operand);
    if (PyInt_Check(operand) || PyLong_Check(operand)) {
        Py_INCREF(operand);
        return operand;
    }
    return allowsFloat && PyFloat_Check(operand) ? PyNumber_Int(operand) : nullptr;
}

/// A long where only a long can hold the result.
PyObject* asPlainInt(PyObject* number)
{
    if (!number || PyInt_CheckExact(number))
        return number;
    PyObject* const result = PyNumber_Int(number);
    Py_DECREF(number);
    return result;
}

template <PyObject* (*operation)(PyObject*, PyObject*), bool allowsFloat>
PyObject* calculate(PyObject* left, PyObject* right)
{
    const AutoDecRef first(asInteger(left, allowsFloat));
    if (first.isNull())
        return PyErr_Occurred() ? nullptr : notImplemented();
    const AutoDecRef second(asInteger(right, allowsFloat));
    if (second.isNull())
        return PyErr_Occurred() ? nullptr : notImplemented();
    return asPlainInt(operation(first, second));
}

/// As C++ divides, toward zero; the quotient is a Python long.
PyObject* quotient(PyObject* left, PyObject* right)
{
    const PY_LONG_LONG dividend = PyLong_AsLongLong(left);
    const PY_LONG_LONG divisor = PyErr_Occurred() ? 0 : PyLong_AsLongLong(right);
    if (PyErr_Occurred())
        return nullptr;
    if (divisor == 0)
        PyErr_SetString(PyExc_ZeroDivisionError, "integer division or modulo by zero");
    else if (divisor == -1)
        return PyNumber_Negative(AutoDecRef(PyLong_FromLongLong(dividend)));
    return divisor ? PyLong_FromLongLong(dividend / divisor) : nullptr;
}

PyObject* divide(PyObject* left, PyObject* right)
{
    const AutoDecRef first(asInteger(left, true));
    const AutoDecRef second(PyErr_Occurred() ? nullptr : asInteger(right, true));
    if (PyErr_Occurred())
        return nullptr;
    return first.isNull() || second.isNull() ? notImplemented() : quotient(first, second);
}

/// The other side of a comparison: an integer, or an infinite float or a NaN, which have no integer value.
PyObject* asComparable(PyObject* operand)
{
    if (PyFloat_Check(operand) && !Py_IS_FINITE(PyFloat_AS_DOUBLE(operand))) {
        Py_INCREF(operand);
        return operand;
    }
    return asInteger(operand, true);
}

PyObject* compare(PyObject* item, PyObject* other, int operation)
{
    const AutoDecRef right(asComparable(other));
    if (!right.isNull()) {
        const AutoDecRef left(asInt(item));
        return left.isNull() ? nullptr : PyObject_RichCompare(left, right, operation);
    }
    if (PyErr_Occurred())
        return nullptr;
    if (operation != Py_EQ && operation != Py_NE)
        return notImplemented();
    return PyBool_FromLong(operation == Py_NE);
}

PyNumberMethods makeNumberMethods()
{
    PyNumberMethods methods = PyNumberMethods();
    methods.nb_add = &calculate<&PyNumber_Add, true>;
    methods.nb_subtract = &calculate<&PyNumber_Subtract, true>;
    methods.nb_multiply = &calculate<&PyNumber_Multiply, true>;
    methods.nb_divide = &divide;
    methods.nb_positive = &asInt;
    methods.nb_nonzero = &isPositive;
    methods.nb_and = &calculate<&PyNumber_And, false>;
    methods.nb_xor = &calculate<&PyNumber_Xor, false>;
    methods.nb_or = &calculate<&PyNumber_Or, false>;
    methods.nb_int = &asInt;
    methods.nb_long = &asLong;
    methods.nb_index = &asInt;
    return methods;
}

PyNumberMethods numberMethods = makeNumberMethods();

PyGetSetDef itemAttributes[] = {{const_cast<char*>("name"), &getItemName, nullptr, nullptr, nullptr},
                                {nullptr, nullptr, nullptr, nullptr, nullptr}};

PyMethodDef itemMethods[] = {{"__copy__", &copyItem, METH_NOARGS, nullptr},
                             {"__deepcopy__", &copyItem, METH_O, nullptr},
                             {"__reduce__", &reduceItem, METH_NOARGS, nullptr},
                             {nullptr, nullptr, 0, nullptr}};

// ---- Types
// -----------------------------------------------------------------------------------------------------------

/// Enumerations come from modules. What stops a script from deriving one is said by the interpreter first.
PyObject* refuseNewType(PyTypeObject* metatype, PyObject* arguments, PyObject* keywords)
{
    const AutoDecRef made(PyType_Type.tp_new(metatype, arguments, keywords));
    if (!made.isNull())
        PyErr_Format(PyExc_TypeError, "cannot create '%.100s' instances", metatype->tp_name);
    return nullptr;
}

PyTypeObject makeMetatype()
{
    PyTypeObject type = PyTypeObject();
    Py_REFCNT(&type) = 1;
    type.tp_name = "Shiboken.EnumType";
    type.tp_basicsize = sizeof(SbkEnumType);
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_CHECKTYPES;
    type.tp_new = &refuseNewType;
    type.tp_free = &PyObject_GC_Del;
    return type;
}

void fillType(SbkEnumType& enumType, PyTypeObject* flagsType)
{
    PyTypeObject& type = enumType.super.ht_type;
    Py_REFCNT(&type) = 1;
    Py_TYPE(&type) = &SbkEnumType_Type;
    type.tp_name = enumType.d->fullName.c_str();
    type.tp_basicsize = sizeof(SbkEnumObject);
    type.tp_dealloc = &deallocateItem;
    type.tp_repr = &represent;
    type.tp_as_number = flagsType ? flagsType->tp_as_number : &numberMethods;
    type.tp_hash = &hashItem;
    type.tp_str = &represent;
    type.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_CHECKTYPES;
    type.tp_richcompare = &compare;
    type.tp_methods = itemMethods;
    type.tp_getset = itemAttributes;
    type.tp_new = &createItem;
}

PyTypeObject* createType(const char* fullName, const char* cppName, PyTypeObject* flagsType)
{
    SbkEnumType* const enumType = new SbkEnumType();
    enumType->d = new SbkEnumTypePrivate{fullName, cppName ? cppName : ""};
    fillType(*enumType, flagsType);
    PyTypeObject* const type = &enumType->super.ht_type;
    // What failed half way is known to its base class already, and stays.
    enumType->d->values = PyDict_New();
    if (!enumType->d->values || PyType_Ready(type) < 0 ||
        PyDict_SetItemString(type->tp_dict, "values", enumType->d->values) < 0)
        return nullptr;
    PyType_Modified(type);
    return type;
}

bool enter(PyTypeObject* scope, const char* name, PyObject* object)
{
    const bool isEntered = PyDict_SetItemString(scope->tp_dict, name, object) == 0;
    PyType_Modified(scope);
    return isEntered;
}

bool enter(PyObject* module, const char* name, PyObject* object)
{
    Py_INCREF(object);
    if (PyModule_AddObject(module, name, object) == 0)
        return true;
    Py_DECREF(object);
    return false;
}

template <typename Scope>
bool createItemIn(Scope* scope, PyTypeObject* enumType, const char* itemName, long itemValue)
{
    const AutoDecRef item(newItem(enumType, itemValue, itemName));
    return !item.isNull() && enter(scope, itemName, item.object());
}

} // namespace

bool registerForPickle()
{
    static PyMethodDef definition = {"_reduce_enumeration", &reduceType, METH_O, nullptr};
    const AutoDecRef function(PyCFunction_New(&definition, nullptr));
    const AutoDecRef module(PyImport_ImportModule("copy_reg"));
    const AutoDecRef done(function.isNull() || module.isNull()
                              ? nullptr
                              : PyObject_CallMethod(module, const_cast<char*>("pickle"), const_cast<char*>("OO"),
                                                    &SbkEnumType_Type, function.object()));
    return !done.isNull();
}

PyTypeObject* newTypeWithName(const char* name, const char* cppName) { return createType(name, cppName, nullptr); }

PyTypeObject* createGlobalEnum(PyObject* module, const char* name, const char* fullName, const char* cppName,
                               PyTypeObject* flagsType)
{
    PyTypeObject* const type = createType(fullName, cppName, flagsType);
    return type && enter(module, name, reinterpret_cast<PyObject*>(type)) ? type : nullptr;
}

PyTypeObject* createScopedEnum(SbkObjectType* scope, const char* name, const char* fullName, const char* cppName,
                               PyTypeObject* flagsType)
{
    PyTypeObject* const type = createType(fullName, cppName, flagsType);
    if (!type || !enter(asType(scope), name, reinterpret_cast<PyObject*>(type)))
        return nullptr;
    dataOf(type).scope = asType(scope);
    return type;
}

bool createGlobalEnumItem(PyTypeObject* enumType, PyObject* module, const char* itemName, long itemValue)
{
    return createItemIn(module, enumType, itemName, itemValue);
}

bool createScopedEnumItem(PyTypeObject* enumType, SbkObjectType* scope, const char* itemName, long itemValue)
{
    return createItemIn(asType(scope), enumType, itemName, itemValue);
}

bool createScopedEnumItem(PyTypeObject* enumType, PyTypeObject* scope, const char* itemName, long itemValue)
{
    return createItemIn(scope, enumType, itemName, itemValue);
}

PyObject* newItem(PyTypeObject* enumType, long itemValue, const char* itemName)
{
    if (!itemName) {
        PyObject* const known = getEnumItemFromValue(enumType, itemValue);
        return known ? known : makeItem(enumType, itemValue, nullptr);
    }
    SbkEnumTypePrivate& data = dataOf(enumType);
    const AutoDecRef name(PyString_InternFromString(itemName));
    PyObject* const item = name.isNull() ? nullptr : makeItem(enumType, itemValue, name);
    if (!item)
        return nullptr;
    if (PyDict_SetItem(data.values, name, item) < 0 || !enter(enumType, itemName, item)) {
        Py_DECREF(item);
        return nullptr;
    }
    // Of several names for a value the first stands for it.
    if (data.items.emplace(itemValue, item).second)
        Py_INCREF(item);
    return item;
}

const char* getCppName(PyTypeObject* enumType) { return dataOf(enumType).cppName.c_str(); }

long getValue(PyObject* enumItem) { return reinterpret_cast<SbkEnumObject*>(enumItem)->value; }

PyObject* getEnumItemFromValue(PyTypeObject* enumType, long itemValue)
{
    const SbkEnumTypePrivate& data = dataOf(enumType);
    const auto found = data.items.find(itemValue);
    if (found == data.items.end())
        return nullptr;
    Py_INCREF(found->second);
    return found->second;
}

void setTypeConverter(PyTypeObject* enumType, SbkConverter* converter) { dataOf(enumType).converter = converter; }

SbkConverter* getTypeConverter(PyTypeObject* enumType) { return dataOf(enumType).converter; }

} // namespace Enum
} // namespace Shiboken

PyTypeObject SbkEnumType_Type = Shiboken::Enum::makeMetatype();
