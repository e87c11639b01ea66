// What Qt 4.8 and Qt 5 spell differently and the engine and the module use.
#ifndef FUNDO_QT_VERSION_H
#define FUNDO_QT_VERSION_H

#include <QByteArray>
#include <QCoreApplication>
#include <QMetaMethod>
#include <QMetaObject>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <new>
#include <string>
#include <type_traits>

namespace Fundo {
namespace qt {

#if QT_VERSION >= 0x050000

inline QByteArray methodSignature(const QMetaMethod& method) { return method.methodSignature(); }

#else

inline QByteArray methodSignature(const QMetaMethod& method) { return QByteArray(method.signature()); }

#endif

// The bytes of a text: QByteArray::toStdString() is Qt 5's, and QString's gives Latin-1 with Qt 4.
inline std::string toStdString(const QByteArray& bytes)
{
    return std::string(bytes.constData(), std::size_t(bytes.size()));
}

// Whether values are swapped without throwing. Qt 4 does not say so of its types, which share what they hold.
template <class T>
constexpr bool isSwappedSafely = QT_VERSION < 0x050000 || std::is_nothrow_swappable_v<T>;

namespace detail {

#if QT_VERSION >= 0x050000
inline void destroyInteger(void*) {}
inline void* makeInteger(void* storage, const void* source)
{
    return new (storage) int(source ? *static_cast<const int*>(source) : 0);
}
#else
inline void destroyInteger(void* value) { delete static_cast<int*>(value); }
inline void* makeInteger(const void* source) { return new int(source ? *static_cast<const int*>(source) : 0); }
#endif

} // namespace detail

// Registers `name` with Qt's meta-type system as a type of 32-bit integers and returns its id. A name that is
// registered already keeps its id: the registration is made once in a process, by whichever library comes first.
inline int registerIntegerMetaType(const char* name)
{
    if (const int known = QMetaType::type(name))
        return known;
#if QT_VERSION >= 0x050000
    return QMetaType::registerNormalizedType(name, detail::destroyInteger, detail::makeInteger, sizeof(int),
                                             QMetaType::MovableType, nullptr);
#else
    return QMetaType::registerType(name, detail::destroyInteger, detail::makeInteger);
#endif
}

} // namespace qt
} // namespace Fundo

#endif
