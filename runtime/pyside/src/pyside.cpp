// The binding's life in a process, keyword arguments of QObject constructors, and wrapper objects of QObjects.
#include "pyside.h"

#include "object_life.h"
#include "pyobjectwrapper.h"
#include "qobject_wrappers.h"
#include "signal_objects.h"
#include "signalmanager.h"
#include "value_type.h"

#include <QCoreApplication>
#include <QMetaProperty>
#include <QVariant>
#include <algorithm>
#include <cstring>
#include <typeinfo>

namespace PySide {

namespace {

std::vector<CleanupFunction>& cleanupFunctions()
{
    static std::vector<CleanupFunction> functions;
    return functions;
}

PyObject* atExit(PyObject*, PyObject*)
{
    runCleanupFunctions();
    Py_RETURN_NONE;
}

bool registerAtExit()
{
    static PyMethodDef definition = {"_end_of_PySide", &atExit, METH_NOARGS, nullptr};
    const Reference function(PyCFunction_New(&definition, nullptr));
    const Reference module(PyImport_ImportModule("atexit"));
    return function && module &&
           Reference(PyObject_CallMethod(module.get(), const_cast<char*>("register"), const_cast<char*>("O"),
                                         function.get()));
}

void clearConnections() { SignalManager::instance().clear(); }

// The nearest wrapped class that the object's meta-object names.
PyTypeObject* nearestType(const QObject* object)
{
    for (const QMetaObject* meta = object->metaObject(); meta; meta = meta->superClass()) {
        PyTypeObject* const type =
            Shiboken::Conversions::getPythonTypeObject((QByteArray(meta->className()) + '*').constData());
        if (type && isQObjectType(type))
            return type;
    }
    return nullptr;
}

bool setPropertyFromPython(QObject* object, const char* name, PyObject* value)
{
    QVariant variant;
    SbkConverter* const converter = Shiboken::Conversions::getConverter("QVariant");
    const Shiboken::Conversions::PythonToCppFunc convert =
        Shiboken::Conversions::isPythonToCppConvertible(converter, value);
    if (convert)
        convert(value, &variant);
    if (PyErr_Occurred())
        return false;
    bool isSet;
    {
        const Unlocked unlocked;
        isSet = object->setProperty(name, variant);
    }
    if (!isSet)
        PyErr_Format(PyExc_TypeError, "the property '%s' takes no %s", name, Py_TYPE(value)->tp_name);
    return isSet;
}

bool applyKeyword(PyObject* self, QObject* object, const QMetaObject* metaObject, const char* name, PyObject* value)
{
    // One of Python's is set by Python, whose exception then is the caller's.
    if (isProperty(_PyType_Lookup(Py_TYPE(self), Reference(PyString_FromString(name)).get())))
        return PyObject_SetAttrString(self, name, value) == 0;
    if (metaObject->indexOfProperty(name) >= 0)
        return setPropertyFromPython(object, name, value);
    const QByteArray signature = QByteArray(name) + "()";
    if (metaObject->indexOfSignal(signature.constData()) < 0) {
        PyErr_Format(PyExc_AttributeError, "'%s' is not a Qt property or a signal", signature.constData());
        return false;
    }
    const Reference signal(PyObject_GetAttrString(self, name));
    return signal &&
           Reference(PyObject_CallMethod(signal.get(), const_cast<char*>("connect"), const_cast<char*>("O"), value));
}

} // namespace

void init(PyObject* module)
{
    qRegisterMetaType<PyObjectWrapper>("PyObject");
    qRegisterMetaType<PyObjectWrapper>(anyArguments);
    if (!initSignalTypes(module) || !initSlotType(module) || !initPropertyType(module) || !registerAtExit())
        return;
    registerCleanupFunction(&destroyQCoreApplication);
    registerCleanupFunction(&clearConnections);
}

void registerCleanupFunction(CleanupFunction function) { cleanupFunctions().push_back(function); }

void runCleanupFunctions()
{
    while (!cleanupFunctions().empty()) {
        const CleanupFunction function = cleanupFunctions().back();
        cleanupFunctions().pop_back();
        function();
    }
}

void destroyQCoreApplication()
{
    QCoreApplication* const application = QCoreApplication::instance();
    SbkObject* const wrapper =
        application ? Shiboken::BindingManager::instance().retrieveWrapper(application) : nullptr;
    // One that a host made is the host's.
    if (!wrapper || !Shiboken::Object::wasCreatedByPython(wrapper))
        return;
    const Reference kept = Reference::borrow(reinterpret_cast<PyObject*>(wrapper));
    Shiboken::Object::callCppDestructors(wrapper);
}

bool fillQtProperties(PyObject* object, const QMetaObject* metaObject, PyObject* keywords, const char** ignored,
                      unsigned int ignoredCount)
{
    QObject* const cpp = qObjectOf(object);
    PyObject* key;
    PyObject* value;
    for (Py_ssize_t place = 0; cpp && keywords && PyDict_Next(keywords, &place, &key, &value);) {
        const char* const name = PyString_AsString(key);
        if (!name)
            return false;
        const auto isBefore = [](const char* left, const char* right) { return std::strcmp(left, right) < 0; };
        if (std::binary_search(ignored, ignored + ignoredCount, name, isBefore))
            continue;
        if (!applyKeyword(object, cpp, metaObject, name, value))
            return false;
    }
    return true;
}

PyObject* getWrapperForQObject(QObject* object, SbkObjectType* type)
{
    if (!object)
        return none();
    if (SbkObject* const known = Shiboken::BindingManager::instance().retrieveWrapper(object))
        if (isQObjectType(Py_TYPE(known)))
            return Reference::borrow(reinterpret_cast<PyObject*>(known)).release();
    if (PyTypeObject* const nearest = nearestType(object))
        type = reinterpret_cast<SbkObjectType*>(nearest);
    Reference wrapper(Shiboken::Object::newObject(type, object, false, false, typeid(*object).name()));
    ObjectLife::of(object);
    return wrapper.release();
}

PyTypeObject* qObjectType()
{
    static PyTypeObject* type = nullptr;
    if (!type)
        type = Shiboken::Conversions::getPythonTypeObject("QObject*");
    return type;
}

bool isQObjectType(PyTypeObject* type)
{
    PyTypeObject* const base = qObjectType();
    return base && PyType_IsSubtype(type, base);
}

QObject* qObjectOf(PyObject* object)
{
    if (!isQObjectType(Py_TYPE(object)) || !Shiboken::Object::isValid(object, false))
        return nullptr;
    return validQObjectOf(object);
}

QObject* validQObjectOf(PyObject* wrapper)
{
    if (!Shiboken::Object::isValid(wrapper))
        return nullptr;
    return static_cast<QObject*>(
        Shiboken::Conversions::cppPointer(qObjectType(), reinterpret_cast<SbkObject*>(wrapper)));
}

QPointer<QObject> guarded(QObject* object)
{
    struct Protected : QObject
    {
        using QObject::d_ptr;
    };
    const bool isDying = object && (object->*&Protected::d_ptr)->wasDeleted;
    return isDying ? nullptr : object;
}

PyObject* wrapperOf(QObject* object)
{
    return getWrapperForQObject(object, reinterpret_cast<SbkObjectType*>(qObjectType()));
}

} // namespace PySide
