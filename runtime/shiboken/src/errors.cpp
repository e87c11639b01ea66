// The texts for arguments that no signature takes, Python warnings, and a script's command line for the library.
#include "autodecref.h"
#include "helper.h"
#include "sbkstring.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace Shiboken {

namespace {

/// Appends to a text that becomes null on the first failure and stays so.
void append(PyObject*& text, const char* more)
{
    if (text)
        PyString_ConcatAndDel(&text, PyString_FromString(more));
}

PyObject* typeNames(PyObject* args)
{
    PyObject* names = PyString_FromString("");
    if (!args)
        return names;
    if (!PyTuple_Check(args)) {
        append(names, Py_TYPE(args)->tp_name);
        return names;
    }
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(args); ++i) {
        if (i > 0)
            append(names, ", ");
        append(names, Py_TYPE(PyTuple_GET_ITEM(args, i))->tp_name);
    }
    return names;
}

bool failWithout(char** arguments, Py_ssize_t count)
{
    if (!PyErr_Occurred())
        PyErr_NoMemory();
    for (Py_ssize_t i = 0; i < count; ++i)
        std::free(arguments[i]);
    std::free(arguments);
    return false;
}

/// A copy of a str, or of a unicode as UTF-8; null with an error set for anything else.
char* copyOfText(PyObject* item)
{
    if (PyUnicode_Check(item)) {
        const AutoDecRef bytes(PyUnicode_AsUTF8String(item));
        return bytes.isNull() ? nullptr : strdup(PyString_AS_STRING(bytes.object()));
    }
    const char* const text = PyString_Check(item) ? PyString_AS_STRING(item) : nullptr;
    if (!text)
        PyErr_Format(PyExc_TypeError, "the arguments must be text, not %.200s", Py_TYPE(item)->tp_name);
    return text ? strdup(text) : nullptr;
}

const char* scriptName(const char* defaultAppName)
{
    PyObject* const arguments = PySys_GetObject(const_cast<char*>("argv"));
    if (arguments && PyList_Check(arguments) && PyList_GET_SIZE(arguments) > 0 &&
        PyString_Check(PyList_GET_ITEM(arguments, 0)) && PyString_GET_SIZE(PyList_GET_ITEM(arguments, 0)) > 0)
        return PyString_AS_STRING(PyList_GET_ITEM(arguments, 0));
    return defaultAppName ? defaultAppName : "python";
}

} // namespace

void setErrorAboutWrongArguments(PyObject* args, const char* funcName, const char** cppOverloads)
{
    const AutoDecRef names(typeNames(args));
    if (names.isNull())
        return;
    const char* const given = PyString_AS_STRING(names.object());
    PyObject* message;
    if (!cppOverloads) {
        message = PyString_FromFormat("'%s' called with wrong argument types: %s", funcName, given);
    } else {
        message = PyString_FromFormat(
            "'%s' called with wrong argument types:\n  %s(%s)\nSupported signatures:", funcName, funcName, given);
        for (; *cppOverloads; ++cppOverloads) {
            for (const char* part : {"\n  ", funcName, "(", *cppOverloads, ")"})
                append(message, part);
        }
    }
    if (!message)
        return;
    PyErr_SetObject(PyExc_TypeError, message);
    Py_DECREF(message);
}

int warning(PyObject* category, int stacklevel, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const AutoDecRef message(PyString_FromFormatV(format, arguments));
    va_end(arguments);
    return message.isNull() ? -1 : PyErr_WarnEx(category, PyString_AS_STRING(message.object()), stacklevel);
}

bool sequenceToArgcArgv(PyObject* argList, int* argc, char*** argv, const char* defaultAppName)
{
    const AutoDecRef items(PySequence_Fast(argList, "the arguments must be a sequence of text"));
    if (items.isNull())
        return false;
    const Py_ssize_t given = PySequence_Fast_GET_SIZE(items.object());
    const Py_ssize_t count = given ? given : 1;
    char** const arguments = static_cast<char**>(std::calloc(count + 1, sizeof(char*)));
    if (!arguments)
        return failWithout(arguments, 0);
    for (Py_ssize_t i = 0; i < count; ++i) {
        arguments[i] =
            given ? copyOfText(PySequence_Fast_GET_ITEM(items.object(), i)) : strdup(scriptName(defaultAppName));
        if (!arguments[i])
            return failWithout(arguments, i);
    }
    *argc = static_cast<int>(count);
    *argv = arguments;
    return true;
}

} // namespace Shiboken
