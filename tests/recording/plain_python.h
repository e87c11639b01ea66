// Plain data as Python objects and back: lists become tuples, texts unicode.
#pragma once

#include "recorder.h"

#include <Python.h>

namespace recording {

struct PythonError
{};

template <class T>
T checked(T result)
{
    if (PyErr_Occurred())
        throw PythonError();
    return result;
}

inline PyObject* toPython(const Value& value);

struct ToPython
{
    PyObject* operator()(std::monostate) const { return Py_BuildValue(""); }
    PyObject* operator()(bool truth) const { return PyBool_FromLong(truth); }
    PyObject* operator()(long long number) const { return PyInt_FromLong(number); }
    PyObject* operator()(double number) const { return PyFloat_FromDouble(number); }
    PyObject* operator()(const std::string& text) const
    {
        return PyUnicode_DecodeUTF8(text.data(), text.size(), "replace");
    }
    PyObject* operator()(const List& items) const
    {
        PyObject* const tuple = PyTuple_New(items.size());
        for (size_t i = 0; i < items.size(); ++i)
            PyTuple_SET_ITEM(tuple, i, toPython(items[i]));
        return tuple;
    }
};

inline PyObject* toPython(const Value& value) { return std::visit(ToPython(), value.content); }

inline std::string text(PyObject* object)
{
    PyObject* const bytes = PyUnicode_Check(object) ? PyUnicode_AsUTF8String(object) : (Py_INCREF(object), object);
    char* characters = nullptr;
    Py_ssize_t length = 0;
    PyString_AsStringAndSize(bytes, &characters, &length);
    const std::string result(characters ? characters : "", length);
    Py_XDECREF(bytes);
    return checked(result);
}

inline Value fromPython(PyObject* object)
{
    if (object == Py_None)
        return {};
    if (PyBool_Check(object))
        return {object == Py_True};
    if (PyInt_Check(object) || PyLong_Check(object))
        return {static_cast<long long>(checked(PyLong_AsLongLong(object)))};
    if (PyFloat_Check(object))
        return {PyFloat_AS_DOUBLE(object)};
    if (PyString_Check(object) || PyUnicode_Check(object))
        return {text(object)};
    List items;
    PyObject* const sequence = PySequence_Fast(object, "plain data: None, a number, a text or a list of such");
    checked(sequence);
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(sequence); ++i)
        items.push_back(fromPython(PySequence_Fast_GET_ITEM(sequence, i)));
    Py_DECREF(sequence);
    return {items};
}

} // namespace recording
