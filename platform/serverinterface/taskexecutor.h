#ifndef NIVARO_TASKEXECUTOR_H
#define NIVARO_TASKEXECUTOR_H

#include "serverinterface_export.h"

#include <taskinfo.h>

#include <QObject>
#include <QScopedPointer>

namespace nivaro {

class LocalStorage;
class TaskExecutorPrivate;

/**
 * Stands in for the server: takes tasks, runs them one after another
 * against the local store (and so the store file), and answers each by
 * calling the slot named in the task on its receiver with the object's uid,
 * or with 0 and a logged reason when the task fails. Tasks never run inside
 * the call that hands them over, so a page that queues a task and waits
 * for its reply sees the reply after it has returned to the event loop.
 */
class SERVERINTERFACE_EXPORT TaskExecutor : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TaskExecutor)
public:
    explicit TaskExecutor(LocalStorage *storage, QObject *parent = nullptr);
    ~TaskExecutor() override;

    // Tasks handed over and not yet answered.
    int pendingCount() const;
    // The reason of the last failure, for the host's message line.
    QString lastError() const;

public Q_SLOTS:
    void execute(const nivaro::TaskInfo &task);

Q_SIGNALS:
    // After the reply slot was called: ok is false for a failure.
    void taskFinished(const nivaro::TaskInfo &task, bool ok, const QString &error);
    void idle();

private:
    void runNext();
    void reply(const nivaro::TaskInfo &task, nivaro::TYPE_ID uid);

    QScopedPointer<TaskExecutorPrivate> d;
};

} // namespace nivaro

#endif
