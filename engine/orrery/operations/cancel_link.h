// Makes the signal cancelRequested() have the effect of a call of cancel().
#pragma once

#include <QObject>
#include <orrery/progress_watcher.h>

namespace orrery {

class CancelLink : public QObject
{
    Q_OBJECT

public:
    explicit CancelLink(ProgressWatcher& watcher) : m_watcher(watcher)
    {
        connect(&watcher, SIGNAL(cancelRequested()), this, SLOT(cancel()), Qt::DirectConnection);
    }

public slots:
    void cancel() { m_watcher.cancel(); }

private:
    ProgressWatcher& m_watcher;
};

} // namespace orrery
