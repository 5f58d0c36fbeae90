#ifndef BULKUPDATERUNS_H
#define BULKUPDATERUNS_H

#include <changesummarywizardpage.h>
#include <runjournal.h>
#include <taskinfo.h>

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QVariant>

class ObjectsProgressWizardPage;
class UpdateObjectWizard;

namespace nivaro {
class TaskExecutor;
}

/**
 * nvstudio's bulk updates on their way to the executor. Each wizard's run
 * is kept in the store's run journal: it begins with the first task sent,
 * every object the executor confirms is marked, and it ends when the run
 * does, so that a run cut short is found at the next start. A failure's
 * reason from the executor goes into the wizard's log.
 *
 * The window owns it; the wizards it tracks may close at any time.
 */
class BulkUpdateRuns : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(BulkUpdateRuns)
public:
    explicit BulkUpdateRuns(nivaro::TaskExecutor *executor, QObject *parent = nullptr);

    // Without an open journal runs go on, unrecorded.
    bool open(const QString &storeFile, QString *error);
    void close();

    // Sends the wizard's tasks to the executor; its run writes key = value.
    // The wizard shows each object's old and new value before it runs.
    void track(UpdateObjectWizard *wizard, const QString &key, const QVariant &value);

    QList<nivaro::RunJournal::Run> interruptedRuns();
    void endRun(qint64 run);
    static QString key(const nivaro::RunJournal::Run &run);
    static QVariant value(const nivaro::RunJournal::Run &run);

private:
    struct Sent
    {
        qint64 run = 0; // 0: not recorded
        QPointer<ObjectsProgressWizardPage> page;
    };

    static QList<ChangeSummaryWizardPage::Change> changes(const QList<nivaro::TYPE_ID> &uids, const QString &key,
                                                          const QVariant &value);
    qint64 beginRun(ObjectsProgressWizardPage *page, const QVariantMap &parameters);
    void taskFinished(const nivaro::TaskInfo &task, bool ok, const QString &error);

    nivaro::TaskExecutor *m_executor;
    nivaro::RunJournal m_journal;
    QHash<qint64, Sent> m_sent; // by task number
    // The run each page's tasks go to; a page whose run ended and that then
    // retries what failed begins a new one, so a retry cut short is offered
    // again like any other run.
    QHash<const ObjectsProgressWizardPage *, qint64> m_openRuns;
};

#endif
