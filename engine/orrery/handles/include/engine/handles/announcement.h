// How objects that scripts can see emit several signals: whoever is told may destroy the sender, and what it is part
// of.
#pragma once

#include <QObject>
#include <QPointer>

namespace orrery {

// Calls functions that emit signals, one after the other, as long as their sender lives. Functions that emit must not
// use the sender, nor anything that it owns, after the last emission.
class Announcement
{
public:
    explicit Announcement(QObject& sender) : m_sender(&sender) {}

    template <class Emission>
    void operator()(Emission emission) const
    {
        if (m_sender)
            emission();
    }

private:
    const QPointer<QObject> m_sender;
};

} // namespace orrery
