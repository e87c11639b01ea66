// Library exceptions as Python exceptions.
#include "module.h"

#include <QHash>
#include <QString>
#include <exception>
#include <fundo/pretty_type_name.h>
#include <typeinfo>

namespace vireo {

namespace {

QHash<QString, PyObject*> exceptionTable()
{
    QHash<QString, PyObject*> table;
    table.insert("STRM_Exception", PyExc_Exception);
    table.insert("STRM_AssertionFailed", PyExc_AssertionError);
    table.insert("STRM_OperationFailed", PyExc_RuntimeError);
    table.insert("STRM_OperationCancelledByUser", PyExc_KeyboardInterrupt);
    table.insert("STRM_BadAlloc", PyExc_MemoryError);
    table.insert("STRM_OutOfRange", PyExc_IndexError);
    table.insert("STRM_BadSize", PyExc_BufferError);
    table.insert("STRM_BadState", PyExc_RuntimeError);
    table.insert("STRM_BadArgument", PyExc_ValueError);
    table.insert("STRM_BadFile", PyExc_IOError);
    table.insert("STRM_NotImplemented", PyExc_NotImplementedError);
    table.insert("STRM_UnexpectedException", PyExc_RuntimeError);
    table.insert("STRM_LumenError", PyExc_RuntimeError);
    table.insert("STRM_ExternalException", PyExc_EnvironmentError);
    table.insert("STRM_OperationInProgress", PyExc_RuntimeError);
    table.insert("PyTypeError", PyExc_TypeError);
    return table;
}

} // namespace

// The class itself must be listed, its base classes are not searched: a failure of a kind that the library added since
// is a RuntimeError, not a guess.
void translateLibraryException(const std::exception& caught)
{
    static const QHash<QString, PyObject*> table = exceptionTable();
    const QString name = Fundo::detail::prettyTypeName(typeid(caught).name());
    PyErr_SetString(table.value(name, PyExc_RuntimeError), binding::textOf(caught));
}

} // namespace vireo
