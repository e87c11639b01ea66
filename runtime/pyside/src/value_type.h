// The types of signal and slot parameters: Python objects to C++ values and back, found by the name of the type.
#ifndef VALUE_TYPE_H
#define VALUE_TYPE_H

#include "python_scopes.h"

#include <QByteArray>
#include <QMetaMethod>
#include <QObject>
#include <QPointer>
#include <vector>

namespace PySide {

class ValueType
{
public:
    // Needs the lock.
    explicit ValueType(const QByteArray& name);

    const QByteArray& name() const { return m_name; }
    int metaType() const { return m_metaType; }
    bool isQObjectPointer() const { return m_isQObjectPointer; }

    // A new reference; null with an error for a type that nothing is known of.
    PyObject* toPython(const void* value) const;
    // Converts into an existing value. False with an error for what is of another kind. None, and what is only out of
    // range, whose error is printed, leave the value as it is.
    bool fromPython(PyObject* object, void* value) const;

private:
    bool refuse(PyObject* object) const;

    QByteArray m_name;
    int m_metaType;
    bool m_isQObjectPointer;
};

typedef std::vector<ValueType> ValueTypes;

ValueTypes parameterTypes(const QMetaMethod& method);

// The type of the one parameter that stands for any number of Python objects: a tuple of them.
constexpr const char* anyArguments = "PyArguments";

// The first `count` arguments of a meta-call for Python. Null with an error.
PyObject* argumentTuple(const ValueTypes& types, std::size_t count, void** arguments);

// Values of the given types, for a meta-call: an array whose first place is for the result.
class CallArguments
{
public:
    // Default values.
    explicit CallArguments(const ValueTypes& types);
    // Copies, which know when the QObjects among them die.
    CallArguments(const ValueTypes& types, void* const* arguments);
    CallArguments(const CallArguments&) = delete;
    CallArguments& operator=(const CallArguments&) = delete;
    ~CallArguments();

    // False when there is a type whose values cannot be made; `missing` is its name then.
    bool isComplete() const { return m_missing.isEmpty(); }
    const QByteArray& missing() const { return m_missing; }

    // False with an error; the tuple has at most as many items as there are types.
    bool fromPython(PyObject* tuple);

    // Valid while this lives. Pointers to QObjects that have died are null.
    void** data();

private:
    const ValueTypes m_types;
    std::vector<void*> m_values;
    std::vector<std::pair<std::size_t, QPointer<QObject>>> m_guards;
    QByteArray m_missing;
};

} // namespace PySide

#endif
