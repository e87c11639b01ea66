// What QObject::connectNotify and disconnectNotify are told, which Qt 4.8 and Qt 5 spell differently.
#ifndef BINDING_NOTIFIED_SIGNAL_H
#define BINDING_NOTIFIED_SIGNAL_H

#include <QByteArray>
#include <QMetaMethod>

namespace binding {

#if QT_VERSION >= 0x050000

typedef const QMetaMethod& NotifiedSignal;

// The signal as SIGNAL() writes it, such as "2changed(int)"; empty for a disconnection of everything.
inline QByteArray signalText(const QMetaMethod& signal)
{
    return signal.isValid() ? "2" + signal.methodSignature() : QByteArray();
}

#else

typedef const char* NotifiedSignal;

inline QByteArray signalText(const char* signal) { return QByteArray(signal); }

#endif

} // namespace binding

#endif
