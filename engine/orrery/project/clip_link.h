// Tells a project that one of its clips was destroyed from outside: by a script, or by a Qt parent that it was given.
#pragma once

#include <QObject>
#include <functional>
#include <utility>

namespace orrery {

class ClipLink : public QObject
{
    Q_OBJECT

public:
    explicit ClipLink(std::function<void(QObject*)> gone) : m_gone(std::move(gone)) {}

    void attach(QObject* clip)
    {
        connect(clip, SIGNAL(destroyed(QObject*)), this, SLOT(gone(QObject*)), Qt::DirectConnection);
    }
    void detach(QObject* clip) { disconnect(clip, nullptr, this, nullptr); }

public slots:
    void gone(QObject* clip) { m_gone(clip); }

private:
    const std::function<void(QObject*)> m_gone;
};

} // namespace orrery
