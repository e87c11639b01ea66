// The module PySide.QtGui, which has nothing yet: what imports it beside QtCore finds it.
#include <shiboken.h>

namespace {

PyMethodDef functions[] = {{}};

} // namespace

PyMODINIT_FUNC __attribute__((visibility("default"))) initQtGui()
{
    const Shiboken::AutoDecRef core(Shiboken::Module::import("PySide.QtCore"));
    if (!core.isNull())
        Shiboken::Module::create("QtGui", functions);
}
