// The insides of Signal and SignalInstance objects, and what Property objects declare.
#ifndef SIGNAL_OBJECTS_H
#define SIGNAL_OBJECTS_H

#include "dynamic_meta_object.h"
#include "python_scopes.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <vector>

namespace PySide {

// A signal of a class. One that a script has just made has no name yet: the class that it lands in gives it one.
struct SignalData
{
    QByteArray name;                    // of the C++ signal
    QByteArray attribute;               // under which the class has it
    std::vector<QByteArray> parameters; // "int,QString" for each overload, the default one first

    QByteArray signature(std::size_t overload) const { return name + '(' + parameters[overload] + ')'; }
};

struct SignalObject
{
    PyObject_HEAD SignalData* data;
};

// A signal of an object. It keeps neither the wrapper object nor the QObject alive.
struct SignalInstanceData
{
    QPointer<QObject> source;
    Reference sourceType; // whose name the error says when the source has gone
    QByteArray name;
    std::vector<QByteArray> signatures; // the one that is meant first
};

struct SignalInstanceObject
{
    PyObject_HEAD SignalInstanceData* data;
};

inline SignalData& signalData(PyObject* signal) { return *reinterpret_cast<SignalObject*>(signal)->data; }
inline SignalInstanceData& instanceData(PyObject* instance)
{
    return *reinterpret_cast<SignalInstanceObject*>(instance)->data;
}

// New references, null with an error.
PyObject* newSignal(SignalData data);
PyObject* newSignalInstance(const SignalData& signal, QObject* source, PyTypeObject* sourceType);

// The types, made ready. False with an error.
bool initSignalTypes(PyObject* module);
bool initSlotType(PyObject* module);
bool initPropertyType(PyObject* module);

// Whether it is a Property; null is none.
bool isProperty(PyObject* object);
// What Qt is to know of a Property, whose signal has got its name.
DynamicProperty describeProperty(const char* name, PyObject* property);

// The source, or null with the error about an object that has gone.
QObject* sourceOf(const SignalInstanceData& instance);

// For "connect" or "disconnect" with arguments that fit no signature: the TypeError with all of them.
void setWrongConnectArguments(const char* operation, PyObject* arguments);

} // namespace PySide

#endif
