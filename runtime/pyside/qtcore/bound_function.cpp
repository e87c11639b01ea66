// The errors of calls: counts, types, and the list of signatures.
#include "bound_function.h"

namespace QtCore {

bool countArguments(const FunctionName& function, PyObject* arguments, int least, int most)
{
    const int given = static_cast<int>(PyTuple_GET_SIZE(arguments));
    if (given >= least && given <= most)
        return true;
    if (least == most)
        PyErr_Format(PyExc_TypeError, "%s expected %d arguments, got %d", function.name, most, given);
    else
        PyErr_Format(PyExc_TypeError, "%s(): %s arguments", function.full().c_str(),
                     given < least ? "not enough" : "too many");
    return false;
}

PyObject* raiseWrongArguments(const FunctionName& function, PyObject* arguments, const std::string& signature)
{
    const char* signatures[] = {signature.c_str(), nullptr};
    Shiboken::setErrorAboutWrongArguments(arguments, function.full().c_str(), signatures);
    return nullptr;
}

} // namespace QtCore
