// The default values of parameters, with the texts by which signatures show them.
#ifndef DEFAULTS_H
#define DEFAULTS_H

#include "qt_types.h"

#include <climits>

namespace QtCore {

template <int number>
struct Number
{
    static int value() { return number; }
};
struct Zero : Number<0>
{
    static constexpr const char* text = "0";
};
struct MinusOne : Number<-1>
{
    static constexpr const char* text = "-1";
};
struct Forever
{
    static constexpr const char* text = "ULONG_MAX";
    static unsigned long value() { return ULONG_MAX; }
};
struct NoBytes
{
    static constexpr const char* text = "0";
    static const char* value() { return nullptr; }
};
struct NoText
{
    static constexpr const char* text = "QString()";
    static QString value() { return QString(); }
};
struct InheritPriority
{
    static constexpr const char* text = "QThread.InheritPriority";
    static QThread::Priority value() { return QThread::InheritPriority; }
};
struct DefaultEncoding
{
    static constexpr const char* text = "QCoreApplication.CodecForTr";
    static Encoding value() { return CodecForTr; }
};
struct NoObject
{
    static constexpr const char* text = "None";
    static QObject* value() { return nullptr; }
};
struct NoParent
{
    static constexpr const char* text = "None";
    static Parent value() { return Parent(); }
};

} // namespace QtCore

#endif
