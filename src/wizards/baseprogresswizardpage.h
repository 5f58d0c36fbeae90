#ifndef BASEPROGRESSWIZARDPAGE_H
#define BASEPROGRESSWIZARDPAGE_H

#include "nvdialogs_export.h"
#include "steppedloop.h"

#include <nvtypes.h>
#include <nvwizardpage.h>
#include <taskinfo.h>

#include <QList>
#include <QPointer>
#include <QScopedPointer>

class BufferedLog;
class NVProgressBar;
class QWizard;
namespace Ui {
class BaseProgressWizardPage;
}

/**
 * The last page of a wizard: runs the queue of server tasks that the
 * earlier pages built, one at a time, with a progress bar and a log.
 *
 * Each task goes out through executeTask() with this page as its reply
 * receiver; the host's executor answers by calling the reply slot the task
 * names (objectAdded / objectUpdated here, or a derived page's slot that
 * forwards to them) with the object's uid, 0 meaning failure. The head task
 * stays queued until its reply arrives. The page is complete exactly when
 * the queue is empty, so a wizard that queued nothing can finish at once.
 */
class NVDIALOGS_EXPORT BaseProgressWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    enum ErrorHandlingPolicy {
        StopOnFailure = 0,     // the first failure discards the rest of the queue
        ContinueOnFailure = 1, // any value but 0: log the failure, run the rest
    };
    Q_ENUM(ErrorHandlingPolicy)

    explicit BaseProgressWizardPage(QWidget *parent = nullptr);
    ~BaseProgressWizardPage() override;

    void setFinishMessage(const QString &message);
    QString finishMessage() const;
    void setErrorHandlingPolicy(ErrorHandlingPolicy policy);
    ErrorHandlingPolicy errorHandlingPolicy() const;

    // The first queued task with this command name; a default task (number
    // 0, no command) when there is none.
    nivaro::TaskInfo task(const QString &command) const;
    int queuedTaskCount() const { return m_queue.size(); }

    // Shows text as the current message and adds it to the log; an empty
    // text changes nothing.
    void appendMessage(const QString &text);
    void clearMessages();
    // Abandons the run: the queue is emptied and the message logged.
    void dropTaskQueue(const QString &message);

    bool isComplete() const override;
    void initializePage() override;

    // The log as plain text, one line per message; for tests and the save
    // of a finished run's log.
    QString logText() const;

    // What "Повторить неудачные" would send again once the run has ended:
    // under the continue policy exactly the tasks that failed; under the
    // stop policy the failed one and those the failure kept from going out.
    QList<nivaro::TaskInfo> failedTasks() const { return m_failedTasks; }
    // Runs those tasks again as a run of their own; nothing while a run is
    // going or when nothing failed.
    void retryFailed();

Q_SIGNALS:
    void executeTask(nivaro::TaskInfo task);
    void tasksFinished();

public Q_SLOTS:
    void addTask(nivaro::TaskInfo task);
    void objectAdded(nivaro::TYPE_ID uid);
    void objectUpdated(nivaro::TYPE_ID uid);

protected:
    virtual void taskAdded();
    virtual void taskCompleted();
    virtual void taskFailed();

    NVProgressBar *progressBar() const;

private:
    void executeNext();
    void runHead();
    void finishRun();
    void takeOverWizardButtons();
    void relayCompleteness();
    void offerRetry();

    QScopedPointer<Ui::BaseProgressWizardPage> ui;
    BufferedLog *m_log = nullptr;
    QList<nivaro::TaskInfo> m_queue;
    QString m_finishMessage;
    ErrorHandlingPolicy m_policy = StopOnFailure;
    bool m_failedInRun = false;
    QList<nivaro::TaskInfo> m_failedTasks;
    // What the wizard's buttons last showed, when they follow this page
    // through relayCompleteness(); -1 before the first relay.
    int m_relayedComplete = -1;
    QPointer<QWizard> m_relayWizard;
    SteppedLoop m_loop;
};

#endif
