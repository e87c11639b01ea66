// Texts are copied unit by unit; library exceptions are told apart by their own class, as the module does it.
#include "conversions.h"

#include <cstring>
#include <exception>
#include <fundo/pretty_type_name.h>
#include <iterator>
#include <typeinfo>

namespace calls {

QString textFromPython(PyObject* object)
{
    if (PyString_Check(object))
        return QString::fromLatin1(PyString_AS_STRING(object), static_cast<int>(PyString_GET_SIZE(object)));
    const Py_UNICODE* const units = PyUnicode_AS_UNICODE(object);
    const int length = static_cast<int>(PyUnicode_GET_SIZE(object));
    QString text(length, Qt::Uninitialized);
    QChar* const characters = text.data();
    for (int i = 0; i < length; ++i) {
        if (units[i] > 0xffff)
            return QString::fromWCharArray(reinterpret_cast<const wchar_t*>(units), length);
        characters[i] = QChar(static_cast<ushort>(units[i]));
    }
    return text;
}

PyObject* textToPython(const QString& text)
{
    PyObject* result = PyUnicode_FromUnicode(nullptr, text.size());
    if (!result)
        return nullptr;
    const int length = text.toWCharArray(reinterpret_cast<wchar_t*>(PyUnicode_AS_UNICODE(result)));
    if (length != text.size())
        PyUnicode_Resize(&result, length);
    return result;
}

namespace {

PyObject* classFor(const QString& name)
{
    static const struct
    {
        const char* name;
        PyObject* pythonClass;
    } table[] = {{"STRM_BadArgument", PyExc_ValueError},
                 {"STRM_OutOfRange", PyExc_IndexError},
                 {"STRM_BadState", PyExc_RuntimeError},
                 {"STRM_BadFile", PyExc_IOError}};
    for (const auto& entry : table)
        if (name == QLatin1String(entry.name))
            return entry.pythonClass;
    return PyExc_RuntimeError;
}

} // namespace

void raiseCaughtException()
{
    try {
        throw;
    } catch (const std::exception& caught) {
        PyErr_SetString(classFor(Fundo::detail::prettyTypeName(typeid(caught).name())), caught.what());
    } catch (...) {
        PyErr_SetString(PyExc_RuntimeError, "Unknown error");
    }
}

} // namespace calls
