// The places of PySide.QtCore's types and converters in its published tables.
//
// Each extension module that uses them defines the two table pointers and fills them when it has imported
// PySide.QtCore.
#ifndef PYSIDE_QTCORE_PYTHON_H
#define PYSIDE_QTCORE_PYTHON_H

#include <QByteArray>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QTimer>
#include <QVariant>
#include <sbkpython.h>
#include <shiboken.h>

// Types.
enum {
    SBK_QOBJECT_IDX,
    SBK_QEVENT_IDX,
    SBK_QEVENT_TYPE_IDX,
    SBK_QTIMEREVENT_IDX,
    SBK_QCHILDEVENT_IDX,
    SBK_QBYTEARRAY_IDX,
    SBK_QCOREAPPLICATION_IDX,
    SBK_QTIMER_IDX,
    SBK_QTHREAD_IDX,
    SBK_QT_IDX,
    SBK_QT_CONNECTIONTYPE_IDX,
    SBK_QT_ORIENTATION_IDX,
    SBK_QT_CASESENSITIVITY_IDX,
    SBK_QT_SORTORDER_IDX,
    SBK_QT_CHECKSTATE_IDX,
    SBK_QT_TIMESPEC_IDX,
    SBK_QT_DATEFORMAT_IDX,
    SBK_QTHREAD_PRIORITY_IDX,
    SBK_QCOREAPPLICATION_ENCODING_IDX,
    SBK_QtCore_IDX_COUNT
};

// Converters.
enum {
    SBK_QSTRING_IDX,
    SBK_QVARIANT_IDX,
    SBK_QSTRINGLIST_IDX,
    SBK_QTCORE_QLIST_QVARIANT_IDX,
    SBK_QTCORE_QLIST_QSTRING_IDX,
    SBK_QTCORE_QLIST_QOBJECTPTR_IDX,
    SBK_QTCORE_QLIST_QBYTEARRAY_IDX,
    SBK_QTCORE_QMAP_QSTRING_QVARIANT_IDX,
    SBK_QtCore_CONVERTERS_IDX_COUNT
};

extern PyTypeObject** SbkPySide_QtCoreTypes;
extern SbkConverter** SbkPySide_QtCoreTypeConverters;

namespace Shiboken {

// clang-format off
template <> inline PyTypeObject* SbkType<::QObject>() { return SbkPySide_QtCoreTypes[SBK_QOBJECT_IDX]; }
template <> inline PyTypeObject* SbkType<::QEvent>() { return SbkPySide_QtCoreTypes[SBK_QEVENT_IDX]; }
template <> inline PyTypeObject* SbkType<::QEvent::Type>() { return SbkPySide_QtCoreTypes[SBK_QEVENT_TYPE_IDX]; }
template <> inline PyTypeObject* SbkType<::QTimerEvent>() { return SbkPySide_QtCoreTypes[SBK_QTIMEREVENT_IDX]; }
template <> inline PyTypeObject* SbkType<::QChildEvent>() { return SbkPySide_QtCoreTypes[SBK_QCHILDEVENT_IDX]; }
template <> inline PyTypeObject* SbkType<::QByteArray>() { return SbkPySide_QtCoreTypes[SBK_QBYTEARRAY_IDX]; }
template <> inline PyTypeObject* SbkType<::QCoreApplication>() { return SbkPySide_QtCoreTypes[SBK_QCOREAPPLICATION_IDX]; }
template <> inline PyTypeObject* SbkType<::QTimer>() { return SbkPySide_QtCoreTypes[SBK_QTIMER_IDX]; }
template <> inline PyTypeObject* SbkType<::QThread>() { return SbkPySide_QtCoreTypes[SBK_QTHREAD_IDX]; }
template <> inline PyTypeObject* SbkType<::Qt::ConnectionType>() { return SbkPySide_QtCoreTypes[SBK_QT_CONNECTIONTYPE_IDX]; }
// clang-format on

} // namespace Shiboken

#endif
