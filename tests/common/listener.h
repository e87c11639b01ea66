// Calls a function for each emission of a signal, with every Qt that the engine is built against, as long as it lives.
// The function takes the signal's arguments, or the first of them, or none:
//     const Listener told(watcher, SIGNAL(progressChanged(double, QString)), [&](double) { ++count; });
#pragma once

#include <QObject>
#include <functional>
#include <stdexcept>
#include <tuple>
#include <type_traits>

class Listener : public QObject
{
public:
    template <class Function>
    Listener(const QObject& sender, const char* signal, Function function) : m_call(caller(std::function(function)))
    {
        const QByteArray signature = QMetaObject::normalizedSignature(signal + 1);
        const int index = sender.metaObject()->indexOfSignal(signature);
        if (index < 0)
            throw std::logic_error(signal);
        QMetaObject::connect(&sender, index, this, QObject::staticMetaObject.methodCount(), Qt::DirectConnection);
    }

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id == 0 && call == QMetaObject::InvokeMetaMethod)
            m_call(arguments + 1);
        return id - 1;
    }

private:
    template <class... Arguments>
    static std::function<void(void**)> caller(std::function<void(Arguments...)> function)
    {
        return [function]([[maybe_unused]] void** given) {
            [[maybe_unused]] int at = 0;
            std::apply(function, std::tuple<const std::decay_t<Arguments>&...>{
                                     *static_cast<const std::decay_t<Arguments>*>(given[at++])...});
        };
    }

    std::function<void(void**)> m_call;
};
