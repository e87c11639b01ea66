// The translation of library exceptions: by the exception's own class, as the module does it.
#include "conversions.h"

#include <cstring>
#include <exception>
#include <fundo/pretty_type_name.h>
#include <iterator>
#include <typeinfo>

namespace calls {

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
