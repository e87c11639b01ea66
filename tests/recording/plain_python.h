// Plain data as Python objects and back: lists become tuples, texts unicode; and C++ functions as Python's.
#pragma once

#include "plain.h"

#include <Python.h>
#include <stdexcept>

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
    if (!object || object == Py_None)
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

// An argument as the function takes it: plain data, or the Python object itself. What is left out counts as None.
template <class T>
T argument(PyObject* arguments, size_t place)
{
    PyObject* const given =
        place < static_cast<size_t>(PyTuple_GET_SIZE(arguments)) ? PyTuple_GET_ITEM(arguments, place) : nullptr;
    if constexpr (std::is_same_v<T, PyObject*>)
        return given ? given : throw std::invalid_argument("an argument is missing");
    else
        return made<T>(fromPython(given));
}

template <class Result, class... Arguments, size_t... places>
PyObject* applied(Result (*function)(Arguments...), PyObject* arguments, std::index_sequence<places...>)
{
    if (static_cast<size_t>(PyTuple_GET_SIZE(arguments)) > sizeof...(Arguments))
        throw std::invalid_argument("too many arguments");
    if constexpr (std::is_void_v<Result>)
        return function(argument<std::decay_t<Arguments>>(arguments, places)...), toPython(Value());
    else if constexpr (std::is_same_v<Result, PyObject*>)
        return function(argument<std::decay_t<Arguments>>(arguments, places)...);
    else
        return toPython(plain(function(argument<std::decay_t<Arguments>>(arguments, places)...)));
}

template <class Result, class... Arguments>
PyObject* applied(Result (*function)(Arguments...), PyObject* arguments)
{
    return applied(function, arguments, std::index_sequence_for<Arguments...>());
}

// A function of Python's that calls a C++ one, and turns what that throws into a LookupError. A null object as its
// result stands for the error that is pending.
template <auto function>
PyObject* entry(PyObject*, PyObject* arguments)
{
    try {
        return applied(function, arguments);
    } catch (const PythonError&) {
    } catch (const std::exception& error) {
        PyErr_Format(PyExc_LookupError, "recording: %s", error.what());
    } catch (...) {
        PyErr_SetString(PyExc_LookupError, "recording: no standard exception");
    }
    return nullptr;
}

template <auto function>
constexpr PyMethodDef method(const char* name, const char* about)
{
    return {name, &entry<function>, METH_VARARGS, about};
}

} // namespace recording
