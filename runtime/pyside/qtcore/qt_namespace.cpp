// The namespace Qt, as far as it concerns connections.
#include "module.h"

namespace QtCore {

namespace {

constexpr EnumerationItem connectionTypes[] = {{"AutoConnection", Qt::AutoConnection},
                                               {"DirectConnection", Qt::DirectConnection},
                                               {"QueuedConnection", Qt::QueuedConnection},
                                               {"BlockingQueuedConnection", Qt::BlockingQueuedConnection},
                                               {"UniqueConnection", Qt::UniqueConnection}};

SbkObjectType type = {};

} // namespace

bool registerQtNamespace(PyObject* module)
{
    PyTypeObject& space = type.super.ht_type;
    Py_REFCNT(&space) = 1;
    Py_TYPE(&space) = &SbkObjectType_Type;
    space.tp_name = "PySide.QtCore.Qt";
    space.tp_basicsize = sizeof(SbkObject);
    space.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_CHECKTYPES;
    space.tp_dealloc = &SbkDeallocWrapperWithPrivateDtor;
    SbkPySide_QtCoreTypes[SBK_QT_IDX] = &space;
    return Shiboken::ObjectType::introduceWrapperType(module, "Qt", "Qt", &type) &&
           registerEnumeration<Qt::ConnectionType>(module, connectionTypes);
}

} // namespace QtCore
