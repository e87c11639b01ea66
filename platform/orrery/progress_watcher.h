// Tells how far a long operation is, and takes the wish to cancel it.
#ifndef ORRERY_PROGRESS_WATCHER_H
#define ORRERY_PROGRESS_WATCHER_H

#include <QObject>
#include <QString>
#include <memory>
#include <orrery/sbk_cleaner.h>

class ProgressWatcher : public QObject, private SbkCleaner
{
    Q_OBJECT

public:
    explicit ProgressWatcher(QObject* parent);
    ~ProgressWatcher();

    // Asks the operation that reports here to stop at its next frame; it then throws STRM_OperationCancelledByUser.
    // Any thread; without effect when nothing runs.
    void cancel();

    struct Data;
    Data& data() const { return *m_data; }

signals:
    // An operation begins; the text names it. Signals come from the thread that runs the operation.
    void started(const QString& text);
    // From 0 to 1, and what is being done ("frame 12 of 100"); some tens a second at most.
    void progressChanged(double fraction, const QString& text);
    // The operation is over, done, failed or cancelled, and the project is as it left it: its slots may start another.
    void finished();
    // It ended because of a wish to cancel; comes before finished().
    void cancelled();
    // To be emitted to stop the operation, by a script for example: has the effect of cancel().
    void cancelRequested();

private:
    const std::unique_ptr<Data> m_data;
};

#endif
